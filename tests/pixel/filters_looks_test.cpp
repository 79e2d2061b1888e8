// The dialog looks: what an animator would check by eye, put as measures on small pictures.

#include "filters_support.h"
#include "pixel/Filters.h"

#include <gtest/gtest.h>

namespace filters_test {
namespace {

using krl::Plane;

// Dark left part, light right part; the step lies between columns edge-1 and edge. The values sit
// mid-way in the cartoon's colour bands, so a band only changes where a filter really moved colour.
Pic stepPic(int w, int h, int edge) {
    Pic p = flatPic(w, h, 20, 60, 105);
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y <= h; ++y)
            for (int x = edge; x <= w; ++x)
                p[c].at(x, y) = 240;
    return p;
}

using ToonFn = void (*)(Plane&, Plane&, Plane&, const Plane&, const Plane&, const Plane&, int, int);

int darkPixels(const Pic& p, int below) {
    int n = 0;
    for (std::size_t i = 0; i < p.r.size(); ++i)
        n += p.g.data()[i] < below;
    return n;
}

class FilterToon : public testing::TestWithParam<ToonFn> {};

TEST_P(FilterToon, FlatAreasStayFlatWithoutLinesAndBIsUntouched) {
    const Pic b = flatPic(12, 9, 90, 150, 210);
    Pic a = b; // shares B's buffers until written
    GetParam()(a.r, a.g, a.b, b.r, b.g, b.b, 12, 9);
    EXPECT_EQ(b, flatPic(12, 9, 90, 150, 210));
    EXPECT_EQ(a, flatPic(12, 9, a.r.at(0, 0), a.g.at(0, 0), a.b.at(0, 0)));
}

TEST_P(FilterToon, EdgesGetADarkLineAndBlurDoesNotBleedAcrossThem) {
    const Pic b = stepPic(39, 9, 20);
    Pic a = b;
    for (int i = 0; i < 30; ++i)
        krl::TriBlur(a.r, a.g, a.b, 39, 9);
    GetParam()(a.r, a.g, a.b, b.r, b.g, b.b, 39, 9);
    // A line at the step, darker than either side.
    EXPECT_LT(a.g.at(20, 4), a.g.at(2, 4) / 2 + 1);
    EXPECT_LT(a.g.at(19, 4), a.g.at(37, 4) / 2);
    // Flat colour up to near the line: no halo of the other side's colour.
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(a[c].at(16, 4), a[c].at(2, 4));
        EXPECT_EQ(a[c].at(23, 4), a[c].at(37, 4));
    }
}

INSTANTIATE_TEST_SUITE_P(BothToons, FilterToon, testing::Values(&krl::ToonFilter, &krl::ToonFilter2));

TEST(FilterToonBoost, EdgeBoostDrawsMoreLine) {
    const Pic b = randomPic(30, 20, 9);
    Pic plain = b, boost = b;
    krl::ToonFilter(plain.r, plain.g, plain.b, b.r, b.g, b.b, 30, 20);
    krl::ToonFilter2(boost.r, boost.g, boost.b, b.r, b.g, b.b, 30, 20);
    EXPECT_GT(darkPixels(boost, 30), darkPixels(plain, 30) + 50);
}

// The hard-line sketch as the dialog runs it: negative, blurred, then drawn against the picture.
Pic sketch(const Pic& picture, int strength) {
    Pic a = picture;
    krl::Negative(a.r, a.g, a.b, picture.r.cols(), picture.r.rows());
    for (int i = 0; i < 3; ++i)
        krl::TriBlur(a.r, a.g, a.b, a.r.width(), a.r.height());
    krl::SketchHard(a.r, a.g, a.b, picture.r, picture.g, picture.b, a.r.cols(), a.r.rows(), strength);
    return a;
}

TEST(FilterSketchHard, FlatPaperIsWhiteEdgesDrawLinesStrengthDarkensThem) {
    for (int v : {0, 1, 77, 255})
        EXPECT_EQ(sketch(flatPic(9, 9, v, v, v), 200), flatPic(9, 9, 255, 255, 255)) << v;

    const Pic step = stepPic(39, 9, 20);
    const Pic soft = sketch(step, 128);
    const Pic hard = sketch(step, 255);
    EXPECT_EQ(step, stepPic(39, 9, 20));
    EXPECT_LT(soft.g.at(19, 4), 200); // the line on the dark side of the step
    EXPECT_EQ(soft.g.at(2, 4), 255);  // paper away from it
    EXPECT_EQ(soft.g.at(35, 4), 255);
    double softInk = 0, hardInk = 0;
    for (std::size_t i = 0; i < step.g.size(); ++i) {
        softInk += 255 - soft.g.data()[i];
        hardInk += 255 - hard.g.data()[i];
    }
    EXPECT_GT(hardInk, 1.5 * softInk);
}

TEST(FilterNightVision, GreenAndBrighterStaysBrighter) {
    Pic dim = flatPic(20, 20, 40, 40, 40);
    Pic bright = flatPic(20, 20, 160, 100, 220);
    krl::NightVision(dim.r, dim.g, dim.b, 21, 21);
    krl::NightVision(bright.r, bright.g, bright.b, 21, 21);
    for (const Pic* p : {&dim, &bright})
        for (std::size_t i = 0; i < p->g.size(); ++i) {
            ASSERT_GT(p->g.data()[i], p->r.data()[i]);
            ASSERT_GT(p->g.data()[i], p->b.data()[i]);
        }
    EXPECT_GT(bright.g.at(10, 10), dim.g.at(10, 10) + 40);
    EXPECT_GT(dim.g.at(10, 10), dim.g.at(0, 0)); // the rim of the eyepiece is darker
}

TEST(FilterChalk, LiftsBlackWithAFixedTextureAndLevelZeroKeeps) {
    const Pic black = flatPic(40, 30, 0, 0, 0);
    Pic keep = black;
    krl::ChalkFilter(keep.r, keep.g, keep.b, 41, 31, 0);
    EXPECT_EQ(keep, black);

    Pic once = black, again = black;
    krl::ChalkFilter(once.r, once.g, once.b, 41, 31, 50);
    krl::ChalkFilter(again.r, again.g, again.b, 41, 31, 50);
    EXPECT_EQ(once, again);
    EXPECT_GT(mean(once.r), 20.0);
    EXPECT_GT(variance(once.r), 20.0); // texture, not a flat grey
    EXPECT_EQ(once.r, once.g);         // the paper shows white, not coloured
}

} // namespace
} // namespace filters_test
