#include "panel/Registry.h"

namespace kirrel::panel {

void registerEverything() {
    static bool done = false;
    if (done) return;
    done = true;
    // Each subsystem adds its forms and procedures here as it lands.
}

} // namespace kirrel::panel
