#include "filters/FilterForms.h"

#include "filters/frmNightVision.h"
#include "filters/frmToon.h"
#include "panel/FormBase.h"

namespace kirrel::filters {

void registerFilterForms() {
    panel::registerForm("frmToon", [] { return new frmToon; });
    panel::registerForm("frmNightVision", [] { return new frmNightVision; });
}

} // namespace kirrel::filters
