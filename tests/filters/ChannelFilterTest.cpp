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
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>

namespace kirrel::test {
namespace {

using filters::ChannelThresholdSettings;

// Square pictures for the preview's arithmetic, every row alike: Q is what the cuts work on, C the
// unfiltered copy. The preview's cuts leave the last column and row, so they hold one more column
// than the values looked at.
struct Row {
    host::Picture Q, C;
    int n;
    explicit Row(std::vector<int> c) : n(static_cast<int>(c.size())) {
        C = host::Picture(n, n);
        for (int y = 0; y <= n; ++y)
            for (int x = 0; x < n; ++x)
                for (krl::Plane* p : {&C.r, &C.g, &C.b})
                    p->at(x, y) = static_cast<std::uint8_t>(c[static_cast<std::size_t>(x)]);
        Q = C;
    }
    std::vector<int> red() const {
        std::vector<int> v;
        for (int x = 0; x < n; ++x)
            v.push_back(Q.r.at(x, 0));
        return v;
    }
};

TEST(ChannelThresholdPreview, MixesByItsOwnRules) {
    // Red cut at 0 makes every red above 0 white; Additive then holds 255 + 1 at 255.
    ChannelThresholdSettings s;
    s.red = true;
    s.redLevel = 0;
    s.mixing = "Additive";
    Row additive({1, 9, 200});
    filters::channelThresholdPreview(additive.Q, additive.C, s, additive.n);
    EXPECT_EQ(additive.red(), (std::vector<int>{255, 255, 255}));

    // Only the grey cut at 0: every channel goes from 0 (cut at 256) halfway to white, 127.5 -> 128.
    ChannelThresholdSettings grey;
    grey.grey = true;
    grey.greyLevel = 0;
    grey.mixing = "Multiply";
    Row multiply({1, 2, 3, 255});
    filters::channelThresholdPreview(multiply.Q, multiply.C, grey, multiply.n);
    EXPECT_EQ(multiply.red(), (std::vector<int>{1, 1, 2, 128})) << "round(128 * b / 255)";

    grey.mixing = "Default";
    Row fifty({1, 3, 0});
    filters::channelThresholdPreview(fifty.Q, fifty.C, grey, fifty.n);
    EXPECT_EQ(fifty.red(), (std::vector<int>{64, 66, 64})) << "64.5 and 65.5 round to even";

    grey.mixing = "Difference";
    Row difference({0, 200});
    filters::channelThresholdPreview(difference.Q, difference.C, grey, difference.n);
    EXPECT_EQ(difference.red(), (std::vector<int>{128, 72}));

    // Above the slider's grey the pixel goes halfway to black: round(0 / 2) stays 0.
    grey.greyLevel = 255;
    grey.mixing = "Lighten";
    Row dark({10, 250});
    filters::channelThresholdPreview(dark.Q, dark.C, grey, dark.n);
    EXPECT_EQ(dark.red(), (std::vector<int>{10, 250}));
    EXPECT_EQ(filters::findChannelMix("additive"), nullptr) << "the list's text is compared exactly";
}

// The slider's ends are the library's ends: 0 and 100 percent.
TEST(GreyOutLevel, IsAPercentageOfTheSlider) {
    EXPECT_EQ(filters::greyOutLevel(255), 100);
    EXPECT_EQ(filters::greyOutLevel(128), 50);
    EXPECT_EQ(filters::greyOutLevel(64), 25);
    EXPECT_EQ(filters::greyOutLevel(0), 0);
}

TEST(NumericText, AcceptsWhatTheBoxesTakeAsNumbers) {
    EXPECT_EQ(filters::numericText("300"), 300.0);
    EXPECT_EQ(filters::numericText(" -12 "), -12.0);
    EXPECT_EQ(filters::numericText("1.5e2"), 150.0);
    EXPECT_EQ(filters::numericText("&HFF"), 255.0);
    for (const char* bad : {"abc", "", " ", "12abc", "-", "1e", "&H", "&HZZ", "1.2.3"})
        EXPECT_FALSE(filters::numericText(bad).has_value()) << bad;
}

class ChannelDialog : public FilterTest {
  protected:
    // The picture Threshold at 256 leaves in the W x H part, the last column and row as they were.
    static host::Picture cut(host::Picture p, int red, int green, int blue) {
        krl::Threshold(p.r, red, kW, kH);
        krl::Threshold(p.g, green, kW, kH);
        krl::Threshold(p.b, blue, kW, kH);
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
    host::Picture expected = cut(frames[2], 100, 256, 256);
    krl::LightenBuffers(expected.r, expected.g, expected.b, frames[2].r, frames[2].g, frames[2].b, kW, kH);
    EXPECT_EQ(host().framePicture(2), expected) << "the mix takes the frame fetched anew";
    EXPECT_EQ(host().framePicture(1), frames[1]);
}

TEST_F(ChannelDialog, RangeRunsEveryFrameAndReturnsToTheFrameItStartedOn) {
    host().gotoFrame(3);
    panel::FormBase* f = open("frmChannelThreshold");
    ctl<QCheckBox>(f, "chkBlue")->setChecked(true);
    ctl<QRadioButton>(f, "optDirection(1)")->setChecked(true);
    ctl<QComboBox>(f, "cboFrameStart")->setCurrentIndex(1);
    ctl<QComboBox>(f, "cboFrameEnd")->setCurrentIndex(2);
    trace.clear();
    apply(f);
    for (int i : {1, 2})
        EXPECT_EQ(host().framePicture(i), cut(frames[i], 256, 256, 128)) << i;
    for (int i : {0, 3})
        EXPECT_EQ(host().framePicture(i), frames[i]) << i;
    EXPECT_EQ(calls("Van_SetProgress"),
              (std::vector<std::string>{"Van_SetProgress(0)", "Van_SetProgress(100)", "Van_SetProgress(0)"}));
    EXPECT_EQ(host().currentFrame(), 3);
}

TEST_F(ChannelDialog, GreyOutHandsTheLibraryAPercentageForTheSelectedChannelOnly) {
    panel::FormBase* f = open("frmGreyOut");
    EXPECT_FALSE(ctl<QRadioButton>(f, "optDirection(0)")->isChecked() &&
                 ctl<QRadioButton>(f, "chkRed")->isChecked());

    apply(f);
    EXPECT_EQ(host().framePicture(0), frames[0]) << "no channel selected: written back unchanged";
    EXPECT_EQ(calls("Van_SetRbuffer").size(), 1u);

    ctl<QRadioButton>(f, "chkGreen")->setChecked(true);
    ctl<QSlider>(f, "ToleranceSlider")->setValue(-60);
    ctl<QSlider>(f, "RedSlider")->setValue(3); // not the selected channel: no effect
    apply(f);
    EXPECT_TRUE(ctl<QRadioButton>(f, "optDirection(0)")->isChecked()) << "the options don't hold each other";
    host::Picture expected = frames[0];
    krl::GreyOut(expected.r, expected.g, expected.b, 50, 2, -60, kW, kH);
    EXPECT_EQ(host().framePicture(0), expected);
    EXPECT_NE(expected, frames[0]);
}

TEST_F(ChannelDialog, GreyOutPreviewFollowsOnlyTheSelectedChannelsSlider) {
    panel::FormBase* f = open("frmGreyOut");
    ctl<QRadioButton>(f, "chkRed")->setChecked(true);
    host::Picture expected = squeezed(frames[0]);
    krl::GreyOut(expected.r, expected.g, expected.b, 50, 1, 0, 200, 200);
    EXPECT_EQ(wrongPixels(f, expected), 0);
    const std::size_t previews = calls("Van_GetRBuffer").size();
    ctl<QSlider>(f, "BlueSlider")->setValue(10);
    EXPECT_EQ(ctl<QLineEdit>(f, "lblBlue")->text(), "10");
    ctl<QSlider>(f, "ToleranceSlider")->setValue(40);
    EXPECT_EQ(ctl<QLineEdit>(f, "lblTolerance")->text(), "40");
    EXPECT_EQ(calls("Van_GetRBuffer").size(), previews) << "other sliders change only their boxes";
    emit ctl<QSlider>(f, "RedSlider")->sliderMoved(128);
    EXPECT_EQ(calls("Van_GetRBuffer").size(), previews + 1) << "a drag step of the selected slider previews";
    host::Picture withTolerance = squeezed(frames[0]);
    krl::GreyOut(withTolerance.r, withTolerance.g, withTolerance.b, 50, 1, 40, 200, 200);
    EXPECT_EQ(wrongPixels(f, withTolerance), 0);
}

TEST_F(ChannelDialog, ThresholdSliderWritesItsBoxAndPreviewsOnlyWhenChecked) {
    panel::FormBase* f = open("frmChannelThreshold");
    const std::size_t previews = calls("Van_GetRBuffer").size();
    ctl<QSlider>(f, "GreenSlider")->setValue(40);
    EXPECT_EQ(ctl<QLineEdit>(f, "lblGreen")->text(), "40");
    EXPECT_EQ(calls("Van_GetRBuffer").size(), previews);
    ctl<QCheckBox>(f, "chkGreen")->setChecked(true);
    ctl<QSlider>(f, "GreenSlider")->setValue(41);
    EXPECT_EQ(calls("Van_GetRBuffer").size(), previews + 2);
    host::Picture expected = squeezed(frames[0]);
    krl::Threshold(expected.r, 256, 200, 200);
    krl::Threshold(expected.g, 41, 200, 200);
    krl::Threshold(expected.b, 256, 200, 200);
    EXPECT_EQ(wrongPixels(f, expected), 0);
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
    ctl<QPushButton>(done, "cmdCancel")->click();
    EXPECT_EQ(trace, (std::vector<std::string>{"Van_Refresh()", "Van_Unlock()", "Van_RestorePointer()"}));
    EXPECT_FALSE(programEnded());

    panel::FormBase* f = open("frmChannelThreshold");
    host::Picture painted = frames[0];
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
    ctl<QRadioButton>(f, "optDirection(1)")->setChecked(true);
    ctl<QComboBox>(f, "cboFrameStart")->setCurrentIndex(2);
    ctl<QComboBox>(f, "cboFrameEnd")->setCurrentIndex(2);
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
