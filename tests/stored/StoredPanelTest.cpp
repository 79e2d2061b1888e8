// The Stored Animations panel and the slot requester, driven in-process.

#include "panel/EventGuard.h"
#include "stored/SlotFiles.h"
#include "stored/StoredSupport.h"
#include "stored/frmMultiAnims.h"
#include "stored/frmStoredRequester.h"
#include "support/Forms.h"

#include <QFile>
#include <QLabel>
#include <QRadioButton>

namespace kirrel::test {
namespace {

class StoredPanel : public FormTest {
  protected:
    template <class Form> static Form* open(const char* name) {
        return dynamic_cast<Form*>(FormTest::open(name));
    }
    static bool enabled(panel::FormBase* f, const QString& control) {
        return f->control(control)->isEnabled();
    }
};

TEST_F(StoredPanel, TheLabelShowsTheHeadersNumbersAsTheyStand) {
    host().loadStill(host::Picture::filled(639, 479, 0x336699));
    host().createAnim(30);
    auto* form = open<stored::frmMultiAnims>("frmMultiAnims");
    click(form, "cmdSave(1)");
    EXPECT_EQ(text(form, "lblSlots(1)"), "30 Frames,  (639  X  479)");
    EXPECT_EQ(QFile(QString::fromStdString(stored::slotDataPath(tempDir(), 1))).size(),
              6 + 30LL * 3 * 640 * 480);
    EXPECT_EQ(form->SlotWidth[1], 639);
    EXPECT_TRUE(enabled(form, "cmdLoad(1)"));
    EXPECT_FALSE(static_cast<QLabel*>(form->control("picThumbnail(1)"))->pixmap().isNull());
}

TEST_F(StoredPanel, TheCaptionNotTheFileDecidesARowsState) {
    host().loadAnimation(patternFrames(2, 8, 6));
    auto* form = open<stored::frmMultiAnims>("frmMultiAnims");
    click(form, "cmdSave(0)");
    ASSERT_EQ(text(form, "lblSlots(0)"), "2 Frames,  (8  X  6)");

    // Both files vanish behind the panel's back: the row keeps its text and stays enabled, and the
    // missing thumbnail is simply shown empty.
    QFile::remove(QString::fromStdString(stored::slotDataPath(tempDir(), 0)));
    QFile::remove(QString::fromStdString(stored::slotThumbPath(tempDir(), 0)));
    form->ResetSlots();
    EXPECT_EQ(text(form, "lblSlots(0)"), "2 Frames,  (8  X  6)");
    EXPECT_TRUE(enabled(form, "cmdClear(0)"));
    EXPECT_TRUE(static_cast<QLabel*>(form->control("picThumbnail(0)"))->pixmap().isNull());

    // Clearing it asks, then leaves nothing to delete and writes "EMPTY".
    responder.push({host::QueuedAnswer::Kind::Question, 1, {}});
    click(form, "cmdClear(0)");
    EXPECT_EQ(text(form, "lblSlots(0)"), "EMPTY");
    EXPECT_FALSE(enabled(form, "cmdClear(0)"));
    EXPECT_EQ(host().dialogs().size(), 1u);

    // A clear on an empty row, if reached at all, does nothing.
    form->cmdClear_Click(0);
    EXPECT_EQ(host().dialogs().size(), 1u);
}

TEST_F(StoredPanel, ClosingRestoresThePointerAndUnlocksTwice) {
    auto* form = open<stored::frmMultiAnims>("frmMultiAnims");
    trace.clear();
    form->closeByUser();
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_RestorePointer()", "Van_Unlock()", "Van_Unlock()"}));
}

TEST_F(StoredPanel, TheRequesterOffersFilledSlotsAndItsCancelEndsTheProgram) {
    host().loadAnimation(patternFrames(1, 4, 4));
    auto* panel = open<stored::frmMultiAnims>("frmMultiAnims");
    click(panel, "cmdSave(2)");
    panel->closeByUser();

    auto* form = open<stored::frmStoredRequester>("frmStoredRequester");
    EXPECT_EQ(form->windowTitle(), "Please Select Stored Animation");
    EXPECT_EQ(text(form, "lblSlot(2)"), "1 Frames,  (4  X  4)");
    EXPECT_EQ(text(form, "lblSlot(0)"), "EMPTY");
    EXPECT_FALSE(enabled(form, "optSlot(0)"));
    EXPECT_TRUE(enabled(form, "optSlot(2)"));
    EXPECT_EQ(form->SlotSelected, -1);

    choose(form, "optSlot(2)");
    click(form, "cmdOk");
    EXPECT_EQ(form->SlotSelected, 2);
    EXPECT_TRUE(form->isVisible()); // the caller reads the choice from the open form

    // Activating it again rebuilds the rows and drops the choice.
    form->showForm();
    EXPECT_EQ(form->SlotSelected, -1);
    EXPECT_FALSE(static_cast<QRadioButton*>(form->control("optSlot(2)"))->isChecked());

    EXPECT_FALSE(programEnded());
    click(form, "cmdCancel");
    EXPECT_TRUE(programEnded());
    EXPECT_EQ(form->SlotSelected, -1);
    EXPECT_FALSE(form->isVisible());
}

} // namespace
} // namespace kirrel::test
