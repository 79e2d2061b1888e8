#pragma once
// The Alpha Mask filter: two sources mixed through the host's alpha plane, on the current frame or
// on every frame of a range. The host shows its alpha plane while the dialog is open.

#include "masks/MaskDialog.h"

namespace kirrel::masks {

class frmAlphaMask : public MaskDialog {
    Q_OBJECT
  public:
    frmAlphaMask();

  protected:
    void loadExtras() override;
    void run() override;
    void undo() override;
};

} // namespace kirrel::masks
