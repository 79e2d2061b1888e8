#include "masks/MaskDialog.h"

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
#include <QRadioButton>
#include <QVBoxLayout>

namespace kirrel::masks {

namespace {
constexpr const char* kSizeChanged = "Animation Size Changed. Settings updated.";
// The filter-shaped dialogs ask with three line feeds between the two sentences.
constexpr const char* kNoAnimation =
    "No Animation in memory!\n\n\nWould you like to create an animation now?";
} // namespace

MaskDialog::MaskDialog(const MaskDialogTraits& traits, const QStringList& sources)
    : FormBase(traits.formName, traits.caption), traits_(traits), sources_(sources) {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(14, 14, 14, 12);
    outer->setSpacing(8);

    description_ = makeLabel("Label1", traits_.description);
    description_->setWordWrap(true);
    description_->setMargin(5);
    outer->addWidget(description_);

    auto* sourceGrid = new QGridLayout;
    label2_ = makeLabel("Label2", "Lighter Colors Favor");
    label3_ = makeLabel("Label3", "Darker Colors Favor");
    cboLighter_ = makeCombo("cboLighter");
    cboDarker_ = makeCombo("cboDarker");
    sourceGrid->addWidget(label2_, 0, 0);
    sourceGrid->addWidget(cboLighter_, 0, 1);
    sourceGrid->addWidget(label3_, 1, 0);
    sourceGrid->addWidget(cboDarker_, 1, 1);
    sourceGrid->setColumnStretch(1, 1);
    outer->addLayout(sourceGrid);

    extra_ = new QVBoxLayout;
    extra_->setSpacing(6);
    outer->addLayout(extra_);

    if (traits_.frameChoice) {
        const FrameChoice choice = makeFrameChoice();
        optCurrent_ = choice.optCurrent;
        optMultiple_ = choice.optMultiple;
        outer->addLayout(choice.layout);
    }

    const FrameRange range = makeFrameRange([this](bool start) { frameListLeft(start); });
    lblKeyIn_ = range.lblKeyIn;
    lblKeyOut_ = range.lblKeyOut;
    cboFrameStart_ = range.cboFrameStart;
    cboFrameEnd_ = range.cboFrameEnd;
    outer->addLayout(range.layout);
    outer->addStretch(1);

    outer->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { cmdUndo_Click(); }, [this] { cmd_Run_Click(); },
        [this] { cmdCancel_Click(); }));
}

void MaskDialog::finishLayout() {
    setFixedSize(sizeHint().expandedTo(QSize(460, 0)));
}

std::string MaskDialog::lighter() const {
    return cboLighter_->currentText().toStdString();
}

std::string MaskDialog::darker() const {
    return cboDarker_->currentText().toStdString();
}

int MaskDialog::startIndex() const {
    return cboFrameStart_->currentIndex();
}

int MaskDialog::endIndex() const {
    return cboFrameEnd_->currentIndex();
}

bool MaskDialog::undoChecked() const {
    return chkUndoSave_->checkState() == Qt::Checked;
}

void MaskDialog::formLoad() {
    chkUndoSave_->setChecked(false);
    (void)van().Van_GetTempDir();
    TotalFrames = van().Van_GetTotalFrames();
    if (TotalFrames > 0) Fill_Frame_List();
    loadExtras();
    for (QComboBox* list : {cboLighter_, cboDarker_}) {
        list->clear();
        list->addItems(sources_);
    }
    cboLighter_->setCurrentIndex(traits_.lighterStart);
    cboDarker_->setCurrentIndex(traits_.darkerStart);
    Apply_Skin();
    panel::Draw_Pattern(this);
}

void MaskDialog::formActivate() {
    if (TotalFrames > 0) Fill_Frame_List();
}

void MaskDialog::formUnload() {
    panel::showMainPanel();
}

void MaskDialog::Apply_Skin() {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    for (QWidget* w : std::initializer_list<QWidget*>{cboFrameStart_, cboFrameEnd_, cboLighter_, cboDarker_,
                                                      lblKeyIn_, lblKeyOut_, label2_, label3_, description_})
        panel::colourControl(w, s.textboxFill, s.textboxText);
    for (QPushButton* b : {cmdRun_, cmdUndo_, cmdCancel_})
        panel::colourButton(b, s.buttonFill);
    std::vector<QWidget*> options{chkUndoSave_};
    if (optCurrent_) options.insert(options.end(), {optCurrent_, optMultiple_});
    for (QWidget* w : options) {
        panel::colourControl(w, s.buttonFill, 0x000000);
        w->setStyleSheet(w->styleSheet() + " padding: 3px 6px; border-radius: 3px;");
    }
}

void MaskDialog::Fill_Frame_List() {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.fill();
}

void MaskDialog::animationCheck() {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.offerAnimation();
}

void MaskDialog::frameListLeft(bool startLeft) {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.followCount();
    pullFrameListsAlong(cboFrameStart_, cboFrameEnd_, startLeft);
}

bool MaskDialog::frameCountUnchanged() {
    if (cboFrameStart_->count() == TotalFrames && cboFrameEnd_->count() == TotalFrames) return true;
    van().Van_MessageBox(kSizeChanged);
    Fill_Frame_List();
    return false;
}

void MaskDialog::cmdUndo_Click() {
    stored::cmdUndoClick(cmdUndo_);
}

void MaskDialog::cmdCancel_Click() {
    closeDialog();
}

} // namespace kirrel::masks
