#include "filters/ToonFilterMod.h"

#include "filters/frmToon.h"
#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"

namespace kirrel::filters {

namespace {

void drawCartoon(krl::Triple& blurred, const krl::Triple& original, bool edgeBoost, int w, int h) {
    if (edgeBoost)
        krl::ToonFilter2(blurred.r, blurred.g, blurred.b, original.r, original.g, original.b, w, h);
    else
        krl::ToonFilter(blurred.r, blurred.g, blurred.b, original.r, original.g, original.b, w, h);
}

// "Use Alpha?": the filtered picture is laid over the frame as it was, by the alpha plane.
void honourAlpha(const frmToon& form, Vantry::Vantry_Class& van, krl::Triple& filtered, int w, int h) {
    if (!form.useAlpha()) return;
    krl::Triple unfiltered = fetchBuffer(van);
    const krl::Plane alpha = van.Van_GetABuffer();
    krl::AlphaMix(unfiltered.r, unfiltered.g, unfiltered.b, filtered.r, filtered.g, filtered.b, alpha, w, h);
    filtered = unfiltered;
}

} // namespace

int previewBlurRounds(std::int32_t strength) {
    return strength / 2 + 1;
}

void toonPipeline(krl::Triple& blurred, const krl::Triple& original, int rounds, bool edgeBoost, int w,
                  int h) {
    for (int i = 0; i < rounds; ++i)
        krl::TriBlur(blurred.r, blurred.g, blurred.b, w, h);
    drawCartoon(blurred, original, edgeBoost, w, h);
}

void ToonCurrentFrame(frmToon& form, std::int16_t Silent) {
    Vantry::Vantry_Class van;
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    krl::Triple first = fetchBuffer(van);
    krl::Triple second = fetchBuffer(van);

    if (form.PreviewOn == -1) {
        krl::Triple small = form.shrinkInto(first, W, H);
        const krl::Triple unblurred = small;
        toonPipeline(small, unblurred, previewBlurRounds(form.Strength), form.edgeBoost(), small.width(),
                     small.height());
        form.showPreview(small);
        return;
    }

    van.Van_SaveUndo();
    const std::int32_t strength = form.Strength;
    for (std::int32_t i = 0; i < strength; ++i) {
        krl::TriBlur(first.r, first.g, first.b, W, H);
        if (Silent == 0) van.Van_SetProgress(90.0 * divide(i, strength));
    }
    drawCartoon(first, second, form.edgeBoost(), W, H);
    honourAlpha(form, van, first, W, H);
    van.Van_SetProgress(0);
    storeBuffer(van, first);
    van.Van_Refresh();
}

void ToonFrameRange(const frmToon& form) {
    Vantry::Vantry_Class van;
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    const std::int32_t Start = form.startText();
    const std::int32_t End = form.endText();
    for (std::int32_t frame = Start; frame <= End; ++frame) {
        van.Van_GotoFrame(frame);
        // A one-frame range divides by zero here, before the frame is touched; it is reported.
        van.Van_SetProgress(100.0 * divide(frame - Start, End - Start));
        krl::Triple first = fetchBuffer(van);
        const krl::Triple second = fetchBuffer(van);
        toonPipeline(first, second, form.Strength, form.edgeBoost(), W, H);
        honourAlpha(form, van, first, W, H);
        storeBuffer(van, first);
        van.Van_Refresh();
    }
    van.Van_GotoFrame(Start);
    van.Van_SetProgress(0);
}

} // namespace kirrel::filters
