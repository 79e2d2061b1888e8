#pragma once
// The Toonify procedures, shared by the preview and the real runs.
//
// The preview works on the frame squeezed to the preview's size and blurs floor(Strength / 2) + 1
// times: a small picture needs fewer rounds for a like look, and the slider stays responsive. The
// real runs blur Strength times on the host's planes and honour "Use Alpha?".

#include "pixel/Triple.h"

#include <cstdint>

namespace kirrel::filters {

class frmToon;

// Blurs the first triple `rounds` times and draws it against the second (the unblurred picture);
// w, h are the planes' upper bounds. The cartoon comes out in the first triple.
void toonPipeline(krl::Triple& blurred, const krl::Triple& original, int rounds, bool edgeBoost, int w,
                  int h);
int previewBlurRounds(std::int32_t strength);

// The current frame: a preview into the form when its PreviewOn is -1, else the real run with its
// own undo. Silent 0 reports progress during the blur.
void ToonCurrentFrame(frmToon& form, std::int16_t Silent);
// Every frame of the form's range, in place; the host ends on the range's first frame.
void ToonFrameRange(const frmToon& form);

} // namespace kirrel::filters
