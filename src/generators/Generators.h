#pragma once
// The animated generators: each walks the frames Start to End of the dialog's lists and changes
// them by a rule that moves with time. The noise and the flicker run without the host's lock, the
// threshold and the vertical hold hold it for their frame loop.

#include "generators/GeneratorForm.h"

namespace kirrel::generators {

// A new white noise laid over every frame; strength in percent.
void GenerateStatic(FrameSpan span, int strength);
// The same, let through the alpha plane of each frame.
void GenerateStaticAlpha(FrameSpan span, int strength);

// Frames take the primary colour when their number modulo 4 is 0 or 1 and the secondary when it is
// 2 or 3, counted from frame 0 whatever Start is; strength in percent. Ends on frame 0.
void Flicker(FrameSpan span, int strength);
// The same with each pixel's strength scaled by the alpha plane of the frame current at the start.
void FlickerAlpha(FrameSpan span, int strength);

// Black and white cut at a level that climbs from 0 at Start to 255 at End.
void GenerateThreshold(FrameSpan span);

// The picture rolls up from its own bottom edge at Start to where it stands at End; with the
// divider a black line runs along the seam.
void VerticalHold(FrameSpan span, bool divider);

// The level and the offset of a frame, as the two procedures round them.
int thresholdLevel(FrameSpan span, int frame);
int holdOffset(FrameSpan span, int frame, int height);

} // namespace kirrel::generators
