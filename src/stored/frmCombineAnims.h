#pragma once
// Combine with Stored: a stored animation joined to the host's in time, in front, at the end or
// after a chosen frame.

#include "stored/SpliceDialog.h"

class QComboBox;
class QRadioButton;

namespace kirrel::stored {

class frmCombineAnims : public SpliceDialog {
    Q_OBJECT
  public:
    frmCombineAnims();

    short Slot = -1;

    void FillFrameChoices();

  protected:
    void refreshed() override;
    void run() override;
    void undo() override;

  private:
    QRadioButton* optCombineAnim_[3] = {};
    QComboBox* cboSelectFrame_ = nullptr;
};

} // namespace kirrel::stored
