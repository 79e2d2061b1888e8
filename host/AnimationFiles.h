#pragma once
// Reading and writing whole animations for session scripts and the host window: the .dat layouts
// (little-endian int16 header, planes x fastest) and ordinary image files. Every reader checks its
// sizes against the file before it allocates, so a damaged file gives a clear error and no crash.

#include "host/Picture.h"

#include <QImage>
#include <QString>

#include <vector>

namespace kirrel::host {

struct Animation {
    std::vector<Picture> frames; // empty for a still picture
    Picture still;               // the picture when there are no frames
};

// int16 Frames, int16 W, int16 H, then R, G, B planes per frame; Frames 0 holds one still picture.
Animation readAnimationDat(const QString& path);
void writeAnimationDat(const QString& path, const Animation& a);
// int16 W, int16 H, then the planes (three for a picture, one for an alpha plane).
Picture readPictureDat(const QString& path);
krl::Plane readPlaneDat(const QString& path);
void writePictureDat(const QString& path, const Picture& p);
void writePlaneDat(const QString& path, const krl::Plane& p);

// A folder of images (sorted by name), an animated image, or a single image.
Animation readAnimationFile(const QString& path);
Picture readPictureFile(const QString& path); // .dat or an image
krl::Plane readAlphaFile(const QString& path); // .dat or a grey image

// An image of W x H pixels becomes a picture with bounds W, H: the extra column and row repeat the
// edge, so they ride along unseen.
Picture pictureFromImage(const QImage& image);
krl::Plane greyPlaneFromImage(const QImage& image);
// The picture proper: W x H pixels (at least 1 x 1).
QImage imageFromPicture(const Picture& p);
QImage imageFromPlane(const krl::Plane& p);

} // namespace kirrel::host
