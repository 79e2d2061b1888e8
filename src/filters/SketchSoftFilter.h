#pragma once
// The soft-line sketch: the classic dodge. The picture (grey unless colour is asked for) is made
// negative, blurred, and added back to itself, so flat areas go white and edges stay as lines.
//
// The three paths differ on purpose, and the differences live in SketchSoftPath: the preview blurs
// floor(Detail / 2) + 1 rounds on the squeezed frame, the runs Detail + 1 rounds on the host's
// planes, and each path hands the pixel operations its own sizes (the preview W + 1, H + 1 to the add,
// the runs W, H), kept as they are so that the pictures stay what users have seen before.

#include "pixel/Triple.h"

#include <cstdint>
#include <functional>

namespace kirrel::filters {

class FilterForm;

struct SketchSoftPath {
    int rounds;       // BoxBlur rounds
    int toneW, toneH; // sizes passed to GreyScale and Negative
    int blurW, blurH; // to BoxBlur
    int addW, addH;   // to AddBuffers
};

SketchSoftPath softPreviewPath(std::int16_t Detail, int n);
SketchSoftPath softRunPath(std::int16_t Detail, int W, int H);

// Steps one to six on `work`; beforeRound(i) runs before each blur round (the current frame's
// progress).
void sketchSoftPipeline(krl::Triple& work, bool colorOn, const SketchSoftPath& path,
                        const std::function<void(int)>& beforeRound = {});

// A preview into the form when its PreviewOn is -1, else the real run; both take the host's one-frame
// undo first.
void SketchSoftCurrentFrame(FilterForm& form, std::int16_t Detail, std::int16_t ColorOn);
// Frames Start to End (list indices), in place.
void SketchSoftFrameRange(const FilterForm& form, std::int16_t Detail, std::int32_t Start, std::int32_t End,
                          std::int16_t ColorOn);

} // namespace kirrel::filters
