// The two sketch dialogs: their controls, the preview's fewer blur rounds and its own pipeline, the
// host's one-frame undo taken by every preview, the hard line's three paths (grey preview, colour
// current frame, grey range with the box blur), and alpha honoured on real runs only.

#include "filters/FilterTestSupport.h"
#include "filters/ToonFilterMod.h"
#include "filters/frmSketchHard.h"
#include "filters/frmSketchSoft.h"
#include "pixel/Filters.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>

namespace kirrel::test {
namespace {

// The soft line written out by the library's calls: the reference the dialogs are held to.
host::Picture softLine(host::Picture p, int rounds, bool colour, int toneW, int toneH, int blurW, int blurH,
                       int addW, int addH) {
    if (!colour) krl::GreyScale(p.r, p.g, p.b, toneW, toneH);
    const host::Picture plain = p;
    krl::Negative(p.r, p.g, p.b, toneW, toneH);
    for (int i = 0; i < rounds; ++i) {
        const host::Picture before = p;
        krl::BoxBlur(p.r, p.g, p.b, before.r, before.g, before.b, blurW, blurH);
    }
    krl::AddBuffers(p.r, p.g, p.b, plain.r, plain.g, plain.b, addW, addH);
    return p;
}

host::Picture softPreview(const host::Picture& frame, int rounds, bool colour = false) {
    return softLine(squeezed(frame), rounds, colour, 201, 201, 200, 200, 201, 201);
}

host::Picture softRun(const host::Picture& frame, int rounds) {
    return softLine(frame, rounds, false, frame.width() + 1, frame.height() + 1, frame.width(),
                    frame.height(), frame.width(), frame.height());
}

class Sketch : public FilterTest {};

TEST_F(Sketch, SoftPreviewBlursHalfTheRoundsOfTheRunAndTakesTheHostsUndo) {
    panel::FormBase* f = open("frmSketchSoft");
    EXPECT_EQ(wrongPixels(f, softPreview(frames[0], 1)), 0);
    EXPECT_EQ(calls("Van_SaveUndo").size(), 1u) << "the opening preview takes the host's one-frame undo";
    ctl<QSlider>(f, "slider_soft")->setValue(7);
    EXPECT_EQ(ctl<QLabel>(f, "Label2")->text(), "Detail Strength: 7");
    EXPECT_EQ(wrongPixels(f, softPreview(frames[0], 4)), 0);
    EXPECT_GT(wrongPixels(f, softPreview(frames[0], 5)), 0) << "the rounds are visible in the picture";
    ctl<QCheckBox>(f, "chkColor")->click();
    EXPECT_EQ(wrongPixels(f, softPreview(frames[0], 4, true)), 0);
    EXPECT_EQ(calls("Van_SaveUndo").size(), 3u);
    EXPECT_TRUE(calls("Van_SetRbuffer").empty());
    EXPECT_TRUE(calls("Van_SetProgress").empty());
}

// The frame shown blurs Detail + 1 rounds with a progress before each; a range then writes each frame
// and reports its place.
TEST_F(Sketch, SoftCurrentFrameThenARange) {
    host().gotoFrame(3);
    panel::FormBase* f = open("frmSketchSoft");
    trace.clear();
    apply(f);
    const host::Picture shown = softRun(frames[3], 2);
    EXPECT_EQ(host().framePicture(3), shown) << "Detail 1 blurs twice on the real run";
    EXPECT_EQ(calls("Van_SetProgress"),
              (std::vector<std::string>{"Van_SetProgress(30)", "Van_SetProgress(90)", "Van_SetProgress(0)"}));
    for (int i : {0, 1, 2})
        EXPECT_EQ(host().framePicture(i), frames[i]);
    EXPECT_EQ(host().currentFrame(), 3);

    ctl<QSlider>(f, "slider_soft")->setValue(2);
    ctl<QRadioButton>(f, "optDirection(1)")->setChecked(true);
    ctl<QComboBox>(f, "cboFrameStart")->setCurrentIndex(0);
    ctl<QComboBox>(f, "cboFrameEnd")->setCurrentIndex(2);
    trace.clear();
    apply(f);
    for (int i : {0, 1, 2})
        EXPECT_EQ(host().framePicture(i), softRun(frames[i], 3)) << "frame " << i;
    EXPECT_EQ(host().framePicture(3), shown);
    EXPECT_EQ(calls("Van_SaveUndo").size(), 1u);
    EXPECT_EQ(calls("Van_SetProgress"),
              (std::vector<std::string>{"Van_SetProgress(0)", "Van_SetProgress(0)", "Van_SetProgress(0)",
                                        "Van_SetProgress(50)", "Van_SetProgress(0)", "Van_SetProgress(100)",
                                        "Van_SetProgress(0)"}));
    EXPECT_EQ(host().currentFrame(), 3);
}

// The hard line written out by the library's calls, for "Normal (No Color)".
host::Picture hardLine(host::Picture p, bool grey, bool box, int passes, int w, int h, int sketchW,
                       int sketchH) {
    if (grey) krl::GreyScale(p.r, p.g, p.b, w, h);
    const host::Picture plain = p;
    krl::Negative(p.r, p.g, p.b, w, h);
    for (int i = 0; i < passes; ++i)
        if (box)
            krl::BoxBlur(p.r, p.g, p.b, p.r, p.g, p.b, w, h);
        else
            krl::TriBlur(p.r, p.g, p.b, w, h);
    krl::SketchHard(p.r, p.g, p.b, plain.r, plain.g, plain.b, sketchW, sketchH, 255);
    return p;
}

TEST_F(Sketch, HardLineIsGreyInPreviewAndRangeButColourOnTheCurrentFrame) {
    host().gotoFrame(1);
    panel::FormBase* f = open("frmSketchHard");
    ctl<QSlider>(f, "slider_Passes")->setValue(100);
    // A hundred passes in the preview too: the hard line's preview isn't halved.
    EXPECT_EQ(wrongPixels(f, hardLine(squeezed(frames[1]), true, false, 100, 200, 200, 200, 200)), 0);
    const std::size_t undos = calls("Van_SaveUndo").size();
    ctl<QSlider>(f, "slider_Passes")->setValue(2);
    EXPECT_EQ(calls("Van_SaveUndo").size(), undos + 1) << "each preview takes the host's one-frame undo";
    const QImage preview = shown(f);
    bool greyPreview = true;
    for (int y = 0; y < preview.height() - 4; ++y)
        for (int x = 0; x < preview.width() - 4; ++x) {
            const QRgb c = preview.pixel(x, y);
            greyPreview = greyPreview && qRed(c) == qGreen(c) && qGreen(c) == qBlue(c);
        }
    // The grey step leaves the last column and row, whose colour the blur carries a little way in.
    EXPECT_TRUE(greyPreview);
    apply(f);
    const host::Picture& current = host().framePicture(1);
    EXPECT_EQ(current, hardLine(frames[1], false, false, 2, kW, kH, kW + 1, kH + 1));
    EXPECT_FALSE(isGrey(current, kW, kH)) << "the current frame is drawn from the colour negative";

    ctl<QRadioButton>(f, "optDirection(1)")->setChecked(true);
    ctl<QComboBox>(f, "cboFrameStart")->setCurrentIndex(2);
    ctl<QComboBox>(f, "cboFrameEnd")->setCurrentIndex(3);
    apply(f);
    for (int i : {2, 3}) {
        EXPECT_EQ(host().framePicture(i), hardLine(frames[i], true, true, 2, kW, kH, kW, kH)) << i;
        EXPECT_TRUE(isGrey(host().framePicture(i), kW - 6, kH - 6));
    }
    EXPECT_EQ(host().framePicture(0), frames[0]);
}

TEST_F(Sketch, CellShadedPosterizesTheResultInPreviewAndThePictureOnARun) {
    panel::FormBase* f = open("frmSketchHard");
    ctl<QComboBox>(f, "cboSketchOptions")->setCurrentIndex(2);
    const host::Picture small = squeezed(frames[0]);
    host::Picture preview = hardLine(small, true, false, 1, 200, 200, 200, 200);
    krl::MultiplyBuffers(preview.r, preview.g, preview.b, small.r, small.g, small.b, 200, 200);
    krl::Posterize(preview.r, preview.g, preview.b, 200, 200, 200);
    EXPECT_EQ(wrongPixels(f, preview), 0);

    apply(f);
    host::Picture run = hardLine(frames[0], false, false, 1, kW, kH, kW + 1, kH + 1);
    host::Picture colour = frames[0];
    krl::Posterize(colour.r, colour.g, colour.b, 200, kW, kH);
    krl::MultiplyBuffers(run.r, run.g, run.b, colour.r, colour.g, colour.b, kW + 1, kH + 1);
    EXPECT_EQ(host().framePicture(0), run);
}

// Alpha is honoured by the sketches and Toonify on a real run, and never in their previews: where it
// is 0 the frame stays, where it is 255 the filter's own picture shows.
struct AlphaCase {
    const char* form;
    const char* slider;
    host::Picture (*filtered)(const host::Picture&); // the frame filtered with the slider at 2
};

class FilterAlpha : public FilterTest, public testing::WithParamInterface<AlphaCase> {};

TEST_P(FilterAlpha, MixesOnTheRealRunOnly) {
    krl::Plane alpha(kW, kH);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x <= kW; ++x)
            alpha.at(x, y) = x < 10 ? 0 : 255;
    host().setAlpha(alpha);
    panel::FormBase* f = open(GetParam().form);
    auto* slider = ctl<QSlider>(f, GetParam().slider);
    slider->setValue(2);
    const QImage withoutAlpha = shown(f);
    ctl<QCheckBox>(f, "chkUseAlpha")->setChecked(true);
    slider->setValue(3);
    slider->setValue(2);
    EXPECT_EQ(shown(f), withoutAlpha);
    EXPECT_TRUE(calls("Van_GetABuffer").empty());

