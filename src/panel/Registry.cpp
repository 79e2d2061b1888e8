#include "panel/Registry.h"

#include "customfx/CustomFxForms.h"
#include "exchange/ExchangeForms.h"
#include "filters/FilterForms.h"
#include "generators/GeneratorForms.h"
#include "masks/MaskForms.h"
#include "stored/SpliceForms.h"
#include "stored/StoredForms.h"
#include "transitions/Families.h"
#include "transitions/MoveFamilies.h"
#include "transitions/PatternFamilies.h"
#include "transitions/StretchFamilies.h"
#include "transitions/StripeBlockFamilies.h"

namespace kirrel::panel {

void registerEverything() {
    static bool done = false;
    if (done) return;
    done = true;
    // Each subsystem adds its forms and procedures here as it lands.
    stored::registerStoredForms();
    transitions::registerTransitionForms();
    filters::registerFilterForms();
    transitions::registerMoveForms();
    transitions::registerStretchForms();
    transitions::registerPatternForms();
    transitions::registerStripeAndBlockForms();
    generators::registerGeneratorForms();
    customfx::registerCustomFxForms();
    masks::registerMaskForms();
    stored::registerSpliceForms();
    exchange::registerExchangeForms();
}

} // namespace kirrel::panel
