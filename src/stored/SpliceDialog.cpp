#include "stored/SpliceDialog.h"

#include "panel/Panel.h"
#include "panel/Skin.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kirrel::stored {

SpliceDialog::SpliceDialog(const QString& name, const QString& caption, const QString& help)
    : FormBase(name, caption) {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(12, 12, 12, 10);
    outer->setSpacing(8);

    help_ = makeLabel("Label1", help);
    help_->setWordWrap(true);
    help_->setMargin(5);
    outer->addWidget(help_);

    heading_ = makeLabel("Label2", "Select Stored Animation");
    heading_->setMargin(3);
    outer->addWidget(heading_);

    auto* frame = new QFrame(this);
    frame->setObjectName("Frame1");
    frame->setFrameShape(QFrame::Box);
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    rows_ = std::make_unique<SlotChoiceRows>(this, grid, 0);
    grid->setColumnStretch(2, 1);
    for (int i = 0; i < kSlotCount; ++i)
        rows_->lblSlot(i)->setFixedHeight(rows_->picThumbnail(i)->height());
    outer->addWidget(frame);

    options_ = new QVBoxLayout;
    options_->setSpacing(5);
    outer->addLayout(options_);
    outer->addStretch(1);

    outer->addLayout(makeApplyRow(
        chkUndoSave_, cmdUndo_, cmdRun_, cmdCancel_, [this] { cmdUndo_Click(); }, [this] { cmd_Run_Click(); },
        [this] { cmdCancel_Click(); }));
}

void SpliceDialog::finishLayout() {
    setFixedSize(sizeHint().expandedTo(QSize(440, 0)));
}

bool SpliceDialog::undoChecked() const {
    return chkUndoSave_->checkState() == Qt::Checked;
}

std::vector<QWidget*> SpliceDialog::runButtons() const {
    return {cmdRun_, cmdUndo_, cmdCancel_};
}

void SpliceDialog::refresh() {
    tempDir_ = van().Van_GetTempDir();
    Total = van().Van_GetTotalFrames();
    rows_->ResetSlots(tempDir_);
}

std::optional<FrameFileHeader> SpliceDialog::checkedSlot(short slot) {
    try {
        const FrameFileReader in(slotDataPath(van().Van_GetTempDir(), slot), FrameFileReader::Kind::Slot);
        return in.header();
    } catch (const DamagedFile& e) {
        van().Van_MessageBox("Slot " + std::to_string(slot + 1) + " can't be used.\n\n" + e.what() +
                             "\nThe animation in memory is unchanged.");
        return std::nullopt;
    }
}

void SpliceDialog::formLoad() {
    chkUndoSave_->setChecked(false);
    refresh();
    refreshed();
    Apply_Skin();
}

void SpliceDialog::formActivate() {
    refresh();
    refreshed();
}

void SpliceDialog::formUnload() {
    panel::showMainPanel();
}

void SpliceDialog::Apply_Skin() {
    const panel::SkinSettings s = panel::readSkinSettings();
    panel::colourBackground(this, panel::kPanelBackdrop);
    rows_->skin(s);
    std::vector<QWidget*> texts{help_, heading_};
    texts.insert(texts.end(), textControls_.begin(), textControls_.end());
    for (QWidget* w : texts)
        panel::colourControl(w, s.textboxFill, s.textboxText);
    std::vector<QWidget*> buttons{cmdRun_, cmdUndo_, cmdCancel_};
    buttons.insert(buttons.end(), buttonControls_.begin(), buttonControls_.end());
    for (QWidget* b : buttons)
        panel::colourButton(b, s.buttonFill);
    std::vector<QWidget*> options{chkUndoSave_};
    options.insert(options.end(), optionControls_.begin(), optionControls_.end());
    for (QWidget* w : options) {
        panel::colourControl(w, s.buttonFill, 0x000000);
        w->setStyleSheet(w->styleSheet() + " padding: 3px 6px; border-radius: 3px;");
    }
    panel::Draw_Pattern(this);
}

void SpliceDialog::cmdUndo_Click() {
    cmdUndoClick(cmdUndo_);
}

void SpliceDialog::cmdCancel_Click() {
    closeDialog();
}

} // namespace kirrel::stored
