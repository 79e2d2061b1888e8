#include "stored/SpliceForms.h"

#include "panel/FormBase.h"
#include "stored/frmAttachAnims.h"
#include "stored/frmCombineAnims.h"
#include "stored/frmCompositeAnims.h"

namespace kirrel::stored {

void registerSpliceForms() {
    panel::registerForm("frmCombineAnims", [] { return new frmCombineAnims; });
    panel::registerForm("frmCompositeAnims", [] { return new frmCompositeAnims; });
    panel::registerForm("frmAttachAnims", [] { return new frmAttachAnims; });
}

} // namespace kirrel::stored
