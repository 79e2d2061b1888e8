// Saving into a slot and loading from it: the bytes on disk, the host's calls in their order, and
// what the host holds afterwards.

#include "stored/SlotStore.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"
#include "stored/Thumbnail.h"

#include <QFile>

namespace kirrel::test {
namespace {

using stored::LoadAnimFromSlot;
using stored::SaveAnimToSlot;

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

        // A single frame gives 6 + 3 x (W+1) x (H+1) bytes.
        EXPECT_EQ(slotFile(2), slotBytes(frames, pictures));
        EXPECT_EQ(slotFile(2).size(), 6u + frames * 3u * 6u * 4u);
        std::vector<std::string> expected = {
            "Van_GetTotalFrames()",  "Van_GetCurrentFrame()", "Van_GetTempDir()",
            "Van_BufferHeight()",    "Van_BufferWidth()",     "Van_Lock()",
            "Van_ChangePointer(11)", "Van_GotoFrame(0)",      "Van_GetRBuffer()",
            "Van_GetGBuffer()",      "Van_GetBBuffer()"};
        for (int i = 0; i < frames; ++i)
            for (const char* c : {"R", "G", "B"})
                expected.push_back("Van_Get" + std::string(c) + "Frame(" + std::to_string(i) + ")");
        for (const char* c :
             {"Van_GotoFrame(0)", "Van_SetProgress(0)", "Van_RestorePointer()", "Van_Unlock()"})
            expected.push_back(c);
        EXPECT_EQ(trace, expected);
        EXPECT_EQ(host().currentFrame(), 0);
        EXPECT_FALSE(host().locked());
        const QImage thumb = stored::loadThumbnail(stored::slotThumbPath(tempDir(), 2));
        EXPECT_EQ(thumb.size(), QSize(33, 25));
    }
}

TEST_F(SlotStore, ShorterSaveLeavesTheOldTailAndReadersStopAtTheHeader) {
    const auto longer = patternFrames(4, 6, 4, 9);
    host().loadAnimation(longer);
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
    ASSERT_EQ(host().totalFrames(), 2);
    EXPECT_EQ(host().framePicture(0), shorter[0]);
    EXPECT_EQ(host().framePicture(1), shorter[1]);
}

TEST_F(SlotStore, SaveWithoutAnimationIsRefusedAndTouchesNoFile) {
    host().loadStill(patternPicture(4, 4, 0));
    SaveAnimToSlot(0);
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_GetTotalFrames()",
                                               "Van_MessageBox(\"No Animation in memory!\")"}));
    EXPECT_FALSE(QFile::exists(QString::fromStdString(slotPath(0))));
}

TEST_F(SlotStore, LoadRebuildsTheStoredAnimationAtItsOwnSizeAndLeavesTheSlotAsItWas) {
    const auto pictures = patternFrames(2, 3, 2, 50);
    writeFile(QString::fromStdString(slotPath(3)), slotBytes(2, pictures));
    host().loadAnimation(patternFrames(5, 8, 8, 0), 4);
    trace.clear();
    int resets = 0;
    LoadAnimFromSlot(3, [&] {
        ++resets;
        trace.push_back("ResetSlots");
    });

    std::vector<std::string> expected = {
        "Van_GetTotalFrames()",  "Van_GetCurrentFrame()", "Van_GetTempDir()",
        "Van_BufferHeight()",    "Van_BufferWidth()",     "Van_Lock()",
        "Van_ChangePointer(11)", "Van_NewBuffer(3, 2)",   "Van_CreateAnimAdv(2, 2)"};
    for (int i = 0; i < 2; ++i) {
        expected.push_back("Van_GotoFrame(" + std::to_string(i) + ")");
        for (const char* c :
             {"Van_GetRBuffer()", "Van_GetGBuffer()", "Van_GetBBuffer()", "Van_SetRbuffer(plane(3,2))",
              "Van_SetGbuffer(plane(3,2))", "Van_SetBbuffer(plane(3,2))"})
            expected.push_back(c);
    }
    for (const char* c :
         {"Van_GotoFrame(0)", "ResetSlots", "Van_SetProgress(0)", "Van_RestorePointer()", "Van_Unlock()"})
        expected.push_back(c);
    EXPECT_EQ(trace, expected);
    EXPECT_EQ(resets, 1);
    ASSERT_EQ(host().totalFrames(), 2);
    EXPECT_EQ(host().bufferWidth(), 3);
    EXPECT_EQ(host().framePicture(0), pictures[0]);
    EXPECT_EQ(host().framePicture(1), pictures[1]);
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(slotFile(3), slotBytes(2, pictures)); // loading is not a move
}

TEST_F(SlotStore, LoadOfAnEmptySlotChangesNothingAndSaysNothing) {
    host().loadAnimation(patternFrames(3, 4, 4), 2);
    // Without the blank it is another file, so slot 3 is empty.
    writeFile(QString::fromStdString(tempDir() + "/AnimSlot3.dat"), slotBytes(1, patternFrames(1, 4, 4, 7)));
    EXPECT_EQ(slotPath(3), tempDir() + "/AnimSlot 3.dat");
    const auto before = HostSnapshot::of(host());
    trace.clear();
    LoadAnimFromSlot(3);
    EXPECT_EQ(trace, (std::vector<std::string>{
                         "Van_GetTotalFrames()", "Van_GetCurrentFrame()", "Van_GetTempDir()",
                         "Van_BufferHeight()", "Van_BufferWidth()", "Van_Lock()", "Van_ChangePointer(11)",
                         "Van_GotoFrame(0)", "Van_SetProgress(0)", "Van_RestorePointer()", "Van_Unlock()"}));
    auto expected = before;
    expected.current = 0;
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_TRUE(host().dialogs().empty());
}

} // namespace
} // namespace kirrel::test
