#include "filters/FilterForms.h"

#include "filters/frmChannelThreshold.h"
#include "filters/frmGreyOut.h"
#include "filters/frmNightVision.h"
#include "filters/frmSketchHard.h"
#include "filters/frmSketchSoft.h"
#include "filters/frmToon.h"
#include "panel/FormBase.h"

namespace kirrel::filters {

void registerFilterForms() {
    panel::registerForm("frmToon", [] { return new frmToon; });
    panel::registerForm("frmSketchSoft", [] { return new frmSketchSoft; });
    panel::registerForm("frmSketchHard", [] { return new frmSketchHard; });
    panel::registerForm("frmNightVision", [] { return new frmNightVision; });
    panel::registerForm("frmChannelThreshold", [] { return new frmChannelThreshold; });
    panel::registerForm("frmGreyOut", [] { return new frmGreyOut; });
}

} // namespace kirrel::filters
