// Where the patterns and moves put each pixel. Horizontal modes are checked cell by cell on pictures
// whose cells name their position; each vertical mode must be its horizontal twin on the transposed
// picture. Rows of 38 cells take the horizontal scalings through their block-wise shuffles, which the
// vertical twins, copying whole rows, check at every band size.

#include "pixel_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace krl::pixeltest {
namespace {

const std::pair<const char*, const char*> kTwins[] = {
    {"BlindMix2", "BlindMix1"},
    {"DoorMix2", "DoorMix1"},
    {"StripeMix2", "StripeMix1"},
    {"SlideStripeMix2", "SlideStripeMix1"},
    {"PushStripeMix2", "PushStripeMix1"},
    {"SqueezeOverlay2", "SqueezeOverlay1"},
    {"SlideOverlay3", "SlideOverlay1"},
    {"SlideOverlay4", "SlideOverlay2"},
    {"PushOverlay3", "PushOverlay1"},
    {"PushOverlay4", "PushOverlay1"},
    {"StretchOverlay3", "StretchOverlay1"},
    {"StretchOverlay4", "StretchOverlay2"},
    {"StretchOverlay6", "StretchOverlay5"},
};

class Twins : public ::testing::TestWithParam<std::tuple<int, std::pair<int, int>>> {};

TEST_P(Twins, VerticalModeIsTheHorizontalOneTransposed) {
    const auto [vertical, horizontal] = kTwins[std::get<0>(GetParam())];
    const auto [W, H] = std::get<1>(GetParam());
    const Pic a = noise(W, H, 1), b = noise(W, H, 2);
    for (int level = -1; level <= H + 1; ++level)
        for (bool same : {false, true}) { // also with one picture passed as both triples
            Pic v = a, vb = b, t = transposed(a), tb = transposed(b);
            opNamed(vertical).run(v, same ? v : vb, W, H, level);
            opNamed(horizontal).run(t, same ? t : tb, H, W, level);
            ASSERT_TRUE(v == transposed(t)) << "level " << level << (same ? " with A as B" : "");
        }
}

std::string twinName(const ::testing::TestParamInfo<Twins::ParamType>& info) {
    const auto [w, h] = std::get<1>(info.param);
    return std::string(kTwins[std::get<0>(info.param)].first) + "_" + std::to_string(w) + "x" +
           std::to_string(h);
}
INSTANTIATE_TEST_SUITE_P(Pairs, Twins,
                         ::testing::Combine(::testing::Range(0, static_cast<int>(std::size(kTwins))),
                                            ::testing::Values(std::pair{0, 0}, std::pair{1, 0},
                                                              std::pair{6, 4}, std::pair{7, 5},
                                                              std::pair{3, 12}, std::pair{4, 37})),
                         twinName);

// Runs `call` on position-coded pictures of 12 columns (W = 11, H = 5) and tells where each cell of
// row y came from: "B4" is column 4 of B.
template <class Call> std::string after(Call call, int y) {
    Pic a = coded(11, 5), b = coded(11, 5);
    b.b.fill(200);
    call(a, b);
    std::string s;
    for (int x = 0; x <= 11; ++x)
        s += (x ? " " : "") + std::string(a.b.at(x, y) == 200 ? "B" : "A") + std::to_string(a.r.at(x, y));
    return s;
}
#define KRL_AFTER(y, ...) after([](Pic& a, [[maybe_unused]] Pic& b) { __VA_ARGS__; }, y)

TEST(Moves, SlidesLayBOverStillAAndCarryTheAlpha) {
    EXPECT_EQ(KRL_AFTER(2, SlideOverlay(T3(a), T3(b), 11, 5, 4, 1)),
              "B4 B5 B6 B7 B8 B9 B10 B11 A8 A9 A10 A11");
    EXPECT_EQ(KRL_AFTER(2, SlideOverlay(T3(a), T3(b), 11, 5, 4, 2)), "A0 A1 A2 A3 B0 B1 B2 B3 B4 B5 B6 B7");
    const Plane alpha = noisePlane(11, 5, 3);
    Plane moved = flatPlane(11, 5, 77); // whatever the caller left there, the vacated part ends up clear
    Pic a = noise(11, 5, 1), plain = a, b = noise(11, 5, 2);
    ASlideOverlay(T3(a), T3(b), moved, alpha, 11, 5, 4, 2);
    SlideOverlay(T3(plain), T3(b), 11, 5, 4, 2);
    EXPECT_TRUE(a == plain);
    for (int x = 0; x <= 11; ++x)
        ASSERT_EQ(moved.at(x, 3), x < 4 ? 0 : alpha.at(x - 4, 3));
}

// Where A and B meet in a push (and in the stripes) the transitions' own references work out cell by
// cell; pushed against itself the frame rolls round, which the vertical hold relies on. The vertical
// roll is this one transposed (Twins).
TEST(Moves, PushAgainstItselfRollsRound) {
    EXPECT_EQ(KRL_AFTER(1, PushOverlay(T3(a), T3(a), 11, 5, 4, 1)), "A8 A9 A10 A11 A0 A1 A2 A3 A4 A5 A6 A7");
}

TEST(Moves, DoorLeavesCarryTheHalvesOfB) {
    // Halves of 6 columns; each leaf 2 columns in, showing the inner strip of its half.
    EXPECT_EQ(KRL_AFTER(3, DoorMix(T3(a), T3(b), 11, 5, 2, 1)), "B4 B5 A2 A3 A4 A5 A6 A7 A8 A9 B6 B7");
    for (int w : {9, 11, 13}) { // callers round W / 2 to even: 4 of 4.5, 6 of 5.5, 6 of 6.5
        Pic x = coded(w, 3), y = noise(w, 3, 5);
        DoorMix(T3(x), T3(y), w, 3, static_cast<int>(std::nearbyint(w / 2.0)), 1);
        EXPECT_TRUE(x == y) << w;
    }
}

// Where the stretches and squeezes sample is the stretch reference's business, cell by cell.
TEST(Moves, SqueezeTakesItsSourceAndTheCopyEitherWayRound) {
    for (bool swapped : {false, true}) { // the run may pass the source and its copy either way round
        const Pic frame = noise(11, 5, 1), source = noise(11, 5, 2);
        Pic a = frame, p2 = source, p3 = source;
        SqueezeOverlay(T3(a), T3((swapped ? p3 : p2)), T3((swapped ? p2 : p3)), 11, 5, 3, 5, 0, 0, 1);
        EXPECT_TRUE(a == (swapped ? p3 : p2));      // the frame and the source triple both hold the result
        EXPECT_TRUE((swapped ? p2 : p3) == source); // the copy it reads from is left alone
    }
}

TEST(Patterns, BoxesAndBlinds) {
    const Pic a0 = noise(9, 99, 1), b = noise(9, 99, 2);
    Pic a = a0;
    BoxMix(T3(a), T3(b), 9, 99, 4, 1, 4, 5); // a closing box: corners inclusive, one column
    BoxMix(T3(a), T3(b), 9, 99, 6, 0, 5, 9); // corners crossed: nothing
    for (int y = 0; y <= 99; ++y)
        for (int x = 0; x <= 9; ++x)
            ASSERT_EQ(a.r.at(x, y), x == 4 && y >= 1 && y <= 5 ? b.r.at(x, y) : a0.r.at(x, y));
    a = a0;
    BlindMix(T3(a), T3(b), 9, 99, 128, 1); // ten slats of ten rows, each open from its top by 128/255
    for (int y = 0; y <= 99; ++y)
        ASSERT_TRUE(a.g.at(3, y) == (y % 10 < 5 ? b : a0).g.at(3, y)) << y;
}

TEST(Resize, SizesThatLeaveAPictureEmptyChangeNothingAndAPlaneResizesIntoItself) {
    const Pic src = noise(30, 20, 1);
    Pic out = noise(7, 3, 2);
    ResizeBuffer(T3(out), T3(src), INT_MAX, -5, 40, 40);
    ResizeBuffer(T3(out), T3(src), 3, 900, INT_MIN, 1);
    EXPECT_TRUE(out == noise(7, 3, 2));
    Pic self = src, want = deep(src);
    ResizeBuffer(T3(self), T3(self), 14, 9, 30, 20);
    ResizeBuffer(T3(want), T3(src), 14, 9, 30, 20);
    EXPECT_TRUE(self == want);
}

// The source cells behind target cell i of `to` on an axis of `from` cells, in order, with their weights:
// the cells under it weighted by overlap (shrinking), the two nearest cell centres (enlarging), the
// cell itself (same size).
std::vector<std::pair<int, float>> taps(int from, int to, int i) {
    const double scale = static_cast<double>(from) / to;
    if (from > to) {
        std::vector<std::pair<int, float>> t;
        const double lo = i * scale, hi = (i + 1) * scale;
        for (int j = static_cast<int>(lo); j < from && j < hi; ++j)
            t.emplace_back(
                j, static_cast<float>((std::min<double>(hi, j + 1) - std::max<double>(lo, j)) / scale));
        return t;
    }
    if (from == to) return {{i, 1.0f}};
    const double pos = std::clamp((i + 0.5) * scale - 0.5, 0.0, from - 1.0);
    const int j = static_cast<int>(pos);
    const double f = pos - j;
    if (j + 1 >= from) return {{j, 1.0f}};
    return {{j, static_cast<float>(1.0 - f)}, {j + 1, static_cast<float>(f)}};
}

// Every target cell against its own weighted sum: down the source columns first, then across, each
// summed in single precision from the first tap, plus a half, held to 0..255, truncated. Sizes cover
// the eight-cell paths and their ends (blocks of eight target cells whose taps span 8 source cells or
// fewer, 16 or fewer, a mix of both, more), one axis alone, and pictures cut into row slices; each on
// one thread and several, through every kernel set.
struct ResizeCase {
    int fw, fh, tw, th; // source and target columns and rows
};
const ResizeCase kResizes[] = {
    {48, 1, 32, 1},       {40, 3, 37, 2},       {20, 1, 64, 3},   {33, 17, 50, 9},      {300, 5, 41, 7},
    {1, 1, 7, 5},         {7, 5, 1, 1},         {17, 16, 16, 17}, {641, 479, 481, 359}, {481, 359, 641, 479},
    {641, 479, 961, 479}, {962, 719, 641, 479}, {58, 3, 64, 2},   {641, 479, 700, 479}, {30, 20, 30, 20}};

class ResizeCells : public ::testing::TestWithParam<ResizeCase> {};

TEST_P(ResizeCells, EveryTargetCellIsItsOwnWeightedSum) {
    const auto [fw, fh, tw, th] = GetParam();
    const Pic src = noise(fw - 1, fh - 1, 5);
    Pic want = flat(tw - 1, th - 1, 0);
    std::vector<float> down(static_cast<std::size_t>(fw));
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < th; ++y) {
            for (int x = 0; x < fw; ++x) {
                float v = 0.0f;
                for (const auto& [j, w] : taps(fh, th, y))
                    if (w != 0.0f) v += w * static_cast<float>(src[c].at(x, j));
                down[static_cast<std::size_t>(x)] = v;
            }
            for (int x = 0; x < tw; ++x) {
                float v = 0.0f;
                for (const auto& [j, w] : taps(fw, tw, x))
                    v += w * down[static_cast<std::size_t>(j)];
                want[c].at(x, y) = static_cast<std::uint8_t>(std::clamp(v + 0.5f, 0.0f, 255.0f));
            }
        }
    everyKernelSetAndThreads([&](const std::string& how) {
        Pic out = noise(tw - 1, th - 1, 6);
        ResizeBuffer(T3(out), T3(src), tw - 1, th - 1, fw - 1, fh - 1);
        ASSERT_TRUE(out == want) << how;
    });
}

INSTANTIATE_TEST_SUITE_P(Sizes, ResizeCells, ::testing::ValuesIn(kResizes),
                         [](const ::testing::TestParamInfo<ResizeCase>& info) {
                             const ResizeCase& r = info.param;
                             return std::to_string(r.fw) + "x" + std::to_string(r.fh) + "_to_" +
                                    std::to_string(r.tw) + "x" + std::to_string(r.th);
                         });

} // namespace
} // namespace krl::pixeltest