    apply(f);
    const host::Picture& out = host().framePicture(0);
    const host::Picture filtered = GetParam().filtered(frames[0]);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x < kW; ++x)
            ASSERT_EQ(out.r.at(x, y), (x < 10 ? frames[0] : filtered).r.at(x, y)) << x << "," << y;
    EXPECT_EQ(out.b.at(9, 12), frames[0].b.at(9, 12));
    EXPECT_EQ(out.g.at(20, 12), filtered.g.at(20, 12));
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Filters, FilterAlpha,
    testing::Values(AlphaCase{"frmSketchSoft", "slider_soft",
                              [](const host::Picture& p) { return softRun(p, 3); }},
                    AlphaCase{"frmSketchHard", "slider_Passes",
                              [](const host::Picture& p) {
                                  return hardLine(p, false, false, 2, p.width(), p.height(), p.width() + 1,
                                                  p.height() + 1);
                              }},
                    AlphaCase{"frmToon", "slider_toon",
                              [](const host::Picture& p) {
                                  host::Picture out = p;
                                  filters::toonPipeline(out, p, 2, false, p.width(), p.height());
                                  return out;
                              }}),
    [](const testing::TestParamInfo<AlphaCase>& i) { return std::string(i.param.form); });

} // namespace
} // namespace kirrel::test
