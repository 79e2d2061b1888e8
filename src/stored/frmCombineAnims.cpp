#include "stored/frmCombineAnims.h"

#include "panel/Numeric.h"
#include "stored/AnimUndo.h"
#include "stored/CombineRuns.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kirrel::stored {

namespace {
// The host counts frames in 16 bits; a combination beyond that could not be held.
constexpr long long kMostFrames = 32767;
} // namespace

frmCombineAnims::frmCombineAnims()
    : SpliceDialog("frmCombineAnims", "Kirrel - Combine Animation w/ Stored Animation",
                   "Combine Current Animation with a Stored Animation. (Stored Anims of Different "
                   "Dimensions will be Scaled)") {
    // The first caption's spelling is the one users know from the dialog.
    optCombineAnim_[0] = makeOption("optCombineAnim(0)", "Insert Stored at Beggining of Animation");
    optCombineAnim_[1] = makeOption("optCombineAnim(1)", "Append Stored to Animation");
    optCombineAnim_[2] = makeOption("optCombineAnim(2)", "Insert Stored after Frame");
    cboSelectFrame_ = makeCombo("cboSelectFrame");
    // A group of their own: left to the form, the slot options in the frame would join them.
    auto* group = new QButtonGroup(this);
    for (QRadioButton* o : optCombineAnim_)
        group->addButton(o);
    optionArea()->addWidget(optCombineAnim_[0]);
    optionArea()->addWidget(optCombineAnim_[1]);
    auto* after = new QHBoxLayout;
    after->addWidget(optCombineAnim_[2]);
    after->addWidget(cboSelectFrame_);
    after->addStretch(1);
    optionArea()->addLayout(after);
    ownSkin_.texts = {cboSelectFrame_};
    ownSkin_.toggles.assign(std::begin(optCombineAnim_), std::end(optCombineAnim_));
    finishLayout();
}

void frmCombineAnims::refreshed() {
    if (TotalFrames > 0) FillFrameChoices();
    // Appending is where a run starts: it changes none of the frames already there.
    optCombineAnim_[1]->setChecked(true);
}

void frmCombineAnims::FillFrameChoices() {
    cboSelectFrame_->clear();
    if (TotalFrames < 1) {
        cboSelectFrame_->setEnabled(false);
        return;
    }
    for (int i = 0; i < TotalFrames; ++i)
        cboSelectFrame_->addItem(QString::number(i));
    cboSelectFrame_->setEnabled(true);
    cboSelectFrame_->setCurrentIndex(0);
}

void frmCombineAnims::run() {
    if (van().Van_GetTotalFrames() != TotalFrames) {
        van().Van_MessageBox(kSpliceSizeChanged);
        TotalFrames = van().Van_GetTotalFrames();
        FillFrameChoices();
        return;
    }
    Slot = rows().selectedSlot();
    if (Slot == -1) {
        van().Van_ShowStatus("Combine: choose a stored animation first");
        return;
    }
    (void)van().Van_BufferHeight();
    (void)van().Van_BufferWidth();
    const auto header = checkedSlot(Slot);
    if (!header) return;
    if (TotalFrames + static_cast<long long>(header->frames) > kMostFrames) {
        van().Van_MessageBox("The combined animation would have " +
                             std::to_string(TotalFrames + header->frames) + " frames, more than the " +
                             std::to_string(kMostFrames) +
                             " an animation can hold.\nNothing has been changed.");
        return;
    }
    saveUndoIfChecked();

    const std::string path = slotDataPath(van().Van_GetTempDir(), Slot);
    if (optCombineAnim_[1]->isChecked()) AppendStored(path);
    if (optCombineAnim_[0]->isChecked()) InsertStoredFirst(path);
    if (optCombineAnim_[2]->isChecked()) {
        const int after = toInt32(leadingNumber(cboSelectFrame_->currentText().toStdString()));
        InsertStoredAfter(path, after);
    }

    TotalFrames = van().Van_GetTotalFrames();
    FillFrameChoices();
    van().Van_GotoFrame(TotalFrames - 1);
    van().Van_ShowScrub(TotalFrames - 1, van().Van_GetTotalFrames());
    van().Van_Refresh();
}

void frmCombineAnims::undo() {
    SpliceDialog::undo();
    van().Van_GotoFrame(0);
    van().Van_Refresh();
}

} // namespace kirrel::stored
