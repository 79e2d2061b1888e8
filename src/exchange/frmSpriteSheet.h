#pragma once
// "Kirrel-Anim To Sprite Sheet": the animation becomes one picture in the main buffer, its frames
// in a grid, for use as an animated sprite.

#include "panel/FormBase.h"

#include <cstdint>

class QCheckBox;
class QLabel;
class QPushButton;

namespace kirrel::exchange {

class frmSpriteSheet : public panel::FormBase {
    Q_OBJECT
  public:
    frmSpriteSheet();

  protected:
    void formLoad() override;

  private:
    void refreshLabels();
    void cmd_Run_Click();
    void cmdUndo_Click();
    void buildSheet();

    QLabel* lblFrames_;
    QLabel* lblRows_;
    QLabel* lblCols_;
    QCheckBox* chkUndoSave_;
    QPushButton* cmdUndo_;
    QPushButton* cmdRun_;
    std::int16_t Frames = 0, Rows = 0, Cols = 0, W = 0, H = 0, SheetW = 0, SheetH = 0;
};

} // namespace kirrel::exchange
