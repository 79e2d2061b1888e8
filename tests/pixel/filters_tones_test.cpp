// Per-pixel tone filters: end values, exact cut points, and one plane passed as a whole triple.

#include "filters_support.h"
#include "pixel/Filters.h"

#include <gtest/gtest.h>

#include <set>

namespace filters_test {
namespace {

using krl::Plane;

TEST(FilterNegative, TwiceGivesThePictureBackAndOnePlaneThriceIsInverted) {
    const Pic before = randomPic(6, 4, 1);
    Pic p = before;
    krl::Negative(p.r, p.g, p.b, 7, 5);
    EXPECT_EQ(p.r.at(3, 2), 255 - before.r.at(3, 2));
    krl::Negative(p.r, p.g, p.b, 7, 5);
    EXPECT_EQ(p, before);

    // The alpha wipes invert their alpha plane by passing it as all three planes.
    Plane alpha = before.r;
    krl::Negative(alpha, alpha, alpha, 7, 5);
    for (int x = 0; x <= 6; ++x)
        EXPECT_EQ(alpha.at(x, 4), 255 - before.r.at(x, 4));
}

TEST(FilterGreyScale, SameGreyInAllPlanesAndGreysStay) {
    Pic p = randomPic(5, 5, 2);
    krl::GreyScale(p.r, p.g, p.b, 6, 6);
    EXPECT_EQ(p.r, p.g);
    EXPECT_EQ(p.r, p.b);

    Pic ends = flatPic(1, 0, 255, 255, 255);
    ends.r.at(0, 0) = ends.g.at(0, 0) = ends.b.at(0, 0) = 0;
    ends.r.at(1, 0) = ends.g.at(1, 0) = ends.b.at(1, 0) = 97;
    const Pic before = ends;
    krl::GreyScale(ends.r, ends.g, ends.b, 2, 1);
    EXPECT_EQ(ends, before);
}

// Band test: the chosen channel against level% of 255, reaching `tolerance` up (or down if negative).
struct GreyOutCase {
    int level, channel, tolerance;
    int r, g, b;
    bool greyed;
};

class FilterGreyOut : public testing::TestWithParam<GreyOutCase> {};

TEST_P(FilterGreyOut, PixelsInTheBandLoseTheirColourOthersKeepIt) {
    const GreyOutCase& c = GetParam();
    Pic p = flatPic(0, 0, c.r, c.g, c.b);
    krl::GreyOut(p.r, p.g, p.b, c.level, c.channel, c.tolerance, 1, 1);
    const bool grey = p.r.at(0, 0) == p.g.at(0, 0) && p.g.at(0, 0) == p.b.at(0, 0);
    EXPECT_EQ(grey, c.greyed);
    if (!c.greyed) {
        EXPECT_EQ(p, flatPic(0, 0, c.r, c.g, c.b));
    }
}

INSTANTIATE_TEST_SUITE_P(Bands, FilterGreyOut,
                         testing::Values(GreyOutCase{50, 1, 0, 128, 10, 200, true},   // exactly the level
                                         GreyOutCase{50, 1, 0, 129, 10, 200, false},  // zero tolerance
                                         GreyOutCase{50, 1, 40, 168, 10, 200, true},  // upper end inclusive
                                         GreyOutCase{50, 1, 40, 169, 10, 200, false}, // past it
                                         GreyOutCase{50, 1, -40, 100, 10, 200, true}, // negative reaches down
                                         GreyOutCase{50, 2, 255, 10, 200, 90, true},  // green channel
                                         GreyOutCase{100, 3, -255, 10, 50, 0, true},  // blue, everything
                                         GreyOutCase{50, 4, 255, 10, 50, 200, false})); // no such channel

TEST(FilterThreshold, CutsAtTheLevelAndTheEndsGiveOneValue) {
    Plane m(255, 0);
    for (int x = 0; x <= 255; ++x)
        m.at(x, 0) = static_cast<std::uint8_t>(x);
    Plane cut = m;
    krl::Threshold(cut, 128, 256, 1);
    EXPECT_EQ(cut.at(128, 0), 0);
    EXPECT_EQ(cut.at(129, 0), 255);
    for (int level : {0, 255, 256, -5, 1000}) {
        Plane p = m;
        krl::Threshold(p, level, 256, 1);
        for (int x = 0; x <= 255; ++x)
            ASSERT_EQ(p.at(x, 0), level < 0 || x > level ? 255 : 0) << level;
    }
}

TEST(FilterGreyThreshold, LaysTheCutHalfOverA) {
    Pic a = flatPic(1, 0, 0, 100, 255);
    Pic b = flatPic(1, 0, 30, 30, 31); // mean 30.33 -> 30
    b.r.at(1, 0) = b.g.at(1, 0) = b.b.at(1, 0) = 31;
    const Pic bBefore = b;
    krl::GreyThreshold(a.r, a.g, a.b, b.r, b.g, b.b, 31, 1, 0);
    EXPECT_EQ(b, bBefore);
    // Pixel 0 is below the cut: halfway to black. Pixel 1 reaches it: halfway to white.
    EXPECT_EQ(a.r.at(0, 0), 0);
    EXPECT_EQ(a.g.at(0, 0), 50);
    EXPECT_EQ(a.b.at(0, 0), 128); // 127.5 to even
    EXPECT_EQ(a.r.at(1, 0), 128); // 127.5 to even
    EXPECT_EQ(a.g.at(1, 0), 178); // 177.5 to even
    EXPECT_EQ(a.b.at(1, 0), 255);
}

TEST(FilterPosterize, LevelZeroKeepsTheCallersLevelGivesFewTonesWithBlackAndWhite) {
    const Pic p = randomPic(31, 31, 3);
    Pic keep = p;
    krl::Posterize(keep.r, keep.g, keep.b, 0, 32, 32);
    EXPECT_EQ(keep, p);
    Pic few = p;
    krl::Posterize(few.r, few.g, few.b, 200, 32, 32);
    std::set<int> tones;
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; i < few[c].size(); ++i)
            tones.insert(few[c].data()[i]);
    EXPECT_GE(tones.size(), 3u);
    EXPECT_LE(tones.size(), 4u);
    EXPECT_TRUE(tones.count(0) && tones.count(255));
    // Every byte at every strength: 256 >> (level / 32) bands, their tones spread evenly from black
    // to white, each rounded to nearest.
    krl::Plane all(255, 0);
    for (int level = 32; level < 256; level += 7) {
        for (int v = 0; v < 256; ++v)
            all.at(v, 0) = static_cast<std::uint8_t>(v);
        krl::Plane g = all, b = all;
        krl::Posterize(all, g, b, level, 256, 1);
        const int tones = 256 >> (level / 32);
        for (int v = 0; v < 256; ++v) {
            const int band = v * tones / 256;
            ASSERT_EQ(all.at(v, 0), (band * 255 + (tones - 1) / 2) / (tones - 1)) << level << " " << v;
        }
    }
}

TEST(FilterBrightness, StepsClipAtTheEnds) {
    Pic p = flatPic(2, 0, 10, 200, 250);
    krl::IncreaseBrightness(p.r, p.g, p.b, 10, 3, 1);
    EXPECT_EQ(p, flatPic(2, 0, 20, 210, 255));
    krl::IncreaseDarkness(p.r, p.g, p.b, 30, 3, 1);
    EXPECT_EQ(p, flatPic(2, 0, 0, 180, 225));
    krl::IncreaseBrightness(p.r, p.g, p.b, -100, 3, 1); // a negative step darkens
    EXPECT_EQ(p, flatPic(2, 0, 0, 80, 125));
    krl::IncreaseBrightness(p.r, p.g, p.b, 1000, 3, 1);
    EXPECT_EQ(p, flatPic(2, 0, 255, 255, 255));
    krl::IncreaseDarkness(p.r, p.g, p.b, 1000, 3, 1);
    EXPECT_EQ(p, flatPic(2, 0, 0, 0, 0));
}

} // namespace
} // namespace filters_test
