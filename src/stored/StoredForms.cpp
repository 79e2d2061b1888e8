#include "stored/StoredForms.h"

#include "panel/FormBase.h"
#include "stored/frmMultiAnims.h"
#include "stored/frmStoredRequester.h"

namespace kirrel::stored {

void registerStoredForms() {
    panel::registerForm("frmMultiAnims", [] { return new frmMultiAnims; });
    panel::registerForm("frmStoredRequester", [] { return new frmStoredRequester; });
}

} // namespace kirrel::stored
