// The flicker's own pixel loops against a rounding worked out in integers, and the colour each frame
// takes.

#include "generators/FlickerPixels.h"
#include "generators/Generators.h"
#include "stored/StoredSupport.h"

namespace kirrel::test {
namespace {

using generators::KeyColour;

// round(n / 100) half to even, in integers only.
int roundHundredths(int n) {
    int q = n / 100;
    const int rem = n % 100;
    if (rem > 50 || (rem == 50 && q % 2 == 1)) ++q;
    return q;
}

int expectedFlicker(int colour, int strength, int old) {
    return roundHundredths(colour * strength + (100 - strength) * old);
}

class FlickerEveryValue : public testing::TestWithParam<int> {};

// At strength 10 an old 0 gives 25.5, rounded to the even 26, and an old 1 gives 26.4, rounded down.
TEST_P(FlickerEveryValue, MatchesTheIntegerRoundingAndLeavesTheLastColumnAndRow) {
    const int strength = GetParam();
    const KeyColour colour{255, 37, 0};
    // Every old value 0..255 once, in a 16 x 16 inner picture with a last column and row of 7s.
    krl::Triple t(16, 16);
    for (int y = 0; y <= 16; ++y)
        for (int x = 0; x <= 16; ++x) {
            const bool edge = x == 16 || y == 16;
            const auto v = static_cast<std::uint8_t>(edge ? 7 : x + 16 * y);
            t.r.at(x, y) = t.g.at(x, y) = t.b.at(x, y) = v;
        }
    generators::flickerPlanes(t.r, t.g, t.b, colour, strength, 16, 16);
    for (int y = 0; y <= 16; ++y)
        for (int x = 0; x <= 16; ++x) {
            if (x == 16 || y == 16) {
                ASSERT_EQ(t.r.at(x, y), 7) << x << "," << y;
                ASSERT_EQ(t.b.at(x, y), 7) << x << "," << y;
                continue;
            }
            const int old = x + 16 * y;
            ASSERT_EQ(t.r.at(x, y), expectedFlicker(colour.r, strength, old)) << old;
            ASSERT_EQ(t.g.at(x, y), expectedFlicker(colour.g, strength, old)) << old;
            ASSERT_EQ(t.b.at(x, y), expectedFlicker(colour.b, strength, old)) << old;
        }
}

INSTANTIATE_TEST_SUITE_P(SliderRange, FlickerEveryValue, testing::Values(10, 15, 50, 85, 90));

TEST(FlickerPixels, AlphaZeroLeavesThePixelAndFullAlphaUsesTheStrength) {
    for (int strength : {10, 45, 90}) {
        krl::Triple t(3, 1);
        for (int x = 0; x <= 3; ++x)
            t.r.at(x, 0) = t.g.at(x, 0) = t.b.at(x, 0) = 100;
        krl::Plane alpha(3, 1);
        alpha.at(0, 0) = 0;
        alpha.at(1, 0) = 255;
        alpha.at(2, 0) = 128; // round(128 / 255 * strength)
        generators::flickerPlanesAlpha(t.r, t.g, t.b, alpha, KeyColour{0, 255, 10}, strength, 3, 1);
        EXPECT_EQ(t.r.at(0, 0), 100);
        EXPECT_EQ(t.g.at(0, 0), 100);
        EXPECT_EQ(t.r.at(1, 0), expectedFlicker(0, strength, 100)) << strength;
        EXPECT_EQ(t.g.at(1, 0), expectedFlicker(255, strength, 100)) << strength;
        EXPECT_EQ(t.b.at(1, 0), expectedFlicker(10, strength, 100)) << strength;
        const int share = static_cast<int>(std::nearbyint(128 / 255.0 * strength));
        EXPECT_EQ(t.g.at(2, 0), expectedFlicker(255, share, 100)) << strength;
    }
}

class FlickerRun : public HostTest {
  protected:
    static constexpr std::uint32_t kPrimary = 0x0000FF;   // red
    static constexpr std::uint32_t kSecondary = 0xFF0000; // blue

    void loadBlack(int frames) {
        host().loadAnimation(
            std::vector<host::Picture>(static_cast<std::size_t>(frames), host::Picture(4, 3)), 5);
        host().setPrimaryPacked(kPrimary);
        host().setSecondaryPacked(kSecondary);
    }
    const host::Picture& frame(int f) const { return host().framePicture(f); }
};

TEST_F(FlickerRun, ColoursChangeEveryTwoFramesCountedFromFrameZero) {
    loadBlack(6);
    generators::Flicker({1, 4}, 90);
    const int red = expectedFlicker(255, 90, 0);
    // Frame 1 the primary, 2 and 3 the secondary, 4 the primary again; 0 and 5 stay black.
    EXPECT_EQ(frame(1).r.at(0, 0), red);
    EXPECT_EQ(frame(1).b.at(0, 0), 0);
    for (int f : {2, 3}) {
        EXPECT_EQ(frame(f).r.at(0, 0), 0) << f;
        EXPECT_EQ(frame(f).b.at(0, 0), red) << f;
    }
    EXPECT_EQ(frame(4).r.at(0, 0), red);
    for (int f : {0, 5})
        EXPECT_EQ(frame(f), host::Picture(4, 3)) << f;
    // The picture's last column and row ride along untouched.
    EXPECT_EQ(frame(1).r.at(4, 0), 0);
    EXPECT_EQ(frame(1).r.at(0, 3), 0);
    // Its own last step goes to frame 0, and it never takes the host's lock.
    EXPECT_EQ(calls("Van_GotoFrame").back(), "Van_GotoFrame(0)");
    EXPECT_TRUE(calls("Van_Lock").empty());
}

TEST_F(FlickerRun, AlphaIsTakenOnceFromTheFrameCurrentAtTheStart) {
    loadBlack(6);
    krl::Plane alpha(4, 3);
    alpha.at(1, 1) = 255;
    host().setAlpha(alpha);
    generators::FlickerAlpha({0, 5}, 50);
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u);
    for (int f = 0; f < 6; ++f) {
        EXPECT_EQ(frame(f).r.at(0, 0), 0) << f;
        const bool primary = f % 4 < 2;
        EXPECT_EQ((primary ? frame(f).r : frame(f).b).at(1, 1), expectedFlicker(255, 50, 0)) << f;
    }
}

} // namespace
} // namespace kirrel::test
