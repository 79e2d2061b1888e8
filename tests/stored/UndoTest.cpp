// Whole-animation undo through the three undo files.

#include "stored/AnimUndo.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"

#include <QFile>

namespace kirrel::test {
namespace {

using stored::QuickRestore;
using stored::QuickSave;

constexpr const char* kRestoreOpen =
    "Van_GetTotalFrames(); Van_GetCurrentFrame(); Van_GetTempDir();"
    "Van_BufferHeight(); Van_BufferWidth(); Van_Lock(); Van_ChangePointer(11);";
constexpr const char* kRestoreClose =
    "Van_GotoFrame(0); Van_Refresh(); Van_SetProgress(0); Van_RestorePointer(); Van_Unlock()";

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

TEST_F(Undo, SaveCommitsTheMainBufferWritesThreeFilesAndStaysOnItsFrame) {
    loadScene(2, 4, 3, 20, 1);
    const auto before = HostSnapshot::of(host());
    trace.clear();
    QuickSave();

    EXPECT_EQ(trace,
              seq(std::string("Van_GetCurrentFrame(); Van_GetTotalFrames(); Van_GetTempDir();"
                              "Van_BufferHeight(); Van_BufferWidth(); Van_Lock(); Van_ChangePointer(11);"
                              "Van_GetCurrentFrame(); Van_GetRBuffer(); Van_GetGBuffer(); Van_GetBBuffer();"
                              "Van_SetRFrame(plane(4,3), 1); Van_SetGFrame(plane(4,3), 1);"
                              "Van_SetBFrame(plane(4,3), 1);") +
                  frameReads(2) +
                  "Van_GetTempDir(); Van_BufferHeight(); Van_BufferWidth(); Van_GetABuffer();"
                  "Van_GetTempDir(); Van_BufferHeight(); Van_BufferWidth(); Van_GetSwapRBuffer();"
                  "Van_GetSwapGBuffer(); Van_GetSwapBBuffer(); Van_GotoFrame(1); Van_GetTotalFrames();"
                  "Van_ShowScrub(1, 2); Van_SetProgress(0); Van_RestorePointer(); Van_Unlock()"));
    EXPECT_EQ(readFile(undoFile(stored::kAnimUndoName)), slotBytes(2, before.pictures));
    EXPECT_EQ(readFile(undoFile(stored::kAlphaUndoName)), le16(4) + le16(3) + bytesOf(before.alpha));
    EXPECT_EQ(readFile(undoFile(stored::kSwapUndoName)), le16(4) + le16(3) + bytesOf(before.swap));
    EXPECT_EQ(HostSnapshot::of(host()), before);
    EXPECT_FALSE(host().locked());
}

TEST_F(Undo, RestoreBringsBackFrameCountSizeAlphaAndSwapAndEndsOnFrameZero) {
    loadScene(5, 40, 30, 1, 3);
    auto expected = HostSnapshot::of(host());
    expected.current = 0;
    QuickSave();

    loadScene(9, 60, 20, 90, 7); // grown, resized, new alpha and swap
    trace.clear();
    QuickRestore();
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_EQ(calls("Van_NewBuffer"), seq("Van_NewBuffer(40, 30)"));
    EXPECT_EQ(calls("Van_CreateAnimAdv"), seq("Van_CreateAnimAdv(5, 2)"));
    const std::vector<std::string> tail(trace.end() - 15, trace.end());
    EXPECT_EQ(tail, seq(std::string("Van_GetTempDir(); Van_BufferWidth(); Van_BufferHeight();"
                                    "Van_SetAbuffer(plane(40,30)); Van_GetTempDir(); Van_BufferWidth();"
                                    "Van_BufferHeight(); Van_SetSwapRBuffer(plane(40,30));"
                                    "Van_SetSwapGBuffer(plane(40,30)); Van_SetSwapBBuffer(plane(40,30));") +
                        kRestoreClose));

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
    EXPECT_EQ(std::vector<std::string>(trace.begin() + 7, trace.begin() + 15),
              seq("Van_NewBuffer(6, 5); Van_CreateAnimAdv(0, 2); Van_GetRBuffer(); Van_GetGBuffer();"
                  "Van_GetBBuffer(); Van_SetRbuffer(plane(6,5)); Van_SetGbuffer(plane(6,5));"
                  "Van_SetBbuffer(plane(6,5))"));
}

TEST_F(Undo, WithoutTheAnimationFileAnAlphaOrSwapOfAnotherSizeChangesNothing) {
    loadScene(2, 10, 10, 3);
    QuickSave();
    QFile::remove(undoFile(stored::kAnimUndoName));
    loadScene(4, 12, 9, 70, 2);
    auto expected = HostSnapshot::of(host());
    expected.current = 0; // Undo still moves to frame 0
    trace.clear();
    QuickRestore();
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_EQ(trace, seq(std::string(kRestoreOpen) +
                         "Van_GetTempDir(); Van_BufferWidth(); Van_BufferHeight(); Van_GetTempDir();"
                         "Van_BufferWidth(); Van_BufferHeight();" +
                         kRestoreClose));
    EXPECT_TRUE(host().dialogs().empty());
}

} // namespace
} // namespace kirrel::test
