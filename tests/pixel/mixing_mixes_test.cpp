// The arithmetic of the mixes over every pair of byte values, masks, channel removal, size senses.

#include "mixing_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace krl::mixtest {
namespace {

// A holds every first value along x, B every second value along y: one call covers all 65536 pairs.
class AllPairs : public ::testing::Test {
  protected:
    Pic a = flat(255, 255, 0), b = flat(255, 255, 0);
    void SetUp() override {
        for (int c = 0; c < 3; ++c)
            for (int y = 0; y <= 255; ++y)
                for (int x = 0; x <= 255; ++x)
                    a[c].at(x, y) = static_cast<std::uint8_t>(x), b[c].at(x, y) = y;
    }
    template <class Op, class Expect> void check(Op op, Expect ok) {
        Pic x = a;
        op(x);
        for (int y = 0; y <= 255; ++y)
            for (int v = 0; v <= 255; ++v)
                ASSERT_TRUE(ok(v, y, x.g.at(v, y))) << v << ", " << y << " gave " << +x.g.at(v, y);
    }
};

TEST_F(AllPairs, ArithmeticOps) {
    check([&](Pic& x) { MultiplyBuffers(T3(x), T3(b), 255, 255); },
          [](int p, int q, int v) { return std::abs(v * 255 - p * q) <= 128 && (q != 255 || v == p); });
    check([&](Pic& x) { AddBuffers(T3(x), T3(b), 255, 255); },
          [](int p, int q, int v) { return v == std::min(255, p + q); });
    check([&](Pic& x) { DiffBuffers(T3(x), T3(b), 255, 255); },
          [](int p, int q, int v) { return v == std::abs(p - q); });
    check([&](Pic& x) { DarkenBuffers(T3(x), T3(b), 255, 255); },
          [](int p, int q, int v) { return v == std::min(p, q); });
    check([&](Pic& x) { LightenBuffers(T3(x), T3(b), 255, 255); },
          [](int p, int q, int v) { return v == std::max(p, q); });
    check([&](Pic& x) { FiftyMixBuffers(T3(x), T3(b), 255, 255); },
          [](int p, int q, int v) { return std::abs(2 * v - p - q) <= 1; });
}

TEST_F(AllPairs, FadesStayWithinAStepOfTheExactMix) {
    for (int pct : {1, 25, 50, 73, 99}) {
        const auto near = [pct](double exact, int v) { return std::abs(v - exact / 100) <= 1.0; };
        check([&](Pic& x) { MixBuffers(T3(x), T3(b), pct, 255, 255); },
              [&](int p, int q, int v) { return near(p * pct + q * (100 - pct), v); });
        check([&](Pic& x) { MixBufferNegative(T3(x), pct, 255, 255); },
              [&](int p, int, int v) { return near((255 - p) * pct + p * (100 - pct), v); });
        check(
            [&](Pic& x) {
                AlphaMix(T3(x), T3(b), flatPlane(255, 255, static_cast<std::uint8_t>(pct * 2)), 255, 255);
            },
            [&](int p, int q, int v) { return near((p * (255 - 2 * pct) + q * 2 * pct) * 100 / 255.0, v); });
    }
    check([&](Pic& x) { MixBufferNegative(T3(x), 100, 255, 255); },
          [](int p, int, int v) { return v == 255 - p; });
    check([&](Pic& x) { MixBufferColor(T3(x), 9, 300, -4, 0, 255, 255); },
          [](int, int, int v) { return v == 255; });
}

TEST(Mixes, ThresholdTakesBExactlyWhereTheMaskLiesBelowTheLevel) {
    const Pic a0 = noise(20, 11, 1), b = noise(20, 11, 2);
    const Plane m = noisePlane(20, 11, 3);
    for (int level : {1, 100, 255}) {
        Pic a = a0;
        AlphaMixThresh(T3(a), T3(b), m, level, 20, 11);
        for (int y = 0; y <= 11; ++y)
            for (int x = 0; x <= 20; ++x)
                ASSERT_EQ(a.g.at(x, y), m.at(x, y) < level ? b.g.at(x, y) : a0.g.at(x, y));
    }
}

TEST(Mixes, ChannelsKeepTheNamedOnesAndTakeCountsUpToThePlane) {
    const Pic a0 = noise(7, 4, 1);
    const bool stays[7][3] = {{}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0}, {1, 0, 1}, {0, 1, 1}};
    for (int ch = 1; ch <= 6; ++ch) {
        Pic a = a0;
        MixBufferChannels(T3(a), 0, ch, 8, 5);
        for (int c = 0; c < 3; ++c)
            EXPECT_TRUE(a[c] == (stays[ch][c] ? a0[c] : Plane(7, 4))) << ch << " " << c;
    }
    // W, H as counts leave the last column and row; a count past the plane stops at it.
    for (const auto& [w, h] :
         {std::pair{7, 4}, std::pair{8, 5}, std::pair{-1, 2}, std::pair{INT_MAX, INT_MAX}}) {
        Pic fill = a0, chan = a0;
        FillBufferColor(T3(fill), 9, 9, 9, w, h);
        MixBufferChannels(T3(chan), 0, 1, w, h);
        for (int y = 0; y <= 4; ++y)
            for (int x = 0; x <= 7; ++x) {
                const bool inside = x < w && y < h;
                ASSERT_EQ(fill.r.at(x, y), inside ? 9 : a0.r.at(x, y));
                ASSERT_EQ(chan.g.at(x, y), inside ? 0 : a0.g.at(x, y));
            }
    }
}

TEST(Mixes, PlanesOfOtherShapesMeetCellByCell) {
    // Each plane is read with its own stride; B wider and shorter than A lines up by position.
    Pic a = noise(6, 4, 1);
    const Pic a0 = a, b = noise(9, 2, 2);
    MixBuffers(T3(a), T3(b), 0, INT_MAX, INT_MAX);
    for (int y = 0; y <= 4; ++y)
        for (int x = 0; x <= 6; ++x)
            ASSERT_EQ(a.b.at(x, y), y <= 2 ? b.b.at(x, y) : a0.b.at(x, y));
}

} // namespace
} // namespace krl::mixtest
