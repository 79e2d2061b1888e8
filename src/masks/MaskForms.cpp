#include "masks/MaskForms.h"

#include "masks/AlphaMaskMod.h"
#include "masks/AnimMaskMod.h"
#include "masks/frmAlphaMask.h"
#include "masks/frmAnimMask.h"
#include "panel/Catalogue.h"
#include "panel/FormBase.h"

namespace kirrel::masks {

void registerMaskForms() {
    panel::registerForm("frmAlphaMask", [] { return new frmAlphaMask; });
    panel::registerForm("frmAnimMask", [] { return new frmAnimMask; });
    panel::registerProcedure("SendMain2Alpha", SendMain2Alpha);
    panel::registerProcedure("SendSwap2Alpha", SendSwap2Alpha);
    panel::registerProcedure("AMaskExport", AMaskExport);
    panel::registerProcedure("AMaskImport", AMaskImport);
}

} // namespace kirrel::masks
