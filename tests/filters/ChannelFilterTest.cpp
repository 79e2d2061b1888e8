// Channel Threshold and GreyOut: the preview's own arithmetic (Additive held at 255, Default and
// Multiply rounded half to even), the level-256 rule of an unchecked channel on Apply, GreyOut's
// percentage, the text boxes' repair of bad entries, which slider notifications preview, and the
// twins' own closing: "Done" against the window's close box that writes P back and ends the panel.

#include "filters/ChannelFilterForm.h"
#include "filters/ChannelThresholdPipeline.h"
#include "filters/FilterTestSupport.h"
#include "filters/GreyOutPipeline.h"
#include "panel/EventGuard.h"
#include "pixel/Filters.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSlider>

namespace kirrel::test {
namespace {

using host::Picture;

struct PreviewMix {
    bool grey; // the grey cut, else the red one
    int level;
    const char* mixing;
    std::vector<int> in, out; // one row's values, every row alike
};

class ChannelThresholdPreview : public testing::TestWithParam<PreviewMix> {};

TEST_P(ChannelThresholdPreview, MixesByItsOwnRules) {
    const PreviewMix& m = GetParam();
    filters::ChannelThresholdSettings s;
    (m.grey ? s.grey : s.red) = true;
    (m.grey ? s.greyLevel : s.redLevel) = m.level;
    s.mixing = m.mixing;
    // The cuts leave the last column and row, so the pictures hold one more column than is looked at.
    const int n = static_cast<int>(m.in.size());
    Picture c(n, n);
    for (int y = 0; y <= n; ++y)
        for (int x = 0; x < n; ++x)
            for (krl::Plane* p : {&c.r, &c.g, &c.b})
                p->at(x, y) = static_cast<std::uint8_t>(m.in[static_cast<std::size_t>(x)]);
    Picture q = c;
    filters::channelThresholdPreview(q, c, s, n);
    for (int x = 0; x < n; ++x)
        EXPECT_EQ(q.r.at(x, 0), m.out[static_cast<std::size_t>(x)]) << "column " << x;
}

INSTANTIATE_TEST_SUITE_P(
    Mixes, ChannelThresholdPreview,
    testing::Values(
        // Red cut at 0 makes every red above 0 white; Additive then holds 255 + 1 at 255.
        PreviewMix{false, 0, "Additive", {1, 9, 200}, {255, 255, 255}},
        // Only the grey cut at 0: every channel goes from 0 (cut at 256) halfway to white,
        // round(128 * b / 255), 127.5 -> 128.
        PreviewMix{true, 0, "Multiply", {1, 2, 3, 255}, {1, 1, 2, 128}},
        PreviewMix{true, 0, "Default", {1, 3, 0}, {64, 66, 64}}, // 64.5 and 65.5 round to even
        PreviewMix{true, 0, "Difference", {0, 200}, {128, 72}},
        // Above the slider's grey the pixel goes halfway to black: round(0 / 2) stays 0.
        PreviewMix{true, 255, "Lighten", {10, 250}, {10, 250}}));

TEST(ChannelFilterText, LevelsAndNumbersAsTheBoxesTakeThem) {
    // The slider's ends are the library's ends: 0 and 100 percent.
    for (auto [slider, percent] : {std::pair{255, 100}, {128, 50}, {64, 25}, {0, 0}})
        EXPECT_EQ(filters::greyOutLevel(slider), percent) << slider;
    EXPECT_EQ(filters::findChannelMix("additive"), nullptr) << "the list's text is compared exactly";
    for (auto [text, value] : {std::pair{"300", 300.0}, {" -12 ", -12.0}, {"1.5e2", 150.0}, {"&HFF", 255.0}})
        EXPECT_EQ(filters::numericText(text), value) << text;
    for (const char* bad : {"abc", "", " ", "12abc", "-", "1e", "&H", "&HZZ", "1.2.3"})
        EXPECT_FALSE(filters::numericText(bad).has_value()) << bad;
}

class ChannelDialog : public FilterTest {
  protected:
    // The picture Threshold leaves in the W x H part (256 for an unchecked channel), the last column
    // and row as they were.
    static Picture cut(Picture p, int red, int green, int blue, int w = kW, int h = kH) {
        krl::Threshold(p.r, red, w, h);
        krl::Threshold(p.g, green, w, h);
        krl::Threshold(p.b, blue, w, h);
        return p;
    }
};

TEST_F(ChannelDialog, ApplyCutsUncheckedChannelsAtTwoHundredFiftySix) {
    panel::FormBase* f = open("frmChannelThreshold");
    EXPECT_EQ(wrongPixels(f, squeezed(frames[0])), 0) << "nothing checked: the frame squeezed";
    ctl<QComboBox>(f, "cboMixing")->setCurrentText("Additive");
    EXPECT_EQ(wrongPixels(f, squeezed(frames[0])), 0) << "the preview still shows the frame";
    ctl<QComboBox>(f, "cboMixing")->setCurrentIndex(0);
    apply(f);
    EXPECT_EQ(host().framePicture(0), cut(frames[0], 256, 256, 256));

    ctl<QCheckBox>(f, "chkRed")->setChecked(true);
    ctl<QSlider>(f, "RedSlider")->setValue(100);
    ctl<QComboBox>(f, "cboMixing")->setCurrentText("Lighten");
    host().gotoFrame(2);
    apply(f);
    Picture expected = cut(frames[2], 100, 256, 256);
    krl::LightenBuffers(expected.r, expected.g, expected.b, frames[2].r, frames[2].g, frames[2].b, kW, kH);
    EXPECT_EQ(host().framePicture(2), expected) << "the mix takes the frame fetched anew";
    EXPECT_EQ(host().framePicture(1), frames[1]);

    // A range runs every frame of it and returns to the frame it started on.
    ctl<QCheckBox>(f, "chkRed")->setChecked(false);
    ctl<QCheckBox>(f, "chkBlue")->setChecked(true);
    ctl<QComboBox>(f, "cboMixing")->setCurrentIndex(0);
    host().gotoFrame(3);
    const Picture second = host().framePicture(2);
    chooseRange(f, 1, 2);
    trace.clear();
    apply(f);
    EXPECT_EQ(host().framePicture(1), cut(frames[1], 256, 256, 128));
    EXPECT_EQ(host().framePicture(2), cut(second, 256, 256, 128));
    EXPECT_EQ(host().framePicture(3), frames[3]);
    EXPECT_EQ(progress(), (std::vector<int>{0, 100, 0}));
    EXPECT_EQ(host().currentFrame(), 3);
}

TEST_F(ChannelDialog, GreyOutHandsTheLibraryAPercentageForTheSelectedChannelOnly) {
    panel::FormBase* f = open("frmGreyOut");
    apply(f);
    EXPECT_EQ(host().framePicture(0), frames[0]) << "no channel selected: written back unchanged";
    EXPECT_EQ(calls("Van_SetRbuffer").size(), 1u);

    choose(f, "chkGreen");
    ctl<QSlider>(f, "ToleranceSlider")->setValue(-60);
    ctl<QSlider>(f, "RedSlider")->setValue(3); // not the selected channel: no effect
    apply(f);
    EXPECT_TRUE(ctl<QRadioButton>(f, "optDirection(0)")->isChecked()) << "the options don't hold each other";
    Picture expected = frames[0];
    krl::GreyOut(expected.r, expected.g, expected.b, 50, 2, -60, kW, kH);
    EXPECT_EQ(host().framePicture(0), expected);
    EXPECT_NE(expected, frames[0]);
}

// A text box beside a slider, left with a bad entry, shows the slider's value again.
struct BoxCase {
    const char* form;
    const char* box;
    const char* slider;
    const char* typed;
    int sliderAfter;
};

class TextBoxRepair : public FilterTest, public testing::WithParamInterface<BoxCase> {};

TEST_P(TextBoxRepair, ShowsTheSlidersValueAfterLeaving) {
    const BoxCase c = GetParam();
    panel::FormBase* f = open(c.form);
    ctl<QLineEdit>(f, c.box)->setText(c.typed);
    f->leave(c.box);
    EXPECT_EQ(ctl<QSlider>(f, c.slider)->value(), c.sliderAfter);
    EXPECT_EQ(ctl<QLineEdit>(f, c.box)->text(), QString::number(c.sliderAfter));
    EXPECT_TRUE(host().dialogs().empty());
}

INSTANTIATE_TEST_SUITE_P(Boxes, TextBoxRepair,
                         testing::Values(BoxCase{"frmChannelThreshold", "lblRed", "RedSlider", "abc", 128},
                                         BoxCase{"frmChannelThreshold", "lblRed", "RedSlider", "300", 255},
                                         BoxCase{"frmChannelThreshold", "lblRGB", "RGBSlider", " 17 ", 17},
                                         BoxCase{"frmGreyOut", "lblGreen", "GreenSlider", "12.5", 12},
                                         BoxCase{"frmGreyOut", "lblTolerance", "ToleranceSlider", "-300",
                                                 -255},
                                         BoxCase{"frmGreyOut", "lblTolerance", "ToleranceSlider", "x1", 0}));

TEST_F(ChannelDialog, DoneLeavesQuietlyWhileTheCloseBoxWritesTheFrameBackAndEndsThePanel) {
    panel::FormBase* done = open("frmGreyOut");
    trace.clear();
    click(done, "cmdCancel");
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_Refresh()", "Van_Unlock()", "Van_RestorePointer()"}));
    EXPECT_FALSE(programEnded());

    panel::FormBase* f = open("frmChannelThreshold");
    Picture painted = frames[0];
    painted.r.fill(9);
    host().setBuffer(host::Channel::R, painted.r); // the user paints after the dialog opened
    trace.clear();
    f->close();
    EXPECT_EQ(host().framePicture(0), frames[0]) << "the frame the dialog read at opening goes back";
    EXPECT_EQ(calls("Van_SetRbuffer").size(), 1u);
    EXPECT_EQ(calls("Van_Unlock").size(), 2u);
    EXPECT_TRUE(programEnded());
}

// A one-frame range divides by zero in the progress; the failure is reported, the frame a filter may
// already have written goes back, and the dialog goes on.
class OneFrameRange : public FilterTest, public testing::WithParamInterface<const char*> {};

TEST_P(OneFrameRange, IsReportedAndTheDialogStaysUsable) {
    panel::FormBase* f = open(GetParam());
    if (std::string(GetParam()) == "frmChannelThreshold") ctl<QCheckBox>(f, "chkRed")->setChecked(true);
    chooseRange(f, 2, 2);
    apply(f);
    EXPECT_EQ(host().framePicture(2), frames[2]);
    ASSERT_FALSE(host().dialogs().empty());
    EXPECT_EQ(host().dialogs().back().kind, "error");
    for (const char* b : {"cmd_Run", "cmdUndo", "cmdCancel"})
        EXPECT_TRUE(ctl<QPushButton>(f, b)->isEnabled()) << b;
}

INSTANTIATE_TEST_SUITE_P(Filters, OneFrameRange,
                         testing::Values("frmSketchSoft", "frmSketchHard", "frmChannelThreshold", "frmToon"));

} // namespace
} // namespace kirrel::test
