// The plain run shapes proved on the wipes, fades and dissolves: the host call order, progress, the
// level each frame gets, the sources that work on the frame alone, the dissolve's halves, and the
// stored run shapes (the splice): result lengths, the per-member differences and the refusal of an
// empty slot.
// Which frames a wipe changes and by how much is the wipe reference's business.

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "stored/StoredFrame.h"
#include "transitions/Dissolves.h"
#include "transitions/Fades.h"
#include "transitions/TransitionSupport.h"
#include "transitions/Wipes.h"

#include <algorithm>
#include <functional>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

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

TEST_F(WipeRun, SpanZeroIsReportedNotACrash) {
    load(3, 4, 4);
    // Called directly with one frame: the top wipe mixes at Start, and its ratio divides by zero.
    EXPECT_THROW(Wipe2TopTo(1, 1, "Swap"), std::domain_error);
    EXPECT_THROW(Wipe2TopFrom(1, 1, "Swap"), std::domain_error);
    // The others make no call at Start and so run nothing.
    Wipe2LeftFrom(1, 1, "Swap");
    EXPECT_EQ(frame(1), host().swapPicture());
}

// Frame f mixed with the swap grey at pct (the share of the frame that stays), as the library does it.
Picture mixedWithSwap(const Picture& frame, const Picture& swap, int pct) {
    Picture p = frame;
    krl::MixBuffers(p.r, p.g, p.b, swap.r, swap.g, swap.b, pct, p.width(), p.height());
    return p;
}

using FadeRun = TransitionTest;

// Each fade frame by frame, either way: Start fetched and written back as it was (To) or all source
// (From), the middle at fifty, the end whole; a source of the frame alone gives the effect its share.
// No progress is shown and the source is never changed.
TEST_F(FadeRun, EveryFrameGetsItsShareEitherWay) {
    using Made = std::function<Picture(Picture frame, const Picture& swap)>;
    const Made same = [](Picture f, const Picture&) { return f; };
    const Made swap = [](Picture, const Picture& s) { return s; };
    const Made half = [](Picture f, const Picture& s) { return mixedWithSwap(f, s, 50); };
    const Made negative = [](Picture f, const Picture&) { return krl::Negative(f.r, f.g, f.b, 7, 5), f; };
    const Made bright = [](Picture f, const Picture&) {
        return krl::IncreaseBrightness(f.r, f.g, f.b, 50, 6, 4), f;
    };
    const Made dark = [](Picture f, const Picture&) {
        return krl::IncreaseDarkness(f.r, f.g, f.b, 100, 6, 4), f;
    };
    const Made redOnly = [](Picture f, const Picture&) {
        return krl::MixBufferChannels(f.r, f.g, f.b, 0, 1, 6, 4), f;
    };
    struct Row {
        void (*run)(int, int, const std::string&);
        const char* source;
        int w, h, S;
        std::vector<Made> frames; // frame by frame from 0, to End; null: unchecked
    };
    for (const Row& r : {Row{FadeTo, "Swap", 9, 5, 1, {same, same, half, swap}},
                         Row{FadeFrom, "Swap", 9, 5, 0, {swap, half, same}},
                         Row{FadeTo, "Negative", 6, 4, 0, {same, nullptr, negative}},
                         Row{FadeTo, "Brightness", 6, 4, 0, {same, bright, nullptr}},
                         Row{FadeFrom, "Darkness", 6, 4, 0, {dark, nullptr, same}},
                         Row{FadeTo, "Red Channel", 6, 4, 0, {same, nullptr, redOnly}}}) {
        const int n = static_cast<int>(r.frames.size());
        load(n, r.w, r.h);
        r.run(r.S, n - 1, r.source);
        for (int f = 0; f < n; ++f) {
            if (r.frames[f]) {
                EXPECT_EQ(frame(f), r.frames[f](original[f], host().swapPicture())) << r.source << " " << f;
            }
        }
        EXPECT_TRUE(calls("van_status").empty()) << "a fade shows no progress";
        EXPECT_EQ(calls("Van_SetRbuffer").size(), static_cast<std::size_t>(n - r.S));
        EXPECT_EQ(host().swapPicture(), Picture::filled(r.w, r.h, 0x505050));
        EXPECT_FALSE(host().locked());
    }
    load(3, 6, 4);
    FadeTo(0, 2, "White Noise (TV Snow)");
    EXPECT_NE(frame(2), original[2]) << "the snow shows";
}

