#include "stored/frmCompositeAnims.h"

#include "filters/PictureAccess.h"
#include "masks/AnimMaskMod.h"
#include "masks/MaskFile.h"
#include "panel/DisabledWhileRunning.h"
#include "stored/AnimUndo.h"
#include "stored/CompositeRuns.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QVBoxLayout>

namespace kirrel::stored {

namespace {
constexpr int kStartStrength = 50;
// The mask's first frame is shown at its own size; a larger one scrolls inside this square.
constexpr int kPreviewSide = 120;
} // namespace

frmCompositeAnims::frmCompositeAnims()
    : SpliceDialog("frmCompositeAnims", "Kirrel - Composite Animation w/ Stored Animation",
                   "Composite Current Animation with a Stored Animation. (Stored Anim and Alpha Masks will "
                   "be Scaled)") {
    auto* grid = new QGridLayout;
    auto* label3 = makeLabel("Label3", "Composite Mode");
    cboModeOptions_ = makeCombo("cboModeOptions");
    cboModeOptions_->addItems(compositeModeTexts());
    auto* label4 = makeLabel("Label4", "Alpha Options");
    cboAlphaOptions_ = makeCombo("cboAlphaOptions", [this] { alphaOptionsChanged(); });
    for (const char* text : kAlphaOptionTexts)
        cboAlphaOptions_->addItem(text);
    grid->addWidget(label3, 0, 0);
    grid->addWidget(cboModeOptions_, 0, 1);
    grid->addWidget(label4, 1, 0);
    grid->addWidget(cboAlphaOptions_, 1, 1);
    grid->setColumnStretch(1, 1);
    optionArea()->addLayout(grid);

    Label5_ = makeLabel("Label5", QString::fromStdString(strengthCaption(kStartStrength)));
    Slider1_ = makeSlider(
        "Slider1", 1, 100, [this] { strengthChanged(); }, [this] { strengthChanged(); });
    Slider1_->setSingleStep(1);
    Slider1_->setPageStep(5);
    Slider1_->setValue(kStartStrength);
    optionArea()->addWidget(Label5_);
    optionArea()->addWidget(Slider1_);

    auto* maskRow = new QHBoxLayout;
    auto* maskText = new QVBoxLayout;
    cmdLoadMask_ = makeButton("cmdLoadMask", "Load Mask", [this] { cmdLoadMask_Click(); });
    auto* label6 = makeLabel("Label6", "Animated Mask Information");
    Label7_ = makeLabel("Label7", "No Mask Selected");
    maskText->addWidget(cmdLoadMask_, 0, Qt::AlignLeft);
    maskText->addWidget(label6);
    maskText->addWidget(Label7_);
    maskText->addStretch(1);
    maskRow->addLayout(maskText, 1);
    PreviewBox_ = makePicture("PreviewBox");
    PreviewBox_->hide();
    ImageBox_ = makePicture("ImageBox");
    ImageBox_->setAlignment(Qt::AlignCenter);
    auto* view = new QScrollArea(this);
    view->setWidget(ImageBox_);
    view->setFixedSize(kPreviewSide + 6, kPreviewSide + 6);
    view->setAlignment(Qt::AlignCenter);
    maskText->addWidget(PreviewBox_);
    maskRow->addWidget(view);
    optionArea()->addLayout(maskRow);

    ownSkin_.texts = {cboModeOptions_, cboAlphaOptions_, label3, label4, Label5_, label6, Label7_};
    ownSkin_.buttons = {cmdLoadMask_};
    cboModeOptions_->setCurrentIndex(0);
    cboAlphaOptions_->setCurrentIndex(0);
    alphaOptionsChanged();
    finishLayout();
}

void frmCompositeAnims::alphaOptionsChanged() {
    if (!cmdLoadMask_) return; // the list is filled before the button is made
    cmdLoadMask_->setEnabled(alphaOptionOf(cboAlphaOptions_->currentText().toStdString()) ==
                             AlphaOption::AnimatedMask);
}

void frmCompositeAnims::strengthChanged() {
    Label5_->setText(QString::fromStdString(strengthCaption(Slider1_->value())));
}

void frmCompositeAnims::forgetMask(const char* caption) {
    Label7_->setText(caption);
    ImageBox_->clear();
    ImageBox_->adjustSize();
}

void frmCompositeAnims::cmdLoadMask_Click() {
    MaskFile = van().Van_RequestFile_open(masks::kSelectMaskTitle, "", masks::kMaskFilter);
    if (MaskFile.empty() || !fileExists(MaskFile)) {
        forgetMask("No Mask Loaded");
        return;
    }
    krl::Plane first;
    masks::MaskHeader header;
    try {
        masks::MaskFileReader in(MaskFile);
        header = in.header();
        // Only a first frame of a size that could be shown is read for the picture.
        if (in.planeBytes() <= masks::kMaskPictureLimit) in.readPlane(first);
    } catch (const DamagedFile& e) {
        van().Van_MessageBox(std::string("The mask can't be loaded.\n\n") + e.what());
        forgetMask("No Mask Loaded");
        return;
    }
    Label7_->setText(QString::fromStdString(masks::maskDescription(header)));
    if (first.empty()) {
        ImageBox_->clear();
    } else {
        filters::ShowPlanes(PreviewBox_, ImageBox_, first, first, first);
    }
    ImageBox_->adjustSize();
}

void frmCompositeAnims::run() {
    if (!lengthUnchanged()) return;
    const short slot = rows().selectedSlot();
    if (slot == -1) {
        van().Van_MessageBox("Please Select a Stored Animation");
        return;
    }
    (void)van().Van_BufferHeight();
    (void)van().Van_BufferWidth();
    const AlphaOption alpha = alphaOptionOf(cboAlphaOptions_->currentText().toStdString());
    if (alpha == AlphaOption::AnimatedMask && (MaskFile.empty() || !fileExists(MaskFile))) {
        van().Van_MessageBox("Please Select an Animated Mask");
        return;
    }
    if (!checkedSlot(slot)) return;
    if (alpha == AlphaOption::AnimatedMask) {
        try {
            const masks::MaskFileReader check(MaskFile);
        } catch (const DamagedFile& e) {
            van().Van_MessageBox(std::string("The mask can't be used.\n\n") + e.what() +
                                 "\nThe animation in memory is unchanged.");
            return;
        }
    }
    saveUndoIfChecked();
    const panel::DisabledWhileRunning busy(applyRowButtons());
    const int mode = compositeModeNumber(cboModeOptions_->currentText().toStdString());
    if (mode == 0) return;
    CompositeRun({mode, Slider1_->value(), alpha, MaskFile}, slotDataPath(tempDir(), slot));
}

} // namespace kirrel::stored
