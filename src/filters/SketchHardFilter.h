#pragma once
// The hard-line sketch: the negative, blurred, is drawn against the picture by one library operation,
// and the drawing can be laid over the colour picture in three more ways ("Color Options").
//
// Its three paths are not one pipeline at three sizes. The preview goes grey first, blurs with the
// tent, multiplies before it posterizes and finishes chalk at 51; the current frame keeps the colour
// negative, posterizes the picture before the multiply and finishes at 50; the range goes grey and
// blurs with the box. Each path is a row of SketchHardPath, sizes included, and all are kept.

#include "pixel/Triple.h"

#include <cstdint>
#include <functional>

namespace kirrel::filters {

class FilterForm;

enum class SketchOption { Normal = 0, OverlayOriginal = 1, CellShaded = 2, GraphicNovel = 3 };

struct SketchHardPath {
    bool grey;            // GreyScale before the negative
    bool boxBlur;         // BoxBlur with the work picture as both of its pictures; else TriBlur
    bool posterizeResult; // Cell Shaded posterizes the multiplied result, else the colour picture
    int chalkLevel;
    int greyW, greyH;
    int negativeW, negativeH;
    int blurW, blurH;
    int sketchW, sketchH;
    int overlayW, overlayH;     // the multiply of "Overlay Original"
    int posterizeW, posterizeH; // Posterize
    int cellW, cellH;           // the multiply of "Cell Shaded"
    int novelW, novelH;         // the multiply and the chalk of "Graphic Novel"
};

// n is the preview's size; W, H the host's bounds.
SketchHardPath hardPreviewPath(int n);
SketchHardPath hardCurrentPath(int W, int H);
SketchHardPath hardRangePath(int W, int H);

// The colour picture an option lays the drawing over: the preview keeps a copy, the runs fetch the
// frame anew.
using ColourSource = std::function<krl::Triple()>;

// The drawing of `work` (the picture) for `passes` blur passes, then the option's finish.
void sketchHardPipeline(krl::Triple& work, const SketchHardPath& path, std::int32_t passes,
                        std::uint8_t lineStrength, SketchOption option, const ColourSource& colour);

// A preview into the form when its PreviewOn is -1, else the real run; both take the host's one-frame
// undo first. The option is read from the form's list.
void SketchHardCurrentFrame(FilterForm& form, SketchOption option, std::int32_t LineStrength,
                            std::int32_t Passes);
// Frames Start to End (list indices), in place.
void SketchHardFrameRange(const FilterForm& form, SketchOption option, std::int32_t LineStrength,
                          std::int32_t Passes, std::int32_t Start, std::int32_t End);

} // namespace kirrel::filters
