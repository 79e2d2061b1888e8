#pragma once
// The built-in sample a new user starts with: a short animation and a swap picture to transition into.

#include "host/Picture.h"

#include <vector>

namespace kirrel::host {

std::vector<Picture> sampleAnimation(int frames = 30, int w = 320, int h = 240);
Picture sampleSwapPicture(int w = 320, int h = 240);

} // namespace kirrel::host
