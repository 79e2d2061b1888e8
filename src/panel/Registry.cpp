#include "panel/Registry.h"

#include "filters/FilterForms.h"
#include "stored/StoredForms.h"
#include "transitions/Families.h"

namespace kirrel::panel {

void registerEverything() {
    static bool done = false;
    if (done) return;
    done = true;
    // Each subsystem adds its forms and procedures here as it lands.
    stored::registerStoredForms();
    transitions::registerTransitionForms();
    filters::registerFilterForms();
}

} // namespace kirrel::panel
