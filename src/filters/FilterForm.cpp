#include "filters/FilterForm.h"

#include "filters/PictureAccess.h"
#include "panel/DisabledWhileRunning.h"
#include "pixel/Mixing.h"

#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kirrel::filters {

FilterForm::FilterForm(const FilterTraits& traits)
    : EffectDialog(traits.formName, traits.caption), traits_(traits) {
    auto* outer = makeWindowLayout<QHBoxLayout>(14);

    auto* left = new QVBoxLayout;
    left->setSpacing(8);
    left->addWidget(makeDescription(traits_.description));

    parameters_ = new QVBoxLayout;
    parameters_->setSpacing(6);
    left->addLayout(parameters_);

    left->addLayout(makeFrameChoice());
    left->addLayout(makeFrameLists());

    if (traits_.hasUseAlpha) {
        chkUseAlpha_ = makeCheck("chkUseAlpha", "Use Alpha?");
        left->addWidget(chkUseAlpha_);
    }
    left->addStretch(1);

    left->addLayout(makeApplyRow());
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

bool FilterForm::useAlpha() const {
    return chkUseAlpha_ && chkUseAlpha_->checkState() == Qt::Checked;
}

void FilterForm::formLoad() {
    readTempDirAndFrames();
    std::vector<QWidget*> toggles{chkUndoSave(), optCurrent(), optMultiple()};
    if (chkUseAlpha_) toggles.push_back(chkUseAlpha_);
    applySkin({frameListParts(), toggles, {}});
    startValues();
    updatePreview();
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
    if (traits_.runDisablesUndoAndDone) return applyRowButtons();
    return {cmdRun()};
}

void FilterForm::run() {
    const std::optional<int> remembered = beginRun(multipleFrames());
    if (!remembered) return;
    {
        const panel::DisabledWhileRunning busy(runDisables());
        // One option is always selected, so the check box alone decides.
        saveUndoIfChecked();
        if (undoSaveChecked() && traits_.gotoFrameAfterUndoSave) van().Van_GotoFrame(*remembered);
        if (currentFrameChosen()) {
            PreviewOn = 0;
            currentFrame();
        }
        if (multipleFrames()) {
            frameRange();
            if (traits_.showAgainAfterRange) showForm();
        }
    }
    endRun(*remembered);
}

} // namespace kirrel::filters
