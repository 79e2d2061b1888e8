// The stripe dialogs, Threshold Mask and Block Out as a user meets them through session scripts: the
// stripe sizes and their labels, and the refusals.

#include "support/Fixtures.h"

#include <QJsonObject>

#include <algorithm>

namespace kirrel::test {
namespace {

using StripeBlockScript = ScriptTest;

TEST_F(StripeBlockScript, StripeSizesAreKeptDoubledAndShownHalved) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 5},
      "steps": [
        {"open": "Stripes/Weaves"},
        {"dump": "load"},
        {"answer": [{"value": 3}, {"value": 0}, {"value": -1}, {"value": 1}]},
        {"click": "cmdHsize"}, {"dump": "three"},
        {"click": "cmdVsize"}, {"dump": "zero"},
        {"click": "cmdHsize"}, {"dump": "backedOut"},
        {"click": "cmdHsize"}, {"dump": "one"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject load = state("load");
    const QString form = "frmStripes";
    EXPECT_EQ(controlText(load, form, "lblHSize"), "Size: 1 pixel high");
    EXPECT_EQ(controlText(load, form, "lblVSize"), "Size: 1 pixel wide");
    EXPECT_EQ(controlText(load, form, "cmdHsize"), "Set Height");
    EXPECT_EQ(controlText(load, form, "cmdVsize"), "Set Width");
    EXPECT_EQ(controlText(load, form, "optDirection(0)"), " Weaves");
    EXPECT_EQ(controlText(load, form, "optDirection(1)"), "Horizontal Stripes");
    EXPECT_EQ(controlText(load, form, "optDirection(2)"), "Vertical Stripes");
    EXPECT_TRUE(formControl(load, form, "optDirection(0)")["value"].toBool());

    EXPECT_EQ(controlText(state("three"), form, "lblHSize"), "Size: 3 pixels high");
    EXPECT_EQ(controlText(state("zero"), form, "lblVSize"), "Size: 0 pixel wide") << "0 is taken, singular";
    EXPECT_EQ(controlText(state("backedOut"), form, "lblHSize"), "Size: 3 pixels high")
        << "a negative answer";
    EXPECT_EQ(controlText(state("one"), form, "lblHSize"), "Size: 1 pixel high");

    // Each box offers the stored value halved, under the one title both buttons share.
    std::vector<std::string> boxes;
    for (const std::string& l : traceLines())
        if (l.starts_with("Van_ValueBox")) boxes.push_back(l);
    ASSERT_EQ(boxes.size(), 4u);
    for (const std::string& b : boxes)
        EXPECT_NE(b.find("Set Horizontal Stripe Size"), std::string::npos) << b;
    EXPECT_NE(boxes[0].find(", 1, "), std::string::npos) << boxes[0];
    EXPECT_NE(boxes[1].find(", 1, "), std::string::npos) << boxes[1];
    EXPECT_NE(boxes[2].find(", 3, "), std::string::npos) << boxes[2];
    EXPECT_NE(boxes[3].find(", 3, "), std::string::npos) << boxes[3];
}

// Three pixels high is a stored 6: rows 0..2 fill from the left, rows 3..5 from the right. At the
// middle of 0..2 half the width (10 of 21 columns) is filled.
TEST_F(StripeBlockScript, TheRunTakesTheDoubledSize) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 3,
                                           "primary": [1, 2, 3]},
      "steps": [
        {"open": "Stripes/Weaves"},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"set": {"control": "cboStripeOptions", "text": "Primary Color"}},
        {"click": "cmd_Run"}, {"dump": "fine"},
        {"answer": [{"value": 3}]}, {"click": "cmdHsize"},
        {"click": "cmd_Run"}, {"dump": "coarse"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const krl::Plane fine = dumped("fine")[1].r, coarse = dumped("coarse")[1].r;
    EXPECT_NE(fine.at(0, 1), 1) << "one pixel high: row 1 fills from the right";
    EXPECT_EQ(fine.at(0, 0), 1);
    EXPECT_EQ(coarse.at(0, 1), 1) << "three pixels high: row 1 fills from the left";
    EXPECT_EQ(coarse.at(0, 2), 1);
    EXPECT_NE(coarse.at(0, 3), 1);
    EXPECT_EQ(coarse.at(20, 3), 1);
}

TEST_F(StripeBlockScript, RefusalsInTheirOwnWords) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 6},
      "steps": [
        {"open": "Block Out"},
        {"set": {"control": "cboFrameStart", "index": 2}},
        {"click": "cmd_Run"},
        {"dump": "blocks4"},
        {"set": {"control": "cboFrameStart", "index": 1}},
        {"click": "cmd_Run"},
        {"dump": "blocks5"},
        {"close": "frmBlocks"},
        {"open": "Threshold Mask"},
        {"set": {"control": "cboFrameStart", "index": 4}},
        {"click": "cmd_Run"},
        {"dump": "threshold"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(dialogTexts(state("blocks4")), (std::vector<std::string>{"Need at least 5 frames selected!"}));
    EXPECT_EQ(dialogTexts(state("blocks5")).size(), 1u) << "five frames run";
    EXPECT_EQ(dialogTexts(state("threshold")).back(), "Need at least 3 frames selected!");
    const QJsonObject threshold = state("threshold");
    EXPECT_EQ(controlText(threshold, "frmThresholdMask", "lblWarning"),
              "Requires an active Alpha Channel to use Threshold filter on");
    EXPECT_FALSE(threshold["locked"].toBool());
}

} // namespace
} // namespace kirrel::test
