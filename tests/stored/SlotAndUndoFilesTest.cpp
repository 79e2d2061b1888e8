// The slot and undo files. Saving into a slot and loading from it: the bytes on disk, the host's calls
// in their order, and what the host holds afterwards; the slot as a run's second source; the slot's
// thumbnail; whole-animation undo through the three undo files. Then files that were cut short or
// carry impossible headers, and faults of the disk under the saves (a full disk, a temporary folder
// that is not a folder): the user is told once, nothing in the host changes, the lock is released,
// nothing is allocated beyond what the file holds, and a save writes its file whole or not at all.

#include "panel/EventGuard.h"
#include "pixel/Mixing.h"
#include "stored/AnimUndo.h"
#include "stored/SlotFiles.h"
#include "stored/SlotStore.h"
#include "stored/StoredFrame.h"
#include "stored/StoredSupport.h"
#include "stored/Thumbnail.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>

namespace kirrel::test {
namespace {

using stored::LoadAnimFromSlot;
using stored::SaveAnimToSlot;

constexpr const char* kClose = "Van_SetProgress(0); Van_RestorePointer(); Van_Unlock()";

using SlotStore = HostTest;

TEST_F(SlotStore, SaveWritesTheSlotLayoutByteForByteAndEndsOnFrameZero) {
    for (int frames : {1, 3}) {
        SCOPED_TRACE(frames);
        const auto pictures = patternFrames(frames, 5, 3, frames);
        host().loadAnimation(pictures, frames - 1);
        trace.clear();
        SaveAnimToSlot(2);

        EXPECT_EQ(slotFile(tempDir(), 2), slotBytes(frames, pictures));
        EXPECT_EQ(host().currentFrame(), 0);
        EXPECT_FALSE(host().locked());
        EXPECT_EQ(stored::loadThumbnail(stored::slotThumbPath(tempDir(), 2)).size(), QSize(33, 25));
    }
}

TEST_F(SlotStore, ShorterSaveLeavesTheOldTailAndReadersStopAtTheHeader) {
    host().loadAnimation(patternFrames(4, 6, 4, 9));
    SaveAnimToSlot(1);
    const std::string before = slotFile(tempDir(), 1);

    const auto shorter = patternFrames(2, 6, 4, 100);
    host().loadAnimation(shorter);
    SaveAnimToSlot(1);
    const std::string fresh = slotBytes(2, shorter);
    EXPECT_EQ(slotFile(tempDir(), 1), fresh + before.substr(fresh.size()));

    host().loadAnimation(patternFrames(7, 2, 2, 1));
    LoadAnimFromSlot(1);
    EXPECT_EQ(HostSnapshot::of(host()).pictures, shorter);
}

TEST_F(SlotStore, LoadRebuildsTheStoredAnimationAtItsOwnSizeAndLeavesTheSlotAsItWas) {
    const auto pictures = patternFrames(2, 3, 2, 50);
    putSlot(tempDir(), 3, pictures);
    host().loadAnimation(patternFrames(5, 8, 8, 0), 4);
    trace.clear();
    LoadAnimFromSlot(3, [&] { trace.push_back("ResetSlots"); });

    // The panel's rows are reset once the animation is in, before the host is released.
    const std::vector<std::string> tail(trace.end() - 5, trace.end());
    EXPECT_EQ(tail, seq(std::string("Van_GotoFrame(0); ResetSlots;") + kClose));
    EXPECT_EQ(calls("Van_CreateAnimAdv"), seq("Van_CreateAnimAdv(2, 2)"));
    EXPECT_EQ(HostSnapshot::of(host()).pictures, pictures);
    EXPECT_EQ(host().currentFrame(), 0);
    EXPECT_EQ(slotFile(tempDir(), 3), slotBytes(2, pictures)); // loading is not a move
}

TEST_F(SlotStore, LoadOfAnEmptySlotChangesNothingAndSaysNothing) {
    host().loadAnimation(patternFrames(3, 4, 4), 2);
    // Without the blank it is another file, so slot 3 is empty.
    writeFile(QString::fromStdString(tempDir() + "/AnimSlot3.dat"), slotBytes(1, patternFrames(1, 4, 4, 7)));
    EXPECT_EQ(stored::slotDataPath(tempDir(), 3), tempDir() + "/AnimSlot 3.dat");
    auto expected = HostSnapshot::of(host());
    expected.current = 0;
    trace.clear();
    LoadAnimFromSlot(3);
    EXPECT_TRUE(calls("Van_NewBuffer").empty());
    EXPECT_EQ(HostSnapshot::of(host()), expected);
    EXPECT_FALSE(host().locked());
    EXPECT_TRUE(host().dialogs().empty());
}

// The rule as the user would describe it: every point plotted in turn, x outer and y inner, so each
// pixel of the 33 x 25 box shows the last point plotted on it.
QImage plotPointByPoint(const host::Picture& p) {
    QImage box(stored::kThumbWidth, stored::kThumbHeight, QImage::Format_RGB32);
    box.fill(Qt::black);
    const int w = p.width(), h = p.height();
    for (int x = 0; x <= w; ++x)
        for (int y = 0; y <= h; ++y) {
            const long long px = w > 0 ? 1LL * x * stored::kThumbWidth / w : 0;
            const long long py = h > 0 ? 1LL * y * stored::kThumbHeight / h : 0;
            if (px < stored::kThumbWidth && py < stored::kThumbHeight)
                box.setPixel(int(px), int(py), qRgb(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)));
        }
    return box;
}

TEST(Thumbnail, PlotsPointByPointIsKeptAsA24BitBitmapAndAnUnreadableOneShowsEmpty) {
    for (auto [w, h] : {std::pair{639, 479}, {66, 50}, {33, 25}, {10, 7}, {1, 1}, {0, 0}, {40, 3}}) {
        const host::Picture p = patternPicture(w, h, 11);
        EXPECT_EQ(stored::plotThumbnail(p.r, p.g, p.b, w, h), plotPointByPoint(p)) << w << "x" << h;
    }

    QTemporaryDir dir;
    const std::string path = dir.filePath("AnimThumb 0.bmp").toStdString();
    const host::Picture p = patternPicture(99, 74, 5);
    const QImage t = stored::plotThumbnail(p.r, p.g, p.b, 99, 74);
    stored::saveThumbnail(t, path);
    const std::string bytes = readFile(QString::fromStdString(path));
    ASSERT_GE(bytes.size(), 54u);
    EXPECT_EQ(bytes.substr(0, 2), "BM");
    EXPECT_EQ(bytes[28], 24); // bits per pixel
    EXPECT_EQ(stored::loadThumbnail(path).convertToFormat(QImage::Format_RGB32), t);

    EXPECT_TRUE(stored::loadThumbnail(path + ".missing").isNull());
    for (const std::string& damaged : {bytes.substr(0, 40), "BM" + std::string(60, '\xff')}) {
        writeFile(QString::fromStdString(path), damaged);
        EXPECT_TRUE(stored::loadThumbnail(path).isNull());
    }
}

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

TEST_F(Undo, SaveCommitsTheMainBufferWritesThreeFilesAndStaysOnItsFrame) {
    loadScene(2, 4, 3, 20, 1);
    const auto before = HostSnapshot::of(host());
    trace.clear();
    QuickSave();

    // The host's buffer is apart from its frame store: it is written to the frame before any is read.
    const auto index = [&](const char* call) {
        return std::find(trace.begin(), trace.end(), call) - trace.begin();
    };
    EXPECT_LT(index("Van_SetBFrame(plane(4,3), 1)"), index("Van_GetRFrame(0)"));
    EXPECT_EQ(calls("Van_ShowScrub"), seq("Van_ShowScrub(1, 2)"));
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
    EXPECT_FALSE(host().locked());

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

struct Damage {
    const char* name;
    std::string bytes;
    const char* fault;
};

std::string planes(int count, int w, int h) {
    return std::string(std::size_t(count) * (w + 1) * (h + 1), '\x5a');
}

std::vector<Damage> damages() {
    return {
        {"truncated", le16(3) + le16(4) + le16(3) + planes(4, 4, 3), "it is shorter than its header says"},
        {"negative_frames", le16(-2) + le16(4) + le16(3) + planes(6, 4, 3),
         "its header gives a negative frame count"},
        {"negative_width", le16(1) + le16(-5) + le16(3) + planes(3, 4, 3),
         "its header gives a negative picture size"},
        {"absurd_size", le16(30) + le16(32767) + le16(32767) + planes(3, 4, 3),
         "it is shorter than its header says"},
        {"header_cut", le16(1) + "\x04", "it is too short to hold its header"},
        {"empty", "", "it is too short to hold its header"},
    };
}

// An animation of three frames on frame 2, and what the host holds of it.
class StoredFault : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        host().loadAnimation(patternFrames(3, 6, 4, 12), 2);
        before = HostSnapshot::of(host());
    }
    QString at(const std::string& name) const { return QString::fromStdString(tempDir() + name); }
    // Runs the action as an event would and expects one more box of the kind, holding the text (or
    // being it), with the host released.
    void expectBox(const std::function<void()>& action, const std::string& kind, const std::string& text,
                   bool whole = false) {
        const std::size_t boxes = host().dialogs().size();
        runGuarded(action);
        ASSERT_EQ(host().dialogs().size(), boxes + 1);
        const auto& box = host().dialogs().back();
        EXPECT_EQ(box.kind, kind);
        if (whole) {
            EXPECT_EQ(box.text, text);
        } else {
            EXPECT_NE(box.text.find(text), std::string::npos) << box.text;
        }
        EXPECT_FALSE(host().locked());
        EXPECT_EQ(host().pointer(), 0);
        EXPECT_FALSE(host().statusOpen());
    }
    HostSnapshot before{};
};

