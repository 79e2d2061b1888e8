#pragma once
// The four slot rows of a form that chooses a stored animation (the requester, and the combining
// dialogs): an option button `optSlot(i)`, the thumbnail `picThumbnail(i)` and the description
// `lblSlot(i)`, captioned "Slot 1" to "Slot 4" until ResetSlots fills them.

#include "panel/Skin.h"
#include "stored/SlotFiles.h"

#include <QString>

#include <array>
#include <functional>
#include <string>

class QGridLayout;
class QLabel;
class QRadioButton;
class QWidget;

namespace kirrel::panel {
class PictureBox;
}

namespace kirrel::stored {

class SlotChoiceRows {
  public:
    // Makes the rows' controls on the form and lays them out in `grid`, one row each from
    // `firstRow`, in the columns optSlot, picThumbnail, lblSlot from `firstColumn`. `onSelect`, if
    // given, runs (behind the event boundary) when the user selects a row.
    SlotChoiceRows(QWidget* form, QGridLayout* grid, int firstRow, int firstColumn = 0,
                   std::function<void(short slot)> onSelect = {});

    // ResetSlots of a chooser: for each row, unselect it; a slot whose data file exists shows its
    // header's description, an enabled option and its thumbnail; any other shows "EMPTY", a cleared
    // box and a disabled option.
    void ResetSlots(const std::string& tempDir);
    // The selected row, or -1 for none.
    short selectedSlot() const;
    // The header numbers read by the last ResetSlots (zero for an empty slot).
    const FrameFileHeader& slotHeader(int slot) const { return headers_[static_cast<std::size_t>(slot)]; }

    // The descriptions take the text-box colours.
    void skin(const panel::SkinSettings& s);

    QRadioButton* optSlot(int i) const { return rows_[static_cast<std::size_t>(i)].option; }
    QLabel* lblSlot(int i) const { return rows_[static_cast<std::size_t>(i)].label; }
    panel::PictureBox* picThumbnail(int i) const { return rows_[static_cast<std::size_t>(i)].thumbnail; }

  private:
    struct Row {
        QRadioButton* option;
        panel::PictureBox* thumbnail;
        QLabel* label;
    };
    std::array<Row, kSlotCount> rows_{};
    std::array<FrameFileHeader, kSlotCount> headers_{};
};

// "Slot 1" for slot 0.
QString slotCaption(int slot);

} // namespace kirrel::stored
