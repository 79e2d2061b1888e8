// Saving into a slot and loading from it: the bytes on disk, the host's calls in their order, and
// what the host holds afterwards.

#include "stored/SlotStore.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"
#include "stored/Thumbnail.h"

namespace kirrel::test {
namespace {

using stored::LoadAnimFromSlot;
using stored::SaveAnimToSlot;

constexpr const char* kOpen =
    "Van_GetTotalFrames(); Van_GetCurrentFrame(); Van_GetTempDir(); Van_BufferHeight();"
    "Van_BufferWidth(); Van_Lock(); Van_ChangePointer(11);";
constexpr const char* kClose = "Van_SetProgress(0); Van_RestorePointer(); Van_Unlock()";

class SlotStore : public HostTest {
  protected:
    std::string slotPath(int slot) const { return stored::slotDataPath(tempDir(), slot); }
    std::string slotFile(int slot) const { return readFile(QString::fromStdString(slotPath(slot))); }
};

TEST_F(SlotStore, SaveWritesTheSlotLayoutByteForByteAndEndsOnFrameZero) {
    for (int frames : {1, 3}) {
        SCOPED_TRACE(frames);
        const auto pictures = patternFrames(frames, 5, 3, frames);
        host().loadAnimation(pictures, frames - 1);
        trace.clear();
        SaveAnimToSlot(2);

        EXPECT_EQ(slotFile(2), slotBytes(frames, pictures));
        EXPECT_EQ(slotFile(2).size(), 6u + frames * 3u * 6u * 4u);
        EXPECT_EQ(trace, seq(std::string(kOpen) +
                             "Van_GotoFrame(0); Van_GetRBuffer(); Van_GetGBuffer(); Van_GetBBuffer();" +
                             frameReads(frames) + "Van_GotoFrame(0);" + kClose));
        EXPECT_EQ(host().currentFrame(), 0);
        EXPECT_FALSE(host().locked());
        EXPECT_EQ(stored::loadThumbnail(stored::slotThumbPath(tempDir(), 2)).size(), QSize(33, 25));
    }
}

TEST_F(SlotStore, ShorterSaveLeavesTheOldTailAndReadersStopAtTheHeader) {
    host().loadAnimation(patternFrames(4, 6, 4, 9));
    SaveAnimToSlot(1);
    const std::string before = slotFile(1);

    const auto shorter = patternFrames(2, 6, 4, 100);
    host().loadAnimation(shorter);
    SaveAnimToSlot(1);
    const std::string after = slotFile(1);
    const std::string fresh = slotBytes(2, shorter);
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after.substr(0, fresh.size()), fresh);
    EXPECT_EQ(after.substr(fresh.size()), before.substr(fresh.size()));

    host().loadAnimation(patternFrames(7, 2, 2, 1));
    LoadAnimFromSlot(1);
    EXPECT_EQ(HostSnapshot::of(host()).pictures, shorter);
}

TEST_F(SlotStore, LoadRebuildsTheStoredAnimationAtItsOwnSizeAndLeavesTheSlotAsItWas) {
    const auto pictures = patternFrames(2, 3, 2, 50);
    writeFile(QString::fromStdString(slotPath(3)), slotBytes(2, pictures));
    host().loadAnimation(patternFrames(5, 8, 8, 0), 4);
    trace.clear();
    LoadAnimFromSlot(3, [&] { trace.push_back("ResetSlots"); });

    std::string frames;
    for (int i = 0; i < 2; ++i)
        frames += "Van_GotoFrame(" + std::to_string(i) +
                  "); Van_GetRBuffer(); Van_GetGBuffer(); Van_GetBBuffer(); Van_SetRbuffer(plane(3,2));"
                  "Van_SetGbuffer(plane(3,2)); Van_SetBbuffer(plane(3,2));";
    EXPECT_EQ(trace, seq(std::string(kOpen) + "Van_NewBuffer(3, 2); Van_CreateAnimAdv(2, 2);" + frames +
                         "Van_GotoFrame(0); ResetSlots;" + kClose));
    EXPECT_EQ(HostSnapshot::of(host()).pictures, pictures);
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(slotFile(3), slotBytes(2, pictures)); // loading is not a move
}

TEST_F(SlotStore, LoadOfAnEmptySlotChangesNothingAndSaysNothing) {
    host().loadAnimation(patternFrames(3, 4, 4), 2);
    // Without the blank it is another file, so slot 3 is empty.
    writeFile(QString::fromStdString(tempDir() + "/AnimSlot3.dat"), slotBytes(1, patternFrames(1, 4, 4, 7)));
    EXPECT_EQ(slotPath(3), tempDir() + "/AnimSlot 3.dat");
    auto expected = HostSnapshot::of(host());
    expected.current = 0;
    trace.clear();
    LoadAnimFromSlot(3);
    EXPECT_EQ(trace, seq(std::string(kOpen) + "Van_GotoFrame(0);" + kClose));
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_TRUE(host().dialogs().empty());
}

} // namespace
} // namespace kirrel::test
