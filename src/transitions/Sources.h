#pragma once
// The second picture of a transition, named by the text of the dialog's source list and compared by
// exact string. "Swap" and "Primary Color" are read once before the frame loop; the filtered copies
// of the frame ("GreyScale", "Negative", the six channel texts) are made anew for every frame; the
// four stored animations are the splicing runs' business.

#include "panel/Vantry.h"
#include "pixel/Triple.h"

#include <string>

namespace kirrel::transitions {

bool isStoredSource(const std::string& source);
// "Stored Animation #1" gives 0 ... "#4" gives 3; -1 for any other text.
int slotOfSource(const std::string& source);
// 1 red, 2 green, 3 blue, 4 red & green, 5 red & blue, 6 green & blue; 0 for any other text.
int channelsOfSource(const std::string& source);
bool isPerFrameSource(const std::string& source);

// Fills A before the loop for "Swap" (the swap planes) and "Primary Color" (planes of the colour);
// any other text leaves A as it is. With colourOnSwapPlanes the colour is painted over the swap
// planes, fetched for the purpose, instead of over planes allocated for it.
void fillSourceOnce(Vantry::Vantry_Class& van, const std::string& source, krl::Triple& A, int W, int H,
                    bool colourOnSwapPlanes = false);
// Fills A from the current frame for the per-frame sources (a second fetch of the main buffer, then
// the filter); any other text leaves A as it is.
void fillSourcePerFrame(Vantry::Vantry_Class& van, const std::string& source, krl::Triple& A, int W, int H);

} // namespace kirrel::transitions
