#pragma once
// What the three dialogs that join a stored animation with the host's share: the help text, the
// four slot rows under "Select Stored Animation", the undo pair, "Apply" and "Done", and the
// refusal of a slot file that is damaged, made before the undo is saved so nothing has changed.

#include "panel/FormBase.h"
#include "stored/SlotChoiceRows.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QPushButton;
class QVBoxLayout;

namespace kirrel::stored {

inline constexpr const char* kSpliceSizeChanged = "Animation Size Changed!\nUpdating Settings";

class SpliceDialog : public panel::FormBase {
    Q_OBJECT
  public:
    SpliceDialog(const QString& name, const QString& caption, const QString& help);

    void closeByUser() override { cmdCancel_Click(); }

    // The frame count when the dialog last looked.
    std::int16_t Total = 0;

  protected:
    // Where a dialog puts its options, below the slot rows.
    QVBoxLayout* optionArea() const { return options_; }
    void finishLayout();

    SlotChoiceRows& rows() { return *rows_; }
    const std::string& tempDir() const { return tempDir_; }
    bool undoChecked() const;
    QCheckBox* chkUndoSave() const { return chkUndoSave_; }
    // Run, Undo and Done, which the longer runs disable while they work.
    std::vector<QWidget*> runButtons() const;

    // Temporary directory, frame count and slot rows read anew.
    void refresh();
    // The slot's header when its file is whole; otherwise the refusal is shown and nullopt returned.
    std::optional<FrameFileHeader> checkedSlot(short slot);

    void formLoad() override;
    void formActivate() override;
    void formUnload() override;
    // Runs after refresh at load and at activation.
    virtual void refreshed() {}
    virtual void cmd_Run_Click() = 0;
    virtual void cmdUndo_Click();
    void cmdCancel_Click();

    // Extra controls a dialog wants coloured like the lists and labels, and like buttons.
    std::vector<QWidget*> textControls_;
    std::vector<QWidget*> buttonControls_;
    std::vector<QWidget*> optionControls_; // option buttons and check boxes of the dialog's own

  private:
    void Apply_Skin();

    std::unique_ptr<SlotChoiceRows> rows_;
    std::string tempDir_;
    QVBoxLayout* options_ = nullptr;
    QLabel* help_ = nullptr;
    QLabel* heading_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

} // namespace kirrel::stored
