#pragma once
// The stripe dialogs' own controls: option buttons `optDirection` choosing the kind of stripes, and a
// size per direction, set through the host's value box and shown under its button. The sizes are kept
// doubled, the period of a stripe pair; 2 (one pixel) at load.

#include "transitions/Families.h"
#include "transitions/Stripes.h"

#include <optional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QRadioButton;

namespace kirrel::transitions {

// "Size: 1 pixel high", "Size: 3 pixels wide": the stored value halved, singular below a stored 3.
std::string stripeSizeLabel(int stored, bool horizontal);
// The stored value for a value box's answer: twice it, unless the user backed out (an answer whose
// double is -2 or less), which keeps the value as it was.
std::optional<int> storedStripeSize(int answer);

class StripeControls : public FamilyControls {
  public:
    StripeControls(panel::FormBase& form, QBoxLayout& layout, StripeFamily family,
                   const std::vector<const char*>& options);

    void load(const panel::SkinSettings& skin) override;
    bool run(const FamilyRun& request) override;

    const StripeSizes& sizes() const { return sizes_; }

  private:
    void askSize(bool horizontal);
    int member() const;

    panel::FormBase& form_;
    StripeFamily family_;
    StripeSizes sizes_;
    std::vector<QRadioButton*> options_;
    QPushButton* cmdHsize_ = nullptr;
    QPushButton* cmdVsize_ = nullptr;
    QLabel* lblHSize_ = nullptr;
    QLabel* lblVSize_ = nullptr;
};

} // namespace kirrel::transitions
