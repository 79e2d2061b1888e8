// The 24-bit bitmap layout: padded rows, bottom-up order, blue-green-red pixels, and the file around it.

#include "filters/DibLayout.h"

#include <gtest/gtest.h>

namespace kirrel::test {
namespace {

using filters::bmpFile24;
using filters::dibRowBytes;
using filters::packDib24;

// Red x + 10y, green 100 + x, blue 200 + y: every byte tells where it came from.
struct Planes {
    krl::Plane r, g, b;
    Planes(int w, int h) : r(w, h), g(w, h), b(w, h) {
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x) {
                r.at(x, y) = static_cast<std::uint8_t>(x + 10 * y);
                g.at(x, y) = static_cast<std::uint8_t>(100 + x);
                b.at(x, y) = static_cast<std::uint8_t>(200 + y);
            }
    }
};

std::uint32_t le32(const std::vector<std::uint8_t>& v, std::size_t at) {
    return v[at] | (v[at + 1] << 8) | (v[at + 2] << 16) | (static_cast<std::uint32_t>(v[at + 3]) << 24);
}

TEST(BitmapLayout, RowsArePaddedToFourBytes) {
    EXPECT_EQ(dibRowBytes(1), 4);
    EXPECT_EQ(dibRowBytes(2), 8);
    EXPECT_EQ(dibRowBytes(3), 12);
    EXPECT_EQ(dibRowBytes(4), 12);
    EXPECT_EQ(dibRowBytes(5), 16);
    EXPECT_EQ(dibRowBytes(200), 600);
}

TEST(BitmapLayout, RowsRunBottomUpInBlueGreenRedAndPaddingIsZero) {
    const Planes p(5, 3); // bounds 0..5 x 0..3: the picture proper is 5 x 3
    const auto px = packDib24(p.r, p.g, p.b, 5, 3);
    ASSERT_EQ(px.size(), 16u * 3u);
    for (int stored = 0; stored < 3; ++stored) {
        const int y = 2 - stored;
        const std::uint8_t* row = px.data() + stored * 16;
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(row[3 * x], p.b.at(x, y)) << x << "," << y;
            EXPECT_EQ(row[3 * x + 1], p.g.at(x, y));
            EXPECT_EQ(row[3 * x + 2], p.r.at(x, y));
        }
        EXPECT_EQ(row[15], 0) << "padding of stored row " << stored;
    }
}

TEST(BitmapLayout, TheLastColumnAndRowOfThePlanesStayOut) {
    const Planes p(2, 2);
    const auto px = packDib24(p.r, p.g, p.b, 2, 2);
    for (std::uint8_t v : px)
        EXPECT_NE(v, 202) << "a byte of row 2 (blue 202) leaked in";
    EXPECT_EQ(px[3 * 1 + 2], p.r.at(1, 1)); // the first stored row is picture row 1
}

TEST(BitmapLayout, TooSmallPlanesAreRefused) {
    const Planes p(3, 3);
    EXPECT_THROW(packDib24(p.r, p.g, p.b, 5, 2), std::out_of_range);
}

TEST(BitmapLayout, FileHeaderDescribesA24BitPictureWithoutPalette) {
    const Planes p(3, 2);
    const auto f = bmpFile24(p.r, p.g, p.b, 3, 2);
    ASSERT_EQ(f.size(), 54u + 12u * 2u);
    EXPECT_EQ(f[0], 'B');
    EXPECT_EQ(f[1], 'M');
    EXPECT_EQ(le32(f, 2), f.size());
    EXPECT_EQ(le32(f, 10), 54u);
    EXPECT_EQ(le32(f, 14), 40u);
    EXPECT_EQ(le32(f, 18), 3u);
    EXPECT_EQ(le32(f, 22), 2u);
    EXPECT_EQ(f[26] | (f[27] << 8), 1);
    EXPECT_EQ(f[28] | (f[29] << 8), 24);
    EXPECT_EQ(le32(f, 30), 0u);
    EXPECT_EQ(le32(f, 46), 0u); // no palette entries
}

} // namespace
} // namespace kirrel::test
