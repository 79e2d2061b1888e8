// Threshold Mask: the level at the ends of a run, and runs against the picture the alpha's levels
// name: the source shows where the (inverted, for To) alpha reaches the frame's level.

#include "transitions/ThresholdMask.h"
#include "transitions/TransitionSupport.h"

#include <functional>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

TEST(ThresholdLevel, RunsAcrossTheBytesRoundedHalfToEven) {
    for (auto [S, E] : {std::pair{0, 2}, std::pair{3, 7}, std::pair{1, 30}}) {
        EXPECT_EQ(thresholdLevelTo(S, S, E), 255);
        EXPECT_EQ(thresholdLevelTo(E, S, E), 0);
        EXPECT_EQ(thresholdLevelFrom(S, S, E), 0);
        EXPECT_EQ(thresholdLevelFrom(E, S, E), 255);
        for (int i = S; i < E; ++i) {
            EXPECT_GT(thresholdLevelTo(i, S, E), thresholdLevelTo(i + 1, S, E));
            EXPECT_LT(thresholdLevelFrom(i, S, E), thresholdLevelFrom(i + 1, S, E));
        }
    }
    EXPECT_EQ(thresholdLevelTo(1, 0, 2), 128) << "127.5 goes to the even neighbour";
    EXPECT_EQ(thresholdLevelFrom(1, 0, 4), 64) << "63.75";
}

class ThresholdRun : public TransitionTest {
  protected:
    static constexpr int W = 17, H = 10, S = 1, E = 5;
    // Seven frames and an alpha that rises across the picture, so every level cuts it somewhere.
    void prepare() {
        load(7, W, H);
        swap = patternPicture(W, H, 90);
        host().loadSwap(swap);
        alpha = krl::Plane(W, H);
        for (int y = 0; y <= H; ++y)
            for (int x = 0; x <= W; ++x)
                alpha.at(x, y) = static_cast<std::uint8_t>((x * 255) / W);
        host().setAlpha(alpha);
        trace.clear();
    }
    // Frame f over the picture proper (the last row and column ride along untested): the source
    // where `shows` holds, else the frame as it was.
    void expectFrame(int f, const Picture& src, const std::function<bool(int a)>& shows) const {
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W; ++x) {
                const Picture& want = shows(alpha.at(x, y)) ? src : original[f];
                ASSERT_EQ(frame(f).r.at(x, y), want.r.at(x, y)) << "frame " << f << " at " << x << "," << y;
                ASSERT_EQ(frame(f).b.at(x, y), want.b.at(x, y)) << "frame " << f << " at " << x << "," << y;
            }
    }
    Picture swap;
    krl::Plane alpha;
};

// To shows the source where the inverted alpha passes the level, From where the alpha itself does.
TEST_F(ThresholdRun, ShowsTheSourceWhereTheAlphaReachesTheLevel) {
    for (bool to : {true, false}) {
        prepare();
        to ? Threshold2Swap(S, E) : ThresholdFromSwap(S, E);
        for (int f = S; f <= E; ++f) {
            const int L = to ? thresholdLevelTo(f, S, E) : thresholdLevelFrom(f, S, E);
            expectFrame(f, swap, [L, to](int a) { return (to ? 255 - a : a) > L; });
        }
        EXPECT_EQ(frame(0), original[0]);
        EXPECT_EQ(frame(6), original[6]);
        EXPECT_EQ(calls("Van_GotoFrame").back(), "Van_GotoFrame(1)") << "the run goes back to Start";
        EXPECT_EQ(calls("Van_SetProgress").back(), "Van_SetProgress(0)");
        EXPECT_FALSE(host().locked());
    }
}

// A clear alpha passes no level, not even 0 at frame Start.
TEST_F(ThresholdRun, AClearAlphaLeavesEveryFrame) {
    prepare();
    alpha.fill(0);
    host().setAlpha(alpha);
    ThresholdFromSwap(S, E);
    for (int f = S; f <= E; ++f)
        expectFrame(f, swap, [](int) { return false; });
}

// The colour is painted over the swap planes but for their last row and column.
TEST_F(ThresholdRun, ColourKeepsTheSwapInTheRideAlongRowAndColumn) {
    prepare();
    host().setPrimaryColor(200, 100, 50);
    Threshold2Color(S, E);
    const Picture& last = frame(E);
    EXPECT_EQ(last.r.at(3, 4), 200);
    EXPECT_EQ(last.b.at(W - 1, H - 1), 50);
    EXPECT_EQ(last.r.at(W, 2), swap.r.at(W, 2));
    EXPECT_EQ(host().swapPicture(), swap) << "the swap itself is untouched";
}

TEST_F(ThresholdRun, SplicesFollowTheSameLevels) {
    prepare();
    const auto stored = writeSlot(0, 6, W, H);
    Threshold2Stored(2, 0); // overlap 2..6, one stored frame appended
    ASSERT_EQ(host().totalFrames(), 8);
    EXPECT_EQ(frame(7), stored[5]);
    for (int k = 0; k <= 4; ++k) {
        const int L = thresholdLevelTo(2 + k, 2, 6);
        expectFrame(2 + k, stored[k], [L](int a) { return 255 - a > L; });
    }

    prepare();
    ThresholdFromStored(5, 0); // the slot's six frames end on frame 5: nothing goes in front
    ASSERT_EQ(host().totalFrames(), 7);
    for (int f = 0; f <= 5; ++f) {
        const int L = thresholdLevelFrom(f, 0, 5);
        expectFrame(f, stored[f], [L](int a) { return a > L; });
    }
}

} // namespace
} // namespace kirrel::test
