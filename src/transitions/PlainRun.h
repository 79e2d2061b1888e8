#pragma once
// The engine of the two plain run shapes that every transition family shares:
//   To:   frames Start..End go from the animation into the source (Start stays, End is all source);
//   From: frames Start..End go from the source into the animation (Start is all source, End is all
//         animation).
// A family member supplies its per-frame pixel call and, as data, the ways in which its runs differ
// from the common shape (first frame of the loop, a call at frame Start, which triple is written,
// progress, lock, the alpha mask step, its own source handling).

#include "transitions/RunFrame.h"

#include <string>

namespace kirrel::transitions {

enum class Direction { To, From };

struct PlainShape {
    // The To loop starts at Start + 1 unless this is set; the From loop always starts at Start.
    bool toLoopFromStart = false;
    // The From loop stops at End - 1: frame End stays as the host has it, the animation that such a
    // run ends on.
    bool fromLoopStopsBeforeEnd = false;
    // Whether the pixel call is also made at i = Start (in either direction).
    bool callAtStart = false;
    // The To shape writes M; the From shape writes A unless this is set (the fades write M always).
    bool fromWritesFrame = false;
    // van_status after each frame, by the frame's place in the whole animation.
    bool progress = true;
    // The lock/pointer bracket around the loop (van_StatusClose always ends the run).
    bool lock = true;
    // Alpha families: before the call, Al := the frame's alpha, inverted, and A := AlphaMix(A, M, Al).
    bool alphaLimitsSource = false;
    // The standard source handling; a family with sources of its own switches it off and reads
    // RunFrame::source in its step.
    bool standardSources = true;
    // "Primary Color" painted over the swap planes as fetched, rather than over planes of its own.
    bool colourOnSwapPlanes = false;
    // Called once where the sources are read before the loop (after the standard ones), for a
    // family's own preparation: its own once-read sources, a noise plane.
    FrameStep prepare = nullptr;
    // Al := the current frame's alpha, read once just before the loop and kept for every frame.
    bool alphaOnce = false;
    // Van_Refresh just before van_StatusClose.
    bool refreshBeforeClose = false;
};

// Runs Start..End (by the shape's rules) with the member's call. Start and End are frame numbers.
void runPlain(Direction direction, int start, int end, const std::string& source, const PlainShape& shape,
              FrameStep step);

} // namespace kirrel::transitions
