#pragma once
// One place that makes every form and procedure of every subsystem known to the panel.

namespace kirrel::panel {

void registerEverything();

} // namespace kirrel::panel