class DamagedFile : public StoredFault, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedFile, LoadingTheSlotOrUndoIsRefusedAndTheHostKeepsItsAnimation) {
    writeFile(at("/AnimSlot 1.dat"), GetParam().bytes);
    expectBox([] { stored::LoadAnimFromSlot(1); }, "message",
              std::string("Slot 2 can't be loaded.\n\nAnimSlot 1.dat is damaged: ") + GetParam().fault +
                  ".\nThe animation in memory is unchanged.",
              true);
    EXPECT_EQ(HostSnapshot::of(host()), before);
    EXPECT_THROW(stored::StoredFrameSource(stored::slotDataPath(tempDir(), 1), 6, 4), stored::DamagedFile);

    writeFile(at(stored::kAnimUndoName), GetParam().bytes);
    expectBox([] { stored::QuickRestore(); }, "message",
              std::string("Undo can't be restored.\n\nAnimUndo.dat is damaged: ") + GetParam().fault +
                  ".\nThe animation in memory is unchanged.",
              true);
    EXPECT_EQ(HostSnapshot::of(host()), before);
}

INSTANTIATE_TEST_SUITE_P(Stored, DamagedFile, testing::ValuesIn(damages()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(StoredFault, ADamagedAlphaOrSwapFileRefusesTheWholeUndoSet) {
    for (const char* name : {stored::kAlphaUndoName, stored::kSwapUndoName}) {
        for (const std::string& bad :
             {le16(2) + le16(2) + planes(1, 2, 1), le16(-3) + le16(2) + planes(3, 2, 2)}) {
            SCOPED_TRACE(name);
            // Good files beside the damaged one: nothing of the set may be applied.
            writeFile(at(stored::kAnimUndoName), slotBytes(1, patternFrames(1, 2, 2)));
            writeFile(at(stored::kAlphaUndoName), le16(2) + le16(2) + planes(1, 2, 2));
            writeFile(at(stored::kSwapUndoName), le16(2) + le16(2) + planes(3, 2, 2));
            writeFile(at(name), bad);
            expectBox([] { stored::QuickRestore(); }, "message", std::string(name + 1) + " is damaged");
            EXPECT_EQ(HostSnapshot::of(host()), before);
        }
    }
}

TEST(SlotFileHeader, ASlotWithoutFramesIsDamagedButAStillUndoIsNot) {
    QTemporaryDir dir;
    const QString path = dir.filePath("f.dat");
    writeFile(path, le16(0) + le16(2) + le16(1) + planes(3, 2, 1));
    EXPECT_THROW(stored::FrameFileReader(path.toStdString(), stored::FrameFileReader::Kind::Slot),
                 stored::DamagedFile);
    stored::FrameFileReader still(path.toStdString(), stored::FrameFileReader::Kind::Undo);
    EXPECT_EQ(still.pictures(), 1);
}

// Each fault is an error naming it; the host keeps its animation and the other slot its file.
TEST_F(StoredFault, SavesOnAFullDiskOrIntoAFileForAFolderAreReportedAndChangeNoOtherFile) {
    const std::string otherSlot = slotBytes(2, patternFrames(2, 3, 2, 70));
    const QString otherPath = at("/AnimSlot 2.dat");
    writeFile(otherPath, otherSlot);
    // The file a save writes first (the named one with ".partial" appended) made a door to a device
    // that is always full, and the named file given an old content that must survive.
    for (const char* name : {stored::kAnimUndoName, "/AnimSlot 0.dat"}) {
        ASSERT_TRUE(QFile::link("/dev/full", at(name + std::string(".partial"))));
        writeFile(at(name), "the old content");
    }
    expectBox([] { stored::QuickSave(); }, "error", "AnimUndo.dat could not be written (is the disk full?)");
    EXPECT_EQ(HostSnapshot::of(host()), before);
    expectBox([] { stored::SaveAnimToSlot(0); }, "error",
              "AnimSlot 0.dat could not be written (is the disk full?)");
    EXPECT_EQ(HostSnapshot::of(host()).pictures, before.pictures);
    for (const char* name : {stored::kAnimUndoName, "/AnimSlot 0.dat"}) {
        EXPECT_EQ(readFile(at(name)), "the old content") << name;
        EXPECT_FALSE(QFile::exists(at(name + std::string(".partial")))) << name;
    }

    // Running as any user, a path whose folder is a plain file can never be written.
    writeFile(at("/not-a-folder"), "x");
    host().setTempDir(tempDir() + "/not-a-folder");
    expectBox([] { stored::SaveAnimToSlot(1); }, "error", "AnimSlot 1.dat cannot be written");
    expectBox([] { stored::QuickSave(); }, "error", "AnimUndo.dat cannot be written");
    EXPECT_EQ(HostSnapshot::of(host()), before);
    EXPECT_EQ(readFile(otherPath), otherSlot);
}

} // namespace
} // namespace kirrel::test
