// Size senses and hostile sizes, for every filter: a count call reaches the last column and row,
// a bound call of a count-sense filter leaves them, the bound-sense filters cover the plane either
// way, and no size, however wrong, lets a filter touch anything past its planes.

#include "filters_support.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

namespace filters_test {
namespace {

using krl::Plane;

enum class Sense { Count, Bound };

struct Op {
    std::string name;
    Sense sense;
    bool needsNeighbours; // a 1x1 picture may come out unchanged
    bool readsSecond;     // reads a second picture or a mask besides A
    std::function<void(Pic& a, const Pic& b, const Plane& m, int w, int h)> run;
};

std::vector<Op> allFilters() {
    using S = Sense;
    return {
        {"BoxBlurInPlace", S::Bound, true, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) {
             krl::BoxBlur(a.r, a.g, a.b, a.r, a.g, a.b, w, h);
         }},
        {"BoxBlur", S::Bound, true, true,
         [](Pic& a, const Pic& b, const Plane&, int w, int h) {
             krl::BoxBlur(a.r, a.g, a.b, b.r, b.g, b.b, w, h);
         }},
        {"TriBlur", S::Bound, true, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) { krl::TriBlur(a.r, a.g, a.b, w, h); }},
        {"Negative", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) { krl::Negative(a.r, a.g, a.b, w, h); }},
        {"GreyScale", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) { krl::GreyScale(a.r, a.g, a.b, w, h); }},
        {"GreyOut", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) {
             krl::GreyOut(a.r, a.g, a.b, 0, 1, 255, w, h);
         }},
        {"GreyThreshold", S::Bound, false, true,
         [](Pic& a, const Pic& b, const Plane&, int w, int h) {
             krl::GreyThreshold(a.r, a.g, a.b, b.r, b.g, b.b, 128, w, h);
         }},
        {"Threshold", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) {
             for (int c = 0; c < 3; ++c)
                 krl::Threshold(a[c], 128, w, h);
         }},
        {"Posterize", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) { krl::Posterize(a.r, a.g, a.b, 255, w, h); }},
        {"NightVision", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) { krl::NightVision(a.r, a.g, a.b, w, h); }},
        {"ToonFilter", S::Bound, false, true,
         [](Pic& a, const Pic& b, const Plane&, int w, int h) {
             krl::ToonFilter(a.r, a.g, a.b, b.r, b.g, b.b, w, h);
         }},
        {"ToonFilter2", S::Bound, false, true,
         [](Pic& a, const Pic& b, const Plane&, int w, int h) {
             krl::ToonFilter2(a.r, a.g, a.b, b.r, b.g, b.b, w, h);
         }},
        {"SketchHard", S::Count, false, true,
         [](Pic& a, const Pic& b, const Plane&, int w, int h) {
             krl::SketchHard(a.r, a.g, a.b, b.r, b.g, b.b, w, h, 200);
         }},
        {"ChalkFilter", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) { krl::ChalkFilter(a.r, a.g, a.b, w, h, 100); }},
        {"IncreaseBrightness", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) {
             krl::IncreaseBrightness(a.r, a.g, a.b, 40, w, h);
         }},
        {"IncreaseDarkness", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) {
             krl::IncreaseDarkness(a.r, a.g, a.b, 40, w, h);
         }},
        {"WhiteNoise", S::Count, false, false,
         [](Pic& a, const Pic&, const Plane&, int w, int h) {
             krl::SeedNoise(7);
             krl::WhiteNoise(a.r, a.g, a.b, 100, w, h);
         }},
        {"WhiteNoiseAlpha", S::Bound, false, true,
         [](Pic& a, const Pic&, const Plane& m, int w, int h) {
             krl::SeedNoise(7);
             krl::WhiteNoiseAlpha(a.r, a.g, a.b, m, 100, w, h);
         }},
        {"CFXFilter1", S::Bound, false, true,
         [](Pic& a, const Pic& b, const Plane&, int w, int h) {
             // Key: the colour of the work picture's last pixel, whatever the planes' sizes.
             auto last = [](const Plane& p) { return p.empty() ? -1 : p.at(p.width(), p.height()); };
             Pic main = b;
             krl::CFXFilter1(main.r, main.g, main.b, b.r, b.g, b.b, a.r, a.g, a.b, last(a.r), last(a.g),
                             last(a.b), -1, -1, -1, w, h);
         }},
    };
}

struct SizeCase {
    Op op;
    int w, h; // upper bounds
};

std::string caseName(const testing::TestParamInfo<SizeCase>& info) {
    return info.param.op.name + "_" + std::to_string(info.param.w + 1) + "x" +
           std::to_string(info.param.h + 1);
}

