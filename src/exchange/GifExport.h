#pragma once
// The two ways an animation leaves as an animated file: one converter run over all frame bitmaps
// (one delay for all, no transparency; also the MNG export), and one pair of runs per frame (a
// delay per frame, or the primary colour made transparent).

#include "exchange/ConverterFiles.h"
#include "panel/Vantry.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kirrel::exchange {

struct SingleCommandExport {
    const char* title;      // of the save requester
    const char* filter;     // of the save requester
    OutputCheck::Kind kind; // what the converter must have written
};
inline constexpr SingleCommandExport kGifGlobal{"Save animated gif", "gif(*.gif)|*.gif",
                                                OutputCheck::Kind::Gif};
inline constexpr SingleCommandExport kMng{"Save as MNG", "mng(*.mng)|*.mng", OutputCheck::Kind::Mng};

// Writes every frame's bitmap (moving the host frame by frame, so it ends on the last frame) and
// runs the single-command batch. The converter writes the format of the export, whatever the chosen
// file's name ends in; the file appears only when the result checks out.
void ExportGifGlobal(Vantry::Vantry_Class& van, const SingleCommandExport& kind, int delay, int loops);

struct PerFrameSettings {
    bool transparent = false;              // the primary colour becomes transparent
    bool globalDelay = false;              // one delay for every frame
    int delay = 0;                         // that delay
    std::vector<std::int32_t> frameDelays; // otherwise each frame's own (missing ones are 0)
    int loops = 0;
};

// Writes every frame's bitmap in place (the host stays where it stood) and runs the per-frame batch,
// following its progress by the frame GIFs that appear.
void ExportGifPerFrame(Vantry::Vantry_Class& van, const PerFrameSettings& settings);

} // namespace kirrel::exchange
