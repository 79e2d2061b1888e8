#include "exchange/ExchangeForms.h"

#include "exchange/ExportForms.h"
#include "exchange/ImportGif.h"
#include "exchange/frmSave2AnimGif.h"
#include "exchange/frmSpriteSheet.h"
#include "panel/Catalogue.h"
#include "panel/Vantry.h"

namespace kirrel::exchange {

void registerExchangeForms() {
    panel::registerForm("frmSave2AnimGif", [] { return new frmSave2AnimGif; });
    panel::registerForm("frmSave2PNG", [] { return new frmSave2PNG; });
    panel::registerForm("frmSave2MNG", [] { return new frmSave2MNG; });
    panel::registerForm("frmSpriteSheet", [] { return new frmSpriteSheet; });
    // Each import procedure makes its own host object at entry. The plug-in list's entry keeps the
    // older PNG way; the File menu's entry takes the direct one.
    panel::registerProcedure("ImportGif", [] {
        Vantry::Vantry_Class van;
        ImportGifViaPNG(van);
    });
    panel::registerProcedure("ImportGifDirect", [] {
        Vantry::Vantry_Class van;
        ImportGifDirect(van);
    });
}

} // namespace kirrel::exchange
