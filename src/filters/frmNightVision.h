#pragma once
// NightVision: the look of night-vision goggles, one library call and no parameter. Nothing in the
// dialog changes the picture, so its one preview is made when it opens.

#include "filters/FilterForm.h"

namespace kirrel::filters {

class frmNightVision : public FilterForm {
    Q_OBJECT
  public:
    frmNightVision();

  protected:
    void currentFrame() override;
    void frameRange() override;
};

} // namespace kirrel::filters
