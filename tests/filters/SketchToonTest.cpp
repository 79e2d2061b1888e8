// The sketch and Toonify dialogs held to their pipelines written out with the library's calls: the
// previews' halved blur rounds and the one-frame undo each sketch preview takes, the frame shown
// against a range (frames outside untouched, the user left where they stood), the hard line's three
// paths (grey preview, colour current frame, grey range with the box blur), and alpha honoured on
// real runs only.

#include "filters/FilterTestSupport.h"
#include "filters/ToonFilterMod.h"
#include "pixel/Filters.h"

#include <QCheckBox>
#include <QSlider>

namespace kirrel::test {
namespace {

using host::Picture;

// The soft line over a picture of bounds w, h; its tone steps take the extra column and row as well,
// and so does the preview's final add.
Picture softLine(Picture p, int rounds, bool colour, int w, int h, bool preview) {
    if (!colour) krl::GreyScale(p.r, p.g, p.b, w + 1, h + 1);
    const Picture plain = p;
    krl::Negative(p.r, p.g, p.b, w + 1, h + 1);
    for (int i = 0; i < rounds; ++i) {
        const Picture before = p;
        krl::BoxBlur(p.r, p.g, p.b, before.r, before.g, before.b, w, h);
    }
    krl::AddBuffers(p.r, p.g, p.b, plain.r, plain.g, plain.b, w + preview, h + preview);
    return p;
}
Picture softPreview(const Picture& frame, int rounds, bool colour) {
    return softLine(squeezed(frame), rounds, colour, 200, 200, true);
}
// The run blurs Detail + 1 rounds.
Picture softRun(const Picture& p, int detail, bool) {
    return softLine(p, detail + 1, false, p.width(), p.height(), false);
}
Picture hardLine(Picture p, bool grey, bool box, int passes, int w, int h, int sketchW, int sketchH) {
    if (grey) krl::GreyScale(p.r, p.g, p.b, w, h);
    const Picture plain = p;
    krl::Negative(p.r, p.g, p.b, w, h);
    for (int i = 0; i < passes; ++i)
        if (box)
            krl::BoxBlur(p.r, p.g, p.b, p.r, p.g, p.b, w, h);
        else
            krl::TriBlur(p.r, p.g, p.b, w, h);
    krl::SketchHard(p.r, p.g, p.b, plain.r, plain.g, plain.b, sketchW, sketchH, 255);
    return p;
}
// The frame shown is drawn from the colour negative; a range goes grey and uses the box blur.
Picture hardRun(const Picture& p, int passes, bool range) {
    const int w = p.width(), h = p.height();
    return range ? hardLine(p, true, true, passes, w, h, w, h)
                 : hardLine(p, false, false, passes, w, h, w + 1, h + 1);
}
Picture toon(const Picture& p, int rounds, bool boost) {
    Picture out = p;
    filters::toonPipeline(out, p, rounds, boost, p.width(), p.height());
    return out;
}

struct PreviewCase {
    const char* form;
    const char* slider;
    const char* label; // Label2 with the slider's value after it
    const char* flag;  // the check box the preview follows
    Picture (*look)(const Picture&, int rounds, bool flag);
    std::size_t undosPerPreview;
};

class FilterPreview : public FilterTest, public testing::WithParamInterface<PreviewCase> {};

TEST_P(FilterPreview, BlursHalfTheRoundsFollowsItsBoxAndWritesNoFrame) {
    const PreviewCase& c = GetParam();
    const Picture small = squeezed(frames[0]);
    panel::FormBase* f = open(c.form);
    EXPECT_EQ(wrongPixels(f, c.look(small, 1, false)), 0);
    ctl<QSlider>(f, c.slider)->setValue(7);
    EXPECT_EQ(text(f, "Label2"), QString(c.label) + "7");
    EXPECT_EQ(wrongPixels(f, c.look(small, 4, false)), 0) << "half of 7, dropping the half, and one more";
    EXPECT_GT(wrongPixels(f, c.look(small, 5, false)), 0) << "the rounds are visible in the picture";
    click(f, c.flag);
    EXPECT_EQ(wrongPixels(f, c.look(small, 4, true)), 0);
    EXPECT_EQ(calls("Van_SaveUndo").size(), 3 * c.undosPerPreview);
    for (const char* write : {"Van_SetRbuffer", "Van_SetProgress", "Van_GetABuffer"})
        EXPECT_TRUE(calls(write).empty()) << write;
    EXPECT_EQ(filters::previewBlurRounds(100), 51) << "the slider's far end";
}

INSTANTIATE_TEST_SUITE_P(Filters, FilterPreview,
                         testing::Values(PreviewCase{"frmSketchSoft", "slider_soft",
                                                     "Detail Strength: ", "chkColor", softPreview, 1},
                                         PreviewCase{"frmToon", "slider_toon",
                                                     "Filter Strength: ", "chkEdgeBoost", toon, 0}),
                         [](const auto& i) { return std::string(i.param.form); });

struct RunCase {
    const char* form;
    const char* slider;
    int shownValue, rangeValue;
    Picture (*filter)(const Picture&, int value, bool range);
    std::vector<int> shownProgress, rangeProgress; // empty: not pinned
    int rangeUndos;                                // -1: not pinned
};

class FilterRun : public FilterTest, public testing::WithParamInterface<RunCase> {};

TEST_P(FilterRun, TheFrameShownThenARange) {
    const RunCase& c = GetParam();
    host().gotoFrame(3);
    panel::FormBase* f = open(c.form);
    ctl<QSlider>(f, c.slider)->setValue(c.shownValue);
    trace.clear();
    apply(f);
    const Picture shownFrame = c.filter(frames[3], c.shownValue, false);
    EXPECT_EQ(host().framePicture(3), shownFrame);
    for (int i : {0, 1, 2})
        EXPECT_EQ(host().framePicture(i), frames[i]) << "frame " << i;
    EXPECT_EQ(calls("Van_SaveUndo").size(), 1u) << "the frame shown takes the host's one-frame undo";
    if (!c.shownProgress.empty()) {
        EXPECT_EQ(progress(), c.shownProgress);
    }
    EXPECT_EQ(host().currentFrame(), 3);

    ctl<QSlider>(f, c.slider)->setValue(c.rangeValue);
    chooseRange(f, 1, 2);
    trace.clear();
    apply(f);
    for (int i : {1, 2})
        EXPECT_EQ(host().framePicture(i), c.filter(frames[i], c.rangeValue, true)) << "frame " << i;
    EXPECT_EQ(host().framePicture(0), frames[0]);
    EXPECT_EQ(host().framePicture(3), shownFrame) << "the frame shown before, not run again";
    if (c.rangeUndos >= 0) {
        EXPECT_EQ(calls("Van_SaveUndo").size(), static_cast<std::size_t>(c.rangeUndos));
    }
    if (!c.rangeProgress.empty()) {
        EXPECT_EQ(progress(), c.rangeProgress);
    }
    EXPECT_EQ(host().currentFrame(), 3);
    EXPECT_TRUE(ctl<QPushButton>(f, "cmd_Run")->isEnabled());
}

// Alpha is honoured on a real run and never in the preview: where it is 0 the frame stays, where it
// is 255 the filter's own picture shows.
TEST_P(FilterRun, AlphaMixesOnTheRealRunOnly) {
    const RunCase& c = GetParam();
    krl::Plane alpha(kW, kH);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x <= kW; ++x)
            alpha.at(x, y) = x < 10 ? 0 : 255;
    host().setAlpha(alpha);
    panel::FormBase* f = open(c.form);
    auto* slider = ctl<QSlider>(f, c.slider);
    slider->setValue(2);
    const QImage withoutAlpha = shown(f);
    ctl<QCheckBox>(f, "chkUseAlpha")->setChecked(true);
    slider->setValue(3);
    slider->setValue(2);
    EXPECT_EQ(shown(f), withoutAlpha);
    EXPECT_TRUE(calls("Van_GetABuffer").empty());

