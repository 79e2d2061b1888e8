#pragma once
// The sprite sheet: every frame of the animation laid into one picture, row by row.

#include "panel/Vantry.h"
#include "pixel/Plane.h"

#include <cstdint>

namespace kirrel::exchange {

struct SpriteGrid {
    std::int16_t rows = 0, cols = 0;
};

// Rows and columns both start as the square root of the frame count rounded to nearest; a column is
// added when they hold too few cells, and then a row if they still do.
SpriteGrid spriteGrid(int frames);

// The sheet's three planes of bounds 0..W*Cols, 0..H*Rows. Each frame's planes, with their riding
// last row and column, go into their cell; the next frame's cell overwrites that riding column. A
// row of cells ends when the next cell's W pixels no longer fit. Unused cells stay 0.
struct Sheet {
    krl::Plane r, g, b;
};
Sheet buildSheet(Vantry::Vantry_Class& van, int w, int h, int frames, const SpriteGrid& grid);

} // namespace kirrel::exchange
