#include "generators/GeneratorForm.h"

#include "panel/DisabledWhileRunning.h"
#include "panel/FrameLists.h"
#include "panel/Panel.h"
#include "panel/Skin.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kirrel::generators {

namespace {

constexpr const char* kSizeChanged = "Animation Size Changed. Settings updated.";
constexpr const char* kTooShort = "Need at least 3 frames selected!";
// These dialogs ask as the filter dialogs do, with three line feeds between the sentences.
constexpr const char* kNoAnimation =
    "No Animation in memory!\n\n\nWould you like to create an animation now?";

} // namespace

GeneratorForm::GeneratorForm(const GeneratorTraits& traits)
    : FormBase(traits.formName, traits.caption), traits_(traits) {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(14, 14, 14, 12);
    outer->setSpacing(8);

    description_ = makeLabel("Label1", traits_.description);
    description_->setWordWrap(true);
    description_->setMargin(5);
    outer->addWidget(description_);

    parameters_ = new QVBoxLayout;
    parameters_->setSpacing(6);
    outer->addLayout(parameters_);

    const FrameRange range = makeFrameRange([this](bool start) { frameListLeft(start); });
    cboFrameStart_ = range.cboFrameStart;
    cboFrameEnd_ = range.cboFrameEnd;
    outer->addLayout(range.layout);
    outer->addStretch(1);

    outer->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { cmdUndo_Click(); }, [this] { cmd_Run_Click(); },
        [this] { cmdCancel_Click(); }));
}

void GeneratorForm::finishLayout() {
    setFixedSize(sizeHint().expandedTo(QSize(400, 0)));
}

FrameSpan GeneratorForm::span() const {
    return {cboFrameStart_->currentIndex(), cboFrameEnd_->currentIndex()};
}

void GeneratorForm::formLoad() {
    chkUndoSave_->setChecked(false);
    TempDir = van().Van_GetTempDir();
    TotalFrames = van().Van_GetTotalFrames();
    if (TotalFrames > 0) Fill_Frame_List();
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    panel::colourControl(description_, s.textboxFill, s.textboxText);
    for (QPushButton* b : {cmdRun_, cmdUndo_, cmdCancel_})
        panel::colourButton(b, s.buttonFill);
    panel::Draw_Pattern(this);
    startValues();
}

void GeneratorForm::formActivate() {
    if (TotalFrames > 0) Fill_Frame_List();
}

void GeneratorForm::formUnload() {
    panel::showMainPanel();
}

void GeneratorForm::Fill_Frame_List() {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.fill();
}

void GeneratorForm::animationCheck() {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.offerAnimation();
}

void GeneratorForm::frameListLeft(bool startLeft) {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.followCount();
    pullFrameListsAlong(cboFrameStart_, cboFrameEnd_, startLeft);
}

bool GeneratorForm::rangeTooShort() {
    const FrameSpan s = span();
    if (s.end - s.start >= 2) return false;
    van().Van_MessageBox(kTooShort);
    return true;
}

void GeneratorForm::cmd_Run_Click() {
    const int remembered = van().Van_GetCurrentFrame();
    TotalFrames = van().Van_GetTotalFrames();
    if (cboFrameStart_->count() != TotalFrames || cboFrameEnd_->count() != TotalFrames) {
        van().Van_MessageBox(kSizeChanged);
        Fill_Frame_List();
        return;
    }
    van().Van_StopAnimation();
    if (TotalFrames == 0) {
        animationCheck();
        return;
    }
    switch (traits_.rangeTest) {
    case RangeTest::UndoFirst:
        stored::saveUndoIfChecked(chkUndoSave_);
        if (rangeTooShort()) return;
        break;
    case RangeTest::TestFirst:
        if (rangeTooShort()) return;
        stored::saveUndoIfChecked(chkUndoSave_);
        break;
    case RangeTest::None:
        stored::saveUndoIfChecked(chkUndoSave_);
        break;
    }
    {
        const panel::DisabledWhileRunning busy({cmdRun_});
        runProcedure();
    }
    van().Van_GotoFrame(remembered);
    van().Van_Refresh();
}

void GeneratorForm::cmdUndo_Click() {
    stored::cmdUndoClick(cmdUndo_);
}

void GeneratorForm::cmdCancel_Click() {
    closeDialog();
}

} // namespace kirrel::generators
