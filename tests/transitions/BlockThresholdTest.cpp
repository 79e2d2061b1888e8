// Block Out and Threshold Mask. Block Out: runs in which every block changes over exactly once and
// stays, with the first and last frames fixed by the
// direction. Threshold Mask: the level at the ends of a run, and runs against the picture the alpha's
// levels name: the source shows where the (inverted, for To) alpha reaches the frame's level.

#include "transitions/Blocks.h"
#include "transitions/ThresholdMask.h"
#include "transitions/TransitionSupport.h"

#include <functional>
#include <numeric>
#include <set>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

class BlockOutRun : public TransitionTest {
  protected:
    static constexpr std::uint32_t kColour = 0x1EC80A; // red 10, green 200, blue 30
    void prepare(int w, int h, int frames) {
        std::vector<Picture> flat(static_cast<std::size_t>(frames), Picture::filled(w, h, 0x808080));
        original = flat;
        host().loadAnimation(flat);
        host().setPrimaryColor(10, 200, 30);
        trace.clear();
    }
    // Whether the pixel shows the colour.
    bool coloured(int f, int x, int y) const {
        const Picture& p = frame(f);
        return p.r.at(x, y) == 10 && p.g.at(x, y) == 200 && p.b.at(x, y) == 30;
    }
};

// Every block, the leftover strips included, turns to the colour at one frame and stays so; each
// turns only whole; the number of turned cells per frame follows the draws.
TEST_F(BlockOutRun, EveryBlockCoversOnceAndStaysCovered) {
    for (auto [w, h] : {std::pair{16, 12}, std::pair{15, 11}}) {
        prepare(w, h, 8);
        const int S = 1, E = 7;
        BlockOut2Color(S, E);
        const BlockLayout layout = *blockLayout(w, h, E - S);
        const int b = layout.size;
        int drawn = 0;
        for (int f = 0; f < 8; ++f) {
            if (f >= S && f < E) drawn += blocksDrawnAt(f, S, E, layout.total);
            std::set<std::pair<int, int>> cellsCovered;
            for (int y = 0; y <= h; ++y)
                for (int x = 0; x <= w; ++x) {
                    const bool now = coloured(f, x, y);
                    // A block is covered or not as a whole.
                    EXPECT_EQ(now, coloured(f, x - x % b, y - y % b)) << f << " at " << x << "," << y;
                    if (f > 0 && coloured(f - 1, x, y)) {
                        EXPECT_TRUE(now) << "uncovered at " << f;
                    }
                    if (now)
                        cellsCovered.insert(
                            {std::min(x / b, layout.cols - 1), std::min(y / b, layout.rows - 1)});
                }
            if (f <= S)
                EXPECT_TRUE(cellsCovered.empty()) << "frame " << f;
            else if (f == E)
                EXPECT_EQ(static_cast<int>(cellsCovered.size()), layout.total);
            else
                EXPECT_EQ(static_cast<int>(cellsCovered.size()), drawn) << "frame " << f;
        }
        EXPECT_FALSE(host().locked());
    }
}

TEST_F(BlockOutRun, FromStartsAllSourceAndEndsOnTheFrame) {
    prepare(16, 12, 7);
    Picture swap = patternPicture(16, 12, 40);
    host().loadSwap(swap);
    BlockOutFromSwap(0, 6);
    EXPECT_EQ(frame(0), swap);
    EXPECT_EQ(frame(6), original[6]);
    // In between, what is not yet uncovered is the swap in place, block by block.
    for (int y = 0; y <= 12; ++y)
        for (int x = 0; x <= 16; ++x) {
            const Picture& p = frame(3);
            EXPECT_TRUE(p.r.at(x, y) == swap.r.at(x, y) || p.r.at(x, y) == 0x80);
        }
}

// Too many frames for the picture are refused before anything changes; the splice sizes its blocks by
// the stored frame, so a small slot refuses a span the frame would take.
TEST_F(BlockOutRun, TooManyFramesAreRefusedAndTheSpliceSizesItsBlocksByTheStoredFrame) {
    prepare(4, 4, 12);
    BlockOut2Swap(0, 11);
    EXPECT_EQ(messagesOf(host()), (std::vector<std::string>{"Too many frames for this image size!"}));
    for (int f = 0; f < 12; ++f)
        EXPECT_EQ(frame(f), original[f]);
    EXPECT_TRUE(calls("Van_Lock").empty());

    prepare(40, 40, 12);
    writeSlot(2, 12, 4, 4);
    BlockOut2Stored(0, 2);
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>(2, "Too many frames for this image size!"));
    EXPECT_EQ(host().totalFrames(), 12);

    writeSlot(2, 14, 40, 40);
    BlockOut2Stored(0, 2);
    EXPECT_EQ(host().totalFrames(), 14);
    EXPECT_EQ(frame(11).r.at(20, 20), 10 + 20 * 11) << "the overlap ends on the stored frame";
    EXPECT_EQ(frame(0), original[0]);
}

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
    // Frame f of the result as it should be: the source where `shows` holds, else the frame as it was;
    // the last row and column ride along untested.
    Picture masked(int f, const Picture& before, const Picture& src,
                   const std::function<bool(int a)>& shows) const {
        Picture out = frame(f);
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W; ++x)
                copyPixel(out, x, y, shows(alpha.at(x, y)) ? src : before, x, y);
        return out;
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
            EXPECT_EQ(frame(f),
                      masked(f, original[f], swap, [L, to](int a) { return (to ? 255 - a : a) > L; }))
                << f;
        }
        EXPECT_EQ(frame(0), original[0]);
        EXPECT_EQ(frame(6), original[6]);
        EXPECT_EQ(calls("Van_GotoFrame").back(), "Van_GotoFrame(1)") << "the run goes back to Start";
        EXPECT_EQ(calls("Van_SetProgress").back(), "Van_SetProgress(0)");
        EXPECT_FALSE(host().locked());
    }
    // A clear alpha passes no level, not even 0 at frame Start.
    prepare();
    alpha.fill(0);
    host().setAlpha(alpha);
    ThresholdFromSwap(S, E);
    for (int f = S; f <= E; ++f)
        EXPECT_EQ(frame(f), original[f]) << f;
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

} // namespace
} // namespace kirrel::test
