#pragma once
// Sketch (soft line): the negative of the picture, blurred, is added back to the picture, which turns
// a photograph into a pencil drawing. "Color Sketch" keeps the picture's colour.

#include "filters/FilterForm.h"

#include <cstdint>

class QCheckBox;
class QLabel;
class QSlider;

namespace kirrel::filters {

class frmSketchSoft : public FilterForm {
    Q_OBJECT
  public:
    frmSketchSoft();

    std::int16_t Detail = 1;
    std::int16_t colorOn() const;

  protected:
    void startValues() override;
    void currentFrame() override;
    void frameRange() override;

  private:
    void detailChanged();

    QSlider* slider_soft_ = nullptr;
    QLabel* Label2_ = nullptr;
    QCheckBox* chkColor_ = nullptr;
};

} // namespace kirrel::filters
