// Custom-effect compositing: key colours pick the layer, everything else shows as drawn.

#include "filters_support.h"
#include "pixel/Filters.h"

#include <gtest/gtest.h>

namespace filters_test {
namespace {

TEST(FilterCFX, PrimaryShowsMainSecondaryShowsSwapOthersStay) {
    const Pic main = flatPic(3, 0, 10, 20, 30);
    const Pic swap = flatPic(3, 0, 200, 210, 220);
    Pic work = flatPic(3, 0, 255, 0, 255);                             // x 0: primary key
    work.r.at(1, 0) = 0, work.g.at(1, 0) = 255, work.b.at(1, 0) = 0;   // x 1: secondary key
    work.r.at(2, 0) = 255, work.g.at(2, 0) = 0, work.b.at(2, 0) = 254; // x 2: near miss
    work.r.at(3, 0) = 7, work.g.at(3, 0) = 7, work.b.at(3, 0) = 7;     // x 3: drawn colour
    Pic m = main;
    krl::CFXFilter1(m.r, m.g, m.b, swap.r, swap.g, swap.b, work.r, work.g, work.b, 255, 0, 255, 0, 255, 0, 3,
                    0);
    EXPECT_EQ(m, main);
    EXPECT_EQ(swap, flatPic(3, 0, 200, 210, 220));
    const int expected[4][3] = {{10, 20, 30}, {200, 210, 220}, {255, 0, 254}, {7, 7, 7}};
    for (int x = 0; x < 4; ++x)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(work[c].at(x, 0), expected[x][c]) << x << "," << c;
}

TEST(FilterCFX, EqualKeysFavourPrimaryAndOutOfRangeKeysMatchNothing) {
    const Pic main = flatPic(1, 1, 1, 1, 1);
    const Pic swap = flatPic(1, 1, 2, 2, 2);
    Pic mainPlanes = main;
    Pic work = flatPic(1, 1, 0, 0, 0);
    krl::CFXFilter1(mainPlanes.r, mainPlanes.g, mainPlanes.b, swap.r, swap.g, swap.b, work.r, work.g, work.b,
                    0, 0, 0, 0, 0, 0, 1, 1);
    EXPECT_EQ(work, main);
    Pic wrapped = flatPic(1, 1, 0, 0, 0);
    krl::CFXFilter1(mainPlanes.r, mainPlanes.g, mainPlanes.b, swap.r, swap.g, swap.b, wrapped.r, wrapped.g,
                    wrapped.b, 256, 0, 0, 0, -256, 0, 1, 1); // not 0 modulo 256
    EXPECT_EQ(wrapped, flatPic(1, 1, 0, 0, 0));
}

} // namespace
} // namespace filters_test
