#pragma once
// Attach to Stored: a stored animation joined to the host's in space, on one of four sides. Sizes
// must fit: the same frame count, and the same height (left, right) or width (top, bottom).

#include "stored/SpliceDialog.h"

#include <array>

class QRadioButton;

namespace kirrel::stored {

class frmAttachAnims : public SpliceDialog {
    Q_OBJECT
  public:
    frmAttachAnims();

  protected:
    void refreshed() override;
    void run() override;

  private:
    std::array<QRadioButton*, 4> optAttachAnim_{};
};

} // namespace kirrel::stored
