// The stored run shapes (the splice), proved on the wipes and the fades: result lengths, which stored
// frame meets which animation frame, slots of another size, the per-member differences, and the
// refusal of an empty slot.

#include "pixel/Mixing.h"
#include "stored/StoredFrame.h"
#include "transitions/Dissolves.h"
#include "transitions/Fades.h"
#include "transitions/TransitionSupport.h"
#include "transitions/Wipes.h"

#include <algorithm>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

class StoredSplice : public TransitionTest {};

// Which animation frame meets which stored frame, at every frame, is the wipe reference test's
// business; here are the calls around it.
TEST_F(StoredSplice, ToStoredInsertsTheRestWithoutProgressAndLetsGoOfTheLock) {
    load(6, 100, 10);
    writeSlot(1, 7, 100, 10);
    Wipe2LeftToStored(2, 1);
    EXPECT_EQ(host().totalFrames(), 2 + 7) << "Start + SlotFrames";
    EXPECT_EQ(calls("Van_InsertFrame"),
              (std::vector<std::string>{"Van_InsertFrame(5)", "Van_InsertFrame(6)", "Van_InsertFrame(7)"}));
    EXPECT_FALSE(host().locked());
    EXPECT_TRUE(calls("van_status").empty()) << "stored runs show no progress";
}

// A slot that just covers the tail (To), or whose frames all meet the animation (From, Extra 0).
TEST_F(StoredSplice, ASlotThatJustFitsInsertsNothing) {
    load(5, 8, 6);
    const auto tail = writeSlot(0, 4, 8, 6);
    Wipe2RightToStored(1, 0);
    EXPECT_EQ(host().totalFrames(), 5);
    EXPECT_EQ(frame(4), tail[3]);
    EXPECT_TRUE(calls("Van_InsertFrame").empty());
    load(4, 8, 6);
    const auto front = writeSlot(3, 3, 8, 6);
    Wipe2BottomFromStored(2, 3);
    EXPECT_EQ(host().totalFrames(), 4);
    EXPECT_EQ(frame(0), front[0]);
    EXPECT_EQ(frame(2), original[2]);
    EXPECT_TRUE(calls("Van_InsertFrame").empty());
}

TEST_F(StoredSplice, ASlotOfAnotherSizeIsResampledAndLeftAlone) {
    load(4, 20, 16);
    const std::string path = stored::slotDataPath(tempDir(), 0);
    const std::vector<Picture> slot = patternFrames(5, 9, 7, 40);
    const std::string bytes = slotBytes(5, slot);
    writeFile(QString::fromStdString(path), bytes);
    auto resized = [&](int k) {
        const Picture& s = slot[static_cast<std::size_t>(k)];
        krl::Triple out(20, 16);
        krl::ResizeBuffer(out.r, out.g, out.b, s.r, s.g, s.b, 20, 16, 9, 7);
        return out;
    };
    Wipe2TopToStored(1, 0);
    ASSERT_EQ(host().totalFrames(), 1 + 5);
    EXPECT_EQ(frame(3).r, resized(2).r) << "the last animation frame is all stored frame Overlap - 1";
    EXPECT_EQ(frame(5).g, resized(4).g);
    EXPECT_EQ(readFile(QString::fromStdString(path)), bytes);
}

TEST_F(StoredSplice, TheTopWipesFromStoredRunSkipsItsTwoPositioningCalls) {
    // Total 4, End 2, slot 5: Extra 2, StartS 2. The other members go to StartS before each frame put
    // in front and once more before the overlap.
    auto positioning = [this](void (*run)(int, int)) {
        load(4, 6, 6);
        writeSlot(0, 5, 6, 6);
        run(2, 0);
        return std::count(trace.begin(), trace.end(), "Van_GotoFrame(2)");
    };
    const auto left = positioning(Wipe2LeftFromStored);
    const auto top = positioning(Wipe2TopFromStored);
    EXPECT_EQ(left - top, 3) << "two front frames and the move before the overlap";
    // The result is the same all the same.
    const auto topResult = host().framePicture(4);
    positioning(Wipe2LeftFromStored);
    EXPECT_EQ(host().framePicture(4), topResult);
}

