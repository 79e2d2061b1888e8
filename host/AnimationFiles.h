#pragma once
// Reading and writing whole animations for session scripts and the host window: the .dat layouts
// (little-endian int16 header, planes x fastest) and ordinary image files. Every reader checks its
// sizes against the file before it allocates, so a damaged file gives a clear error and no crash.

#include "host/MediaTools.h"
#include "host/Picture.h"

#include <QImage>
#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace kirrel::host {

struct Animation {
    std::vector<Picture> frames; // empty for a still picture
    Picture still;               // the picture when there are no frames
    // Milliseconds each frame stays on screen, one per frame; 0 where the file gave none (the host
    // then uses its own rate). Empty when the file holds no timing at all.
    std::vector<int> delays;
    // The first frame's (or the still picture's) transparency, 255 opaque and 0 clear, with the
    // pictures' bounds; empty when the file has no transparency anywhere.
    krl::Plane alpha;
    // Set when the file could be read only in part (it ends early or is damaged further on): says how
    // many frames were read, for a status message. Empty for a whole file.
    std::string note;
};

// How an image file's pixels become the host's pictures.
struct ReadOptions {
    // Transparent and partly transparent pixels are laid over this colour (packed like the host's
    // colours), so they show the same in every frame whatever the file did with them.
    std::uint32_t paper = 0xFFFFFF;
    // Reports how far a long read has got and lets the user cancel it (then Cancelled is thrown).
    ToolProgress progress{};
};

// int16 Frames, int16 W, int16 H, then R, G, B planes per frame; Frames 0 holds one still picture.
Animation readAnimationDat(const QString& path);
void writeAnimationDat(const QString& path, const Animation& a);
// int16 W, int16 H, then the planes (three for a picture, one for an alpha plane).
Picture readPictureDat(const QString& path);
krl::Plane readPlaneDat(const QString& path);
void writePictureDat(const QString& path, const Picture& p);
void writePlaneDat(const QString& path, const krl::Plane& p);

// A .dat animation, a folder of PNG frames, an animated file (GIF, APNG, WebP, MP4/WebM/MOV and
// the like) or a single picture. A tool that is needed and missing, or a file that cannot be read,
// throws std::runtime_error with a message for the user.
Animation readAnimationFile(const QString& path, const ReadOptions& options = {});
Picture readPictureFile(const QString& path);  // .dat or an image
krl::Plane readAlphaFile(const QString& path); // .dat or a grey image

// An image of W x H pixels becomes a picture with bounds W, H: the extra column and row repeat the
// edge, so they ride along unseen.
Picture pictureFromImage(const QImage& image);
krl::Plane greyPlaneFromImage(const QImage& image);
// The picture proper: W x H pixels (at least 1 x 1).
QImage imageFromPicture(const Picture& p);
QImage imageFromPlane(const krl::Plane& p);

} // namespace kirrel::host
