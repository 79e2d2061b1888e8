#pragma once

namespace kirrel::host {

// Makes the host's built-in files (the default wallpaper) reachable under ":/host/".
void initResources();

} // namespace kirrel::host
