#pragma once
// The writers behind exportAnimation: ffmpeg for GIF, APNG, MP4 and WebM, libwebp for WebP. Each
// writes the whole file to `out` (a temporary name the caller renames) or throws.

#include "host/AnimationExport.h"
#include "host/ExportFrames.h"

namespace kirrel::host {

void writeWithFfmpeg(ExportFormat format, const QString& out, const ExportFrames& frames,
                     const ExportOptions& options, const ToolProgress& progress);
void writeWebp(const QString& out, const ExportFrames& frames, const ExportOptions& options,
               const ToolProgress& progress);

} // namespace kirrel::host
