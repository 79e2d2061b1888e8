#pragma once
// A small set of animated GIFs made with ImageMagick, one for each way a GIF builds its frames
// (every disposal, partial frames at offsets, transparency, local palettes, interlace), and a
// comparison of an import with ImageMagick's own reading.

#include "host/Picture.h"
#include "support/MediaCheck.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace kirrel::test {

// Makes every sample GIF in `folder` (created if missing) and returns their paths, in a fixed order.
// Throws std::runtime_error when convert fails.
QStringList makeSampleGifs(const QString& folder);

// How many pixels of the pictures differ from the coalesced frames, where every opaque pixel must be
// ImageMagick's and every clear one `paper` (packed, red lowest). With `rideAlong` the pictures'
// extra column and row count too, as copies of the edge; a frame count or size that differs counts
// every pixel.
int pixelsUnlikeCoalesced(const std::vector<host::Picture>& frames, const RgbaFrames& want,
                          std::uint32_t paper, bool rideAlong);

} // namespace kirrel::test
