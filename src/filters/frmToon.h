#pragma once
// Toonify: blurs the picture a chosen number of times and draws the blurred picture against the
// unblurred one, so that photographs look like cartoon drawings.

#include "filters/FilterForm.h"

#include <cstdint>

class QCheckBox;
class QLabel;
class QSlider;

namespace kirrel::filters {

class frmToon : public FilterForm {
    Q_OBJECT
  public:
    frmToon();

    std::int32_t Strength = 1;
    bool edgeBoost() const;

  protected:
    void startValues() override;
    void currentFrame() override;
    void frameRange() override;

  private:
    void strengthChanged();

    QSlider* slider_toon_ = nullptr;
    QLabel* Label2_ = nullptr;
    QCheckBox* chkEdgeBoost_ = nullptr;
};

} // namespace kirrel::filters
