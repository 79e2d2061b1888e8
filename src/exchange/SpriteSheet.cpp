#include "exchange/SpriteSheet.h"

#include "panel/Numeric.h"

#include <cmath>

namespace kirrel::exchange {

SpriteGrid spriteGrid(int frames) {
    SpriteGrid g;
    g.rows = g.cols = toInt16(std::sqrt(static_cast<double>(std::max(frames, 0))));
    if (g.rows * g.cols < frames) ++g.cols;
    if (g.rows * g.cols < frames) ++g.rows;
    return g;
}

Sheet buildSheet(Vantry::Vantry_Class& van, int w, int h, int frames, const SpriteGrid& grid) {
    const std::int16_t sheetW = toInt16(static_cast<double>(w) * grid.cols);
    const std::int16_t sheetH = toInt16(static_cast<double>(h) * grid.rows);
    Sheet s{krl::Plane(sheetW, sheetH), krl::Plane(sheetW, sheetH), krl::Plane(sheetW, sheetH)};
    std::uint8_t* out[3] = {s.r.data(), s.g.data(), s.b.data()};
    const std::size_t stride = static_cast<std::size_t>(sheetW) + 1;
    int X = 0, Y = 0;
    for (int f = 0; f < frames; ++f) {
        const krl::Plane in[3] = {van.Van_GetRFrame(f), van.Van_GetGFrame(f), van.Van_GetBFrame(f)};
        for (int c = 0; c < 3; ++c) {
            const krl::Plane& p = in[c];
            for (int y = 0; y <= h && y < p.rows() && y + Y <= sheetH; ++y)
                for (int x = 0; x <= w && x < p.cols() && x + X <= sheetW; ++x)
                    out[c][static_cast<std::size_t>(y + Y) * stride + (x + X)] = p.at(x, y);
        }
        X += w;
        if (X + w > sheetW) {
            X = 0;
            Y += h;
        }
    }
    return s;
}

} // namespace kirrel::exchange
