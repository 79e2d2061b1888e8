#pragma once
// "Export Animation to Animated Gif": one delay for all frames or a delay per frame, the primary
// colour as the transparent one if asked, and a loop count.

#include "panel/FormBase.h"

#include <cstdint>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace kirrel::exchange {

class frmSave2AnimGif : public panel::FormBase {
    Q_OBJECT
  public:
    frmSave2AnimGif();

    // The list entry of one frame.
    static QString frameEntry(int frame, std::int32_t delay);

  protected:
    void formLoad() override;

  private:
    void Fill_Frame_List();
    void cmdSetDelay_Click();
    void cmdSave_Click();
    void chkGlobalDelay_Click();

    QComboBox* cboFrameList_;
    QPushButton* cmdSetDelay_;
    QCheckBox* chkGlobalDelay_;
    QLineEdit* txtDelay_;
    QCheckBox* chkGifTransparent_;
    QLineEdit* txtLoops_;
    QPushButton* cmdSave_;
    QPushButton* cmdCancel_;
    // Wider than the 16 bits these once had: a GIF holds delays and loop counts up to 65535.
    int GlobalDelay = 0;
    int LoopCount = 0;
    std::vector<std::int32_t> FrameDelay;
    std::int32_t Total = 0;
};

} // namespace kirrel::exchange
