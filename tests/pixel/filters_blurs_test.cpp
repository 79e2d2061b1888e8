// The blurs: they blur, keep flat pictures flat, keep their footprint inside the extent, and give
// the same blur in place as from a separate source.

#include "filters_support.h"
#include "pixel/Filters.h"

#include <gtest/gtest.h>

#include <cmath>

namespace filters_test {
namespace {

using krl::Plane;

void box(Pic& a, const Pic& b, int w, int h) {
    krl::BoxBlur(a.r, a.g, a.b, b.r, b.g, b.b, w, h);
}
void tri(Pic& a, int w, int h) {
    krl::TriBlur(a.r, a.g, a.b, w, h);
}

struct Size {
    int w, h;
};

class FilterBlur : public testing::TestWithParam<Size> {};

TEST_P(FilterBlur, FlatStaysFlatThroughManyRounds) {
    const auto [w, h] = GetParam();
    Pic p = flatPic(w, h, 0, 137, 255);
    for (int i = 0; i < 40; ++i) {
        box(p, p, w, h);
        tri(p, w, h);
    }
    EXPECT_EQ(p, flatPic(w, h, 0, 137, 255));
}

TEST_P(FilterBlur, InPlaceEqualsASeparateSourceAndTheSourceIsKept) {
    const auto [w, h] = GetParam();
    const Pic src = randomPic(w, h, 5);
    Pic separate = randomPic(w, h, 6);
    Pic source = src;
    box(separate, source, w, h);
    EXPECT_EQ(source, src);

    Pic inPlace = src;
    box(inPlace, inPlace, w, h);
    EXPECT_EQ(inPlace, separate);

    // A source that merely shares its buffer with A (a copy on write) keeps the old picture.
    Pic a = src;
    const Pic b = a;
    box(a, b, w, h);
    EXPECT_EQ(a, separate);
    EXPECT_EQ(b, src);
}

INSTANTIATE_TEST_SUITE_P(Sizes, FilterBlur,
                         testing::Values(Size{0, 0}, Size{1, 0}, Size{0, 3}, Size{2, 2}, Size{4, 3},
                                         Size{30, 17}, Size{63, 40}));

TEST(FilterBlurShape, ReducesVarianceAndKeepsTheMean) {
    for (auto [w, h] : {Size{2, 2}, Size{4, 3}, Size{30, 17}, Size{63, 40}}) {
        const bool manyPixels = w >= 30; // repeated edges weigh border pixels more on tiny pictures
        const Pic src = randomPic(w, h, 7);
        Pic b = src, t = src;
        box(b, b, w, h);
        tri(t, w, h);
        for (int c = 0; c < 3; ++c) {
            EXPECT_LT(variance(b[c]), 0.5 * variance(src[c])) << w;
            EXPECT_LT(variance(t[c]), variance(src[c])) << w;
            if (!manyPixels) continue;
            EXPECT_NEAR(mean(b[c]), mean(src[c]), 3.0);
            EXPECT_NEAR(mean(t[c]), mean(src[c]), 3.0);
        }
    }
}

TEST(FilterBlurShape, BoxSpreadsAnImpulseOverFiveByFiveTriOverThreeByThree) {
    Pic b = flatPic(10, 10, 0, 0, 0);
    b.r.at(5, 5) = 250;
    Pic t = b;
    box(b, b, 10, 10);
    tri(t, 10, 10);
    for (int y = 0; y <= 10; ++y)
        for (int x = 0; x <= 10; ++x) {
            const bool inBox = std::abs(x - 5) <= 2 && std::abs(y - 5) <= 2;
            EXPECT_EQ(b.r.at(x, y), inBox ? 10 : 0) << x << "," << y;
            const int wx = std::abs(x - 5) > 1 ? 0 : (x == 5 ? 2 : 1);
            const int wy = std::abs(y - 5) > 1 ? 0 : (y == 5 ? 2 : 1);
            EXPECT_NEAR(t.r.at(x, y), 250.0 * wx * wy / 16, 0.5) << x << "," << y;
        }
    // TriBlur is the lighter of the two.
    EXPECT_GT(t.r.at(5, 5), b.r.at(5, 5));
}

} // namespace
} // namespace filters_test
