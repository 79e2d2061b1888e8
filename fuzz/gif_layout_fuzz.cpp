// The walk over a GIF's blocks that every way in takes before a decoder allocates: it must stay
// inside the bytes it was given and never claim more whole data than there is.

#include "exchange/GifBlocks.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const kirrel::exchange::GifLayout layout = kirrel::exchange::scanGif(data, size);
    if (layout.wholeUpTo > size || layout.frames < 0 || layout.width < 0 || layout.height < 0) std::abort();
    if (!layout.isGif && layout.frames != 0) std::abort();
    return 0;
}
