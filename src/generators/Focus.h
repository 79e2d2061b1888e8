#pragma once
// Focus In and Out: a range of frames blurred more and more, or less and less. The last blur round
// of a frame is r = 30 x the frame's place in the range (0 to 1), so a frame gets floor(r) + 1 rounds:
// even the sharpest frame of a run has one. A range of one frame divides by zero and fails.

#include "generators/GeneratorForm.h"

namespace kirrel::generators {

void FocusOut(FrameSpan span);
void FocusOutAlpha(FrameSpan span);
void FocusIn(FrameSpan span);
void FocusInAlpha(FrameSpan span);

// The rounds of blur a frame gets.
int focusRounds(FrameSpan span, int frame, bool focusIn);

} // namespace kirrel::generators
