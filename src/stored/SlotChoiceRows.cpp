#include "stored/SlotChoiceRows.h"

#include "panel/Controls.h"
#include "panel/EventGuard.h"
#include "stored/Thumbnail.h"
#include "stored/ThumbnailBox.h"

#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>

namespace kirrel::stored {

namespace {
constexpr const char* kEmpty = "EMPTY";

QString arrayName(const char* name, int i) {
    return QString("%1(%2)").arg(name).arg(i);
}

// An exclusive option button can't be unselected while it is the checked one: lift the rule for a
// moment.
void unselect(QRadioButton* option) {
    option->setAutoExclusive(false);
    option->setChecked(false);
    option->setAutoExclusive(true);
}
} // namespace

QString slotCaption(int slot) {
    return QString("Slot %1").arg(slot + 1);
}

SlotChoiceRows::SlotChoiceRows(QWidget* form, QGridLayout* grid, int firstRow, int firstColumn,
                               std::function<void(short slot)> onSelect) {
    for (int i = 0; i < kSlotCount; ++i) {
        Row& row = rows_[static_cast<std::size_t>(i)];
        row.option = new QRadioButton(form);
        row.option->setObjectName(arrayName("optSlot", i));
        row.thumbnail = makeThumbnailBox(form, arrayName("picThumbnail", i));
        row.label = new QLabel(slotCaption(i), form);
        row.label->setObjectName(arrayName("lblSlot", i));
        row.label->setMargin(6);
        row.label->setMinimumWidth(200);
        if (onSelect)
            QObject::connect(row.option, &QRadioButton::toggled, form, guarded([onSelect, i](bool on) {
                                 if (on) onSelect(static_cast<short>(i));
                             }));
        grid->addWidget(row.option, firstRow + i, firstColumn);
        grid->addWidget(row.thumbnail, firstRow + i, firstColumn + 1);
        grid->addWidget(row.label, firstRow + i, firstColumn + 2);
    }
}

void SlotChoiceRows::ResetSlots(const std::string& tempDir) {
    for (int i = 0; i < kSlotCount; ++i) {
        Row& row = rows_[static_cast<std::size_t>(i)];
        FrameFileHeader& header = headers_[static_cast<std::size_t>(i)];
        unselect(row.option);
        if (const auto h = peekFrameFileHeader(slotDataPath(tempDir, i))) {
            header = *h;
            row.label->setText(QString::fromStdString(slotDescription(header)));
        } else {
            header = {};
            row.label->setText(kEmpty);
        }
        // The caption decides, as on the panel.
        if (row.label->text() == kEmpty) {
            showThumbnail(row.thumbnail, {});
            row.option->setEnabled(false);
        } else {
            row.option->setEnabled(true);
            showThumbnail(row.thumbnail, loadThumbnail(slotThumbPath(tempDir, i)),
                          QSize(header.width, header.height));
        }
    }
}

short SlotChoiceRows::selectedSlot() const {
    short selected = -1;
    for (int i = 0; i < kSlotCount; ++i)
        if (rows_[static_cast<std::size_t>(i)].option->isChecked()) selected = static_cast<short>(i);
    return selected;
}

void SlotChoiceRows::skin(const panel::SkinSettings& s) {
    for (const Row& row : rows_)
        panel::colourControl(row.label, s.textboxFill, s.textboxText);
}

} // namespace kirrel::stored
