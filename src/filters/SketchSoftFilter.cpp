#include "filters/SketchSoftFilter.h"

#include "filters/FilterForm.h"
#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"

namespace kirrel::filters {

namespace {

// "Use Alpha?" on a real run: the frame as it was is fetched again and the sketch laid over it by
// the alpha plane.
void honourAlpha(const FilterForm& form, Vantry::Vantry_Class& van, krl::Triple& work, int W, int H) {
    if (!form.useAlpha()) return;
    krl::Triple Blur = fetchBuffer(van);
    const krl::Plane alpha = van.Van_GetABuffer();
    krl::AlphaMix(Blur.r, Blur.g, Blur.b, work.r, work.g, work.b, alpha, W, H);
    work = Blur;
}

} // namespace

SketchSoftPath softPreviewPath(std::int16_t Detail, int n) {
    // The loop's end is Detail / 2 as a double, so the count is floor(Detail / 2) + 1.
    return {Detail / 2 + 1, n + 1, n + 1, n, n, n + 1, n + 1};
}

SketchSoftPath softRunPath(std::int16_t Detail, int W, int H) {
    return {Detail + 1, W + 1, H + 1, W, H, W, H};
}

void sketchSoftPipeline(krl::Triple& work, bool colorOn, const SketchSoftPath& path,
                        const std::function<void(int)>& beforeRound) {
    if (!colorOn) krl::GreyScale(work.r, work.g, work.b, path.toneW, path.toneH);
    const krl::Triple Plain = work;
    krl::Negative(work.r, work.g, work.b, path.toneW, path.toneH);
    krl::Triple Blur = work;
    for (int i = 0; i < path.rounds; ++i) {
        if (beforeRound) beforeRound(i);
        krl::BoxBlur(work.r, work.g, work.b, Blur.r, Blur.g, Blur.b, path.blurW, path.blurH);
        Blur = work;
    }
    krl::AddBuffers(work.r, work.g, work.b, Plain.r, Plain.g, Plain.b, path.addW, path.addH);
}

void SketchSoftCurrentFrame(FilterForm& form, std::int16_t Detail, std::int16_t ColorOn) {
    Vantry::Vantry_Class van;
    van.Van_SaveUndo();
    std::int16_t H = van.Van_BufferHeight();
    std::int16_t W = van.Van_BufferWidth();
    krl::Triple work = fetchBuffer(van);

    if (form.PreviewOn == -1) {
        H = van.Van_BufferHeight();
        W = van.Van_BufferWidth();
        krl::Triple small = form.shrinkInto(work, W, H);
        sketchSoftPipeline(small, ColorOn != 0, softPreviewPath(Detail, form.traits().previewSize));
        form.showPreview(small);
        return;
    }

    sketchSoftPipeline(work, ColorOn != 0, softRunPath(Detail, W, H),
                       [&](int i) { van.Van_SetProgress(30.0 + 60.0 * divide(i, Detail)); });
    honourAlpha(form, van, work, W, H);
    van.Van_SetProgress(0);
    storeBuffer(van, work);
    van.Van_Refresh();
}

void SketchSoftFrameRange(const FilterForm& form, std::int16_t Detail, std::int32_t Start, std::int32_t End,
                          std::int16_t ColorOn) {
    Vantry::Vantry_Class van;
    van.Van_SaveUndo();
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    for (std::int32_t frame = Start; frame <= End; ++frame) {
        van.Van_GotoFrame(frame);
        krl::Triple work = fetchBuffer(van);
        sketchSoftPipeline(work, ColorOn != 0, softRunPath(Detail, W, H));
        honourAlpha(form, van, work, W, H);
        van.Van_SetProgress(0);
        storeBuffer(van, work);
        van.Van_Refresh();
        // A one-frame range is written before this divides by zero; the failure is reported.
        van.Van_SetProgress(100.0 * divide(frame - Start, End - Start));
    }
    van.Van_Refresh();
    van.Van_SetProgress(0);
}

} // namespace kirrel::filters
