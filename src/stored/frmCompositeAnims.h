#pragma once
// Composite with Stored: a stored animation blended into the host's frame by frame, by a mode, a
// strength and an optional mask.

#include "stored/SpliceDialog.h"

class QComboBox;
class QLabel;
class QPushButton;
class QSlider;

namespace kirrel::panel {
class PictureBox;
}

namespace kirrel::stored {

class frmCompositeAnims : public SpliceDialog {
    Q_OBJECT
  public:
    frmCompositeAnims();

    // The path the mask requester gave, empty until one was chosen.
    std::string MaskFile;

    void cmdLoadMask_Click();

  protected:
    void run() override;

  private:
    void alphaOptionsChanged();
    void strengthChanged();
    void forgetMask(const char* caption);

    QComboBox* cboModeOptions_ = nullptr;
    QComboBox* cboAlphaOptions_ = nullptr;
    QSlider* Slider1_ = nullptr;
    QLabel* Label5_ = nullptr;
    QPushButton* cmdLoadMask_ = nullptr;
    QLabel* Label7_ = nullptr;
    panel::PictureBox* PreviewBox_ = nullptr;
    panel::PictureBox* ImageBox_ = nullptr;
};

} // namespace kirrel::stored
