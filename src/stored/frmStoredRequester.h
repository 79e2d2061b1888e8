#pragma once
// A ready-made slot chooser: the four slots with an option each. "Ok" records the choice in
// SlotSelected and leaves the form open for its caller to read; "Cancel" ends the program, which is
// this form's own meaning of cancel.

#include "panel/FormBase.h"
#include "stored/SlotChoiceRows.h"

#include <memory>
#include <string>

namespace kirrel::stored {

class frmStoredRequester : public panel::FormBase {
    Q_OBJECT
  public:
    frmStoredRequester();

    // -1 for no choice, else the slot 0 to 3.
    short SlotSelected = -1;
    // Kept for the caller; the form never reads it.
    std::string StoredCaller;

    void ResetSlots();
    void cmdOk_Click();
    void cmdCancel_Click();

  protected:
    void formLoad() override;
    void formActivate() override;
    void formUnload() override;

  private:
    void refresh();
    void Apply_Skin();

    std::unique_ptr<SlotChoiceRows> rows_;
    std::string tempDir_;
    short totalFrames_ = 0;
};

} // namespace kirrel::stored
