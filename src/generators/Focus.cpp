#include "generators/Focus.h"

#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "pixel/Triple.h"

#include <cmath>

namespace kirrel::generators {

namespace {

constexpr double kMostRounds = 30.0;

double lastRound(FrameSpan span, int frame, bool focusIn) {
    const int from = focusIn ? span.end - frame : frame - span.start;
    return kMostRounds * divide(from, span.end - span.start);
}

void focus(FrameSpan span, bool focusIn, bool useAlpha) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    krl::Plane alpha;
    if (useAlpha) alpha = van.Van_GetABuffer();
    for (int frame = span.start; frame <= span.end; ++frame) {
        van.Van_GotoFrame(frame);
        krl::Triple a, b;
        a.r = van.Van_GetRBuffer();
        a.g = van.Van_GetGBuffer();
        a.b = van.Van_GetBBuffer();
        b.r = van.Van_GetRBuffer();
        b.g = van.Van_GetGBuffer();
        b.b = van.Van_GetBBuffer();
        const double r = lastRound(span, frame, focusIn);
        for (int i = 0; i <= r; ++i)
            krl::BoxBlur(a.r, a.g, a.b, a.r, a.g, a.b, W, H);
        // With alpha the blurred picture is laid into the sharp one through the alpha plane.
        const krl::Triple* out = &a;
        if (useAlpha) {
            krl::AlphaMix(b.r, b.g, b.b, a.r, a.g, a.b, alpha, W, H);
            out = &b;
        }
        van.Van_SetRbuffer(out->r);
        van.Van_SetGbuffer(out->g);
        van.Van_SetBbuffer(out->b);
        van.Van_SetProgress(100.0 * divide(frame - span.start, span.end - span.start));
    }
    van.Van_SetProgress(0);
    van.Van_Refresh();
}

} // namespace

int focusRounds(FrameSpan span, int frame, bool focusIn) {
    return static_cast<int>(std::floor(lastRound(span, frame, focusIn))) + 1;
}

void FocusOut(FrameSpan span) {
    focus(span, false, false);
}
void FocusOutAlpha(FrameSpan span) {
    focus(span, false, true);
}
void FocusIn(FrameSpan span) {
    focus(span, true, false);
}
void FocusInAlpha(FrameSpan span) {
    focus(span, true, true);
}

} // namespace kirrel::generators
