// The generator and frame tool dialogs as a user drives them through session scripts: the order of
// undo and range test, the strength labels, the frame the user ends on, and the frame tools' labels
// and value boxes.

#include "host/AnimationFiles.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"

#include <QFile>

#include <algorithm>

namespace kirrel::test {
namespace {

constexpr const char* kTooShort = "Need at least 3 frames selected!";

class GeneratorScript : public ScriptTest {
  protected:
    void SetUp() override {
        pictures = patternFrames(6, 12, 8, 3);
        host::Animation a;
        a.frames = pictures;
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

TEST_F(GeneratorScript, NoiseSavesTheUndoEvenForARefusedRange) {
    const RunResult r = run(R"JS(
        {"open": "White Noise (TV Snow)"},
        {"dump": "opened"},
        {"set": {"control": "Slider1", "value": 35}},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "cboFrameStart", "index": 3}},
        {"set": {"control": "cboFrameEnd", "index": 4}},
        {"click": "cmd_Run"},
        {"dump": "refused"},
        {"set": {"control": "cboFrameStart", "index": 1}},
        {"click": "cmd_Run"},
        {"dump": "ran"},
        {"close": "frmTVSnow"})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(controlText(state("opened"), "frmTVSnow", "Label2"), "10% Strength");
    const QJsonObject refused = state("refused");
    EXPECT_EQ(controlText(refused, "frmTVSnow", "Label2"), "35% Strength");
    EXPECT_EQ(dialogTexts(refused).back(), kTooShort);
    EXPECT_TRUE(undoSaved());
    EXPECT_EQ(dumped("refused"), pictures);

    const auto ran = dumped("ran");
    for (int f = 1; f <= 4; ++f)
        EXPECT_NE(ran[static_cast<std::size_t>(f)], pictures[static_cast<std::size_t>(f)]) << f;
    EXPECT_EQ(ran[0], pictures[0]);
    EXPECT_EQ(state("ran")["current_frame"].toInt(), 2);
}

TEST_F(GeneratorScript, FlickerAndPingPongOverTheWholeAnimationEndWhereTheUserStood) {
    const RunResult r = run(R"JS(
        {"open": "Flicker"},
        {"set": {"control": "Slider1", "value": 90}},
        {"click": "cmd_Run"},
        {"dump": "ran"},
        {"close": "frmFlicker"},
        {"open": "Ping Pong Animation"},
        {"click": "cmd_Run"},
        {"dump": "pingpong"})JS",
                            4);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto ran = dumped("ran");
    for (int f = 0; f < 6; ++f) {
        const bool primary = f % 4 < 2;
        const host::Picture& p = ran[static_cast<std::size_t>(f)];
        // Ninety percent of the key colour: its channel lands high, the others low.
        EXPECT_GT((primary ? p.r : p.b).at(1, 1), 220) << f;
        EXPECT_LT((primary ? p.b : p.r).at(1, 1), 30) << f;
    }
    EXPECT_EQ(state("ran")["current_frame"].toInt(), 4);
    EXPECT_FALSE(state("ran")["locked"].toBool());

    // Ping pong appends the animation reversed.
    const auto out = dumped("pingpong");
    ASSERT_EQ(out.size(), 12u);
    for (std::size_t f = 0; f < 6; ++f) {
        EXPECT_EQ(out[f], ran[f]) << f;
        EXPECT_EQ(out[11 - f], ran[f]) << f;
    }
    EXPECT_EQ(state("pingpong")["current_frame"].toInt(), 4);
}

// Each refuses a range of two frames before saving the undo, then runs once the range is fixed.
TEST_F(GeneratorScript, ThresholdVerticalHoldAndFocusRefuseShortRangesThenRun) {
    const RunResult r = run(R"JS(
        {"open": "Animated Threshold"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "cboFrameEnd", "index": 1}},
        {"click": "cmd_Run"},
        {"dump": "refused"},
        {"set": {"control": "chkUndoSave", "value": 0}},
        {"set": {"control": "cboFrameEnd", "index": 2}},
        {"click": "cmd_Run"},
        {"dump": "threshold"},
        {"close": "frmGenThreshold"},
        {"open": "Vertical Hold"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "cboFrameStart", "index": 4}},
        {"click": "cmd_Run"},
        {"dump": "refused2"},
        {"set": {"control": "chkUndoSave", "value": 0}},
        {"set": {"control": "chkDivider", "value": 1}},
        {"set": {"control": "cboFrameStart", "index": 3}},
        {"click": "cmd_Run"},
        {"dump": "hold"},
        {"close": "frmVertHold"},
        {"open": "Focus"},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"click": "cmd_Run"},
        {"dump": "focus"})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(dialogTexts(state("refused")).back(), kTooShort);
    EXPECT_EQ(dialogTexts(state("refused2")).back(), kTooShort);
    EXPECT_EQ(dumped("refused"), pictures);
    EXPECT_EQ(dumped("refused2"), dumped("threshold"));
    EXPECT_FALSE(undoSaved());
    const auto threshold = dumped("threshold");
    // Level 0 at Start: white; level 255 at End: only pure white stays, which the pattern hasn't.
    EXPECT_EQ(threshold[0].g.at(5, 5), 255);
    EXPECT_EQ(threshold[2].g.at(5, 5), 0);
    EXPECT_EQ(threshold[3], pictures[3]);
    const auto hold = dumped("hold");
    EXPECT_EQ(hold[3], pictures[3]);
    EXPECT_EQ(hold[5].r.at(4, 0), 0);
    EXPECT_EQ(hold[5].r.at(4, 8), 0);
    const auto focus = dumped("focus");
    for (int f = 0; f < 6; ++f)
        EXPECT_NE(focus[static_cast<std::size_t>(f)], hold[static_cast<std::size_t>(f)]) << f;
    EXPECT_EQ(state("focus")["current_frame"].toInt(), 2);
}

TEST_F(GeneratorScript, SwapAndCopyRefuseOneFrameThenMoveFramesAndNoticeANewCount) {
    const RunResult r = run(R"JS(
        {"open": "Frame Swapper"},
        {"click": "cmd_Run"},
        {"dump": "same"},
        {"answer": [{"value": 1}, {"value": -1}, {"value": 4}]},
        {"click": "lblFrameSelected(0)"},
        {"click": "lblFrameSelected(1)"},
        {"click": "lblFrameSelected(1)"},
        {"dump": "chosen"},
        {"click": "cmd_Run"},
        {"dump": "swapped"},
        {"close": "frmFrameSwap"},
        {"open": "Frame Copier"},
        {"click": "cmd_Run"},
        {"answer": [{"value": 0}, {"value": 5}]},
        {"click": "lblFrameSelected(1)"},
        {"click": "lblFrameSelected(1)"},
        {"click": "cmd_Run"},
        {"dump": "copied"},
        {"answer": [{"value": 3}]},
        {"click": "lblFrameSelected(0)"},
        {"host": "Van_InsertFrame", "args": [0]},
        {"click": "cmd_Run"},
        {"dump": "changed"})JS");
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
