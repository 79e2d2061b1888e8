#pragma once
// Controls a run greys (its button, the apply row, the whole dialog) come back however the run ends,
// so that a failed run leaves the dialog usable.

#include <vector>

class QWidget;

namespace kirrel::panel {

class DisabledWhileRunning {
  public:
    explicit DisabledWhileRunning(std::vector<QWidget*> controls);
    ~DisabledWhileRunning();
    DisabledWhileRunning(const DisabledWhileRunning&) = delete;
    DisabledWhileRunning& operator=(const DisabledWhileRunning&) = delete;

  private:
    std::vector<QWidget*> controls_;
};

} // namespace kirrel::panel
