// The generators: their procedures on the host (the flicker's pixel loops against a rounding worked
// out in integers and the colour each frame takes, through the alpha plane too, the threshold's
// levels, the vertical hold's roll, Focus's blur rounds, the noise, and ping pong), and their dialogs
// and the frame tools as a user drives them through session scripts: the order of undo and range
// test, the strength labels, the frame the user ends on, and the frame tools' labels and value boxes.

#include "generators/Generators.h"
#include "generators/FlickerPixels.h"
#include "generators/Focus.h"
#include "generators/FrameTools.h"
#include "host/AnimationFiles.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace kirrel::test {
namespace {

using generators::FrameSpan;
using generators::KeyColour;

// round((colour * strength + (100 - strength) * old) / 100) half to even, in integers only.
int expectedFlicker(int colour, int strength, int old) {
    const int n = colour * strength + (100 - strength) * old, q = n / 100, rem = n % 100;
    return q + (rem > 50 || (rem == 50 && q % 2 == 1) ? 1 : 0);
}

class FlickerEveryValue : public testing::TestWithParam<int> {};

// At strength 10 an old 0 gives 25.5, rounded to the even 26, and an old 1 gives 26.4, rounded down.
TEST_P(FlickerEveryValue, MatchesTheIntegerRoundingAndLeavesTheLastColumnAndRow) {
    const int strength = GetParam();
    // Every old value 0..255 once, in a 16 x 16 inner picture with a last column and row of 7s.
    krl::Triple t(16, 16);
    for (int y = 0; y <= 16; ++y)
        for (int x = 0; x <= 16; ++x)
            t.r.at(x, y) = t.g.at(x, y) = t.b.at(x, y) = x == 16 || y == 16 ? 7 : x + 16 * y;
    generators::flickerPlanes(t.r, t.g, t.b, KeyColour{255, 37, 0}, strength, 16, 16);
    for (int y = 0; y <= 16; ++y)
        for (int x = 0; x <= 16; ++x) {
            const bool edge = x == 16 || y == 16;
            const int old = x + 16 * y;
            ASSERT_EQ(t.r.at(x, y), edge ? 7 : expectedFlicker(255, strength, old)) << x << "," << y;
            ASSERT_EQ(t.g.at(x, y), edge ? 7 : expectedFlicker(37, strength, old)) << x << "," << y;
            ASSERT_EQ(t.b.at(x, y), edge ? 7 : expectedFlicker(0, strength, old)) << x << "," << y;
        }
}

INSTANTIATE_TEST_SUITE_P(SliderRange, FlickerEveryValue, testing::Values(10, 15, 50, 85, 90));

class GeneratorRun : public HostTest {
  protected:
    void load(int frames, int w = 8, int h = 6, int current = 0) {
        pictures = patternFrames(frames, w, h, 11);
        host().loadAnimation(pictures, current);
    }
    // Six black frames on frame 5, red as the primary colour and blue as the secondary.
    void loadBlack() {
        host().loadAnimation(std::vector<host::Picture>(6, host::Picture(4, 3)), 5);
        host().setPrimaryPacked(0x0000FF);
        host().setSecondaryPacked(0xFF0000);
    }
    const host::Picture& frame(int f) const { return host().framePicture(f); }
    std::vector<host::Picture> pictures;
};

// Colours change every two frames counted from frame 0 (the dialog's run is checked through a
// session script below); through the alpha plane it is taken once from the frame current at the start.
TEST_F(GeneratorRun, FlickerThroughTheAlphaPlane) {
    // Alpha 0 leaves the pixel, 255 gives the strength, and 128 round(128 / 255 * strength).
    loadBlack();
    krl::Plane alpha(4, 3);
    alpha.at(1, 1) = 255;
    alpha.at(2, 1) = 128;
    host().setAlpha(alpha);
    trace.clear();
    generators::FlickerAlpha({0, 5}, 45);
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u);
    for (int f = 0; f < 6; ++f) {
        const krl::Plane& key = f % 4 < 2 ? frame(f).r : frame(f).b;
        EXPECT_EQ(frame(f).r.at(0, 0) + frame(f).b.at(0, 0), 0) << f;
        EXPECT_EQ(key.at(1, 1), expectedFlicker(255, 45, 0)) << f;
        EXPECT_EQ(key.at(2, 1), expectedFlicker(255, 23, 0)) << f; // 22.59 rounds to 23
        EXPECT_EQ(frame(f).g.at(1, 1), 0) << f;
    }
    // Its own last step goes to frame 0, and it never takes the host's lock.
    EXPECT_EQ(calls("Van_GotoFrame").back(), "Van_GotoFrame(0)");
    EXPECT_TRUE(calls("Van_Lock").empty());
}

