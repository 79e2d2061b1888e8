#pragma once
// The Animated Alpha Mask dialog: two sources mixed frame by frame through a mask file over the
// range of the lists. Loading a mask shows its first frame and describes it; the run reads the
// file again, so only the file's existence links the two.

#include "masks/MaskDialog.h"

#include <cstdint>
#include <string>

namespace kirrel::panel {
class PictureBox;
}

namespace kirrel::masks {

inline constexpr const char* kNoMaskLoaded = "No Mask Loaded";

class frmAnimMask : public MaskDialog {
    Q_OBJECT
  public:
    frmAnimMask();

    std::string MaskFile;
    std::int32_t MaskWidth = 0, MaskHeight = 0, MaskFrames = 0;

    void cmdLoadMask_Click();

  protected:
    void run() override;
    void done() override;

  private:
    void forgetMask();

    QLabel* Label5_ = nullptr;
    panel::PictureBox* PreviewBox_ = nullptr;
    panel::PictureBox* ImageBox_ = nullptr;
};

} // namespace kirrel::masks
