// Planes are exchanged copy-on-write, and an operation may leave a shared result buffer to its other
// holders rather than copy it before writing. Whichever way a result plane is held, the picture must
// come out byte for byte the same, and nothing that shared a buffer with it may change.

#include "mixing_support.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>

namespace krl::mixtest {
namespace {

const std::vector<Op> kOps = twoPictureOps();

// A copy that shares no buffer with the original.
Plane deep(const Plane& p) {
    Plane q(p.width(), p.height());
    if (!p.empty()) std::memcpy(q.data(), p.data(), p.size());
    return q;
}
Pic deep(const Pic& p) {
    return {deep(p.r), deep(p.g), deep(p.b)};
}

struct Case {
    int w, h;   // plane bounds
    int cw, ch; // bounds given to the call: smaller than the planes leaves an untouched margin
};
const Case kCases[] = {{0, 0, 0, 0}, {1, 0, 1, 0}, {6, 4, 6, 4}, {7, 5, 7, 5}, {9, 6, 6, 3}, {16, 9, 15, 9}};

class Sharing : public ::testing::TestWithParam<std::tuple<int, Case>> {
  protected:
    const Op& op = kOps[static_cast<std::size_t>(std::get<0>(GetParam()))];
    const Case c = std::get<1>(GetParam());
    std::vector<int> levels() const {
        const int a = op.levelA(c.cw, c.ch), b = op.levelB(c.cw, c.ch);
        return {a, b, (a + b) / 2, (3 * a + b) / 4, 1};
    }
};

TEST_P(Sharing, SharedResultGivesTheUnsharedPictureAndLeavesItsHoldersAlone) {
    const Pic a = noise(c.w, c.h, 21), b = noise(c.w, c.h, 42);
    for (const int level : levels()) {
        Pic want = deep(a), wantB = deep(b);
        op.run(want, wantB, c.cw, c.ch, level);

        Pic x = a, y = b; // x shares a's buffers, y shares b's
        op.run(x, y, c.cw, c.ch, level);
        EXPECT_TRUE(x == want) << "level " << level;
        EXPECT_TRUE(y == wantB) << "level " << level;
        EXPECT_TRUE(a == noise(c.w, c.h, 21) && b == noise(c.w, c.h, 42)) << "level " << level;

        // A and B distinct objects holding one buffer: B reads the picture as it was.
        Pic same = deep(b), sameB = deep(b);
        op.run(same, sameB, c.cw, c.ch, level);
        Pic p = b, q = b;
        op.run(p, q, c.cw, c.ch, level);
        EXPECT_TRUE(p == same && q == sameB) << "level " << level;
        EXPECT_TRUE(b == noise(c.w, c.h, 42)) << "level " << level;
    }
}

INSTANTIATE_TEST_SUITE_P(AllOps, Sharing,
                         ::testing::Combine(::testing::Range(0, static_cast<int>(twoPictureOps().size())),
                                            ::testing::ValuesIn(kCases)),
                         [](const auto& info) {
                             const Case s = std::get<1>(info.param);
                             return kOps[static_cast<std::size_t>(std::get<0>(info.param))].name + "_" +
                                    std::to_string(s.w) + "x" + std::to_string(s.h) + "_" +
                                    std::to_string(s.cw) + "x" + std::to_string(s.ch);
                         });

// The per-cell operations outside the table, each with a call size that leaves a margin untouched.
const std::vector<std::pair<std::string, std::function<void(Pic&, Pic&)>>> kCellOps = {
    {"FiftyMixBuffers", [](Pic& a, Pic& b) { FiftyMixBuffers(T3(a), T3(b), 8, 5); }},
    {"AddBuffers", [](Pic& a, Pic& b) { AddBuffers(T3(a), T3(b), 8, 5); }},
    {"MultiplyBuffers", [](Pic& a, Pic& b) { MultiplyBuffers(T3(a), T3(b), 8, 5); }},
    {"DarkenBuffers", [](Pic& a, Pic& b) { DarkenBuffers(T3(a), T3(b), 8, 5); }},
    {"LightenBuffers", [](Pic& a, Pic& b) { LightenBuffers(T3(a), T3(b), 8, 5); }},
    {"DiffBuffers", [](Pic& a, Pic& b) { DiffBuffers(T3(a), T3(b), 8, 5); }},
    {"MixBufferColor", [](Pic& a, Pic&) { MixBufferColor(T3(a), 200, 40, 90, 37, 8, 5); }},
    {"MixBufferNegative", [](Pic& a, Pic&) { MixBufferNegative(T3(a), 61, 8, 5); }},
    {"MixBufferChannels", [](Pic& a, Pic&) { MixBufferChannels(T3(a), 23, 5, 9, 6); }},
};

TEST(Sharing, CellOperationsOnSharedPlanesMatchPrivateCopies) {
    const Pic a = noise(10, 7, 31), b = noise(10, 7, 32);
    for (const auto& [name, run] : kCellOps) {
        Pic want = deep(a), wantB = deep(b);
        run(want, wantB);
        Pic x = a, y = b;
        run(x, y);
        EXPECT_TRUE(x == want && y == wantB) << name;
        EXPECT_TRUE(a == noise(10, 7, 31) && b == noise(10, 7, 32)) << name;
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

// Big enough to be cut into row slices; odd, so slices and rows are uneven. Every operation must give
// the very bytes of a single thread with two and three threads, shared result or not, A as B or not.
TEST(Slices, EveryOperationGivesTheSingleThreadBytes) {
    constexpr int W = 801, H = 403;
    const Pic a = noise(W, H, 7), b = noise(W, H, 8);
    auto run = [&](const Op& op, int threads, int level, bool same) {
        setSliceThreads(threads);
        Pic x = a, y = b;
        op.run(x, same ? x : y, W, H, level);
        setSliceThreads(0);
        return std::pair{x, y};
    };
    for (const Op& op : kOps)
        for (const int level : {op.levelA(W, H) / 3 + op.levelB(W, H) * 2 / 3, 1})
            for (const bool same : {false, true}) {
                const auto one = run(op, 1, level, same);
                for (const int threads : {2, 3})
                    ASSERT_TRUE(run(op, threads, level, same) == one)
                        << op.name << " level " << level << (same ? " A as B" : "") << ", " << threads;
            }
    // The operations outside the table, and resizing both ways.
    const std::vector<std::pair<std::string, std::function<void(Pic&, Pic&)>>> more = {
        {"AddBuffers", [](Pic& x, Pic& y) { AddBuffers(T3(x), T3(y), W, H); }},
        {"MultiplyBuffers", [](Pic& x, Pic& y) { MultiplyBuffers(T3(x), T3(y), W, H); }},
        {"DiffBuffers", [](Pic& x, Pic& y) { DiffBuffers(T3(x), T3(y), W, H); }},
        {"MixBufferNegative", [](Pic& x, Pic&) { MixBufferNegative(T3(x), 61, W, H); }},
        {"MixBufferChannels", [](Pic& x, Pic&) { MixBufferChannels(T3(x), 23, 5, W, H); }},
        {"ResizeBuffer up",
         [](Pic& x, Pic& y) {
             Pic big = noise(W + 300, H + 200, 3);
             ResizeBuffer(T3(big), T3(y), W + 300, H + 200, W, H);
             x = big;
         }},
        {"ResizeBuffer down", [](Pic& x, Pic& y) { ResizeBuffer(T3(x), T3(y), W / 2 + 101, H / 3, W, H); }},
    };
    for (const auto& [name, call] : more) {
        std::optional<Pic> one;
        for (const int threads : {1, 2, 3}) {
            setSliceThreads(threads);
            Pic x = a, y = b;
            call(x, y);
            setSliceThreads(0);
            if (!one) one = x;
            EXPECT_TRUE(x == *one && y == b) << name << ", " << threads;
        }
    }
}

TEST(Sharing, ThresholdOfASharedPlaneMatchesAPrivateCopyAndLeavesTheOriginal) {
    // The dissolve-style runs threshold a copy of their mask every frame.
    const Plane mask = noisePlane(12, 7, 5);
    for (const int level : {-1, 0, 100, 254, 255})
        for (const auto& [w, h] : {std::pair{13, 8}, std::pair{9, 4}}) {
            Plane want = deep(mask);
            Threshold(want, level, w, h);
            Plane cut = mask;
            Threshold(cut, level, w, h);
            EXPECT_TRUE(cut == want) << level << " " << w << "x" << h;
            EXPECT_TRUE(mask == noisePlane(12, 7, 5));
        }
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
} // namespace krl::mixtest
