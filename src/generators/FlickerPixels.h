#pragma once
// The flicker's own pixel loops: each channel goes toward a colour by a strength in percent,
// new = round((colour * strength + (100 - strength) * old) / 100.0), rounded half to even. The loops
// run over x < W and y < H only: the last column and row of a plane (bounds W, H) stay as they were.

#include "pixel/Plane.h"

#include <cstdint>

namespace kirrel::generators {

struct KeyColour {
    std::uint8_t r = 0, g = 0, b = 0;
};

// A colour as the host packs it: red in the low byte.
KeyColour unpackColour(int packed);

// One strength for every pixel; strength 0..100. w, h are the picture's bounds W, H; the loops stay
// inside the planes given whatever they say.
void flickerPlanes(krl::Plane& r, krl::Plane& g, krl::Plane& b, KeyColour colour, int strength, int w, int h);

// The strength of each pixel is its alpha's share of the given one: round(alpha / 255.0 * strength),
// so alpha 0 leaves the pixel and 255 takes the full strength. The alpha plane has the planes' bounds.
void flickerPlanesAlpha(krl::Plane& r, krl::Plane& g, krl::Plane& b, const krl::Plane& alpha,
                        KeyColour colour, int strength, int w, int h);

} // namespace kirrel::generators
