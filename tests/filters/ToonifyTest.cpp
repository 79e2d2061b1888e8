// The Toonify dialog in process: the preview it opens with and what each slider move makes of it, the
// current frame against a range (frames outside the range untouched), alpha on real runs only, and the
// NightVision dialog's smaller preview.

#include "filters/FilterTestSupport.h"
#include "filters/ToonFilterMod.h"
#include "filters/frmToon.h"
#include "panel/FormBase.h"
#include "panel/Registry.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <algorithm>

namespace kirrel::test {
namespace {

class Toonify : public FilterTest {
  protected:
    panel::FormBase* open(const char* name = "frmToon") { return FilterTest::open(name); }
    static host::Picture toon(const host::Picture& p, int rounds, bool boost = false) {
        host::Picture out = p;
        filters::toonPipeline(out, p, rounds, boost, p.width(), p.height());
        return out;
    }
    static void expectShown(panel::FormBase* f, const host::Picture& expected) {
        EXPECT_EQ(wrongPixels(f, expected), 0);
    }
};

TEST_F(Toonify, PreviewsLeaveTheHostAloneBlurHalfAsManyRoundsAndFollowEdgeBoost) {
    panel::FormBase* f = open();
    expectShown(f, toon(squeezed(frames[0], 200), 1));
    ctl<QCheckBox>(f, "chkUseAlpha")->setChecked(true); // the preview never honours alpha
    ctl<QSlider>(f, "slider_toon")->setValue(7);
    EXPECT_EQ(ctl<QLabel>(f, "Label2")->text(), "Filter Strength: 7");
    expectShown(f, toon(squeezed(frames[0], 200), 4));
    ctl<QCheckBox>(f, "chkEdgeBoost")->click();
    expectShown(f, toon(squeezed(frames[0], 200), 4, true));
    // Half the rounds (dropping a half) and one more, at the slider's ends too.
    EXPECT_EQ(filters::previewBlurRounds(1), 1);
    EXPECT_EQ(filters::previewBlurRounds(100), 51);
    for (const char* write : {"Van_SetRbuffer", "Van_SaveUndo", "Van_SetProgress", "Van_GetABuffer"})
        EXPECT_TRUE(calls(write).empty()) << write;
}

// The frame shown runs at full strength with the host's undo and a progress short of ninety; then a
// range changes only its frames and returns to the frame the user stands on.
TEST_F(Toonify, CurrentFrameThenARange) {
    host().gotoFrame(3);
    panel::FormBase* f = open();
    ctl<QSlider>(f, "slider_toon")->setValue(2);
    trace.clear();
    apply(f);
    EXPECT_EQ(host().framePicture(3), toon(frames[3], 2));
    for (int i : {0, 1, 2})
        EXPECT_EQ(host().framePicture(i), frames[i]) << "frame " << i;
    EXPECT_EQ(calls("Van_SaveUndo").size(), 1u);
    EXPECT_EQ(calls("Van_SetProgress"),
              (std::vector<std::string>{"Van_SetProgress(0)", "Van_SetProgress(45)", "Van_SetProgress(0)"}));
    EXPECT_EQ(host().currentFrame(), 3);
    EXPECT_TRUE(ctl<QPushButton>(f, "cmd_Run")->isEnabled());

    ctl<QRadioButton>(f, "optDirection(1)")->setChecked(true);
    ctl<QComboBox>(f, "cboFrameStart")->setCurrentIndex(1);
    ctl<QComboBox>(f, "cboFrameEnd")->setCurrentIndex(2);
    trace.clear();
    apply(f);
    EXPECT_EQ(host().framePicture(0), frames[0]);
    EXPECT_EQ(host().framePicture(1), toon(frames[1], 2));
    EXPECT_EQ(host().framePicture(2), toon(frames[2], 2));
    EXPECT_EQ(host().framePicture(3), toon(frames[3], 2)) << "the frame shown before, not run again";
    EXPECT_TRUE(calls("Van_SaveUndo").empty());
    EXPECT_EQ(calls("Van_SetProgress"),
              (std::vector<std::string>{"Van_SetProgress(0)", "Van_SetProgress(100)", "Van_SetProgress(0)"}));
    const auto gotos = calls("Van_GotoFrame");
    ASSERT_GE(gotos.size(), 2u);
    EXPECT_EQ(gotos[gotos.size() - 2], "Van_GotoFrame(1)") << "the range ends on its first frame";
    EXPECT_EQ(gotos.back(), "Van_GotoFrame(3)");
    EXPECT_EQ(host().currentFrame(), 3);
}

TEST_F(Toonify, NightVisionPreviewsOnASmallerPlane) {
    panel::FormBase* f = open("frmNightVision");
    host::Picture expected = squeezed(frames[0], 120);
    krl::NightVision(expected.r, expected.g, expected.b, 120, 120);
    expectShown(f, expected);
}

} // namespace
} // namespace kirrel::test
