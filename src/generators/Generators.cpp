#include "generators/Generators.h"

#include "filters/FilterForm.h"

#include "generators/FlickerPixels.h"
#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "pixel/Triple.h"

namespace kirrel::generators {

namespace {

constexpr short kBusyPointer = 11;

// The main buffer goes in and out as the filters move it.
constexpr auto fetchMain = filters::fetchBuffer;
constexpr auto storeMain = filters::storeBuffer;

// The noise of both variants; the alpha variant lets it through the frame's alpha plane.
void generateStatic(FrameSpan span, int strength, bool useAlpha) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    const std::int16_t level = toInt16(strength);
    for (int i = span.start; i <= span.end; ++i) {
        van.Van_GotoFrame(i);
        krl::Triple t = fetchMain(van);
        if (useAlpha) {
            const krl::Plane a = van.Van_GetABuffer();
            krl::WhiteNoiseAlpha(t.r, t.g, t.b, a, level, W, H);
        } else {
            krl::WhiteNoise(t.r, t.g, t.b, level, W, H);
        }
        storeMain(van, t);
    }
    van.Van_SetProgress(0);
}

void flicker(FrameSpan span, int strength, bool useAlpha) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    krl::Plane alpha;
    // The alpha of the frame current at the start serves every frame.
    if (useAlpha) alpha = van.Van_GetABuffer();
    for (int i = span.start; i <= span.end; ++i) {
        // Two frames of one colour, two of the other, counted from frame 0.
        const bool primary = i % 4 == 0 || i % 4 == 1;
        const KeyColour colour =
            unpackColour(primary ? van.Van_getPrimaryColor() : van.Van_getSecondaryColor());
        van.Van_GotoFrame(i);
        krl::Triple t = fetchMain(van);
        if (useAlpha)
            flickerPlanesAlpha(t.r, t.g, t.b, alpha, colour, strength, W, H);
        else
            flickerPlanes(t.r, t.g, t.b, colour, strength, W, H);
        storeMain(van, t);
    }
    van.Van_SetProgress(0);
    van.Van_GotoFrame(0);
}

} // namespace

void GenerateStatic(FrameSpan span, int strength) {
    generateStatic(span, strength, false);
}

void GenerateStaticAlpha(FrameSpan span, int strength) {
    generateStatic(span, strength, true);
}

void Flicker(FrameSpan span, int strength) {
    flicker(span, strength, false);
}

void FlickerAlpha(FrameSpan span, int strength) {
    flicker(span, strength, true);
}

int thresholdLevel(FrameSpan span, int frame) {
    if (frame >= span.end) return 255;
    return toInt16(divide(frame - span.start, span.end - span.start) * 255.0);
}

int holdOffset(FrameSpan span, int frame, int height) {
    if (frame >= span.end) return 0;
    return toInt16(divide(span.end - frame, span.end - span.start) * height);
}

void GenerateThreshold(FrameSpan span) {
    Vantry::Vantry_Class van;
    van.Van_GetTotalFrames();
    van.Van_GetCurrentFrame();
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    van.Van_Lock();
    van.Van_ChangePointer(kBusyPointer);
    for (int i = span.start; i <= span.end; ++i) {
        van.Van_GotoFrame(i);
        const int level = thresholdLevel(span, i);
        krl::Triple t = fetchMain(van);
        krl::GreyScale(t.r, t.g, t.b, W, H);
        krl::Threshold(t.r, level, W, H);
        // The one cut plane goes to all three channels: the frame becomes black and white.
        van.Van_SetRbuffer(t.r);
        van.Van_SetGbuffer(t.r);
        van.Van_SetBbuffer(t.r);
    }
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

void VerticalHold(FrameSpan span, bool divider) {
    Vantry::Vantry_Class van;
    van.Van_GetTotalFrames();
    van.Van_GetCurrentFrame();
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    // The second picture is fetched only to have the frame's size.
    fetchMain(van);
    van.Van_Lock();
    van.Van_ChangePointer(kBusyPointer);
    for (int i = span.start; i <= span.end; ++i) {
        van.Van_GotoFrame(i);
        const int offset = holdOffset(span, i, H);
        krl::Triple m = fetchMain(van);
        krl::Triple c = m;
        if (divider) {
            for (krl::Plane* p : {&c.r, &c.g, &c.b}) {
                if (p->empty()) continue;
                std::uint8_t* top = p->row(0);
                std::uint8_t* bottom = p->row(p->height());
                for (int x = 0; x <= p->width(); ++x)
                    top[x] = bottom[x] = 0;
            }
        }
        krl::PushOverlay(m.r, m.g, m.b, c.r, c.g, c.b, W, H, offset, 3);
        storeMain(van, m);
    }
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

} // namespace kirrel::generators
