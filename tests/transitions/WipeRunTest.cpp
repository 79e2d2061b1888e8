// The plain run shapes, proved on the wipes: progress, the host call order, and the sources.

#include "transitions/TransitionSupport.h"
#include "transitions/Wipes.h"

#include <algorithm>

namespace kirrel::test {
namespace {

using host::Picture;
using transitions::Wipe2LeftFrom;
using transitions::Wipe2LeftTo;

// Which frames change and by how much is the reference test's business; these are the run's own
// habits.
using WipeRun = TransitionTest;

TEST_F(WipeRun, ToTraceFollowsTheRunBracket) {
    load(4, 7, 3);
    Wipe2LeftTo(1, 3, "Swap");
    // The source is fetched before the bracket opens; each frame is read, mixed, written and counted.
    const auto expected =
        seq("Van_BufferHeight(); Van_BufferWidth(); Van_GetSwapRBuffer(); Van_GetSwapGBuffer(); "
            "Van_GetSwapBBuffer(); Van_GetTotalFrames(); Van_GetCurrentFrame(); Van_Lock(); "
            "Van_ChangePointer(11); "
            "Van_GotoFrame(2); Van_GetRBuffer(); Van_GetGBuffer(); Van_GetBBuffer(); "
            "Van_SetRbuffer(plane(7,3)); Van_SetGbuffer(plane(7,3)); Van_SetBbuffer(plane(7,3)); "
            "van_status(66.66666666666666); "
            "Van_GotoFrame(3); Van_GetRBuffer(); Van_GetGBuffer(); Van_GetBBuffer(); "
            "Van_SetRbuffer(plane(7,3)); Van_SetGbuffer(plane(7,3)); Van_SetBbuffer(plane(7,3)); "
            "van_status(100); van_StatusClose(); Van_RestorePointer(); Van_Unlock()");
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
