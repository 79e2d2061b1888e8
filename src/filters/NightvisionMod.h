#pragma once
// The NightVision procedures. With "Use Alpha?" the filter works on a copy, so the frame as it was
// stays at hand for the mix without being fetched again.

#include "pixel/Triple.h"

namespace kirrel::filters {

class FilterForm;

// The effect on one picture (upper bounds w, h), honouring alpha when asked; the result is left in
// `picture`.
void nightVisionPipeline(krl::Triple& picture, bool useAlpha, const krl::Plane& alpha, int w, int h);

// A preview into the form when its PreviewOn is -1; else the real run on the current frame, with the
// host's own undo. The host's refresh is left to the dialog.
void NightVisionCurrentFrame(FilterForm& form);
// Every frame of the form's range by list index, in place; the scrubber is shown again afterwards.
void NightVisionFrameRange(const FilterForm& form);

} // namespace kirrel::filters
