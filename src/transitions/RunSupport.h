#pragma once
// Pieces both run engines (plain and stored) share: moving a triple between the host's main buffer
// and the run, and the alpha families' limit of the source to the opaque part of the frame.

#include "transitions/RunFrame.h"

namespace kirrel::transitions {

// M or A := the current frame, three fresh planes from the host.
void fetchFrame(Vantry::Vantry_Class& van, krl::Triple& t);
// The triple goes to the current frame, red, green, blue.
void sendFrame(Vantry::Vantry_Class& van, const krl::Triple& t);
// A becomes the source where the frame's alpha is 255 and the frame where it is 0: the alpha is read
// afresh, inverted in place (one plane given as all three of the triple) and mixed through.
void limitSourceByAlpha(RunFrame& f);

} // namespace kirrel::transitions