TEST_F(GeneratorRun, ThresholdClimbsFromLevelZeroAtStartToFullAtEnd) {
    const FrameSpan span{2, 6};
    EXPECT_EQ(generators::thresholdLevel(span, 2), 0);
    EXPECT_EQ(generators::thresholdLevel(span, 3), 64);  // 63.75
    EXPECT_EQ(generators::thresholdLevel(span, 4), 128); // 127.5 goes to the even 128
    EXPECT_EQ(generators::thresholdLevel(span, 6), 255);

    load(8, 8, 6, 7);
    generators::GenerateThreshold(span);
    for (int f = 0; f < 8; ++f) {
        host::Picture p = pictures[static_cast<std::size_t>(f)];
        if (f >= 2 && f <= 6) {
            krl::GreyScale(p.r, p.g, p.b, 8, 6);
            krl::Threshold(p.r, generators::thresholdLevel(span, f), 8, 6);
            p.g = p.b = p.r;
        }
        EXPECT_EQ(frame(f), p) << f;
    }
    EXPECT_EQ(frame(2).r.at(3, 3), 255) << "level 0 turns the picture white";
    EXPECT_EQ(calls("Van_Lock").size(), 1u);
    EXPECT_FALSE(host().locked());
}

// Offsets 6, 4, 2 and 0 rows of 6 at frames 1 to 4 of the span 1..4: the roll wraps the picture
// around, so the frames at Start and End are the picture itself.
TEST_F(GeneratorRun, VerticalHoldRollsTheWholeFrameAndItsDividerMarksTheSeam) {
    load(5);
    generators::VerticalHold({1, 4}, false);
    EXPECT_EQ(frame(1), pictures[1]);
    EXPECT_EQ(frame(4), pictures[4]);
    host::Picture rolled = pictures[2];
    krl::PushOverlay(rolled.r, rolled.g, rolled.b, pictures[2].r, pictures[2].g, pictures[2].b, 8, 6, 4, 3);
    EXPECT_EQ(frame(2), rolled);
    EXPECT_FALSE(host().locked());

    load(5);
    generators::VerticalHold({1, 4}, true);
    auto blackRows = [&](int f) {
        std::vector<int> rows;
        for (int y = 0; y <= 6; ++y) {
            bool black = true;
            for (int x = 0; x <= 8; ++x)
                black =
                    black && frame(f).r.at(x, y) == 0 && frame(f).g.at(x, y) == 0 && frame(f).b.at(x, y) == 0;
            if (black) rows.push_back(y);
        }
        return rows;
    };
    // At Start the seam lies past the bottom row; between, a line along the lined picture's top edge
    // marks it; at End the whole frame is the lined picture, black along its top and bottom.
    EXPECT_EQ(frame(1), pictures[1]);
    EXPECT_EQ(blackRows(2), std::vector<int>{4});
    EXPECT_EQ(blackRows(3), std::vector<int>{2});
    EXPECT_EQ(blackRows(4), (std::vector<int>{0, 6}));
    EXPECT_EQ(frame(4).r.at(3, 3), pictures[4].r.at(3, 3));
}

host::Picture blurred(host::Picture p, int rounds) {
    for (int i = 0; i < rounds; ++i)
        krl::BoxBlur(p.r, p.g, p.b, p.r, p.g, p.b, p.width(), p.height());
    return p;
}

TEST_F(GeneratorRun, FocusGivesOneRoundToTheSharpestFrameThirtyOneToTheSoftestAndHonoursAlpha) {
    for (bool in : {false, true}) {
        EXPECT_EQ(generators::focusRounds({3, 4}, 3, in), in ? 31 : 1);
        EXPECT_EQ(generators::focusRounds({3, 4}, 4, in), in ? 1 : 31);
        EXPECT_EQ(generators::focusRounds({0, 3}, 1, in), in ? 21 : 11); // 30 * 2/3 and 30 * 1/3
    }
    load(3);
    generators::FocusOut({0, 1});
    EXPECT_EQ(frame(0), blurred(pictures[0], 1));
    EXPECT_EQ(frame(1), blurred(pictures[1], 31));
    EXPECT_EQ(frame(2), pictures[2]);
    load(2);
    generators::FocusIn({0, 1});
    EXPECT_EQ(frame(0), blurred(pictures[0], 31));
    EXPECT_EQ(frame(1), blurred(pictures[1], 1));
    EXPECT_THROW(generators::FocusIn({1, 1}), std::domain_error) << "one frame fails on its first";
    EXPECT_EQ(frame(1), blurred(pictures[1], 1));

    // With alpha only the part where it is set is blurred.
    load(2);
    krl::Plane alpha(8, 6);
    for (int y = 0; y <= 6; ++y)
        for (int x = 4; x <= 8; ++x)
            alpha.at(x, y) = 255;
    host().setAlpha(alpha);
    trace.clear();
    generators::FocusOutAlpha({0, 1});
    EXPECT_EQ(frame(1).r.at(1, 2), pictures[1].r.at(1, 2));
    EXPECT_EQ(frame(1).r.at(6, 2), blurred(pictures[1], 31).r.at(6, 2));
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u);
}

