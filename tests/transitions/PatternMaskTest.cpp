// The pattern masks against models of their own: the mirrored scans by the cell whose write comes
// last, the sawtooths by their modular formula with a scripted random source, the circles by their
// distance from the centre. Odd and even bounds both, since the centre rounds half to even.

#include "transitions/PatternMasks.h"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace kirrel::test {
namespace {

using transitions::LinesDirection;

double rne(double v) {
    return std::nearbyint(v);
}

struct Bounds {
    int W, H;
};

class MaskSizes : public testing::TestWithParam<Bounds> {};

// Bounds whose centres all round up or land exactly, so that the iris stays within a byte; the
// mirrored masks take any.
INSTANTIATE_TEST_SUITE_P(OddAndEven, MaskSizes,
                         testing::Values(Bounds{8, 6}, Bounds{7, 11}, Bounds{3, 12}, Bounds{16, 15},
                                         Bounds{2, 2}),
                         [](const auto& i) {
                             return std::to_string(i.param.W) + "x" + std::to_string(i.param.H);
                         });

TEST_P(MaskSizes, IrisIsTheRootOfTheProductOfTheNormalisedDistances) {
    const auto [W, H] = GetParam();
    const krl::Plane m = transitions::irisMask(W, H);
    const double cx = rne(W / 2.0), cy = rne(H / 2.0);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const double product = std::abs(y - cy) / cy * (std::abs(x - cx) / cx);
            ASSERT_EQ(m.at(x, y), rne(255.0 * std::sqrt(product))) << x << "," << y;
        }
    // Both centre lines stay closed to the last: a four-pointed star, not a circle.
    for (int x = 0; x <= W; ++x)
        EXPECT_EQ(m.at(x, static_cast<int>(cy)), 0);
    for (int y = 0; y <= H; ++y)
        EXPECT_EQ(m.at(static_cast<int>(cx), y), 0);
}

TEST_P(MaskSizes, DiamondKeepsTheLastWriteOfItsQuarterScan) {
    const auto [W, H] = GetParam();
    const krl::Plane m = transitions::diamondMask(W, H);
    const int cx = static_cast<int>(rne(W / 2.0)), cy = static_cast<int>(rne(H / 2.0));
    const int xEnd = static_cast<int>(rne(W / 2.0 + 1.0)), yEnd = static_cast<int>(rne(H / 2.0 + 1.0));
    // The scan goes row by row, so a cell holds what the latest row, then the latest column, among
    // its mirror images within the scan computed.
    auto last = [](int v, int mirror, int end) {
        return std::max(v <= end ? v : -1, mirror <= end ? mirror : -1);
    };
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const int px = last(x, W - x, xEnd), py = last(y, H - y, yEnd);
            const double a = rne(std::abs(cx - px) / static_cast<double>(cx) * 127.0);
            ASSERT_EQ(m.at(x, y), rne(std::abs(cy - py) / static_cast<double>(cy) * 127.0 + a))
                << x << "," << y;
        }
}

TEST_P(MaskSizes, XBandsAreSymmetricAndTakeTheLowerRightQuarter) {
    const auto [W, H] = GetParam();
    const krl::Plane m = transitions::xMask(W, H);
    const double cx = rne(W / 2.0), cy = rne(H / 2.0);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const int px = std::max(x, W - x), py = std::max(y, H - y);
            const double t = rne(std::abs((cx - px) / W * 255.0 - (cy - py) / H * 255.0) * 2);
            ASSERT_EQ(m.at(x, y), std::min(t, 255.0)) << x << "," << y;
            ASSERT_EQ(m.at(x, y), m.at(W - x, H - y));
        }
}

TEST(PatternMask, MasksOfTooNarrowAFrameDivideByZero) {
    // A bound of 1 has its centre at round(0.5) = 0.
    EXPECT_THROW(transitions::irisMask(1, 10), std::domain_error);
    EXPECT_THROW(transitions::diamondMask(10, 1), std::domain_error);
    EXPECT_THROW(transitions::xMask(0, 10), std::domain_error);
    EXPECT_THROW(transitions::circleMask(0, 10), std::out_of_range);
}

TEST(PatternMask, IrisOverflowsWhereACentreRoundsDown) {
    // round(2.5) = 2: the far column lies 3 from the centre, 1.5 of the normalised distance.
    EXPECT_THROW(transitions::irisMask(5, 5), std::overflow_error);
    EXPECT_THROW(transitions::irisMask(9, 8), std::overflow_error);
    EXPECT_NO_THROW(transitions::irisMask(7, 7)) << "round(3.5) = 4 keeps every distance within 1";
}

