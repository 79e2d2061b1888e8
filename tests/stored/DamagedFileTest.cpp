// Slot and undo files that were cut short or carry impossible headers: the user is told, nothing in
// the host changes, the lock is released, and nothing is allocated beyond what the file holds.

#include "stored/AnimUndo.h"
#include "stored/SlotFiles.h"
#include "stored/SlotStore.h"
#include "stored/StoredFrame.h"
#include "stored/StoredSupport.h"

#include <QTemporaryDir>

namespace kirrel::test {
namespace {

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

class DamagedFile : public HostTest, public testing::WithParamInterface<Damage> {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        host().loadAnimation(patternFrames(3, 6, 4, 12), 2);
        before = HostSnapshot::of(host());
    }
    void put(const std::string& name, const std::string& bytes) {
        writeFile(QString::fromStdString(tempDir() + name), bytes);
    }
    void expectRefused(const std::string& message) {
        ASSERT_EQ(host().dialogs().size(), 1u);
        EXPECT_EQ(host().dialogs()[0].kind, "message");
        EXPECT_EQ(host().dialogs()[0].text, message);
        EXPECT_EQ(HostSnapshot::of(host()), before);
        EXPECT_FALSE(host().locked());
        EXPECT_EQ(host().pointer(), 0);
    }
    HostSnapshot before{};
};

TEST_P(DamagedFile, LoadingTheSlotIsRefusedAndTheHostKeepsItsAnimation) {
    put("/AnimSlot 1.dat", GetParam().bytes);
    stored::LoadAnimFromSlot(1);
    expectRefused(std::string("Slot 2 can't be loaded.\n\nAnimSlot 1.dat is damaged: ") + GetParam().fault +
                  ".\nThe animation in memory is unchanged.");
    EXPECT_THROW(stored::StoredFrameSource(stored::slotDataPath(tempDir(), 1), 6, 4), stored::DamagedFile);
}

TEST_P(DamagedFile, UndoIsRefusedAndTheHostKeepsItsAnimation) {
    put(stored::kAnimUndoName, GetParam().bytes);
    stored::QuickRestore();
    expectRefused(std::string("Undo can't be restored.\n\nAnimUndo.dat is damaged: ") + GetParam().fault +
                  ".\nThe animation in memory is unchanged.");
}

INSTANTIATE_TEST_SUITE_P(Stored, DamagedFile, testing::ValuesIn(damages()),
                         [](const auto& info) { return std::string(info.param.name); });

class DamagedUndoSet : public HostTest {};

TEST_F(DamagedUndoSet, ADamagedAlphaOrSwapFileRefusesTheWholeSet) {
    const auto scene = patternFrames(3, 6, 4, 12);
    for (const char* name : {stored::kAlphaUndoName, stored::kSwapUndoName}) {
        for (const std::string& bad :
             {le16(2) + le16(2) + planes(1, 2, 1), le16(-3) + le16(2) + planes(3, 2, 2)}) {
            SCOPED_TRACE(name);
            // Good files beside the damaged one: nothing of the set may be applied.
            writeFile(QString::fromStdString(tempDir() + stored::kAnimUndoName),
                      slotBytes(1, patternFrames(1, 2, 2)));
            writeFile(QString::fromStdString(tempDir() + stored::kAlphaUndoName),
                      le16(2) + le16(2) + planes(1, 2, 2));
            writeFile(QString::fromStdString(tempDir() + stored::kSwapUndoName),
                      le16(2) + le16(2) + planes(3, 2, 2));
            writeFile(QString::fromStdString(tempDir() + name), bad);
            host().loadAnimation(scene, 1);
            const auto before = HostSnapshot::of(host());
            const std::size_t shown = host().dialogs().size();
            stored::QuickRestore();
            ASSERT_EQ(host().dialogs().size(), shown + 1);
            EXPECT_NE(host().dialogs().back().text.find(std::string(name + 1) + " is damaged"),
                      std::string::npos);
            EXPECT_EQ(HostSnapshot::of(host()), before);
            EXPECT_FALSE(host().locked());
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

} // namespace
} // namespace kirrel::test
