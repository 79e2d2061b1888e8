#pragma once
// A picture: three planes of one size, in the order red, green, blue.

#include "pixel/Plane.h"

#include <cstdint>

namespace krl {

struct Triple {
    Plane r, g, b;

    Triple() = default;
    Triple(int w, int h) : r(w, h), g(w, h), b(w, h) {}
    // A picture of one colour, packed red in bits 0..7, green 8..15, blue 16..23.
    static Triple filled(int w, int h, std::uint32_t packed) {
        Triple t(w, h);
        t.r.fill(static_cast<std::uint8_t>(packed & 255));
        t.g.fill(static_cast<std::uint8_t>((packed >> 8) & 255));
        t.b.fill(static_cast<std::uint8_t>((packed >> 16) & 255));
        return t;
    }

    int width() const { return r.width(); }
    int height() const { return r.height(); }
    bool empty() const { return r.empty(); }
    bool operator==(const Triple& o) const { return r == o.r && g == o.g && b == o.b; }
};

} // namespace krl
