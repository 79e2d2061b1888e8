// Faults of the disk under the slot and undo saves: a full disk, a temporary folder that is not a
// folder. Each is reported once as an error, the host is released and keeps its animation, and no other
// file changes. A slot file deleted between showing the slot and loading it is an empty slot.

#include "panel/EventGuard.h"
#include "stored/AnimUndo.h"
#include "stored/SlotFiles.h"
#include "stored/SlotStore.h"
#include "stored/StoredSupport.h"

#include <QFile>

#include <functional>

namespace kirrel::test {
namespace {

class DiskFault : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        host().loadAnimation(patternFrames(3, 5, 4, 9), 1);
        otherSlot = slotBytes(2, patternFrames(2, 3, 2, 70));
        otherSlotPath = QString::fromStdString(stored::slotDataPath(tempDir(), 2));
        writeFile(otherSlotPath, otherSlot);
        before = HostSnapshot::of(host());
    }
    // Runs the action as an event would and expects one more box: an error naming the fault.
    void expectError(const std::function<void()>& action, const std::string& fault) {
        const std::size_t boxes = host().dialogs().size();
        runGuarded(action);
        ASSERT_EQ(host().dialogs().size(), boxes + 1);
        EXPECT_EQ(host().dialogs().back().kind, "error");
        EXPECT_NE(host().dialogs().back().text.find(fault), std::string::npos)
            << host().dialogs().back().text;
        EXPECT_FALSE(host().locked());
        EXPECT_EQ(host().pointer(), 0);
        EXPECT_FALSE(host().statusOpen());
        EXPECT_EQ(readFile(otherSlotPath), otherSlot);
    }
    // Makes the file the save writes first (the named one with ".partial" appended) a door to a
    // device that is always full, and gives the named file an old content that must survive.
    void fullDiskAt(const std::string& name) {
        ASSERT_TRUE(QFile::link("/dev/full", QString::fromStdString(tempDir() + name + ".partial")));
        writeFile(QString::fromStdString(tempDir() + name), "the old content");
    }
    std::string otherSlot;
    QString otherSlotPath;
    HostSnapshot before{};
};

TEST_F(DiskFault, SlotAndUndoSavesOnAFullDiskAreReportedAndTheAnimationStays) {
    fullDiskAt(stored::kAnimUndoName);
    expectError([] { stored::QuickSave(); }, "AnimUndo.dat could not be written (is the disk full?)");
    EXPECT_EQ(HostSnapshot::of(host()), before);
    fullDiskAt("/AnimSlot 0.dat");
    expectError([] { stored::SaveAnimToSlot(0); }, "AnimSlot 0.dat could not be written (is the disk full?)");
    EXPECT_EQ(HostSnapshot::of(host()).pictures, before.pictures);
    // Written whole or not at all: the files that stood there are intact, and nothing partial stays.
    for (const char* name : {"/AnimUndo.dat", "/AnimSlot 0.dat"}) {
        EXPECT_EQ(readFile(QString::fromStdString(tempDir() + name)), "the old content") << name;
        EXPECT_FALSE(QFile::exists(QString::fromStdString(tempDir() + name + ".partial"))) << name;
    }
}

TEST_F(DiskFault, ATemporaryFolderThatIsAFileRefusesEverySave) {
    // Running as any user, a path whose folder is a plain file can never be written.
    const QString folder = QString::fromStdString(tempDir()) + "/not-a-folder";
    writeFile(folder, "x");
    host().setTempDir(folder.toStdString());
    expectError([] { stored::SaveAnimToSlot(1); }, "AnimSlot 1.dat cannot be written");
    expectError([] { stored::QuickSave(); }, "AnimUndo.dat cannot be written");
    EXPECT_EQ(HostSnapshot::of(host()), before);
}

TEST_F(DiskFault, ASlotFileDeletedAfterItWasShownLoadsNothing) {
    ASSERT_TRUE(QFile::remove(otherSlotPath));
    runGuarded([] { stored::LoadAnimFromSlot(2); });
    EXPECT_TRUE(host().dialogs().empty());
    EXPECT_FALSE(host().locked());
    EXPECT_EQ(HostSnapshot::of(host()).pictures, before.pictures);
    EXPECT_FALSE(QFile::exists(otherSlotPath));
}

} // namespace
} // namespace kirrel::test