class DissolveRun : public TransitionTest {
  protected:
    // Pixels of frame f (the picture proper) that hold the swap grey.
    int swapPixels(int f) const {
        int n = 0;
        for (int y = 0; y < frame(f).height(); ++y)
            for (int x = 0; x < frame(f).width(); ++x)
                n += isSwap(f, x, y);
        return n;
    }
    bool isSwap(int f, int x, int y) const {
        const Picture& p = frame(f);
        return p.r.at(x, y) == 0x50 && p.g.at(x, y) == 0x50 && p.b.at(x, y) == 0x50;
    }
};

TEST_F(DissolveRun, SpanTwoUsesHalfThenAllAndFromRunsBack) {
    load(3, 40, 30);
    DissolveTo(0, 2, "Swap");
    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(2), host().swapPicture()) << "level 256 takes every pixel";
    EXPECT_GT(swapPixels(1), 40 * 30 / 4);
    EXPECT_LT(swapPixels(1), 40 * 30 * 3 / 4) << "level 128 of noise spread over 0..255";
    EXPECT_EQ(calls("Van_Refresh").size(), 1u);

    load(4, 20, 10);
    DissolveFrom(0, 3, "Swap");
    EXPECT_EQ(frame(0), host().swapPicture());
    EXPECT_EQ(frame(3), original[3]);
    EXPECT_GT(swapPixels(1), swapPixels(2));
}

// The primary colour as a source: the colour is read once, and the run ends on it without touching
// the swap. The wipe fills planes of its own once, the fade mixes the colour without any, and the
// dissolve paints it over a copy of the swap planes.
struct ColourRun {
    const char* name;
    void (*run)(int, int, const std::string&);
    std::size_t swapReads;
};

class PrimaryColourSource : public TransitionTest, public testing::WithParamInterface<ColourRun> {};

TEST_P(PrimaryColourSource, EndsOnTheColourAndLeavesTheSwapAlone) {
    load(3, 6, 4);
    host().setPrimaryColor(200, 10, 30);
    const Picture swapBefore = host().swapPicture();
    GetParam().run(0, 2, "Primary Color");
    EXPECT_EQ(frame(2), Picture::filled(6, 4, host::packColor(200, 10, 30)));
    EXPECT_EQ(host().swapPicture(), swapBefore);
    EXPECT_EQ(calls("Van_getPrimaryColor").size(), 1u);
    EXPECT_EQ(calls("Van_GetSwapRBuffer").size(), GetParam().swapReads);
}

INSTANTIATE_TEST_SUITE_P(Runs, PrimaryColourSource,
                         testing::Values(ColourRun{"Wipe", Wipe2LeftTo, 0}, ColourRun{"Fade", FadeTo, 0},
                                         ColourRun{"Dissolve", DissolveTo, 1}),
                         [](const auto& i) { return std::string(i.param.name); });

using StoredSplice = TransitionTest;

TEST_F(StoredSplice, ToStoredInsertsTheRestWithoutProgressAndASlotThatJustFitsInsertsNothing) {
    load(6, 100, 10);
    writeSlot(1, 7, 100, 10);
    Wipe2LeftToStored(2, 1);
    EXPECT_EQ(host().totalFrames(), 2 + 7) << "Start + SlotFrames";
    EXPECT_EQ(calls("Van_InsertFrame"), seq("Van_InsertFrame(5); Van_InsertFrame(6); Van_InsertFrame(7)"));
    EXPECT_FALSE(host().locked());
    EXPECT_TRUE(calls("van_status").empty()) << "stored runs show no progress";

    // A slot that just covers the tail (To), or whose frames all meet the animation (From, Extra 0).
    load(5, 8, 6);
    const auto tail = writeSlot(0, 4, 8, 6);
    Wipe2RightToStored(1, 0);
    EXPECT_EQ(host().totalFrames(), 5);
    EXPECT_EQ(frame(4), tail[3]);
    load(4, 8, 6);
    const auto front = writeSlot(3, 3, 8, 6);
    Wipe2BottomFromStored(2, 3);
    EXPECT_EQ(host().totalFrames(), 4);
    EXPECT_EQ(frame(0), front[0]);
    EXPECT_EQ(frame(2), original[2]);
    EXPECT_TRUE(calls("Van_InsertFrame").empty());
}

