// The frame lists of the effect dialogs (see EffectDialog.h): filled from the frame count, offered
// an animation when there is none, refilled when the animation's length changed behind the dialog's
// back, and checked at the start of a run.

#include "panel/EffectDialog.h"
#include "panel/EnsureAnimation.h"
#include "panel/Numeric.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>

#include <stdexcept>

namespace kirrel::panel {

namespace {

int listNumber(const QComboBox* list) {
    const std::string t = list->currentText().toStdString();
    if (t.find_first_of("0123456789") == std::string::npos) throw std::invalid_argument("Type mismatch");
    return toInt32(leadingNumber(t));
}

} // namespace

int EffectDialog::startIndex() const {
    return cboFrameStart_->currentIndex();
}

int EffectDialog::endIndex() const {
    return cboFrameEnd_->currentIndex();
}

int EffectDialog::startText() const {
    return listNumber(cboFrameStart_);
}

int EffectDialog::endText() const {
    return listNumber(cboFrameEnd_);
}

bool EffectDialog::currentFrameChosen() const {
    return optCurrent_->isChecked();
}

bool EffectDialog::multipleFrames() const {
    return optMultiple_->isChecked();
}

std::vector<QWidget*> EffectDialog::frameListParts() const {
    return {cboFrameStart_, cboFrameEnd_, lblKeyIn_, lblKeyOut_};
}

QGridLayout* EffectDialog::makeFrameLists() {
    lblKeyIn_ = makeLabel("lblKeyIn", "Frame Start");
    lblKeyOut_ = makeLabel("lblKeyOut", "Frame End");
    cboFrameStart_ = makeCombo("cboFrameStart");
    cboFrameEnd_ = makeCombo("cboFrameEnd");
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(3);
    for (QLabel* l : {lblKeyIn_, lblKeyOut_})
        l->setMargin(3);
    for (QComboBox* c : {cboFrameStart_, cboFrameEnd_})
        c->setMaxVisibleItems(16);
    grid->addWidget(lblKeyIn_, 0, 0);
    grid->addWidget(cboFrameStart_, 1, 0);
    grid->addWidget(lblKeyOut_, 0, 1);
    grid->addWidget(cboFrameEnd_, 1, 1);
    onValidate(cboFrameStart_, [this] { frameListLeft(true); });
    onValidate(cboFrameEnd_, [this] { frameListLeft(false); });
    return grid;
}

QHBoxLayout* EffectDialog::makeFrameChoice() {
    optCurrent_ = makeOption("optDirection(0)", "Current Frame");
    optMultiple_ = makeOption("optDirection(1)", "Multiple Frames");
    optCurrent_->setChecked(true);
    auto* row = new QHBoxLayout;
    row->addWidget(optCurrent_);
    row->addWidget(optMultiple_);
    row->addStretch(1);
    return row;
}

void EffectDialog::formActivate() {
    if (cboFrameStart_ && TotalFrames > 0) fillFrameLists();
}

void EffectDialog::readTempDirAndFrames() {
    tempDir_ = van().Van_GetTempDir();
    TotalFrames = van().Van_GetTotalFrames();
    if (cboFrameStart_ && TotalFrames > 0) fillFrameLists();
}

void EffectDialog::fillFrameLists() {
    listFrames();
    if (TotalFrames < 1) offerAnimation();
}

void EffectDialog::listFrames() {
    clearFrameLists();
    for (int i = 0; i < TotalFrames; ++i) {
        cboFrameStart_->addItem(QString::number(i));
        cboFrameEnd_->addItem(QString::number(i));
    }
    if (TotalFrames < 1) return;
    cboFrameStart_->setCurrentIndex(0);
    cboFrameEnd_->setCurrentIndex(TotalFrames - 1);
}

void EffectDialog::clearFrameLists() {
    cboFrameStart_->clear();
    cboFrameEnd_->clear();
}

void EffectDialog::offerAnimation(const char* question) {
    Ensure_Animation(
        *this, [this] { clearFrameLists(); },
        [this] {
            TotalFrames = van().Van_GetTotalFrames();
            fillFrameLists();
            cboFrameStart_->setEnabled(true);
            cboFrameEnd_->setEnabled(true);
        },
        question);
}

void EffectDialog::frameListLeft(bool startLeft) {
    TotalFrames = van().Van_GetTotalFrames();
    if (cboFrameStart_->count() != TotalFrames || cboFrameEnd_->count() != TotalFrames) fillFrameLists();
    pullFrameListsAlong(startLeft);
}

void EffectDialog::pullFrameListsAlong(bool startLeft) {
    if (cboFrameStart_->currentIndex() <= cboFrameEnd_->currentIndex()) return;
    if (startLeft)
        cboFrameEnd_->setCurrentIndex(cboFrameStart_->currentIndex());
    else
        cboFrameStart_->setCurrentIndex(cboFrameEnd_->currentIndex());
}

bool EffectDialog::frameCountUnchanged() {
    if (cboFrameStart_->count() == TotalFrames && cboFrameEnd_->count() == TotalFrames) return true;
    van().Van_MessageBox(kSizeChanged);
    fillFrameLists();
    return false;
}

std::optional<int> EffectDialog::beginRun(bool needsAnimation) {
    const int remembered = van().Van_GetCurrentFrame();
    TotalFrames = van().Van_GetTotalFrames();
    if (!frameCountUnchanged()) return std::nullopt;
    van().Van_StopAnimation();
    if (needsAnimation && TotalFrames == 0) {
        offerAnimation();
        return std::nullopt;
    }
    return remembered;
}

void EffectDialog::endRun(int remembered) {
    van().Van_GotoFrame(remembered);
    van().Van_Refresh();
}

} // namespace kirrel::panel