TEST_F(StoredSplice, AnEmptySlotIsRefusedBeforeAnythingChanges) {
    load(4, 6, 6);
    Wipe2LeftToStored(1, 2);
    FadeFromStored(2, 2);
    EXPECT_EQ(calls("Van_MessageBox"),
              (std::vector<std::string>{"Van_MessageBox(\"Slot Empty\")", "Van_MessageBox(\"Slot Empty\")"}));
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_EQ(host().totalFrames(), 4);
    for (int f = 0; f < 4; ++f)
        EXPECT_EQ(frame(f), original[static_cast<std::size_t>(f)]);
}

TEST_F(StoredSplice, AlphaStoredWipesReadTheAlphaOnceMoreBeforeTheirFrames) {
    load(5, 6, 6);
    writeSlot(0, 4, 6, 6);
    AWipe2LeftToStored(1, 0);
    // Once before the frames, then once for each frame mixed (Start + 1 .. End).
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u + 3u);
}

TEST_F(StoredSplice, PlainStoredFadesTakeNoLockAndShowTheNewLength) {
    load(4, 6, 6);
    const auto slot = writeSlot(1, 6, 6, 6);
    Fade2Stored(1, 1);
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_TRUE(calls("van_StatusClose").empty());
    EXPECT_EQ(host().totalFrames(), 7);
    EXPECT_EQ(host().scrubTotal(), 7);
    EXPECT_EQ(frame(3), slot[2]) << "the fade's last overlap frame is all stored";
    EXPECT_EQ(frame(1), original[1]);
    EXPECT_EQ(calls("Van_Refresh").size(), 1u);

    // The alpha fades keep the bracket and leave the scrubber alone.
    load(4, 6, 6);
    host().setAlpha(flatPlane(6, 6, 255));
    AFade2Stored(1, 1);
    EXPECT_EQ(calls("Van_Lock").size(), 1u);
    EXPECT_TRUE(calls("Van_ShowScrub").empty());
}

// The alpha wipes, the fades and the dissolves splice as the plain wipes do (whose every frame the wipe
// reference checks): the ends of the overlap are all animation and all stored frame.
struct SpliceCase {
    const char* name;
    void (*toStored)(int, int);
    void (*fromStored)(int, int);
};

class SpliceEnds : public StoredSplice, public testing::WithParamInterface<SpliceCase> {};

TEST_P(SpliceEnds, OverlapEndsAreAllAnimationAndAllStored) {
    for (const int size : {7, 8}) { // odd and even bounds
        load(6, size, size - 1);
        host().setAlpha(flatPlane(size, size - 1, 255));
        const auto slot = writeSlot(0, 5, size, size - 1);
        GetParam().toStored(2, 0);
        EXPECT_EQ(host().totalFrames(), 7);
        EXPECT_EQ(frame(2), original[2]);
        EXPECT_EQ(frame(5), slot[3]);
        EXPECT_EQ(frame(6), slot[4]);

        load(6, size, size - 1);
        host().setAlpha(flatPlane(size, size - 1, 255));
        writeSlot(0, 5, size, size - 1);
        GetParam().fromStored(3, 0);
        EXPECT_EQ(host().totalFrames(), 7);
        EXPECT_EQ(frame(0), slot[0]);
        EXPECT_EQ(frame(1), slot[1]);
        EXPECT_EQ(frame(4), original[3]);
        EXPECT_EQ(frame(6), original[5]);
        EXPECT_FALSE(host().locked());
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
                         [](const testing::TestParamInfo<SpliceCase>& info) {
                             return std::string(info.param.name);
                         });

} // namespace
} // namespace kirrel::test
