#pragma once
// The two dialogs in front of the CFX file: the builder exports the current animation, the player
// picks a file, says what it holds, asks, and applies it.

#include "panel/FormBase.h"

#include <cstdint>
#include <string>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kirrel::customfx {

class frmCFXBuilder : public panel::FormBase {
    Q_OBJECT
  public:
    frmCFXBuilder();

    void closeByUser() override { closeDialog(); }

  protected:
    void formLoad() override;
    void formUnload() override;

  private:
    void cmd_Run_Click();

    QLabel* Label1_ = nullptr;
    QLabel* Label2_ = nullptr;
    QLineEdit* txtCFX_Title_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

class frmCFXPlayer : public panel::FormBase {
    Q_OBJECT
  public:
    frmCFXPlayer();

    void closeByUser() override { closeDialog(); }

    // The file last chosen and what its header said.
    std::string Path;
    std::int16_t Type = 0;
    std::string Title;
    std::int16_t Frames = 0;
    std::int16_t Width = 0;
    std::int16_t Height = 0;

  protected:
    void formLoad() override;
    void formUnload() override;

  private:
    void cmd_Run_Click();
    // Reads the chosen file's header; false (after telling the user why) when it can't be played.
    bool readHeader();
    void cmdUndo_Click();

    QLabel* Label1_ = nullptr;
    QCheckBox* chkUndoSave_ = nullptr;
    QPushButton* cmdUndo_ = nullptr;
    QPushButton* cmdRun_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

} // namespace kirrel::customfx
