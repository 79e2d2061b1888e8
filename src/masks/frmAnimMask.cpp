#include "masks/frmAnimMask.h"

#include "filters/PictureAccess.h"
#include "masks/AnimMaskMod.h"
#include "masks/MaskSources.h"
#include "panel/DisabledWhileRunning.h"
#include "stored/DataFile.h"
#include "stored/SlotFiles.h"
#include "stored/WholeAnimationLimit.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace kirrel::masks {

namespace {
const MaskDialogTraits kAnimMaskTraits{"frmAnimMask",
                                       "Kirrel - Animated Alpha  Mask",
                                       "Composite Animation(s) using an Animated Mask",
                                       false,
                                       0,
                                       1};
// The mask is shown at its own size; a larger one scrolls inside this square.
constexpr int kPreviewSide = 200;
constexpr const char* kLoadToProceed = "Please Load an Animated Mask to Proceed";
} // namespace

frmAnimMask::frmAnimMask() : MaskDialog(kAnimMaskTraits, animMaskSources()) {
    auto* load = makeButton("cmdLoadMask", "Load Mask", [this] { cmdLoadMask_Click(); });
    auto* heading = makeLabel("Label4", "Mask Information");
    Label5_ = makeLabel("Label5", kNoMaskLoaded);
    PreviewBox_ = makePicture("PreviewBox");
    PreviewBox_->hide();
    ImageBox_ = makePicture("ImageBox");
    ImageBox_->setAlignment(Qt::AlignCenter);
    auto* view = new QScrollArea(this);
    view->setWidget(ImageBox_);
    view->setWidgetResizable(false);
    view->setFixedSize(kPreviewSide + 6, kPreviewSide + 6);
    view->setAlignment(Qt::AlignCenter);

    extraArea()->addWidget(load, 0, Qt::AlignLeft);
    extraArea()->addWidget(heading);
    extraArea()->addWidget(Label5_);
    extraArea()->addWidget(PreviewBox_);
    extraArea()->addWidget(view, 0, Qt::AlignHCenter);
    finishLayout();
}

void frmAnimMask::forgetMask() {
    Label5_->setText(kNoMaskLoaded);
    ImageBox_->clear();
    ImageBox_->adjustSize();
}

void frmAnimMask::cmdLoadMask_Click() {
    MaskFile = van().Van_RequestFile_open(kSelectMaskTitle, "", kMaskFilter);
    if (MaskFile.empty() || !stored::fileExists(MaskFile)) {
        forgetMask();
        return;
    }
    krl::Plane first;
    try {
        MaskFileReader in(MaskFile);
        MaskWidth = in.header().width;
        MaskHeight = in.header().height;
        MaskFrames = in.header().frames;
        // Only a first frame of a size that could be shown is read for the picture.
        if (in.planeBytes() <= kMaskPictureLimit) in.readPlane(first);
    } catch (const stored::DamagedFile& e) {
        van().Van_MessageBox(std::string("The mask can't be loaded.\n\n") + e.what());
        forgetMask();
        return;
    }
    (void)van().Van_BufferHeight();
    (void)van().Van_BufferWidth();
    if (first.empty())
        ImageBox_->clear();
    else
        filters::ShowPlanes(PreviewBox_, ImageBox_, first, first, first);
    ImageBox_->adjustSize();
    Label5_->setText(QString::fromStdString(maskDescription({MaskWidth, MaskHeight, MaskFrames})));
}

void frmAnimMask::run() {
    const int remembered = van().Van_GetCurrentFrame();
    TotalFrames = van().Van_GetTotalFrames();
    const int H = van().Van_BufferHeight();
    const int W = van().Van_BufferWidth();
    if (!frameCountUnchanged()) return;
    van().Van_StopAnimation();
    if (TotalFrames == 0) {
        offerAnimation();
        return;
    }
    if (cboFrameStart()->currentText() == cboFrameEnd()->currentText()) {
        van().Van_MessageBox("Please select more than one frame.");
        return;
    }
    if (!stored::fileExists(MaskFile)) {
        van().Van_MessageBox(std::string("File not found!\n") + kLoadToProceed);
        return;
    }
    if (Label5_->text() == kNoMaskLoaded) {
        van().Van_MessageBox(std::string("No Mask Loaded!\n") + kLoadToProceed);
        return;
    }
    // The mask is checked whole before the undo is saved, so a damaged file or one too large to
    // hold scaled in memory is refused before anything changes. The run reads it again.
    try {
        const MaskFileReader in(MaskFile);
        const long long bytes = stored::wholeAnimationBytes(in.header().frames, 1, W, H);
        if (!stored::fitsInMemory(bytes)) {
            van().Van_MessageBox(stored::tooLargeMessage(bytes));
            return;
        }
    } catch (const stored::DamagedFile& e) {
        van().Van_MessageBox(std::string("The mask can't be used.\n\n") + e.what());
        return;
    }
    saveUndoIfChecked();
    if (darker() == lighter()) {
        van().Van_MessageBox(kTwoSources);
        return;
    }
    const panel::DisabledWhileRunning busy({cmdRun()});
    AnimMask(MaskFile, lighter(), darker(), startIndex(), endIndex());
    cmdRun()->setEnabled(true);
    endRun(remembered);
}

void frmAnimMask::done() {
    forgetMask();
    MaskDialog::done();
}

} // namespace kirrel::masks
