#include "filters/SketchHardFilter.h"

#include "filters/FilterForm.h"
#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"

namespace kirrel::filters {

namespace {

constexpr int kPosterizeLevel = 200;

void multiply(krl::Triple& a, const krl::Triple& b, int w, int h) {
    krl::MultiplyBuffers(a.r, a.g, a.b, b.r, b.g, b.b, w, h);
}

void posterize(krl::Triple& t, int w, int h) {
    krl::Posterize(t.r, t.g, t.b, kPosterizeLevel, w, h);
}

void finish(krl::Triple& work, const SketchHardPath& path, SketchOption option, const ColourSource& colour) {
    if (option == SketchOption::Normal) return;
    krl::Triple Plain = colour();
    switch (option) {
    case SketchOption::OverlayOriginal:
        multiply(work, Plain, path.overlayW, path.overlayH);
        break;
    case SketchOption::CellShaded:
        if (path.posterizeResult) {
            multiply(work, Plain, path.cellW, path.cellH);
            posterize(work, path.posterizeW, path.posterizeH);
        } else {
            posterize(Plain, path.posterizeW, path.posterizeH);
            multiply(work, Plain, path.cellW, path.cellH);
        }
        break;
    case SketchOption::GraphicNovel:
        multiply(work, Plain, path.novelW, path.novelH);
        krl::ChalkFilter(work.r, work.g, work.b, path.novelW, path.novelH, path.chalkLevel);
        break;
    case SketchOption::Normal:
        break;
    }
}

// "Use Alpha?" on a real run: the frame is fetched again and the drawing laid over it by alpha.
void honourAlpha(const FilterForm& form, Vantry::Vantry_Class& van, krl::Triple& work, int W, int H) {
    if (!form.useAlpha()) return;
    krl::Triple Plain = fetchBuffer(van);
    const krl::Plane alpha = van.Van_GetABuffer();
    krl::AlphaMix(Plain.r, Plain.g, Plain.b, work.r, work.g, work.b, alpha, W, H);
    work = Plain;
}

} // namespace

SketchHardPath hardPreviewPath(int n) {
    return {true, false, true, 51, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n};
}

SketchHardPath hardCurrentPath(int W, int H) {
    return {false, false, false, 50, 0, 0, W, H, W, H, W + 1, H + 1, W, H, W, H, W + 1, H + 1, W + 1, H + 1};
}

SketchHardPath hardRangePath(int W, int H) {
    return {true, true, false, 50, W, H, W, H, W, H, W, H, W, H, W, H, W, H, W + 1, H + 1};
}

void sketchHardPipeline(krl::Triple& work, const SketchHardPath& path, std::int32_t passes,
                        std::uint8_t lineStrength, SketchOption option, const ColourSource& colour) {
    if (path.grey) krl::GreyScale(work.r, work.g, work.b, path.greyW, path.greyH);
    const krl::Triple Plain = work;
    krl::Negative(work.r, work.g, work.b, path.negativeW, path.negativeH);
    for (std::int32_t i = 0; i < passes; ++i) {
        if (path.boxBlur)
            krl::BoxBlur(work.r, work.g, work.b, work.r, work.g, work.b, path.blurW, path.blurH);
        else
            krl::TriBlur(work.r, work.g, work.b, path.blurW, path.blurH);
    }
    krl::SketchHard(work.r, work.g, work.b, Plain.r, Plain.g, Plain.b, path.sketchW, path.sketchH,
                    lineStrength);
    finish(work, path, option, colour);
}

void SketchHardCurrentFrame(FilterForm& form, SketchOption option, std::int32_t LineStrength,
                            std::int32_t Passes) {
    Vantry::Vantry_Class van;
    van.Van_SaveUndo();
    // The size is asked for before the readings and again after; the second answer is the one used.
    van.Van_BufferHeight();
    van.Van_BufferWidth();
    // The frame is read three times over (the work picture, the plain copy, a spare); the pipeline
    // takes its copies from the work picture, so only the first reading is kept.
    krl::Triple work = fetchBuffer(van);
    fetchBuffer(van);
    fetchBuffer(van);
    std::int16_t H = van.Van_BufferHeight();
    std::int16_t W = van.Van_BufferWidth();
    const std::uint8_t strength = toByte(LineStrength);

    if (form.PreviewOn == -1) {
        krl::Triple small = form.shrinkInto(work, W, H);
        // The colour picture, kept before the preview goes grey.
        const krl::Triple Colored = option != SketchOption::Normal ? small : krl::Triple();
        sketchHardPipeline(small, hardPreviewPath(form.traits().previewSize), Passes, strength, option, [&] {
            return Colored; // NOLINT(performance-no-automatic-move): a capture is never moved
        });
        form.showPreview(small);
        return;
    }

    sketchHardPipeline(work, hardCurrentPath(W, H), Passes, strength, option, [&] {
        krl::Triple fresh = fetchBuffer(van);
        H = van.Van_BufferHeight();
        W = van.Van_BufferWidth();
        return fresh;
    });
    honourAlpha(form, van, work, W, H);
    van.Van_SetProgress(0);
    storeBuffer(van, work);
    van.Van_Refresh();
    van.Van_SetProgress(0);
}

void SketchHardFrameRange(const FilterForm& form, SketchOption option, std::int32_t LineStrength,
                          std::int32_t Passes, std::int32_t Start, std::int32_t End) {
    Vantry::Vantry_Class van;
    van.Van_SaveUndo();
    const std::int16_t H = van.Van_BufferHeight();
    const std::int16_t W = van.Van_BufferWidth();
    const std::uint8_t strength = toByte(LineStrength);
    const SketchHardPath path = hardRangePath(W, H);
    for (std::int32_t frame = Start; frame <= End; ++frame) {
        van.Van_GotoFrame(frame);
        krl::Triple work = fetchBuffer(van);
        fetchBuffer(van);
        fetchBuffer(van);
        // A one-frame range divides by zero here, before the frame is touched; it is reported.
        van.Van_SetProgress(100.0 * divide(frame - Start, End - Start));
        sketchHardPipeline(work, path, Passes, strength, option, [&] { return fetchBuffer(van); });
        honourAlpha(form, van, work, W, H);
        storeBuffer(van, work);
    }
    van.Van_Refresh();
    van.Van_SetProgress(0);
}

} // namespace kirrel::filters
