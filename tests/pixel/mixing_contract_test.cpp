// What every two-picture operation owes its callers, whatever it draws: exact end pictures, a reveal
// that never goes back, the same answer when one picture is passed twice, and no reach past a plane.

#include "mixing_support.h"

#include <gtest/gtest.h>

#include <tuple>

namespace krl::mixtest {
namespace {

const std::vector<Op> kOps = twoPictureOps();

struct Size {
    int w, h;
};
// Bounds, so {0, 0} is a single pixel; odd and even sizes both ways.
const Size kSizes[] = {{0, 0}, {1, 0}, {0, 3}, {6, 4}, {7, 5}, {16, 9}, {31, 2}};

class Contract : public ::testing::TestWithParam<std::tuple<int, Size>> {
  protected:
    const Op& op = kOps[static_cast<std::size_t>(std::get<0>(GetParam()))];
    const int W = std::get<1>(GetParam()).w, H = std::get<1>(GetParam()).h;
    const int toA = op.levelA(W, H), toB = op.levelB(W, H);
};

TEST_P(Contract, EndLevelsGiveExactlyOnePicture) {
    if (toA == toB) GTEST_SKIP() << "along an axis of one cell both ends are the same number";
    const Pic a = noise(W, H, 1), b = noise(W, H, 100);
    Pic x = a, y = b;
    op.run(x, y, W, H, toA);
    EXPECT_TRUE(x == a && y == b);
    op.run(x, y, W, H, toB);
    EXPECT_TRUE(x == b && y == b);
    // One plane passed as all three channels still gives clean ends.
    const Plane p = noisePlane(W, H, 7), q = noisePlane(W, H, 8);
    Pic thriceA{p, p, p}, thriceB{q, q, q};
    op.run(thriceA, thriceB, W, H, toA);
    EXPECT_TRUE(thriceA.r == p);
    op.run(thriceA, thriceB, W, H, toB);
    EXPECT_TRUE(thriceA.r == q);
}

TEST_P(Contract, RevealNeverGoesBack) {
    // With A black and B white, the amount of B on show grows step by step from one end to the other.
    long long before = -1;
    for (int level = toA, step = toA < toB ? 1 : -1;; level += step) {
        Pic x = flat(W, H, 0), y = flat(W, H, 255);
        op.run(x, y, W, H, level);
        EXPECT_GE(sum(x), before) << "at level " << level;
        before = sum(x);
        if (level == toB) break;
    }
}

TEST_P(Contract, SamePictureAsBothTriplesActsOnTheOriginal) {
    // Passing one triple as A and B must read B as it was before the call, as if it were a copy.
    const Pic a = noise(W, H, 3);
    for (int level : {toA, toB, (toA + toB) / 2, (3 * toA + toB) / 4, 1}) {
        Pic separate = a, copy = a, same = a;
        op.run(separate, copy, W, H, level);
        op.run(same, same, W, H, level);
        EXPECT_TRUE(same == separate) << "at level " << level;
    }
}

INSTANTIATE_TEST_SUITE_P(AllOps, Contract,
                         ::testing::Combine(::testing::Range(0, static_cast<int>(twoPictureOps().size())),
                                            ::testing::ValuesIn(kSizes)),
                         [](const auto& info) {
                             const Size s = std::get<1>(info.param);
                             return kOps[static_cast<std::size_t>(std::get<0>(info.param))].name + "_" +
                                    std::to_string(s.w) + "x" + std::to_string(s.h);
                         });

class Clipping : public ::testing::TestWithParam<int> {};

TEST_P(Clipping, HostileArgumentsStayInsideTheSmallestPlane) {
    // Mismatched planes and wild sizes and levels: A's cells outside what all planes share stay, B
    // never changes, and (under AddressSanitizer) nothing outside any plane is touched.
    const Op& op = kOps[static_cast<std::size_t>(GetParam())];
    const Size planes[][2] = {{{6, 4}, {9, 2}}, {{8, 3}, {3, 7}}, {{-1, -1}, {4, 4}}, {{4, 4}, {-1, -1}}};
    for (const auto& pl : planes)
        for (const Size s :
             {Size{-3, -3}, Size{0, 0}, Size{5, 1}, Size{7, 5}, Size{INT_MAX, INT_MAX}, Size{INT_MIN, 3}})
            for (const int level : {INT_MIN, -7, 0, 1, 3, 255, 256, INT_MAX}) {
                const Pic a0 = noise(pl[0].w, pl[0].h, 11), b0 = noise(pl[1].w, pl[1].h, 12);
                Pic a = a0, b = b0;
                op.run(a, b, s.w, s.h, level);
                ASSERT_TRUE(b == b0);
                const long long cols = std::min<long long>({1LL + s.w, a0.r.cols(), b0.r.cols()});
                const long long rows = std::min<long long>({1LL + s.h, a0.r.rows(), b0.r.rows()});
                for (int c = 0; c < 3; ++c)
                    for (int y = 0; y < a0.r.rows(); ++y)
                        for (int x = 0; x < a0.r.cols(); ++x) {
                            if (x < cols && y < rows) continue;
                            ASSERT_EQ(a[c].at(x, y), a0[c].at(x, y)) << s.w << " " << level;
                        }
            }
}

INSTANTIATE_TEST_SUITE_P(AllOps, Clipping, ::testing::Range(0, static_cast<int>(twoPictureOps().size())),
                         [](const auto& info) { return kOps[static_cast<std::size_t>(info.param)].name; });

TEST(Modes, UnknownModesLeaveEverythingAlone) {
    const Pic a0 = noise(9, 6, 1), b0 = noise(9, 6, 2);
    for (int mode : {INT_MIN, -1, 0, 7}) {
        Pic a = a0, b = b0, c = b0;
        Plane m(9, 6);
        for (int twoModes : {mode, 3}) {
            BlindMix(T3(a), T3(b), 9, 6, 100, twoModes);
            DoorMix(T3(a), T3(b), 9, 6, 2, twoModes);
            StripeMix(T3(a), T3(b), 9, 6, 2, 4, twoModes);
            SlideStripeMix(T3(a), T3(b), 9, 6, 2, 4, twoModes);
            PushStripeMix(T3(a), T3(b), 9, 6, 2, 4, twoModes);
            SqueezeOverlay(T3(a), T3(b), T3(c), 9, 6, 3, 6, 0, 0, twoModes);
        }
        SlideOverlay(T3(a), T3(b), 9, 6, 3, mode == 7 ? 5 : mode);
        ASlideOverlay(T3(a), T3(b), m, a0.r, 9, 6, 3, mode == 7 ? 5 : mode);
        PushOverlay(T3(a), T3(b), 9, 6, 3, mode == 7 ? 5 : mode);
        StretchOverlay(T3(a), T3(b), 9, 6, 3, 6, 0, 0, mode);
        MixBufferChannels(T3(a), 0, mode, 10, 7);
        EXPECT_TRUE(a == a0 && b == b0) << "mode " << mode;
        EXPECT_TRUE(m == Plane(9, 6)) << "mode " << mode;
    }
}

} // namespace
} // namespace krl::mixtest
