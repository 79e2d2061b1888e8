// The pattern masks against models of their own: the mirrored scans by the cell whose write comes
// last, the sawtooths by their modular formula on a scripted random source, the circles by their
// distance from the centre. Odd and even bounds both, since the centres round half to even.

#include "transitions/PatternMasks.h"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace kirrel::test {
namespace {

using transitions::LinesDirection;

double rne(double v) {
    return std::nearbyint(v);
}

class MaskSizes : public testing::TestWithParam<std::pair<int, int>> {};

// Bounds whose centres round up or land exactly, so that the iris stays within a byte.
INSTANTIATE_TEST_SUITE_P(OddAndEven, MaskSizes,
                         testing::Values(std::pair{8, 6}, std::pair{7, 11}, std::pair{3, 12},
                                         std::pair{16, 15}, std::pair{2, 2}));

TEST_P(MaskSizes, IrisDiamondAndXMatchTheirModels) {
    const auto [W, H] = GetParam();
    const krl::Plane iris = transitions::irisMask(W, H), diamond = transitions::diamondMask(W, H),
                     x = transitions::xMask(W, H);
    const int cx = static_cast<int>(rne(W / 2.0)), cy = static_cast<int>(rne(H / 2.0));
    const int xEnd = static_cast<int>(rne(W / 2.0 + 1.0)), yEnd = static_cast<int>(rne(H / 2.0 + 1.0));
    // Of a cell's mirror images, the one the row-by-row scan reaches last holds its value.
    auto last = [](int v, int mirror, int end) {
        return std::max(v <= end ? v : -1, mirror <= end ? mirror : -1);
    };
    for (int j = 0; j <= H; ++j)
        for (int i = 0; i <= W; ++i) {
            const double dx = std::abs(i - cx) / static_cast<double>(cx);
            const double dy = std::abs(j - cy) / static_cast<double>(cy);
            ASSERT_EQ(iris.at(i, j), rne(std::sqrt(dy * dx) * 255.0)) << i << "," << j;

            const int px = last(i, W - i, xEnd), py = last(j, H - j, yEnd);
            const double a = rne(std::abs(cx - px) / static_cast<double>(cx) * 127.0);
            ASSERT_EQ(diamond.at(i, j), rne(std::abs(cy - py) / static_cast<double>(cy) * 127.0 + a));

            const int qx = std::max(i, W - i), qy = std::max(j, H - j); // the lower right quarter
            const double t = rne(std::abs(double(cx - qx) / W * 255.0 - double(cy - qy) / H * 255.0) * 2);
            ASSERT_EQ(x.at(i, j), std::min(t, 255.0)) << i << "," << j;
        }
    // The iris stays shut along both centre lines to the last: a four-pointed star.
    for (int i = 0; i <= W; ++i)
        EXPECT_EQ(iris.at(i, cy), 0);
}

TEST(PatternMask, OverflowAndTooNarrowFramesAreErrors) {
    // round(2.5) = 2: the far column lies 3 from the centre, 1.5 of the normalised distance.
    EXPECT_THROW(transitions::irisMask(5, 5), std::overflow_error);
    EXPECT_THROW(transitions::irisMask(9, 8), std::overflow_error);
    EXPECT_NO_THROW(transitions::irisMask(7, 7)) << "round(3.5) = 4 keeps every distance within 1";
    // A bound of 1 has its centre at round(0.5) = 0.
    EXPECT_THROW(transitions::irisMask(1, 10), std::domain_error);
    EXPECT_THROW(transitions::diamondMask(10, 1), std::domain_error);
    EXPECT_THROW(transitions::xMask(0, 10), std::domain_error);
    EXPECT_THROW(transitions::circleMask(0, 10), std::out_of_range);
}

TEST(PatternMask, LinesAreSawtoothsThatStartEachLineAtRandom) {
    const float script[] = {0.1f, 0.5f, std::nextafter(1.0f, 0.0f), 0.0f, 0.73f, 0.002f};
    auto start = [&](int k) { return static_cast<int>(rne(script[k % 6] * 255.0f)); };
    for (auto [direction, W, H] : {std::tuple{LinesDirection::ToLeft, 300, 7},
                                   {LinesDirection::ToRight, 299, 6},
                                   {LinesDirection::Up, 5, 290},
                                   {LinesDirection::Down, 8, 301}}) {
        int calls = 0;
        const krl::Plane m = transitions::linesMask(direction, W, H, [&] { return script[calls++ % 6]; });
        for (int y = 0; y <= H; ++y)
            for (int x = 0; x <= W; ++x) {
                int v = 0;
                if (direction == LinesDirection::ToRight) v = (y == 0 ? 0 : start(y - 1)) + x;
                if (direction == LinesDirection::ToLeft) v = (y == 0 ? 255 : start(y - 1)) - x;
                if (direction == LinesDirection::Up) // column 0 is never written
                    v = x == 0 ? 0 : (x == 1 ? 0 : start(x - 2)) + (H - y);
                if (direction == LinesDirection::Down) v = (x == 0 ? 0 : start(x - 1)) + y;
                ASSERT_EQ(m.at(x, y), (v % 256 + 256) % 256) << int(direction) << ": " << x << "," << y;
            }
        EXPECT_EQ(calls, direction == LinesDirection::ToLeft || direction == LinesDirection::ToRight
                             ? H + 1
                             : (direction == LinesDirection::Up ? W : W + 1));
    }
}

class CircleMask : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(CircleMask, DiscsBrightenTowardTheCentreAndRepeatTheirEdges) {
    const auto [W, H] = GetParam();
    QImage surface;
    const krl::Plane m = transitions::circleMask(W, H, &surface);
    ASSERT_EQ(surface.size(), QSize(W, H));
    const double R = 0.24 * ((W + H) / 2.0 + W + H);
    // One radius step is 255 / R of grey; a pixel may be caught by the next disc out or in.
    const double tolerance = 2.0 * 255.0 / R + 2.0;
    for (int y = 1; y < H; ++y)
        for (int x = 1; x < W; ++x) {
            const double d = std::hypot(x + 0.5 - (W / 2.0 - 1.0), y + 0.5 - (H / 2.0 - 1.0));
            ASSERT_NEAR(m.at(x, y), d > R + 1.0 ? 0.0 : std::max(0.0, 255.0 - 255.0 * d / R), tolerance)
                << x << "," << y;
            ASSERT_EQ(m.at(x, y), qRed(surface.pixel(x, y)));
        }
    for (int x = 0; x <= W; ++x) {
        EXPECT_EQ(m.at(x, 0), m.at(std::clamp(x, 1, W - 1), 1));
        EXPECT_EQ(m.at(x, H), m.at(std::clamp(x, 1, W - 1), H - 1));
    }
    for (int y = 0; y <= H; ++y) {
        EXPECT_EQ(m.at(0, y), m.at(1, y));
        EXPECT_EQ(m.at(W, y), m.at(W - 1, y));
    }
    // The corners of a long picture lie outside the largest disc, on the black background.
    if (W > 2 * H) {
        EXPECT_EQ(m.at(0, 0) + m.at(W, H), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, CircleMask,
                         testing::Values(std::pair{100, 80}, std::pair{101, 79}, std::pair{200, 40},
                                         std::pair{3, 2}));

} // namespace
} // namespace kirrel::test
