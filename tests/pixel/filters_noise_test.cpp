// Grey noise: exact ends, fresh noise per call, reproducible after seeding, and the alpha limit.

#include "filters_support.h"
#include "pixel/Filters.h"

#include <gtest/gtest.h>

#include <set>

namespace filters_test {
namespace {

using krl::Plane;

TEST(FilterWhiteNoise, PctZeroKeepsPctHundredIsPureGreyNoise) {
    const Pic picture = randomPic(40, 30, 1);
    Pic keep = picture;
    krl::WhiteNoise(keep.r, keep.g, keep.b, 0, 41, 31);
    EXPECT_EQ(keep, picture);

    Pic noise = picture;
    Pic other = flatPic(40, 30, 255, 0, 9);
    krl::SeedNoise(11);
    krl::WhiteNoise(noise.r, noise.g, noise.b, 100, 41, 31);
    krl::SeedNoise(11);
    krl::WhiteNoise(other.r, other.g, other.b, 100, 41, 31);
    EXPECT_EQ(noise, other); // nothing of the picture is left
    EXPECT_EQ(noise.r, noise.g);
    EXPECT_EQ(noise.r, noise.b);
    std::set<int> values(noise.r.data(), noise.r.data() + noise.r.size());
    EXPECT_GT(values.size(), 250u);
    EXPECT_NEAR(mean(noise.r), 127.5, 8.0);
}

TEST(FilterWhiteNoise, EachCallDrawsNewNoiseAndSeedingRepeatsIt) {
    Pic a = flatPic(20, 20, 0, 0, 0), b = a, c = a;
    krl::SeedNoise(3);
    krl::WhiteNoise(a.r, a.g, a.b, 100, 21, 21);
    krl::WhiteNoise(b.r, b.g, b.b, 100, 21, 21);
    EXPECT_NE(a, b);
    krl::SeedNoise(3);
    krl::WhiteNoise(c.r, c.g, c.b, 100, 21, 21);
    EXPECT_EQ(a, c);
}

// The dissolves fill one plane by passing it three times.
TEST(FilterWhiteNoise, OnePlaneAsAWholeTripleBecomesNoise) {
    Plane n(50, 50);
    krl::WhiteNoise(n, n, n, 100, 50, 50);
    EXPECT_NEAR(mean(n), 127.5 * 50 * 50 / (51.0 * 51.0), 8.0); // the last row and column stay 0
    EXPECT_GT(variance(n), 3000.0);
}

TEST(FilterWhiteNoiseAlpha, TheMaskLimitsTheNoise) {
    const Pic picture = randomPic(30, 20, 4);
    Plane mask(30, 20);
    for (int y = 0; y <= 20; ++y)
        for (int x = 16; x <= 30; ++x)
            mask.at(x, y) = 255;
    Pic masked = picture;
    krl::SeedNoise(5);
    krl::WhiteNoiseAlpha(masked.r, masked.g, masked.b, mask, 100, 30, 20);
    Pic full = picture;
    krl::SeedNoise(5);
    krl::WhiteNoise(full.r, full.g, full.b, 100, 31, 21);
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y <= 20; ++y)
            for (int x = 0; x <= 30; ++x)
                ASSERT_EQ(masked[c].at(x, y), (x < 16 ? picture : full)[c].at(x, y)) << x << "," << y;

    // The mask may be one of the planes written: its weights are read before the row changes.
    Pic same = picture;
    same.r = mask;
    krl::SeedNoise(5);
    krl::WhiteNoiseAlpha(same.r, same.g, same.b, same.r, 100, 30, 20);
    for (int y = 0; y <= 20; ++y)
        for (int x = 0; x <= 30; ++x)
            ASSERT_EQ(same.b.at(x, y), (x < 16 ? picture : full).b.at(x, y)) << x << "," << y;
}

} // namespace
} // namespace filters_test
