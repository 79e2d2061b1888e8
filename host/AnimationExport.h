#pragma once
// Writing the host's animation to the modern formats: animated GIF, APNG, animated WebP, MP4 (H.264)
// and WebM (VP9), each with the per-frame timing and, where the format holds them, a loop count and
// transparency. The format follows from the file's extension. The file appears whole or not at all:
// it is written under a temporary name beside the target and renamed at the end, so a failed or
// cancelled export leaves a file that stood there before untouched.

#include "host/MediaTools.h"
#include "host/Picture.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kirrel::host {

enum class ExportFormat { Gif, Apng, WebP, Mp4, WebM };

// The format a file name asks for (.gif, .png or .apng, .webp, .mp4 or .m4v, .webm), if any.
std::optional<ExportFormat> exportFormatFor(const QString& path);
// "GIF", "APNG", "WebP", "MP4", "WebM": for messages and menus.
QString exportFormatName(ExportFormat f);
// Whether the format keeps transparency, a loop count, and a quality setting.
bool formatHasTransparency(ExportFormat f);
bool formatHasLoopCount(ExportFormat f);
bool formatHasQuality(ExportFormat f);

// Which pixels come out transparent (in the formats that keep transparency).
enum class ExportTransparency {
    None,  // every pixel opaque
    Alpha, // the host's alpha channel, applied to every frame
    Paper, // every pixel of the paper (secondary) colour
};

struct ExportOptions {
    int loop = 0;     // how many times the animation plays; 0 for ever
    int quality = -1; // 0..100; -1 gives the format's default (WebP: 100, which is lossless)
    ExportTransparency transparency = ExportTransparency::Alpha;
};

struct ExportInput {
    const std::vector<Picture>& frames;
    const std::vector<int>& delays; // milliseconds, one per frame
    const krl::Plane& alpha;        // the host's alpha channel, the frames' bounds
    std::uint32_t paper;            // the host's secondary colour, packed
};

// Writes the animation; throws std::runtime_error (MissingTool, Cancelled) with a message for the
// user, leaving no partial file behind.
void exportAnimation(const QString& path, const ExportInput& in, const ExportOptions& options,
                     const ToolProgress& progress = {});

} // namespace kirrel::host