TEST_F(StoredSplice, TheTopWipesFromStoredRunSkipsItsTwoPositioningCalls) {
    // Total 4, End 2, slot 5: Extra 2, StartS 2. The other members go to StartS before each frame put
    // in front and once more before the overlap; the results, the same all the same, are the wipe
    // reference's business.
    auto positioning = [this](void (*run)(int, int)) {
        load(4, 6, 6);
        writeSlot(0, 5, 6, 6);
        run(2, 0);
        return std::count(trace.begin(), trace.end(), "Van_GotoFrame(2)");
    };
    EXPECT_EQ(positioning(Wipe2LeftFromStored) - positioning(Wipe2TopFromStored), 3)
        << "two front frames and the move before the overlap";
}

TEST_F(StoredSplice, AnEmptySlotIsRefusedBeforeAnythingChanges) {
    load(4, 6, 6);
    Wipe2LeftToStored(1, 2);
    FadeFromStored(2, 2);
    EXPECT_EQ(calls("Van_MessageBox"), seq("Van_MessageBox(\"Slot Empty\"); Van_MessageBox(\"Slot Empty\")"));
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_EQ(host().totalFrames(), 4);
    for (int f = 0; f < 4; ++f)
        EXPECT_EQ(frame(f), original[static_cast<std::size_t>(f)]);
}

// The alpha wipes, the fades and the dissolves splice as the plain wipes do (whose every frame the wipe
// reference checks): the ends of the overlap are all animation and all stored frame.
struct SpliceCase {
    const char* name;
    void (*toStored)(int, int);
    void (*fromStored)(int, int);
};

class SpliceEnds : public TransitionTest, public testing::WithParamInterface<SpliceCase> {};

TEST_P(SpliceEnds, OverlapEndsAreAllAnimationAndAllStored) {
    for (const int size : {7, 8}) { // odd and even bounds
        for (bool to : {true, false}) {
            load(6, size, size - 1);
            host().setAlpha(flatPlane(size, size - 1, 255));
            const auto slot = writeSlot(0, 5, size, size - 1);
            to ? GetParam().toStored(2, 0) : GetParam().fromStored(3, 0);
            EXPECT_EQ(host().totalFrames(), 7);
            const std::vector<std::pair<int, Picture>> ends =
                to ? std::vector<std::pair<int, Picture>>{{2, original[2]}, {5, slot[3]}, {6, slot[4]}}
                   : std::vector<std::pair<int, Picture>>{
                         {0, slot[0]}, {1, slot[1]}, {4, original[3]}, {6, original[5]}};
            for (const auto& [f, want] : ends)
                EXPECT_EQ(frame(f), want) << (to ? "To" : "From") << size << " frame " << f;
            EXPECT_FALSE(host().locked());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Members, SpliceEnds,
                         testing::Values(SpliceCase{"ARight", AWipe2RightToStored, AWipe2RightFromStored},
                                         SpliceCase{"ALeft", AWipe2LeftToStored, AWipe2LeftFromStored},
                                         SpliceCase{"ABottom", AWipe2BottomToStored, AWipe2BottomFromStored},
                                         SpliceCase{"ATop", AWipe2TopToStored, AWipe2TopFromStored},
                                         SpliceCase{"Fade", Fade2Stored, FadeFromStored},
                                         SpliceCase{"AFade", AFade2Stored, AFadeFromStored},
                                         SpliceCase{"Dissolve", Dissolve2Stored, DissolveFromStored}),
                         [](const auto& i) { return std::string(i.param.name); });

} // namespace
} // namespace kirrel::test
