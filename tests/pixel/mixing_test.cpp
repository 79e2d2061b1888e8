// What every two-picture operation owes its callers, whatever it draws: exact end pictures, a reveal
// that never goes back, no reach past a plane, and the same bytes however the planes are held; and
// the arithmetic of the mixes over every pair of byte values, masks and channel removal.
// Planes are exchanged copy-on-write, and an operation may leave a shared result buffer to its other
// holders rather than copy it before writing: whichever way a result plane is held (shared, private,
// or passed as both pictures), the picture must come out byte for byte the same, on any number of
// threads, and nothing that shared a buffer with it may change.

#include "pixel_support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <stdexcept>
#include <thread>
#include <tuple>

namespace krl::pixeltest {
namespace {

struct Case {
    int w, h;   // plane bounds
    int cw, ch; // bounds given to the call: smaller than the planes leaves an untouched margin
};
const Case kCases[] = {{0, 0, 0, 0}, {1, 0, 1, 0},   {0, 3, 0, 3}, {6, 4, 6, 4},
                       {7, 5, 7, 5}, {31, 2, 31, 2}, {9, 6, 6, 3}, {16, 9, 15, 9}};

// A with B's cells inside the call's bounds.
Pic within(Pic a, const Pic& b, const Case& c) {
    for (int k = 0; k < 3; ++k)
        for (int y = 0; y <= c.ch; ++y)
            for (int x = 0; x <= c.cw; ++x)
                a[k].at(x, y) = b[k].at(x, y);
    return a;
}

class Contract : public ::testing::TestWithParam<std::tuple<int, Case>> {
  protected:
    const Op& op = allOps()[static_cast<std::size_t>(std::get<0>(GetParam()))];
    const Case c = std::get<1>(GetParam());
    const int toA = op.levelA(c.cw, c.ch), toB = op.levelB(c.cw, c.ch);
    void run(Pic& a, Pic& b, int level) const { op.run(a, b, c.cw, c.ch, level); }
};

TEST_P(Contract, EndLevelsGiveExactlyOnePicture) {
    if (toA == toB) GTEST_SKIP() << "along an axis of one cell both ends are the same number";
    const Pic a = noise(c.w, c.h, 1), b = noise(c.w, c.h, 100);
    Pic x = a, y = b;
    run(x, y, toA);
    EXPECT_TRUE(x == a && y == b);
    run(x, y, toB);
    EXPECT_TRUE(x == within(a, b, c) && y == b);
    // One plane passed as all three channels still gives clean ends.
    const Plane p = noisePlane(c.w, c.h, 7), q = noisePlane(c.w, c.h, 8);
    Pic thriceA{p, p, p}, thriceB{q, q, q};
    run(thriceA, thriceB, toA);
    EXPECT_TRUE(thriceA.r == p);
    run(thriceA, thriceB, toB);
    EXPECT_TRUE(thriceA.r == within({p, p, p}, {q, q, q}, c).r);
}

TEST_P(Contract, RevealNeverGoesBack) {
    // With A black and B white, the amount of B on show grows step by step from one end to the other.
    long long before = -1;
    for (int level = toA, step = toA < toB ? 1 : -1;; level += step) {
        Pic x = flat(c.w, c.h, 0), y = flat(c.w, c.h, 255);
        run(x, y, level);
        EXPECT_GE(sum(x), before) << "at level " << level;
        before = sum(x);
        if (level == toB) break;
    }
}

TEST_P(Contract, EveryWayOfHoldingThePlanesGivesTheSameBytes) {
    const Pic a = noise(c.w, c.h, 21), b = noise(c.w, c.h, 42);
    for (const int level : {toA, toB, (toA + toB) / 2, (3 * toA + toB) / 4, 1}) {
        SCOPED_TRACE("level " + std::to_string(level));
        Pic want = deep(a), wantB = deep(b);
        run(want, wantB, level);
        Pic x = a, y = b; // x shares a's buffers, y shares b's
        run(x, y, level);
        EXPECT_TRUE(x == want && y == wantB);
        // A passed as B too must read B as it was before the call, as if it were a copy; so must two
        // objects holding one buffer.
        Pic self = deep(a), selfB = deep(a);
        run(self, selfB, level);
        Pic same = a, p = a, q = a;
        run(same, same, level);
        run(p, q, level);
        EXPECT_TRUE(same == self && p == self && q == selfB);
        EXPECT_TRUE(a == noise(c.w, c.h, 21) && b == noise(c.w, c.h, 42));
    }
}

INSTANTIATE_TEST_SUITE_P(AllOps, Contract,
                         ::testing::Combine(::testing::Range(0, static_cast<int>(allOps().size())),
                                            ::testing::ValuesIn(kCases)),
                         [](const auto& info) {
                             const Case s = std::get<1>(info.param);
                             return allOps()[static_cast<std::size_t>(std::get<0>(info.param))].name + "_" +
                                    std::to_string(s.w) + "x" + std::to_string(s.h) + "_" +
                                    std::to_string(s.cw) + "x" + std::to_string(s.ch);
                         });

TEST(Clipping, HostileArgumentsStayInsideTheSmallestPlane) {
    // Mismatched planes and wild sizes and levels: A's cells outside what all planes share stay, B
    // never changes, and (under AddressSanitizer) nothing outside any plane is touched.
    const Case planes[] = {{6, 4, 9, 2}, {8, 3, 3, 7}, {-1, -1, 4, 4}, {4, 4, -1, -1}};
    for (const Op& op : allOps())
        for (const auto& pl : planes)
            for (const auto& [w, h] :
                 {std::pair{-3, -3}, {0, 0}, {5, 1}, {7, 5}, {INT_MAX, INT_MAX}, {INT_MIN, 3}})
                for (const int level : {INT_MIN, -7, 0, 1, 3, 255, 256, INT_MAX}) {
                    const Pic a0 = noise(pl.w, pl.h, 11), b0 = noise(pl.cw, pl.ch, 12);
                    Pic a = a0, b = b0;
                    op.run(a, b, w, h, level);
                    ASSERT_TRUE(b == b0) << op.name;
                    const long long cols = std::min<long long>({1LL + w, a0.r.cols(), b0.r.cols()});
                    const long long rows = std::min<long long>({1LL + h, a0.r.rows(), b0.r.rows()});
                    for (int k = 0; k < 3; ++k)
                        for (int y = 0; y < a0.r.rows(); ++y)
                            for (int x = 0; x < a0.r.cols(); ++x)
                                ASSERT_TRUE((x < cols && y < rows) || a[k].at(x, y) == a0[k].at(x, y))
                                    << op.name << " " << w << " " << level;
                }
}

// The per-cell operations outside the table, with what each must give for a byte p of A and q of B
// where that is a rule of its own.
struct CellOp {
    std::string name;
    std::function<void(Pic&, Pic&, int, int)> run;
    std::function<bool(int p, int q, int v)> gives;
};
#define KRL_CELL(call) [](Pic& a, [[maybe_unused]] Pic& b, int w, int h) { call; }
const CellOp kCellOps[] = {
    {"FiftyMixBuffers", KRL_CELL(FiftyMixBuffers(T3(a), T3(b), w, h)),
     [](int p, int q, int v) { return std::abs(2 * v - p - q) <= 1; }},
    {"AddBuffers", KRL_CELL(AddBuffers(T3(a), T3(b), w, h)),
     [](int p, int q, int v) { return v == std::min(255, p + q); }},
    {"MultiplyBuffers", KRL_CELL(MultiplyBuffers(T3(a), T3(b), w, h)),
     [](int p, int q, int v) { return std::abs(v * 255 - p * q) <= 128 && (q != 255 || v == p); }},
    {"DarkenBuffers", KRL_CELL(DarkenBuffers(T3(a), T3(b), w, h)),
     [](int p, int q, int v) { return v == std::min(p, q); }},
    {"LightenBuffers", KRL_CELL(LightenBuffers(T3(a), T3(b), w, h)),
     [](int p, int q, int v) { return v == std::max(p, q); }},
    {"DiffBuffers", KRL_CELL(DiffBuffers(T3(a), T3(b), w, h)),
     [](int p, int q, int v) { return v == std::abs(p - q); }},
    // pct 0 takes the colour whole, its green of 300 held to 255 (the checks read the green plane).
    {"MixBufferColor", KRL_CELL(MixBufferColor(T3(a), 9, 300, -4, 0, w, h)),
     [](int, int, int v) { return v == 255; }},
    {"MixBufferNegative", KRL_CELL(MixBufferNegative(T3(a), 100, w, h)),
     [](int p, int, int v) { return v == 255 - p; }},
    {"MixBufferColorPart", KRL_CELL(MixBufferColor(T3(a), 200, 40, 90, 37, w, h)), nullptr},
    {"MixBufferNegativePart", KRL_CELL(MixBufferNegative(T3(a), 61, w, h)), nullptr},
    {"MixBufferChannels", KRL_CELL(MixBufferChannels(T3(a), 23, 5, w + 1, h + 1)), nullptr},
};

TEST(CellOperations, SharedPlanesMatchPrivateCopies) {
    const Pic a = noise(10, 7, 31), b = noise(10, 7, 32);
    for (const auto& [name, run, gives] : kCellOps) {
        Pic want = deep(a), wantB = deep(b);
        run(want, wantB, 8, 5); // a margin left untouched
        Pic x = a, y = b;
        run(x, y, 8, 5);
        EXPECT_TRUE(x == want && y == wantB) << name;
        EXPECT_TRUE(a == noise(10, 7, 31) && b == noise(10, 7, 32)) << name;
    }
}

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

TEST_F(AllPairs, CellOperationsFollowTheirRules) {
    for (const CellOp& op : kCellOps)
        if (op.gives) check([&](Pic& x) { op.run(x, b, 255, 255); }, op.gives);
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

// Big enough to be cut into row slices; odd, so slices and rows are uneven. Every operation must give
// the very bytes of a single thread with two and three threads, A passed as B or not.
TEST(Slices, EveryOperationGivesTheSingleThreadBytes) {
    constexpr int W = 801, H = 403;
    const Pic a = noise(W, H, 7), b = noise(W, H, 8);
    std::vector<std::pair<std::string, std::function<void(Pic&, Pic&)>>> calls;
    for (const CellOp& op : kCellOps)
        calls.emplace_back(op.name, [&op](Pic& x, Pic& y) { op.run(x, y, W, H); });
    for (const Op& op : allOps())
        for (const int level : {op.levelA(W, H) / 3 + op.levelB(W, H) * 2 / 3, 1})
            calls.emplace_back(op.name + " level " + std::to_string(level),
                               [&op, level](Pic& x, Pic& y) { op.run(x, y, W, H, level); });
    for (const auto& [name, call] : calls)
        for (const bool same : {false, true}) {
            Pic one, oneB;
            for (const int threads : {1, 2, 3}) {
                setSliceThreads(threads);
                Pic x = a, y = b;
                call(x, same ? x : y);
                setSliceThreads(0);
                if (threads == 1) one = x, oneB = y;
                ASSERT_TRUE(x == one && y == oneB) << name << (same ? ", A as B" : "") << ", " << threads;
            }
        }
}

// The slicing itself: every row once, from the caller and the helpers alike, at any thread count; a
// slice that asks for slices runs them itself; two callers at once both finish; a failing slice
// reaches its caller and leaves the helpers usable.
TEST(Slices, EveryRowOnceNestedConcurrentAndFailing) {
    auto visits = [](int rows) {
        std::vector<std::atomic<int>> seen(static_cast<std::size_t>(rows));
        const std::thread::id caller = std::this_thread::get_id();
        forRowSlices(rows, 1LL << 20, [&](int y0, int y1) {
            for (int y = y0; y < y1; ++y)
                seen[static_cast<std::size_t>(y)]++;
            if (std::this_thread::get_id() != caller) // on a helper, slices within run whole
                forRowSlices(4, 1LL << 20, [](int a, int b) { ASSERT_TRUE(a == 0 && b == 4) << "nested"; });
        });
        return std::all_of(seen.begin(), seen.end(), [](const std::atomic<int>& n) { return n == 1; });
    };
    for (const int threads : {1, 2, 3, 5}) {
        setSliceThreads(threads);
        for (const int rows : {1, 2, 3, 7, 1001})
            EXPECT_TRUE(visits(rows)) << threads << " threads, " << rows << " rows";
        std::thread other([&] {
            for (int i = 0; i < 50; ++i)
                EXPECT_TRUE(visits(333));
        });
        for (int i = 0; i < 50; ++i)
            EXPECT_TRUE(visits(555));
        other.join();
        EXPECT_THROW(forRowSlices(100, 1LL << 20,
                                  [](int, int y1) {
                                      if (y1 == 100) throw std::runtime_error("the last slice failed");
                                  }),
                     std::runtime_error)
            << threads;
        EXPECT_TRUE(threads == 1 || visits(64));
    }
    setSliceThreads(0);
}

TEST(Rewrite, KeepsEverythingOutsideTheRectangleAndTheOldBuffer) {
    const Plane p = noisePlane(9, 6, 3);
    Plane q = p;
    Plane::Rewrite r = q.rewrite(2, 1, 7, 4);
    ASSERT_FALSE(r.inPlace());
    EXPECT_EQ(r.from, p.data());
    for (int y = 1; y < 4; ++y)
        for (int x = 2; x < 7; ++x)
            r.to[y * q.cols() + x] = 0;
    for (int y = 0; y <= 6; ++y)
        for (int x = 0; x <= 9; ++x)
            EXPECT_EQ(q.at(x, y), x >= 2 && x < 7 && y >= 1 && y < 4 ? 0 : p.at(x, y)) << x << "," << y;
    // An unshared plane is written in place, and a rectangle past the plane is clamped.
    Plane::Rewrite again = q.rewrite(-5, -5, 100, 100);
    EXPECT_TRUE(again.inPlace());
    EXPECT_EQ(again.to, q.data());
}

} // namespace
} // namespace krl::pixeltest
