#pragma once
// The two dialogs in front of the CFX file: the builder exports the current animation, the player
// picks a file, says what it holds, asks, and applies it.

#include "panel/EffectDialog.h"

#include <cstdint>
#include <string>

class QLabel;
class QLineEdit;
class QPushButton;

namespace kirrel::customfx {

class frmCFXBuilder : public panel::EffectDialog {
    Q_OBJECT
  public:
    frmCFXBuilder();

  protected:
    void formLoad() override;
    void run() override;

  private:
    QLabel* Label2_ = nullptr;
    QLineEdit* txtCFX_Title_ = nullptr;
    // The builder keeps no undo: its own run button and "Done".
    QPushButton* cmdRun_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

class frmCFXPlayer : public panel::EffectDialog {
    Q_OBJECT
  public:
    frmCFXPlayer();

    // The file last chosen and what its header said.
    std::string Path;
    std::int16_t Type = 0;
    std::string Title;
    std::int16_t Frames = 0;
    std::int16_t Width = 0;
    std::int16_t Height = 0;

  protected:
    void formLoad() override;
    void run() override;
    // The undo ends on frame 0, redrawn.
    void undo() override;

  private:
    // Reads the chosen file's header; false (after telling the user why) when it can't be played.
    bool readHeader();
};

} // namespace kirrel::customfx