std::vector<SizeCase> sizeCases() {
    std::vector<SizeCase> cases;
    for (const Op& op : allFilters())
        for (auto [w, h] : {std::pair{0, 0}, {1, 1}, {2, 1}, {5, 4}, {16, 8}})
            cases.push_back({op, w, h});
    return cases;
}

class FilterSizeSense : public testing::TestWithParam<SizeCase> {};

TEST_P(FilterSizeSense, CountsReachTheLastColumnAndRowBoundsLeaveThemForCountSenseFilters) {
    const auto& [op, w, h] = GetParam();
    const Pic before = randomPic(w, h, 1, 20, 235);
    const Pic other = randomPic(w, h, 2, 20, 235);
    Plane mask(w, h);
    mask.fill(255);

    Pic counted = before;
    op.run(counted, other, mask, w + 1, h + 1);
    if (!op.needsNeighbours || w > 0) {
        EXPECT_TRUE(columnDiffers(counted, before, w));
        EXPECT_TRUE(rowDiffers(counted, before, h));
    }

    Pic bounded = before;
    op.run(bounded, other, mask, w, h);
    if (op.sense == Sense::Bound) {
        EXPECT_EQ(bounded, counted); // the whole plane either way
    } else {
        EXPECT_FALSE(columnDiffers(bounded, before, w));
        EXPECT_FALSE(rowDiffers(bounded, before, h));
        if (w > 0 && h > 0) {
            EXPECT_TRUE(columnDiffers(bounded, before, w - 1));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllFilters, FilterSizeSense, testing::ValuesIn(sizeCases()), caseName);

class FilterHostileSizes : public testing::TestWithParam<Op> {};

// Any size on well-formed planes: the address sanitizer is the judge of what lies past them.
TEST_P(FilterHostileSizes, NeverReachPastThePlanes) {
    const int sizes[] = {INT_MIN, -7, -1, 0, 1, 3, 6, 7, 1 << 20, INT_MAX};
    const Pic other = randomPic(5, 3, 2);
    Plane mask(5, 3);
    mask.fill(200);
    for (int w : sizes)
        for (int h : sizes) {
            Pic a = randomPic(5, 3, 1);
            GetParam().run(a, other, mask, w, h);
        }
}

// Planes of different sizes in one call: only the part they all share is worked on.
TEST_P(FilterHostileSizes, MismatchedPlanesWorkOnlyWhereAllOverlap) {
    if (GetParam().name == "Threshold") GTEST_SKIP() << "takes one plane at a time";
    Pic a = randomPic(9, 7, 1);
    a.g = randomPic(4, 3, 3).g; // 5 x 4
    a.b = randomPic(6, 2, 4).b; // 7 x 3
    const Pic other = randomPic(12, 12, 2);
    Plane mask(12, 12);
    mask.fill(255);
    const Plane redBefore = a.r;
    GetParam().run(a, other, mask, INT_MAX, INT_MAX);
    for (int y = 0; y < a.r.rows(); ++y)
        for (int x = 0; x < a.r.cols(); ++x)
            if (x >= 5 || y >= 3) {
                ASSERT_EQ(a.r.at(x, y), redBefore.at(x, y)) << x << "," << y;
            }
}

TEST_P(FilterHostileSizes, EmptyPlanesAreLeftAlone) {
    Pic empty;
    const Pic other = randomPic(3, 3, 2);
    GetParam().run(empty, other, Plane(), 4, 4);
    GetParam().run(empty, empty, Plane(), INT_MAX, INT_MAX);
    EXPECT_TRUE(empty.r.empty() && empty.g.empty() && empty.b.empty());
    if (!GetParam().readsSecond) return;
    Pic a = randomPic(3, 3, 1);
    const Pic before = a;
    GetParam().run(a, Pic{}, Plane(), 3, 3); // an empty input shares no pixel with A
    EXPECT_EQ(a, before);
}

// A picture big enough for row slices, with odd sizes: one, two and three threads give the same bytes,
// for a separate input and for the filter run in place.
TEST_P(FilterHostileSizes, RowSlicesGiveTheSingleThreadBytes) {
    constexpr int W = 733, H = 411;
    const Pic start = randomPic(W, H, 11), other = randomPic(W, H, 12);
    Plane mask = randomPic(W, H, 13).r;
    auto run = [&](int threads) {
        krl::setSliceThreads(threads);
        Pic a = start;
        GetParam().run(a, other, mask, W, H);
        krl::setSliceThreads(0);
        return a;
    };
    const Pic one = run(1);
    EXPECT_TRUE(run(2) == one);
    EXPECT_TRUE(run(3) == one);
}

INSTANTIATE_TEST_SUITE_P(AllFilters, FilterHostileSizes, testing::ValuesIn(allFilters()),
                         [](const testing::TestParamInfo<Op>& info) { return info.param.name; });

} // namespace
} // namespace filters_test
