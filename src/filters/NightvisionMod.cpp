#include "filters/NightvisionMod.h"

#include "filters/FilterForm.h"
#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"

namespace kirrel::filters {

void nightVisionPipeline(krl::Triple& picture, bool useAlpha, const krl::Plane& alpha, int w, int h) {
    if (!useAlpha) {
        krl::NightVision(picture.r, picture.g, picture.b, w, h);
        return;
    }
    krl::Triple filtered = picture;
    krl::NightVision(filtered.r, filtered.g, filtered.b, w, h);
    krl::AlphaMix(picture.r, picture.g, picture.b, filtered.r, filtered.g, filtered.b, alpha, w, h);
}

namespace {

void filterInPlace(const FilterForm& form, Vantry::Vantry_Class& van, krl::Triple& picture, int w, int h) {
    const bool useAlpha = form.useAlpha();
    const krl::Plane alpha = useAlpha ? van.Van_GetABuffer() : krl::Plane();
    nightVisionPipeline(picture, useAlpha, alpha, w, h);
}

} // namespace

void NightVisionCurrentFrame(FilterForm& form) {
    Vantry::Vantry_Class van;
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    krl::Triple picture = fetchBuffer(van);
    if (form.PreviewOn == -1) {
        const int n = form.traits().previewSize;
        krl::Triple small = form.shrinkInto(picture, W, H);
        krl::NightVision(small.r, small.g, small.b, n, n);
        form.showPreview(small);
        return;
    }
    van.Van_SaveUndo();
    filterInPlace(form, van, picture, W, H);
    van.Van_SetProgress(0);
    storeBuffer(van, picture);
    van.Van_SetProgress(0);
}

void NightVisionFrameRange(const FilterForm& form) {
    Vantry::Vantry_Class van;
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    const int Start = form.startIndex();
    const int End = form.endIndex();
    const int span = End - Start;
    const int remembered = van.Van_GetCurrentFrame();
    for (int frame = Start; frame <= End; ++frame) {
        van.Van_GotoFrame(frame);
        krl::Triple picture = fetchBuffer(van);
        filterInPlace(form, van, picture, W, H);
        storeBuffer(van, picture);
        // A one-frame range is written before this divides by zero; the failure is reported.
        van.Van_SetProgress(100.0 * divide(frame - Start, span));
    }
    van.Van_ShowScrub(remembered, van.Van_GetTotalFrames() - 1);
    van.Van_SetProgress(0);
}

} // namespace kirrel::filters
