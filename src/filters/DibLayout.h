#pragma once
// The 24-bit device-independent bitmap as files and the screen take it: rows padded to a multiple of
// four bytes, stored from the bottom up, each pixel blue, green, red. Pure functions, so that the
// layout can be checked byte by byte apart from any toolkit.

#include "pixel/Plane.h"

#include <cstdint>
#include <vector>

namespace kirrel::filters {

// Bytes in one stored row of a 24-bit bitmap of the given width.
int dibRowBytes(int width);

// Packs the width x height top-left part of three planes (indexed [x][y], y down) into the bottom-up
// padded pixel array. The planes must reach at least width - 1 and height - 1.
std::vector<std::uint8_t> packDib24(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int width,
                                    int height);

// A whole BMP file: file header, the 40-byte description (1 plane, 24 bits, no compression, no
// palette) and the pixel array of packDib24.
std::vector<std::uint8_t> bmpFile24(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int width,
                                    int height);

} // namespace kirrel::filters
