#include "generators/FlickerPixels.h"

#include "panel/Numeric.h"

#include <algorithm>
#include <array>

namespace kirrel::generators {

namespace {

using Table = std::array<std::uint8_t, 256>;

// Every old value's result for one colour component and one strength.
void fillTable(Table& t, int colour, int strength) {
    const int rest = 100 - strength;
    for (int old = 0; old < 256; ++old)
        t[static_cast<std::size_t>(old)] = toByte((colour * strength + rest * old) / 100.0);
}

// The columns x < W and rows y < H the loops reach, within the planes.
struct Inner {
    int cols = 0, rows = 0;
};

Inner innerOf(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int w, int h) {
    const int cols = std::min({w, r.width() + 1, g.width() + 1, b.width() + 1});
    const int rows = std::min({h, r.height() + 1, g.height() + 1, b.height() + 1});
    return {std::max(cols, 0), std::max(rows, 0)};
}

} // namespace

KeyColour unpackColour(int packed) {
    return {static_cast<std::uint8_t>(packed & 255), static_cast<std::uint8_t>((packed & 65280) / 256),
            static_cast<std::uint8_t>((packed & 16711680) / 65536)};
}

void flickerPlanes(krl::Plane& r, krl::Plane& g, krl::Plane& b, KeyColour colour, int strength, int w,
                   int h) {
    const Inner in = innerOf(r, g, b, w, h);
    if (in.cols == 0 || in.rows == 0) return;
    Table tr, tg, tb;
    fillTable(tr, colour.r, strength);
    fillTable(tg, colour.g, strength);
    fillTable(tb, colour.b, strength);
    krl::Plane* planes[3] = {&r, &g, &b};
    const Table* tables[3] = {&tr, &tg, &tb};
    for (int c = 0; c < 3; ++c) {
        const Table& t = *tables[c];
        for (int y = 0; y < in.rows; ++y) {
            std::uint8_t* row = planes[c]->row(y);
            for (int x = 0; x < in.cols; ++x)
                row[x] = t[row[x]];
        }
    }
}

void flickerPlanesAlpha(krl::Plane& r, krl::Plane& g, krl::Plane& b, const krl::Plane& alpha,
                        KeyColour colour, int strength, int w, int h) {
    Inner in = innerOf(r, g, b, w, h);
    in.cols = std::min(in.cols, alpha.width() + 1);
    in.rows = std::min(in.rows, alpha.height() + 1);
    if (in.cols <= 0 || in.rows <= 0) return;
    // The strength each alpha value gives, worked out once.
    std::array<int, 256> share{};
    for (int a = 0; a < 256; ++a)
        share[static_cast<std::size_t>(a)] = toInt16(a / 255.0 * strength);
    krl::Plane* planes[3] = {&r, &g, &b};
    const int colours[3] = {colour.r, colour.g, colour.b};
    for (int c = 0; c < 3; ++c) {
        const int k = colours[c];
        for (int y = 0; y < in.rows; ++y) {
            std::uint8_t* row = planes[c]->row(y);
            const std::uint8_t* a = alpha.row(y);
            for (int x = 0; x < in.cols; ++x) {
                const int p = share[a[x]];
                row[x] = toByte((k * p + (100 - p) * row[x]) / 100.0);
            }
        }
    }
}

} // namespace kirrel::generators
