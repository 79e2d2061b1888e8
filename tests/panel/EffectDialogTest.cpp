// What every effect dialog shares, dialog by dialog: the apply row under the names and captions
// session scripts use, the close box doing what "Done" does, and the frame lists filled from the
// animation and pulling each other along.

#include "panel/Panel.h"
#include "stored/StoredSupport.h"
#include "support/Forms.h"

#include <QCheckBox>
#include <QComboBox>

namespace kirrel::test {
namespace {

struct Dialog {
    const char* form;
    const char* runCaption;
    bool undoPair = true; // "Save Undo" and "Undo" beside the run button
};

const Dialog kDialogs[] = {
    {"frmToon", "Apply"},
    {"frmSketchSoft", "Apply"},
    {"frmSketchHard", "Apply"},
    {"frmNightVision", "Apply"},
    {"frmChannelThreshold", "Apply"},
    {"frmGreyOut", "Apply"},
    {"frmTVSnow", "Apply"},
    {"frmFlicker", "Apply"},
    {"frmGenThreshold", "Apply"},
    {"frmVertHold", "Apply"},
    {"frmFocus", "Apply"},
    {"frmAlphaMask", "Apply"},
    {"frmAnimMask", "Apply"},
    {"frmWipes", "Apply"},
    {"frmFrameSwap", "Apply"},
    {"frmFrameCopy", "Apply"},
    {"frmPingPong", "Apply"},
    {"frmAttachAnims", "Apply"},
    {"frmCombineAnims", "Apply"},
    {"frmCompositeAnims", "Apply"},
    {"frmCFXPlayer", "Apply CFX"},
    {"frmCFXBuilder", "Export CFX", false},
};

const char* const kWithFrameLists[] = {
    "frmToon",    "frmSketchSoft", "frmSketchHard", "frmNightVision",  "frmChannelThreshold",
    "frmGreyOut", "frmTVSnow",     "frmFlicker",    "frmGenThreshold", "frmVertHold",
    "frmFocus",   "frmAlphaMask",  "frmAnimMask",   "frmWipes"};

// Five frames, and the panel open behind the dialog.
template <class Param> class WithPanel : public FormTest, public testing::WithParamInterface<Param> {
  protected:
    void SetUp() override {
        FormTest::SetUp();
        host().loadAnimation(patternFrames(5, 6, 4));
        panel::startPanel();
    }
};
using EffectDialog = WithPanel<Dialog>;
using EffectDialogFrames = WithPanel<const char*>;

TEST_P(EffectDialog, HasTheApplyRowAndItsCloseBoxIsDone) {
    const Dialog& d = GetParam();
    panel::FormBase* f = open(d.form);
    EXPECT_EQ(ctl<QPushButton>(f, "cmd_Run")->text(), d.runCaption);
    EXPECT_EQ(ctl<QPushButton>(f, "cmdCancel")->text(), "Done");
    EXPECT_EQ(f->control("chkUndoSave") != nullptr, d.undoPair);
    if (d.undoPair) {
        EXPECT_EQ(ctl<QCheckBox>(f, "chkUndoSave")->text(), "Save Undo");
        EXPECT_FALSE(ctl<QCheckBox>(f, "chkUndoSave")->isChecked());
        EXPECT_EQ(ctl<QPushButton>(f, "cmdUndo")->text(), "Undo");
    }

    f->closeByUser();
    EXPECT_EQ(panel::FormBase::find(d.form), nullptr);
    ASSERT_NE(panel::FormBase::front(), nullptr);
    EXPECT_EQ(panel::FormBase::front()->objectName(), "Mainfrm");
    EXPECT_TRUE(panel::FormBase::front()->isVisible());
}

TEST_P(EffectDialogFrames, ListsHoldTheWholeAnimationAndPullEachOtherAlong) {
    panel::FormBase* f = open(GetParam());
    auto* start = ctl<QComboBox>(f, "cboFrameStart");
    auto* end = ctl<QComboBox>(f, "cboFrameEnd");
    ASSERT_EQ(start->count(), 5);
    EXPECT_EQ(end->itemText(4), "4");
    EXPECT_EQ(start->currentIndex(), 0);
    EXPECT_EQ(end->currentIndex(), 4);

    start->setCurrentIndex(3);
    end->setCurrentIndex(1);
    f->leave("cboFrameStart");
    EXPECT_EQ(end->currentIndex(), 3) << "the list just left stays";
    end->setCurrentIndex(2);
    f->leave("cboFrameEnd");
    EXPECT_EQ(start->currentIndex(), 2);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, EffectDialog, testing::ValuesIn(kDialogs),
                         [](const testing::TestParamInfo<Dialog>& i) { return std::string(i.param.form); });
INSTANTIATE_TEST_SUITE_P(Dialogs, EffectDialogFrames, testing::ValuesIn(kWithFrameLists),
                         [](const testing::TestParamInfo<const char*>& i) { return std::string(i.param); });

} // namespace
} // namespace kirrel::test
