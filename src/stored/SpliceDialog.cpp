#include "stored/SpliceDialog.h"

#include "panel/Skin.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kirrel::stored {

SpliceDialog::SpliceDialog(const QString& name, const QString& caption, const QString& help)
    : EffectDialog(name, caption) {
    auto* outer = makeWindowLayout<QVBoxLayout>(8, QMargins(12, 12, 12, 10));
    outer->addWidget(makeDescription(help));

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

    outer->addLayout(makeApplyRow());
}

void SpliceDialog::refresh() {
    readTempDirAndFrames();
    rows_->ResetSlots(tempDir());
}

bool SpliceDialog::lengthUnchanged() {
    if (van().Van_GetTotalFrames() == TotalFrames) return true;
    van().Van_MessageBox(kSpliceSizeChanged);
    refresh();
    return false;
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
    refresh();
    refreshed();
    rows_->skin(panel::readSkinSettings());
    SkinParts skin = ownSkin_;
    skin.texts.push_back(heading_);
    skin.toggles.insert(skin.toggles.begin(), chkUndoSave());
    applySkin(skin);
}

void SpliceDialog::formActivate() {
    refresh();
    refreshed();
}

} // namespace kirrel::stored
