#pragma once
// A picture as the host keeps it: three planes of one size.

#include "pixel/Triple.h"

#include <cstdint>

namespace kirrel::host {

using Picture = krl::Triple;

// Copies the overlapping part of a plane into a plane of the given bounds; the rest is zero.
krl::Plane fitPlane(const krl::Plane& p, int w, int h);
// Nearest-neighbour scaling of a plane to new bounds (used when the host's buffer size changes).
krl::Plane scalePlane(const krl::Plane& p, int w, int h);
Picture scalePicture(const Picture& p, int w, int h);

inline std::uint32_t packColor(int r, int g, int b) {
    return static_cast<std::uint32_t>(r & 255) | (static_cast<std::uint32_t>(g & 255) << 8) |
           (static_cast<std::uint32_t>(b & 255) << 16);
}

} // namespace kirrel::host
