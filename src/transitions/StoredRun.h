#pragma once
// The engine of the two stored run shapes, the splice: a transition whose source is a stored
// animation (slot 0..3), which lengthens the animation.
//   ToStored:   the animation runs into the stored one from frame Start to its last frame; stored
//               frames left over are appended. The result has Start + SlotFrames frames.
//   FromStored: the stored animation plays first and runs into the animation, the overlap ending at
//               frame End; stored frames before the overlap go in front. The result has
//               Total + (SlotFrames - (End + 1)) frames.
// Stored frame k meets the k-th frame of the overlap; a slot of another size is resampled frame by
// frame to the animation's size. The member's step is the one its plain runs use: RunFrame holds
// the overlap's own Start, End and Span, M the animation's frame and A the stored frame.

#include "transitions/RunFrame.h"

namespace kirrel::transitions {

struct StoredShape {
    // FromStored: Van_GotoFrame(StartS) before each frame put in front and again before the overlap.
    bool positionCalls = true;
    // The lock/pointer bracket around the run, and van_StatusClose at its end.
    bool lock = true;
    // After the slot is closed: go to the new last frame, show the scrubber at the new length and
    // refresh (the stored fades, which take no lock, bring the host's display up to date this way).
    bool showScrubAfter = false;
    // Van_Refresh once the slot is closed, before the run's end.
    bool refreshBeforeClose = false;
    // Whether the pixel call is also made at the overlap's first frame.
    bool callAtStart = false;
    // ToStored writes M; FromStored writes A unless this is set.
    bool fromWritesFrame = false;
    // Alpha wipes: the alpha is read once before the frames and dropped, and each mixed frame limits
    // the source by the frame's own alpha (as the plain alpha runs do).
    bool alphaLimitsSource = false;
    // Alpha fades: Al := the alpha, read once before the frames and kept for every frame.
    bool alphaOnce = false;
    // Called once before the frames, for a family's own preparation (a noise plane).
    FrameStep prepare = nullptr;
};

// Slot 0..3. Without a slot file: "Slot Empty" and nothing changes. A damaged slot file is refused
// (DamagedFile) before anything changes.
void runToStored(int start, int slot, const StoredShape& shape, FrameStep step);
void runFromStored(int end, int slot, const StoredShape& shape, FrameStep step);

} // namespace kirrel::transitions
