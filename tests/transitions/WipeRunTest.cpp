// The plain run shapes, proved on the wipes: which frames are read and written, the ratio arithmetic,
// progress, the host call order, and the sources.

#include "support/Support.h"
#include "transitions/Wipes.h"

#include <algorithm>

namespace kirrel::test {
namespace {

using host::Picture;
using transitions::Wipe2LeftFrom;
using transitions::Wipe2LeftTo;

class WipeRun : public HostTest {
  protected:
    // An animation of n frames W x H, each a distinct pattern; the swap is a flat grey.
    void load(int n, int w, int h) {
        std::vector<Picture> frames;
        for (int f = 0; f < n; ++f)
            frames.push_back(patternPicture(w, h, 17 * f));
        original = frames;
        host().loadAnimation(frames);
        host().loadSwap(Picture::filled(w, h, 0x505050));
        trace.clear();
    }
    const Picture& frame(int f) const { return host().framePicture(f); }
    // The columns of frame f that hold the swap grey on row 0.
    int firstSwapColumn(int f) const {
        const auto& r = frame(f).r;
        for (int x = 0; x <= r.width(); ++x)
            if (r.at(x, 0) == 0x50 && frame(f).g.at(x, 0) == 0x50) return x;
        return -1;
    }
    std::vector<Picture> original;
};

TEST_F(WipeRun, ToLeavesStartAndGivesAllSourceAtEnd) {
    load(6, 100, 10);
    Wipe2LeftTo(1, 4, "Swap");
    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(1), original[1]) << "frame Start is neither read nor written";
    EXPECT_EQ(frame(4), host().swapPicture());
    EXPECT_EQ(frame(5), original[5]);
    // W = 100, Span 3: the left edge of the source stands at 67, 33, 0.
    EXPECT_EQ(firstSwapColumn(2), 67);
    EXPECT_EQ(firstSwapColumn(3), 33);
    EXPECT_EQ(firstSwapColumn(4), 0);
    EXPECT_EQ(calls("Van_GotoFrame"),
              (std::vector<std::string>{"Van_GotoFrame(2)", "Van_GotoFrame(3)", "Van_GotoFrame(4)"}));
}

TEST_F(WipeRun, RatioRoundsHalfToEven) {
    load(3, 5, 2);
    Wipe2LeftTo(0, 2, "Swap");
    // W = 5 at the middle frame: round(5 - 2.5) = round(2.5) = 2.
    EXPECT_EQ(firstSwapColumn(1), 2);
}

TEST_F(WipeRun, FromStartsAllSourceAndEndsAllAnimation) {
    load(5, 100, 10);
    Wipe2LeftFrom(0, 3, "Swap");
    EXPECT_EQ(frame(0), host().swapPicture());
    EXPECT_EQ(frame(3), original[3]);
    EXPECT_EQ(frame(4), original[4]);
    // The animation comes back from the right: its left edge at round(2/3*100)=67, then 33.
    EXPECT_EQ(frame(1).r.at(66, 0), 0x50);
    EXPECT_EQ(frame(1).r.at(67, 0), original[1].r.at(67, 0));
    EXPECT_EQ(frame(2).r.at(32, 0), 0x50);
    EXPECT_EQ(frame(2).r.at(33, 0), original[2].r.at(33, 0));
}

TEST_F(WipeRun, ToTraceFollowsTheRunBracket) {
    load(4, 7, 3);
    Wipe2LeftTo(1, 3, "Swap");
    const std::vector<std::string> expected = {"Van_BufferHeight()",
                                               "Van_BufferWidth()",
                                               "Van_GetSwapRBuffer()",
                                               "Van_GetSwapGBuffer()",
                                               "Van_GetSwapBBuffer()",
                                               "Van_GetTotalFrames()",
                                               "Van_GetCurrentFrame()",
                                               "Van_Lock()",
                                               "Van_ChangePointer(11)",
                                               "Van_GotoFrame(2)",
                                               "Van_GetRBuffer()",
                                               "Van_GetGBuffer()",
                                               "Van_GetBBuffer()",
                                               "Van_SetRbuffer(plane(7,3))",
                                               "Van_SetGbuffer(plane(7,3))",
                                               "Van_SetBbuffer(plane(7,3))",
                                               "van_status(66.66666666666666)",
                                               "Van_GotoFrame(3)",
                                               "Van_GetRBuffer()",
                                               "Van_GetGBuffer()",
                                               "Van_GetBBuffer()",
                                               "Van_SetRbuffer(plane(7,3))",
                                               "Van_SetGbuffer(plane(7,3))",
                                               "Van_SetBbuffer(plane(7,3))",
                                               "van_status(100)",
                                               "van_StatusClose()",
                                               "Van_RestorePointer()",
                                               "Van_Unlock()"};
    EXPECT_EQ(trace, expected);
    EXPECT_FALSE(host().locked());
}

TEST_F(WipeRun, FromWithPerFrameSourceFetchesTheFrameTwiceAndReportsProgressFromZero) {
    load(3, 4, 4);
    Wipe2LeftFrom(0, 2, "Negative");
    const auto gets = calls("Van_GetRBuffer");
    EXPECT_EQ(gets.size(), 6u) << "M and the copy for the source, for each of three frames";
    EXPECT_EQ(calls("van_status"),
              (std::vector<std::string>{"van_status(0)", "van_status(50)", "van_status(100)"}));
    // Frame 0 is the negative of itself.
    EXPECT_EQ(frame(0).r.at(1, 1), 255 - original[0].r.at(1, 1));
}

TEST_F(WipeRun, PrimaryColourIsFilledOnceAndTheSwapIsLeftAlone) {
    load(4, 8, 6);
    host().setPrimaryPacked(host::packColor(200, 10, 30));
    const Picture swapBefore = host().swapPicture();
    Wipe2LeftTo(0, 3, "Primary Color");
    EXPECT_EQ(calls("Van_getPrimaryColor").size(), 1u);
    EXPECT_EQ(frame(3), Picture::filled(8, 6, host::packColor(200, 10, 30)));
    EXPECT_EQ(host().swapPicture(), swapBefore);
}

TEST_F(WipeRun, ChannelSourcesKeepTheNamedChannels) {
    load(3, 4, 4);
    Wipe2LeftTo(0, 2, "Red & Blue Channels");
    const Picture& last = frame(2);
    EXPECT_EQ(last.r, original[2].r);
    EXPECT_EQ(last.b, original[2].b);
    EXPECT_TRUE(std::all_of(last.g.data(), last.g.data() + last.g.size(), [](auto v) { return v == 0; }));
}

TEST_F(WipeRun, SpanZeroIsReportedNotACrash) {
    load(3, 4, 4);
    // Called directly with one frame: the top wipe mixes at Start, and its ratio divides by zero.
    EXPECT_THROW(transitions::Wipe2TopTo(1, 1, "Swap"), std::domain_error);
    EXPECT_THROW(transitions::Wipe2TopFrom(1, 1, "Swap"), std::domain_error);
    // The others make no call at Start and so run nothing.
    Wipe2LeftFrom(1, 1, "Swap");
    EXPECT_EQ(frame(1), host().swapPicture());
}

} // namespace
} // namespace kirrel::test
