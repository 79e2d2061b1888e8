// The two mask dialogs in process: the order of their refusals against the undo save, and what a
// damaged or vanished mask file does to the Animated Alpha Mask dialog.

#include "masks/MaskSupport.h"
#include "support/Forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>

namespace kirrel::test {
namespace {

class MaskDialog : public FormTest {
  protected:
    std::string path(const char* name) const { return QDir(scratch.path()).filePath(name).toStdString(); }
    static QComboBox* list(panel::FormBase* f, const char* name) { return ctl<QComboBox>(f, name); }
};

TEST_F(MaskDialog, AlphaMaskSavesTheUndoBeforeComparingAndTheHostsUndoOnEveryFrame) {
    host().loadAnimation(patternFrames(4, 5, 5));
    auto* form = open("frmAlphaMask");
    EXPECT_EQ(form->windowTitle(), "Kirrel - Alpha  Mask");
    EXPECT_EQ(list(form, "cboLighter")->currentText(), "Swap");
    EXPECT_EQ(list(form, "cboDarker")->currentText(), "Main Buffer");
    EXPECT_TRUE(host().alphaShown());
    static_cast<QCheckBox*>(form->control("chkUndoSave"))->setChecked(true);
    list(form, "cboLighter")->setCurrentText("Primary Color");
    list(form, "cboDarker")->setCurrentText("Primary Color");
    click(form, "cmd_Run");
    EXPECT_EQ(messagesOf(host()), std::vector<std::string>{"Please Select Two Different Sources"});
    EXPECT_TRUE(undoSaved());
    EXPECT_TRUE(form->control("cmd_Run")->isEnabled());
    EXPECT_TRUE(calls("Van_SaveUndo").empty());

    list(form, "cboDarker")->setCurrentText("Main Buffer");
    choose(form, "optDirection(1)");
    list(form, "cboFrameStart")->setCurrentIndex(1);
    host().gotoFrame(3);
    click(form, "cmd_Run");
    EXPECT_EQ(calls("Van_SaveUndo").size(), 3u) << "frames 1 to 3, one each";
    EXPECT_EQ(host().currentFrame(), 3);
}

TEST_F(MaskDialog, OneFrameIsRefusedBeforeAnyTestOfTheMask) {
    host().loadAnimation(patternFrames(3, 5, 5));
    auto* form = open("frmAnimMask");
    EXPECT_EQ(form->windowTitle(), "Kirrel - Animated Alpha  Mask");
    EXPECT_EQ(list(form, "cboLighter")->count(), 13);
    EXPECT_EQ(list(form, "cboLighter")->itemText(11), "White Noise (TV Snow)");
    list(form, "cboFrameEnd")->setCurrentIndex(0);
    click(form, "cmd_Run");
    list(form, "cboFrameEnd")->setCurrentIndex(2);
    click(form, "cmd_Run");
    EXPECT_EQ(messagesOf(host()),
              (std::vector<std::string>{"Please select more than one frame.",
                                        "File not found!\nPlease Load an Animated Mask to Proceed"}));
}

TEST_F(MaskDialog, ADamagedOrVanishedMaskIsRefusedAndTheLabelIsTheState) {
    host().loadAnimation(patternFrames(3, 5, 5));
    const QString good = QString::fromStdString(path("good.msk"));
    writeFile(good, mskHeader(5, 5, 2) + flatMaskPlane(5, 5, 200) + flatMaskPlane(5, 5, 10));
    writeFile(QString::fromStdString(path("bad.msk")), mskHeader(5, 5, 9) + flatMaskPlane(5, 5, 1));
    auto* form = open("frmAnimMask");
    static_cast<QCheckBox*>(form->control("chkUndoSave"))->setChecked(true);

    answerFile(path("bad.msk"));
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label5"), "No Mask Loaded");
    answerFile(good.toStdString());
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label5"), "5 X 5 at 2 Frames");
    EXPECT_FALSE(static_cast<QLabel*>(form->control("ImageBox"))->pixmap().isNull());

    // Damaged between loading and running: refused before the undo is saved.
    const std::string whole = readFile(good);
    writeFile(good, whole.substr(0, whole.size() - 1));
    const HostSnapshot before = HostSnapshot::of(host());
    click(form, "cmd_Run");
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    EXPECT_FALSE(undoSaved());
    QFile::remove(good);
    click(form, "cmd_Run");
    const auto messages = messagesOf(host());
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0],
              "The mask can't be loaded.\n\nbad.msk is damaged: it is shorter than its header says.");
    EXPECT_EQ(messages[1],
              "The mask can't be used.\n\ngood.msk is damaged: it is shorter than its header says.");
    EXPECT_EQ(messages[2], "File not found!\nPlease Load an Animated Mask to Proceed");

    // Equal sources: the undo is saved first.
    writeFile(good, whole);
    list(form, "cboDarker")->setCurrentText("Main Buffer");
    click(form, "cmd_Run");
    EXPECT_EQ(messagesOf(host()).back(), "Please Select Two Different Sources");
    EXPECT_TRUE(undoSaved());
    EXPECT_TRUE(HostSnapshot::of(host()).pictures == before.pictures);

    // An empty answer forgets the mask: the run then says so.
    answerFile("");
    click(form, "cmdLoadMask");
    EXPECT_EQ(text(form, "Label5"), "No Mask Loaded");
    EXPECT_TRUE(static_cast<QLabel*>(form->control("ImageBox"))->pixmap().isNull());
}

} // namespace
} // namespace kirrel::test
