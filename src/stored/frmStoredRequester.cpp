#include "stored/frmStoredRequester.h"

#include "panel/EventGuard.h"
#include "panel/Skin.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kirrel::stored {

frmStoredRequester::frmStoredRequester() : FormBase("frmStoredRequester", "Please Select Stored Animation") {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(10, 10, 10, 10);
    outer->setSpacing(10);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    rows_ = std::make_unique<SlotChoiceRows>(this, grid, 0);
    grid->setColumnStretch(2, 1);
    outer->addLayout(grid);

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(makeButton("cmdOk", "Ok", [this] { cmdOk_Click(); }));
    bottom->addWidget(makeButton("cmdCancel", "Cancel", [this] { cmdCancel_Click(); }));
    outer->addLayout(bottom);
    for (int i = 0; i < kSlotCount; ++i)
        rows_->lblSlot(i)->setFixedHeight(rows_->picThumbnail(i)->height());
    setFixedSize(sizeHint().expandedTo(QSize(360, 0)));
}

void frmStoredRequester::refresh() {
    tempDir_ = van().Van_GetTempDir();
    totalFrames_ = van().Van_GetTotalFrames();
    SlotSelected = -1;
    ResetSlots();
}

void frmStoredRequester::formLoad() {
    refresh();
    Apply_Skin();
}

void frmStoredRequester::formActivate() {
    refresh();
}

void frmStoredRequester::Apply_Skin() {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    rows_->skin(s);
    for (const char* b : {"cmdOk", "cmdCancel"})
        panel::colourButton(control(b), s.buttonFill);
    panel::Draw_Pattern(this);
}

void frmStoredRequester::ResetSlots() {
    rows_->ResetSlots(tempDir_);
}

void frmStoredRequester::cmdOk_Click() {
    SlotSelected = rows_->selectedSlot();
}

void frmStoredRequester::cmdCancel_Click() {
    SlotSelected = -1;
    hide();
    endProgram();
}

void frmStoredRequester::formUnload() {
    van().Van_RestorePointer();
    van().Van_Unlock();
}

} // namespace kirrel::stored