TEST_F(GeneratorRun, NoiseChangesEveryFrameOfTheRangeDifferentlyAndPingPongDoublesOneFrame) {
    krl::SeedNoise(7);
    load(5);
    generators::GenerateStatic({1, 3}, 60);
    for (int f = 0; f < 5; ++f)
        EXPECT_EQ(frame(f) == pictures[static_cast<std::size_t>(f)], f == 0 || f == 4) << f;
    EXPECT_NE(frame(1), frame(2));
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_TRUE(calls("Van_GetABuffer").empty());

    // Through a clear alpha plane the noise doesn't reach the picture.
    load(5);
    host().setAlpha(krl::Plane(8, 6));
    generators::GenerateStaticAlpha({1, 3}, 100);
    EXPECT_EQ(calls("Van_GetABuffer").size(), 3u);
    EXPECT_EQ(frame(2), pictures[2]);

    load(1);
    generators::PingPongAppend();
    EXPECT_EQ(HostSnapshot::of(host()).pictures, (std::vector<host::Picture>{pictures[0], pictures[0]}));
}

constexpr const char* kTooShort = "Need at least 3 frames selected!";

class GeneratorScript : public ScriptTest {
  protected:
    void SetUp() override {
        host::Animation a;
        a.frames = pictures = patternFrames(6, 12, 8, 3);
        host::writeAnimationDat(at("anim.dat"), a);
    }
    RunResult run(const std::string& steps, int current = 2) {
        return runScript(dir.path(),
                         R"({"host": {"temp_dir": "tmp", "animation": "anim.dat", "current_frame": )" +
                             std::to_string(current) +
                             R"(, "primary": [255, 0, 0], "secondary": [0, 0, 255]}, "steps": [)" + steps +
                             "]}");
    }
    bool undoSaved() const { return QFile::exists(at("tmp/AnimUndo.dat")); }
    std::vector<host::Picture> pictures;
};

struct RangeCase {
    const char* entry;
    const char* form;
    bool undoBeforeTest; // the undo is saved before the range is tested
};

class GeneratorRange : public GeneratorScript, public testing::WithParamInterface<RangeCase> {};

// A range of two frames is refused; once fixed, the run leaves the frames outside it and the user
// where they stood.
TEST_P(GeneratorRange, RefusesTwoFramesThenRunsTheRangeOnly) {
    const RangeCase& c = GetParam();
    const RunResult r = run(std::string(R"({"open": ")") + c.entry + R"JS("},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "cboFrameStart", "index": 1}}, {"set": {"control": "cboFrameEnd", "index": 2}},
        {"click": "cmd_Run"}, {"dump": "refused"}, {"set": {"control": "chkUndoSave", "value": 0}},
        {"set": {"control": "cboFrameEnd", "index": 4}}, {"click": "cmd_Run"}, {"dump": "ran"})JS",
                            3);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(dialogTexts(state("refused")).back(), kTooShort);
    EXPECT_EQ(dumped("refused"), pictures);
    EXPECT_EQ(undoSaved(), c.undoBeforeTest);
    const auto ran = dumped("ran");
    ASSERT_EQ(ran.size(), 6u);
    EXPECT_EQ(ran[0], pictures[0]);
    EXPECT_EQ(ran[5], pictures[5]);
    EXPECT_NE(ran[2], pictures[2]);
    EXPECT_EQ(state("ran")["current_frame"].toInt(), 3);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, GeneratorRange,
                         testing::Values(RangeCase{"White Noise (TV Snow)", "frmTVSnow", true},
                                         RangeCase{"Animated Threshold", "frmGenThreshold", false},
                                         RangeCase{"Vertical Hold", "frmVertHold", false}),
                         [](const auto& i) { return std::string(i.param.form); });

