#pragma once
// A small set of animated GIFs made with ImageMagick, one for each way a GIF builds its frames
// (every disposal, partial frames at offsets, transparency, local palettes, interlace), and
// ImageMagick's own reading of a GIF to compare an import with.

#include "host/Picture.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace kirrel::test {

// Whether ImageMagick's convert is on PATH (the helpers below need it).
bool haveConvert();

// Makes every sample GIF in `folder` (created if missing) and returns their paths, in a fixed order.
// Throws std::runtime_error when convert fails.
QStringList makeSampleGifs(const QString& folder);

// A GIF as `convert FILE -coalesce -depth 8 rgba:-` shows it: every frame whole, RGBA, x fastest,
// with each frame's delay in centiseconds (identify's %T).
struct CoalescedGif {
    int width = 0;
    int height = 0;
    std::vector<std::vector<std::uint8_t>> frames; // width * height * 4 bytes each
    std::vector<int> delaysCs;
    std::uint8_t alphaAt(std::size_t frame, int x, int y) const { return pixel(frame, x, y)[3]; }
    const std::uint8_t* pixel(std::size_t frame, int x, int y) const {
        return frames[frame].data() + 4 * (static_cast<std::size_t>(y) * width + x);
    }
};
// Throws std::runtime_error when convert fails.
CoalescedGif coalescedGif(const QString& gif);

// How many pixels of the pictures differ from the coalesced frames, where every opaque pixel must be
// ImageMagick's and every clear one `paper` (packed, red lowest). With `rideAlong` the pictures'
// extra column and row count too, as copies of the edge; a frame count or size that differs counts
// every pixel.
int pixelsUnlikeCoalesced(const std::vector<host::Picture>& frames, const CoalescedGif& want,
                          std::uint32_t paper, bool rideAlong);

} // namespace kirrel::test
