#pragma once
// The picture of the GreyOut filter apart from its dialog: the chosen channel's slider (0..255)
// becomes a percentage for the library, and the tolerance goes on as it stands, negative or not.

#include "pixel/Triple.h"

#include <cstdint>

namespace kirrel::filters {

struct GreyOutSettings {
    int channel = 0;  // 1 red, 2 green, 3 blue; 0 while no option is selected
    int slider = 128; // the chosen channel's slider
    std::int32_t tolerance = 0;
};

// round(slider / 255 * 100), half to even: 255 gives 100, 128 gives 50.
std::int16_t greyOutLevel(int slider);

// One library call for the selected channel, none without one; w, h are handed on as given.
void greyOutPipeline(krl::Triple& P, const GreyOutSettings& s, int w, int h);

} // namespace kirrel::filters