// Flicker, Focus and ping pong run over the whole animation, and each ends where the user stood.
TEST_F(GeneratorScript, FlickerFocusAndPingPong) {
    const RunResult r = run(R"JS(
        {"open": "White Noise (TV Snow)"}, {"set": {"control": "Slider1", "value": 35}}, {"dump": "snow"},
        {"close": "frmTVSnow"},
        {"open": "Flicker"}, {"set": {"control": "Slider1", "value": 90}}, {"click": "cmd_Run"},
        {"dump": "flicker"}, {"close": "frmFlicker"},
        {"open": "Focus"}, {"set": {"control": "optDirection(1)", "value": true}}, {"click": "cmd_Run"},
        {"dump": "focus"}, {"close": "frmFocus"},
        {"open": "Ping Pong Animation"}, {"click": "cmd_Run"}, {"dump": "pingpong"})JS",
                            4);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(controlText(state("snow"), "frmTVSnow", "Label2"), "35% Strength");
    const auto ran = dumped("flicker");
    for (std::size_t f = 0; f < 6; ++f) {
        const bool primary = f % 4 < 2;
        // Ninety percent of the key colour: its channel lands high, the others low.
        EXPECT_GT((primary ? ran[f].r : ran[f].b).at(1, 1), 220) << f;
        EXPECT_LT((primary ? ran[f].b : ran[f].r).at(1, 1), 30) << f;
    }
    EXPECT_FALSE(state("flicker")["locked"].toBool());
    const auto focus = dumped("focus");
    for (std::size_t f = 0; f < 6; ++f)
        EXPECT_NE(focus[f], ran[f]) << f;
    // Ping pong appends the animation reversed.
    std::vector<host::Picture> both = focus;
    both.insert(both.end(), focus.rbegin(), focus.rend());
    EXPECT_EQ(dumped("pingpong"), both);
    for (const char* dump : {"flicker", "focus", "pingpong"})
        EXPECT_EQ(state(dump)["current_frame"].toInt(), 4) << dump;
}

TEST_F(GeneratorScript, SwapAndCopyRefuseOneFrameThenMoveFramesAndNoticeANewCount) {
    const RunResult r = run(R"JS(
        {"open": "Frame Swapper"}, {"click": "cmd_Run"}, {"dump": "same"},
        {"answer": [{"value": 1}, {"value": -1}, {"value": 4}]},
        {"click": "lblFrameSelected(0)"}, {"click": "lblFrameSelected(1)"}, {"click": "lblFrameSelected(1)"},
        {"dump": "chosen"}, {"click": "cmd_Run"}, {"dump": "swapped"}, {"close": "frmFrameSwap"},
        {"open": "Frame Copier"}, {"click": "cmd_Run"},
        {"answer": [{"value": 0}, {"value": 5}]},
        {"click": "lblFrameSelected(1)"}, {"click": "lblFrameSelected(1)"}, {"click": "cmd_Run"},
        {"dump": "copied"},
        {"answer": [{"value": 3}]}, {"click": "lblFrameSelected(0)"},
        {"host": "Van_InsertFrame", "args": [0]}, {"click": "cmd_Run"}, {"dump": "changed"})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(dialogTexts(state("same")).back(), "Please Select Two Different Frames");
    const QJsonObject chosen = state("chosen");
    EXPECT_EQ(controlText(chosen, "frmFrameSwap", "lblFrameSelected(0)"), "Frame 1");
    EXPECT_EQ(controlText(chosen, "frmFrameSwap", "lblFrameSelected(1)"), "Frame 4");
    EXPECT_EQ(controlText(chosen, "frmFrameSwap", "Label2"), "<----->");
    const auto swapped = dumped("swapped");
    EXPECT_EQ(swapped[1], pictures[4]);
    EXPECT_EQ(swapped[4], pictures[1]);
    EXPECT_EQ(state("swapped")["current_frame"].toInt(), 4);

    const QJsonObject copiedState = state("copied");
    EXPECT_EQ(controlText(copiedState, "frmFrameCopy", "lblFrameSelected(0)"), "Source Frame: 0");
    EXPECT_EQ(controlText(copiedState, "frmFrameCopy", "lblFrameSelected(1)"), "Destination Frame: 5");
    // The copier takes one frame over itself without a word.
    const auto shown = dialogTexts(copiedState);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "Please Select Two Different Frames"), 1);
    const auto copied = dumped("copied");
    EXPECT_EQ(copied[5], pictures[0]);
    EXPECT_EQ(copied[0], pictures[0]);
    EXPECT_EQ(copied[4], pictures[1]);

    // A changed frame count is noticed before anything is copied, and the choice starts again.
    const QJsonObject changed = state("changed");
    EXPECT_EQ(dialogTexts(changed).back(), "Animation Size Changed. Settings updated.");
    EXPECT_EQ(controlText(changed, "frmFrameCopy", "lblFrameSelected(0)"), "Source Frame: 0");
    EXPECT_EQ(dumped("changed").size(), 7u);
}

} // namespace
} // namespace kirrel::test
