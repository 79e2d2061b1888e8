#include "filters/FilterForm.h"

#include "filters/PictureAccess.h"
#include "panel/DisabledWhileRunning.h"
#include "panel/FrameLists.h"
#include "panel/Numeric.h"
#include "panel/Panel.h"
#include "panel/Skin.h"
#include "pixel/Mixing.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <stdexcept>

namespace kirrel::filters {

namespace {

constexpr const char* kSizeChanged = "Animation Size Changed. Settings updated.";
// The filters ask with three line feeds between the two sentences.
constexpr const char* kNoAnimation =
    "No Animation in memory!\n\n\nWould you like to create an animation now?";

int listNumber(const QComboBox* list) {
    const std::string t = list->currentText().toStdString();
    if (t.find_first_of("0123456789") == std::string::npos) throw std::invalid_argument("Type mismatch");
    return toInt32(leadingNumber(t));
}

} // namespace

FilterForm::FilterForm(const FilterTraits& traits)
    : FormBase(traits.formName, traits.caption), traits_(traits) {
    auto* outer = new QHBoxLayout(this);
    outer->setContentsMargins(14, 14, 14, 12);
    outer->setSpacing(14);

    auto* left = new QVBoxLayout;
    left->setSpacing(8);
    description_ = makeLabel("Label1", traits_.description);
    description_->setWordWrap(true);
    description_->setMargin(5);
    left->addWidget(description_);

    parameters_ = new QVBoxLayout;
    parameters_->setSpacing(6);
    left->addLayout(parameters_);

    const FrameChoice choice = makeFrameChoice();
    optCurrent_ = choice.optCurrent;
    optMultiple_ = choice.optMultiple;
    left->addLayout(choice.layout);

    const FrameRange range = makeFrameRange([this](bool start) { frameListLeft(start); });
    lblKeyIn_ = range.lblKeyIn;
    lblKeyOut_ = range.lblKeyOut;
    cboFrameStart_ = range.cboFrameStart;
    cboFrameEnd_ = range.cboFrameEnd;
    left->addLayout(range.layout);

    if (traits_.hasUseAlpha) {
        chkUseAlpha_ = makeCheck("chkUseAlpha", "Use Alpha?");
        left->addWidget(chkUseAlpha_);
    }
    left->addStretch(1);

    left->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { cmdUndo_Click(); }, [this] { cmd_Run_Click(); },
        [this] { cmdCancel_Click(); }));
    outer->addLayout(left, 1);

    // The preview: the box is the work surface the planes are drawn into, the image keeps what was
    // drawn. The frame around it holds the largest preview, so the form doesn't jump.
    auto* previewFrame = new QFrame(this);
    previewFrame->setFrameShape(QFrame::Box);
    auto* previewLayout = new QVBoxLayout(previewFrame);
    previewLayout->setContentsMargins(2, 2, 2, 2);
    PreviewBox_ = makePicture("PreviewBox");
    PreviewBox_->hide();
    ImageBox_ = makePicture("ImageBox");
    ImageBox_->setAlignment(Qt::AlignCenter);
    previewLayout->addWidget(PreviewBox_);
    previewLayout->addWidget(ImageBox_, 0, Qt::AlignCenter);
    previewFrame->setFixedSize(traits_.previewSize + 6, traits_.previewSize + 6);
    outer->addWidget(previewFrame, 0, Qt::AlignTop);
}

void FilterForm::finishLayout() {
    setFixedSize(sizeHint().expandedTo(QSize(520, 0)));
}

bool FilterForm::useAlpha() const {
    return chkUseAlpha_ && chkUseAlpha_->checkState() == Qt::Checked;
}

bool FilterForm::undoSaveChecked() const {
    return chkUndoSave_->checkState() == Qt::Checked;
}

bool FilterForm::currentFrameChosen() const {
    return optCurrent_->isChecked();
}

bool FilterForm::multipleFrames() const {
    return optMultiple_->isChecked();
}

int FilterForm::startIndex() const {
    return cboFrameStart_->currentIndex();
}

int FilterForm::endIndex() const {
    return cboFrameEnd_->currentIndex();
}

int FilterForm::startText() const {
    return listNumber(cboFrameStart_);
}

int FilterForm::endText() const {
    return listNumber(cboFrameEnd_);
}

void FilterForm::formLoad() {
    chkUndoSave_->setChecked(false);
    TempDir = van().Van_GetTempDir();
    TotalFrames = van().Van_GetTotalFrames();
    if (TotalFrames > 0) Fill_Frame_List();
    Apply_Skin();
    panel::Draw_Pattern(this);
    startValues();
    updatePreview();
}

void FilterForm::formActivate() {
    if (TotalFrames > 0) Fill_Frame_List();
}