// A scripted uniform source, repeating its values.
struct Script {
    std::vector<float> values;
    std::size_t next = 0;
    int calls = 0;
    float operator()() {
        ++calls;
        return values[next++ % values.size()];
    }
    int start(int k) const { return static_cast<int>(rne(values[k % values.size()] * 255.0f)); }
};

struct LinesCase {
    LinesDirection direction;
    int W, H;
};

class LinesMask : public testing::TestWithParam<LinesCase> {};

TEST_P(LinesMask, SawtoothsWrapAndStartEachLineAtRandom) {
    const auto [direction, W, H] = GetParam();
    Script script{{0.1f, 0.5f, 0.9999f, 0.0f, 0.73f, 0.002f}};
    Script random = script;
    const krl::Plane m = transitions::linesMask(direction, W, H, [&] { return random(); });
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            int expected = 0;
            switch (direction) {
            case LinesDirection::ToRight:
                expected = (y == 0 ? 0 : script.start(y - 1)) + x;
                break;
            case LinesDirection::ToLeft:
                expected = (y == 0 ? 255 : script.start(y - 1)) - x;
                break;
            case LinesDirection::Up: // column 0 is never written
                expected = x == 0 ? 0 : (x == 1 ? 0 : script.start(x - 2)) + (H - y);
                break;
            case LinesDirection::Down:
                expected = (x == 0 ? 0 : script.start(x - 1)) + y;
                break;
            }
            ASSERT_EQ(m.at(x, y), (expected % 256 + 256) % 256) << x << "," << y;
        }
    const bool rows = direction == LinesDirection::ToLeft || direction == LinesDirection::ToRight;
    EXPECT_EQ(random.calls, rows ? H + 1 : (direction == LinesDirection::Up ? W : W + 1));
}

INSTANTIATE_TEST_SUITE_P(Directions, LinesMask,
                         testing::Values(LinesCase{LinesDirection::ToLeft, 300, 7},
                                         LinesCase{LinesDirection::ToRight, 299, 6},
                                         LinesCase{LinesDirection::Up, 5, 290},
                                         LinesCase{LinesDirection::Up, 6, 3},
                                         LinesCase{LinesDirection::Down, 8, 301}));

TEST(PatternMask, LinesStartValuesStayWithinAByte) {
    // The largest single-precision number below 1, times 255, rounds to 255 and not past it.
    const float belowOne = std::nextafter(1.0f, 0.0f);
    const krl::Plane m = transitions::linesMask(LinesDirection::ToRight, 0, 2, [&] { return belowOne; });
    EXPECT_EQ(m.at(0, 1), 255);
    for (int i = 0; i < 1000; ++i) {
        const float r = transitions::processUniform();
        ASSERT_GE(r, 0.0f);
        ASSERT_LT(r, 1.0f);
    }
}

struct CircleCase {
    int W, H;
};

class CircleMask : public testing::TestWithParam<CircleCase> {};

TEST_P(CircleMask, DiscsBrightenTowardTheCentreAndRepeatTheirEdges) {
    const auto [W, H] = GetParam();
    QImage surface;
    const krl::Plane m = transitions::circleMask(W, H, &surface);
    ASSERT_EQ(surface.size(), QSize(W, H));
    const double R = 0.24 * ((W + H) / 2.0 + W + H);
    const double cx = W / 2.0 - 1.0, cy = H / 2.0 - 1.0;
    // One radius step is 255 / R of grey; a pixel may be caught by the next disc out or in.
    const double tolerance = 2.0 * 255.0 / R + 2.0;
    for (int y = 1; y < H; ++y)
        for (int x = 1; x < W; ++x) {
            const double d = std::hypot(x + 0.5 - cx, y + 0.5 - cy);
            const double model = d > R + 1.0 ? 0.0 : std::max(0.0, 255.0 - 255.0 * d / R);
            ASSERT_NEAR(m.at(x, y), model, tolerance) << x << "," << y;
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
}

INSTANTIATE_TEST_SUITE_P(Shapes, CircleMask,
                         testing::Values(CircleCase{100, 80}, CircleCase{101, 79}, CircleCase{200, 40},
                                         CircleCase{3, 2}),
                         [](const auto& i) {
                             return std::to_string(i.param.W) + "x" + std::to_string(i.param.H);
                         });

TEST(PatternMask, CornersOfALongPictureLieOutsideTheLargestDisc) {
    const krl::Plane m = transitions::circleMask(200, 40);
    EXPECT_EQ(m.at(0, 0), 0);
    EXPECT_EQ(m.at(200, 40), 0);
    EXPECT_GE(m.at(99, 19), 245);
}

} // namespace
} // namespace kirrel::test