    apply(f);
    const Picture& out = host().framePicture(0);
    const Picture filtered = c.filter(frames[0], 2, false);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x < kW; ++x) {
            const Picture& want = x < 10 ? frames[0] : filtered;
            ASSERT_EQ(out.r.at(x, y), want.r.at(x, y)) << x << "," << y;
            ASSERT_EQ(out.b.at(x, y), want.b.at(x, y)) << x << "," << y;
        }
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Filters, FilterRun,
    testing::Values(RunCase{"frmSketchSoft", "slider_soft", 1, 2, softRun, {30, 90, 0}, {0, 0, 0, 100, 0}, 1},
                    RunCase{"frmSketchHard", "slider_Passes", 2, 2, hardRun, {}, {}, -1},
                    RunCase{"frmToon",
                            "slider_toon",
                            2,
                            2,
                            [](const Picture& p, int v, bool) { return toon(p, v, false); },
                            {0, 45, 0},
                            {0, 100, 0},
                            0}),
    [](const auto& i) { return std::string(i.param.form); });

TEST_F(FilterTest, HardLinePreviewIsGreyAndNotHalved) {
    host().gotoFrame(1);
    panel::FormBase* f = open("frmSketchHard");
    ctl<QSlider>(f, "slider_Passes")->setValue(100);
    EXPECT_EQ(wrongPixels(f, hardLine(squeezed(frames[1]), true, false, 100, 200, 200, 200, 200)), 0);
    const std::size_t undos = calls("Van_SaveUndo").size();
    ctl<QSlider>(f, "slider_Passes")->setValue(2);
    EXPECT_EQ(calls("Van_SaveUndo").size(), undos + 1) << "each preview takes the host's one-frame undo";
    apply(f);
    EXPECT_FALSE(isGrey(host().framePicture(1), kW, kH)) << "the current frame keeps its colour";
    chooseRange(f, 2, 3);
    apply(f);
    EXPECT_TRUE(isGrey(host().framePicture(2), kW - 6, kH - 6));
}

TEST_F(FilterTest, CellShadedPosterizesTheResultInPreviewAndThePictureOnARun) {
    panel::FormBase* f = open("frmSketchHard");
    ctl<QComboBox>(f, "cboSketchOptions")->setCurrentIndex(2);
    const Picture small = squeezed(frames[0]);
    Picture preview = hardLine(small, true, false, 1, 200, 200, 200, 200);
    krl::MultiplyBuffers(preview.r, preview.g, preview.b, small.r, small.g, small.b, 200, 200);
    krl::Posterize(preview.r, preview.g, preview.b, 200, 200, 200);
    EXPECT_EQ(wrongPixels(f, preview), 0);

    apply(f);
    Picture run = hardRun(frames[0], 1, false);
    Picture colour = frames[0];
    krl::Posterize(colour.r, colour.g, colour.b, 200, kW, kH);
    krl::MultiplyBuffers(run.r, run.g, run.b, colour.r, colour.g, colour.b, kW + 1, kH + 1);
    EXPECT_EQ(host().framePicture(0), run);
}

TEST_F(FilterTest, NightVisionPreviewsOnASmallerPlane) {
    panel::FormBase* f = open("frmNightVision");
    Picture expected = squeezed(frames[0], 120);
    krl::NightVision(expected.r, expected.g, expected.b, 120, 120);
    EXPECT_EQ(wrongPixels(f, expected), 0);
}

} // namespace
} // namespace kirrel::test
