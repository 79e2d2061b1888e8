// Whole-animation undo through the three undo files.

#include "stored/AnimUndo.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"

#include <QFile>

namespace kirrel::test {
namespace {

using stored::QuickRestore;
using stored::QuickSave;

class Undo : public HostTest {
  protected:
    QString undoFile(const char* name) const { return QString::fromStdString(tempDir() + name); }

    // An animation with its own alpha and swap picture.
    void loadScene(int frames, int w, int h, int seed, int current = 0) {
        host().loadAnimation(patternFrames(frames, w, h, seed), current);
        host().setAlpha(patternPicture(w, h, seed + 1).g);
        host().loadSwap(patternPicture(w, h, seed + 2));
    }
};

std::vector<std::string> frameReads(int frames) {
    std::vector<std::string> out;
    for (int i = 0; i < frames; ++i)
        for (const char* c : {"R", "G", "B"})
            out.push_back("Van_Get" + std::string(c) + "Frame(" + std::to_string(i) + ")");
    return out;
}

TEST_F(Undo, SaveCommitsTheMainBufferWritesThreeFilesAndStaysOnItsFrame) {
    loadScene(2, 4, 3, 20, 1);
    const auto before = HostSnapshot::of(host());
    trace.clear();
    QuickSave();

    std::vector<std::string> expected = {"Van_GetCurrentFrame()",
                                         "Van_GetTotalFrames()",
                                         "Van_GetTempDir()",
                                         "Van_BufferHeight()",
                                         "Van_BufferWidth()",
                                         "Van_Lock()",
                                         "Van_ChangePointer(11)",
                                         "Van_GetCurrentFrame()",
                                         "Van_GetRBuffer()",
                                         "Van_GetGBuffer()",
                                         "Van_GetBBuffer()",
                                         "Van_SetRFrame(plane(4,3), 1)",
                                         "Van_SetGFrame(plane(4,3), 1)",
                                         "Van_SetBFrame(plane(4,3), 1)"};
    for (const auto& c : frameReads(2))
        expected.push_back(c);
    for (const char* c :
         {"Van_GetTempDir()", "Van_BufferHeight()", "Van_BufferWidth()", "Van_GetABuffer()",
          "Van_GetTempDir()", "Van_BufferHeight()", "Van_BufferWidth()", "Van_GetSwapRBuffer()",
          "Van_GetSwapGBuffer()", "Van_GetSwapBBuffer()", "Van_GotoFrame(1)", "Van_GetTotalFrames()",
          "Van_ShowScrub(1, 2)", "Van_SetProgress(0)", "Van_RestorePointer()", "Van_Unlock()"})
        expected.push_back(c);
    EXPECT_EQ(trace, expected);

    EXPECT_EQ(readFile(undoFile(stored::kAnimUndoName)), slotBytes(2, before.pictures));
    EXPECT_EQ(readFile(undoFile(stored::kAlphaUndoName)), le16(4) + le16(3) + bytesOf(before.alpha));
    EXPECT_EQ(readFile(undoFile(stored::kSwapUndoName)), le16(4) + le16(3) + bytesOf(before.swap));
    EXPECT_EQ(HostSnapshot::of(host()), before);
    EXPECT_FALSE(host().locked());
}

TEST_F(Undo, RestoreBringsBackFrameCountSizeAlphaAndSwapAndEndsOnFrameZero) {
    loadScene(5, 40, 30, 1, 3);
    const auto saved = HostSnapshot::of(host());
    QuickSave();

    loadScene(9, 60, 20, 90, 7); // grown, resized, new alpha and swap
    trace.clear();
    QuickRestore();

    auto expected = saved;
    expected.current = 0;
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_EQ(calls("Van_NewBuffer"), std::vector<std::string>{"Van_NewBuffer(40, 30)"});
    EXPECT_EQ(calls("Van_CreateAnimAdv"), std::vector<std::string>{"Van_CreateAnimAdv(5, 2)"});
    const std::vector<std::string> tail(trace.end() - 15, trace.end());
    EXPECT_EQ(
        tail,
        (std::vector<std::string>{
            "Van_GetTempDir()", "Van_BufferWidth()", "Van_BufferHeight()", "Van_SetAbuffer(plane(40,30))",
            "Van_GetTempDir()", "Van_BufferWidth()", "Van_BufferHeight()", "Van_SetSwapRBuffer(plane(40,30))",
            "Van_SetSwapGBuffer(plane(40,30))", "Van_SetSwapBBuffer(plane(40,30))", "Van_GotoFrame(0)",
            "Van_Refresh()", "Van_SetProgress(0)", "Van_RestorePointer()", "Van_Unlock()"}));

    // The files are not used up: Undo gives the same state every time.
    loadScene(2, 8, 8, 5);
    QuickRestore();
    EXPECT_EQ(HostSnapshot::of(host()), expected);
}

TEST_F(Undo, AStillPictureIsSavedAsHeaderZeroAndOneSetOfPlanes) {
    const host::Picture still = patternPicture(6, 5, 44);
    host().loadStill(still);
    QuickSave();
    EXPECT_EQ(readFile(undoFile(stored::kAnimUndoName)), le16(0) + le16(6) + le16(5) + bytesOf(still));
    EXPECT_TRUE(calls("Van_ShowScrub").empty());

    host().loadAnimation(patternFrames(3, 6, 5, 1));
    trace.clear();
    QuickRestore();
    EXPECT_EQ(host().totalFrames(), 0);
    EXPECT_EQ(host().mainPicture(), still);
    const std::vector<std::string> rebuild(trace.begin() + 7, trace.begin() + 15);
    EXPECT_EQ(rebuild,
              (std::vector<std::string>{"Van_NewBuffer(6, 5)", "Van_CreateAnimAdv(0, 2)", "Van_GetRBuffer()",
                                        "Van_GetGBuffer()", "Van_GetBBuffer()", "Van_SetRbuffer(plane(6,5))",
                                        "Van_SetGbuffer(plane(6,5))", "Van_SetBbuffer(plane(6,5))"}));
}

TEST_F(Undo, AlphaOrSwapOfAnotherSizeIsDroppedSilently) {
    loadScene(2, 10, 10, 3);
    QuickSave();
    QFile::remove(undoFile(stored::kAnimUndoName));
    loadScene(4, 12, 9, 70, 2);
    const auto before = HostSnapshot::of(host());
    trace.clear();
    QuickRestore();
    auto expected = before;
    expected.current = 0;
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_TRUE(calls("Van_SetAbuffer").empty());
    EXPECT_TRUE(calls("Van_SetSwapRBuffer").empty());
    EXPECT_TRUE(calls("Van_NewBuffer").empty());
    EXPECT_TRUE(host().dialogs().empty());
}

TEST_F(Undo, WithNoFilesUndoOnlyMovesToFrameZero) {
    loadScene(3, 5, 5, 8, 2);
    trace.clear();
    QuickRestore();
    EXPECT_EQ(trace, (std::vector<std::string>{
                         "Van_GetTotalFrames()", "Van_GetCurrentFrame()", "Van_GetTempDir()",
                         "Van_BufferHeight()", "Van_BufferWidth()", "Van_Lock()", "Van_ChangePointer(11)",
                         "Van_GetTempDir()", "Van_GetTempDir()", "Van_GotoFrame(0)", "Van_Refresh()",
                         "Van_SetProgress(0)", "Van_RestorePointer()", "Van_Unlock()"}));
    EXPECT_EQ(host().currentFrame(), 0);
}

TEST_F(Undo, ASaveOverALongerUndoLeavesTheTailAndTheHeaderRules) {
    loadScene(6, 7, 7, 2);
    QuickSave();
    const std::string longer = readFile(undoFile(stored::kAnimUndoName));
    loadScene(2, 7, 7, 60);
    const auto saved = HostSnapshot::of(host());
    QuickSave();
    const std::string shorter = readFile(undoFile(stored::kAnimUndoName));
    ASSERT_EQ(shorter.size(), longer.size());
    EXPECT_EQ(shorter.substr(slotBytes(2, saved.pictures).size()),
              longer.substr(slotBytes(2, saved.pictures).size()));

    loadScene(4, 3, 3, 9);
    QuickRestore();
    EXPECT_EQ(host().totalFrames(), 2);
    EXPECT_EQ(HostSnapshot::of(host()).pictures, saved.pictures);
}

} // namespace
} // namespace kirrel::test
