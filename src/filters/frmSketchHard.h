#pragma once
// Sketch (hard line): draws the picture's lines with a library operation at a chosen strength and
// detail, and can lay the drawing over the colour picture ("Color Options").

#include "filters/FilterForm.h"
#include "filters/SketchHardFilter.h"

#include <cstdint>

class QComboBox;
class QSlider;

namespace kirrel::filters {

class frmSketchHard : public FilterForm {
    Q_OBJECT
  public:
    frmSketchHard();

    std::int32_t LineStrength = 255;
    // The passes are read from their slider each time, not kept.
    std::int32_t passes() const;
    SketchOption option() const;

  protected:
    void startValues() override;
    void currentFrame() override;
    void frameRange() override;

  private:
    void parametersChanged();

    QSlider* slider_LineStr_ = nullptr;
    QSlider* slider_Passes_ = nullptr;
    QComboBox* cboSketchOptions_ = nullptr;
};

} // namespace kirrel::filters
