#pragma once
// Threshold Mask: the frame gives way to the source along the levels of its own alpha channel. Each
// frame's alpha is cut at a level L that moves across 0..255 over the run, and the source shows where
// the alpha passes it (Threshold keeps the bytes above the level). The To runs cut the inverted alpha
// at a falling level, so the transparent parts go first and by frame End the source covers all that
// is not fully opaque; the From runs cut the alpha itself at a rising level, so frame Start shows the
// source wherever the frame is not clear and the opaque parts hold it longest. A frame without
// alpha where it matters (all clear for From, all opaque for To) stays as it is.
//
// Sources: "Swap", or "Primary Color" painted over the swap planes (the last row and column keep the
// swap's pixels), or a stored animation through the splice shapes.

#include "transitions/RunFrame.h"

#include <string>

namespace kirrel::transitions {

// The level for frame i of Start..End: To falls from 255 to 0 at End, From rises from 0 at Start.
int thresholdLevelTo(int i, int start, int end);
int thresholdLevelFrom(int i, int start, int end);

// Frames Start..End; the source is "Swap" or "Primary Color" (any other text mixes in the swap).
void runThresholdTo(int start, int end, const std::string& source);
void runThresholdFrom(int start, int end, const std::string& source);
// The splices with slot 0..3.
void Threshold2Stored(int start, int slot);
void ThresholdFromStored(int end, int slot);

inline void Threshold2Swap(int start, int end) {
    runThresholdTo(start, end, "Swap");
}
inline void ThresholdFromSwap(int start, int end) {
    runThresholdFrom(start, end, "Swap");
}
inline void Threshold2Color(int start, int end) {
    runThresholdTo(start, end, "Primary Color");
}
inline void ThresholdFromColor(int start, int end) {
    runThresholdFrom(start, end, "Primary Color");
}

} // namespace kirrel::transitions
