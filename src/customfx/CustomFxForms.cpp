#include "customfx/CustomFxForms.h"

#include "customfx/CfxForms.h"
#include "customfx/CustomFX.h"
#include "panel/Catalogue.h"
#include "panel/FormBase.h"

namespace kirrel::customfx {

void registerCustomFxForms() {
    panel::registerForm("frmCFXBuilder", [] { return new frmCFXBuilder; });
    panel::registerForm("frmCFXPlayer", [] { return new frmCFXPlayer; });
    panel::registerProcedure("ImportCFX", [] { ImportCFX(); });
}

} // namespace kirrel::customfx