void FilterForm::formUnload() {
    panel::showMainPanel();
}

void FilterForm::Apply_Skin() {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    for (QWidget* w : {static_cast<QWidget*>(cboFrameStart_), static_cast<QWidget*>(cboFrameEnd_),
                       static_cast<QWidget*>(lblKeyIn_), static_cast<QWidget*>(lblKeyOut_),
                       static_cast<QWidget*>(description_)})
        panel::colourControl(w, s.textboxFill, s.textboxText);
    for (QPushButton* b : {cmdRun_, cmdUndo_, cmdCancel_})
        panel::colourButton(b, s.buttonFill);
    skinToggles({chkUndoSave_, optCurrent_, optMultiple_});
    if (chkUseAlpha_) skinToggles({chkUseAlpha_});
}

void FilterForm::skinToggles(std::initializer_list<QWidget*> toggles) {
    const panel::SkinSettings s = panel::readSkinSettings();
    for (QWidget* w : toggles) {
        panel::colourControl(w, s.buttonFill, 0x000000);
        w->setStyleSheet(w->styleSheet() + " padding: 3px 6px; border-radius: 3px;");
    }
}

void FilterForm::skinTextBoxes(std::initializer_list<QWidget*> boxes) {
    const panel::SkinSettings s = panel::readSkinSettings();
    for (QWidget* w : boxes)
        panel::colourControl(w, s.textboxFill, s.textboxText);
}

void FilterForm::Fill_Frame_List() {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.fill();
}

void FilterForm::animationCheck() {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.offerAnimation();
}

void FilterForm::frameListLeft(bool startLeft) {
    panel::FrameLists{*this, cboFrameStart_, cboFrameEnd_, TotalFrames, kNoAnimation}.followCount();
    pullFrameListsAlong(cboFrameStart_, cboFrameEnd_, startLeft);
}

void FilterForm::updatePreview() {
    PreviewOn = -1;
    currentFrame();
}

krl::Triple fetchBuffer(Vantry::Vantry_Class& van) {
    krl::Triple t;
    t.r = van.Van_GetRBuffer();
    t.g = van.Van_GetGBuffer();
    t.b = van.Van_GetBBuffer();
    return t;
}

void storeBuffer(Vantry::Vantry_Class& van, const krl::Triple& picture) {
    van.Van_SetRbuffer(picture.r);
    van.Van_SetGbuffer(picture.g);
    van.Van_SetBbuffer(picture.b);
}

krl::Triple FilterForm::shrinkInto(const krl::Triple& frame, int w, int h) const {
    const int n = traits_.previewSize;
    krl::Triple small(n, n);
    krl::ResizeBuffer(small.r, small.g, small.b, frame.r, frame.g, frame.b, n, n, w, h);
    return small;
}

void FilterForm::showPreview(const krl::Triple& picture) {
    ShowPlanes(PreviewBox_, ImageBox_, picture.r, picture.g, picture.b);
    PreviewBox_->update();
}

std::vector<QWidget*> FilterForm::runDisables() const {
    if (traits_.runDisablesUndoAndDone) return {cmdRun_, cmdCancel_, cmdUndo_};
    return {cmdRun_};
}

void FilterForm::cmd_Run_Click() {
    run();
}

void FilterForm::run() {
    const int remembered = van().Van_GetCurrentFrame();
    TotalFrames = van().Van_GetTotalFrames();
    if (cboFrameStart_->count() != TotalFrames || cboFrameEnd_->count() != TotalFrames) {
        van().Van_MessageBox(kSizeChanged);
        Fill_Frame_List();
        return;
    }
    van().Van_StopAnimation();
    if (multipleFrames() && TotalFrames == 0) {
        animationCheck();
        return;
    }
    {
        const panel::DisabledWhileRunning busy(runDisables());
        // One option is always selected, so the check box alone decides.
        stored::saveUndoIfChecked(chkUndoSave_);
        if (chkUndoSave_->checkState() == Qt::Checked && traits_.gotoFrameAfterUndoSave)
            van().Van_GotoFrame(remembered);
        if (optCurrent_->isChecked()) {
            PreviewOn = 0;
            currentFrame();
        }
        if (multipleFrames()) {
            frameRange();
            if (traits_.showAgainAfterRange) showForm();
        }
    }
    van().Van_GotoFrame(remembered);
    van().Van_Refresh();
}

void FilterForm::cmdUndo_Click() {
    undo();
}

void FilterForm::undo() {
    stored::cmdUndoClick(cmdUndo_);
}

void FilterForm::cmdCancel_Click() {
    done();
}

void FilterForm::done() {
    closeDialog();
}

} // namespace kirrel::filters
