#include "host/Resources.h"

#include <QtGlobal>

// Resources compiled into a static library must be registered by hand, outside any namespace.
static void registerHostResources() { Q_INIT_RESOURCE(host); }

namespace kirrel::host {

void initResources() {
    static const bool done = (registerHostResources(), true);
    (void)done;
}

} // namespace kirrel::host
