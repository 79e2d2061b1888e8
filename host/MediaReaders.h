#pragma once
// The readers of the animated formats, each resting on its tool or library, and the table that
// picks one by the file's kind.

#include "host/AnimationFiles.h"

#include <QString>

namespace kirrel::host {

using MediaReader = Animation (*)(const QString& path, const ReadOptions& options);

// The reader for an animated or tool-read file, or none when Qt's image readers take it (a plain
// PNG, a JPEG, ...).
MediaReader mediaReaderFor(const QString& path);

// GIF through ImageMagick (coalesced as browsers show it), ffmpeg when ImageMagick is missing.
Animation readGifFile(const QString& path, const ReadOptions& options);

// ffmpeg decodes, ffprobe tells the size and the timing.
enum class FfmpegSource { Gif, Apng, Video };
Animation readWithFfmpeg(const QString& path, FfmpegSource source, const ReadOptions& options);

// Still and animated WebP through libwebp.
Animation readWebpFile(const QString& path, const ReadOptions& options);

} // namespace kirrel::host
