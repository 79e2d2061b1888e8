#pragma once
// Walking a GIF's blocks without decoding them: its canvas size, how many frames it holds whole,
// and where the last whole frame ends, so that the limits are checked before a decoder allocates
// and a file cut short can still be read up to its last whole frame.

#include <cstddef>
#include <cstdint>

namespace kirrel::exchange {

struct GifLayout {
    bool isGif = false;
    int width = 0; // the logical screen
    int height = 0;
    int frames = 0;            // frames whose data is all there
    std::size_t wholeUpTo = 0; // where the last whole frame (or the header, for none) ends
    bool trailer = false;      // the file ends properly
    bool damaged = false;      // cut short inside a block, or a block of no known kind
};

GifLayout scanGif(const std::uint8_t* data, std::size_t size);

} // namespace kirrel::exchange
