#pragma once
// The bottom row of the effect dialogs: the undo pair on the left, the run and close buttons on
// the right.

class QCheckBox;
class QHBoxLayout;
class QPushButton;

namespace kirrel::panel {

QHBoxLayout* buttonRow(QCheckBox* save, QPushButton* undo, QPushButton* run, QPushButton* done);

// The run button is greyed while a run works and comes back however the run ends, so that a failed
// run leaves the dialog usable.
class RunButtonBusy {
  public:
    explicit RunButtonBusy(QPushButton* button);
    ~RunButtonBusy();
    RunButtonBusy(const RunButtonBusy&) = delete;
    RunButtonBusy& operator=(const RunButtonBusy&) = delete;

  private:
    QPushButton* button_;
};

} // namespace kirrel::panel
