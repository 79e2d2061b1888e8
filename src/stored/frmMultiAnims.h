#pragma once
// The Stored Animations panel: four rows, one per slot, with the slot's thumbnail, its description
// (or "EMPTY") and the buttons that save the host's animation into it, load it back and clear it.

#include "panel/FormBase.h"
#include "stored/SlotFiles.h"

#include <array>
#include <string>

class QGridLayout;
class QPushButton;

namespace kirrel::stored {

class frmMultiAnims : public panel::FormBase {
    Q_OBJECT
  public:
    frmMultiAnims();

    // The slot on which the next save or load works.
    short CurrentSlot = 0;
    std::array<short, kSlotCount> SlotFrames{}, SlotWidth{}, SlotHeight{};

    void SaveAnimToSlot();
    void LoadAnimFromSlot();
    // Brings the rows into step with the disk. The caption decides, not the file: a row whose text
    // isn't "EMPTY" is enabled and shows its thumbnail, and only Clear writes "EMPTY".
    void ResetSlots();

    void cmdSave_Click(short index);
    void cmdLoad_Click(short index);
    void cmdClear_Click(short index);
    void cmdCancel_Click();
    void closeByUser() override;

  protected:
    void formLoad() override;
    void formUnload() override;

  private:
    struct Row {
        panel::PictureBox* picThumbnail = nullptr;
        QLabel* lblSlots = nullptr;
        QPushButton* cmdSave = nullptr;
        QPushButton* cmdLoad = nullptr;
        QPushButton* cmdClear = nullptr;
    };
    void buildRow(int index, QGridLayout* grid);
    void setSlotButtons(bool enabled);
    void Apply_Skin();

    std::array<Row, kSlotCount> rows_;
    std::string tempDir_;
    short totalFrames_ = 0;
};

} // namespace kirrel::stored
