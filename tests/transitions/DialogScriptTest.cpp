// The transition dialogs as a user meets them, through session scripts of the kirrel executable: the
// refusals, the order of an Apply, the lists for a stored source, and every variant of the wipe, fade,
// moving, pattern, stripe and block dialogs in all four shapes.

#include "support/Support.h"
#include "transitions/EveryShapeScript.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>

namespace kirrel::test {
namespace {

using DialogScript = ScriptTest;

TEST_F(DialogScript, RefusalsComeBeforeAnythingChanges) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 5},
      "steps": [
        {"open": "Wipes"},
        {"set": {"control": "cboFrameStart", "index": 3}},
        {"click": "cmd_Run"},
        {"dump": "short"},
        {"set": {"control": "cboFrameEnd", "index": 1}},
        {"leave": "cboFrameEnd"},
        {"dump": "pulledDown"},
        {"set": {"control": "cboFrameStart", "index": 2}},
        {"leave": "cboFrameStart"},
        {"dump": "pulledUp"},
        {"host": "Van_CreateAnim", "args": [7]},
        {"click": "cmd_Run"},
        {"dump": "resized"},
        {"set": {"control": "cboWipeOptions", "text": "Stored Animation #2"}},
        {"click": "cmd_Run"},
        {"dump": "empty"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject shortRange = state("short");
    EXPECT_EQ(dialogTexts(shortRange), (std::vector<std::string>{"Need at least 3 frames selected!"}));
    EXPECT_FALSE(shortRange["locked"].toBool());

    // Start above End: the list just left wins.
    EXPECT_EQ(formControl(state("pulledDown"), "frmWipes", "cboFrameStart")["index"].toInt(), 1);
    EXPECT_EQ(formControl(state("pulledUp"), "frmWipes", "cboFrameEnd")["index"].toInt(), 2);

    const QJsonObject resized = state("resized");
    EXPECT_EQ(dialogTexts(resized).back(), "Animation Size Changed. Settings updated.");
    EXPECT_EQ(listItems(resized, "frmWipes", "cboFrameEnd").size(), 7) << "the lists follow the new count";

    const QJsonObject empty = state("empty");
    EXPECT_EQ(controlText(empty, "frmWipes", "lblStoredDesc"), "This Slot Is Empty!");
    EXPECT_TRUE(formControl(empty, "frmWipes", "lblStoredDesc")["visible"].toBool());
    EXPECT_EQ(dialogTexts(empty).back(), "Slot Empty");
    const auto trace = traceLines();
    EXPECT_TRUE(
        std::none_of(trace.begin(), trace.end(), [](const std::string& l) { return l == "Van_Lock()"; }));
}

TEST_F(DialogScript, MovingPicturesTakeTwoSourcesAndReportAnEmptySlotWithAFullStop) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 5},
      "steps": [
        {"open": "Pushes"},
        {"set": {"control": "cboTransitions", "text": "Stored Animation #3"}},
        {"click": "cmd_Run"},
        {"dump": "empty"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject empty = state("empty");
    EXPECT_EQ(dialogTexts(empty).back(), "Slot Empty.");
    EXPECT_EQ(listItems(empty, "frmPushes", "cboTransitions"),
              (QStringList{"Swap", "Primary Color", "Stored Animation #1", "Stored Animation #2",
                           "Stored Animation #3", "Stored Animation #4"}));
    EXPECT_EQ(listItems(empty, "frmPushes", "cboPushOptions"),
              (QStringList{"Push To Left", "Push To Right", "Push Up", "Push Down"}));
}

TEST_F(DialogScript, ApplyRunsInItsOrderAndComesBackToTheSavedFrame) {
    const RunResult r =
        run(R"JS({"host": {"temp_dir": "tmp", "size": [12, 8], "frames": 6, "current_frame": 4},
      "steps": [
        {"open": "Wipes"},
        {"set": {"control": "cboFrameStart", "index": 1}},
        {"set": {"control": "cboFrameEnd", "index": 3}},
        {"set": {"control": "chkUndoSave", "value": true}},
        {"click": "cmd_Run"},
        {"dump": "after"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(QFile::exists(at("tmp/AnimUndo.dat"))) << "Save Undo saves before the run";
    const QJsonObject after = state("after");
    EXPECT_EQ(after["current_frame"].toInt(), 4);
    EXPECT_TRUE(dialogTexts(after).empty());

    auto trace = traceLines();
    // The Apply's own stop (opening the dialog from the panel stops the playback as well).
    const auto from = std::find(trace.rbegin(), trace.rend(), "Van_StopAnimation()").base() - 1;
    ASSERT_GE(from - trace.begin(), 2);
    ASSERT_GE(from - trace.begin(), 2);
    EXPECT_EQ(*(from - 2), "Van_GetCurrentFrame()");
    EXPECT_EQ(*(from - 1), "Van_GetTotalFrames()");
    // The undo save (which locks the host for itself) comes before the run's own lock, the last one.
    const auto lock = std::find(trace.rbegin(), trace.rend(), "Van_Lock()").base() - 1;
    ASSERT_GT(lock, from);
    EXPECT_NE(std::find(from, lock, "Van_GetRFrame(5)"), lock) << "every frame is saved first";
    EXPECT_EQ(trace[trace.size() - 2], "Van_GotoFrame(4)");
    EXPECT_EQ(trace.back(), "Van_Refresh()");
    // The run mixes frames 2 and 3 only: the range is 1..3.
    EXPECT_NE(std::find(lock, trace.end(), "Van_GotoFrame(2)"), trace.end());
    EXPECT_EQ(std::find(lock, trace.end(), "Van_GotoFrame(1)"), trace.end());
}

TEST_F(DialogScript, StoredListsOfferOnlyWhereASpliceCanRun) {
    writeSlot(0, 8, 30, 20);
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 6},
      "steps": [
        {"open": "Fades"},
        {"set": {"control": "cboFadeOptions", "text": "Stored Animation #1"}},
        {"dump": "toward"},
        {"click": "lblToggle"},
        {"dump": "back"},
        {"click": "cmd_Run"},
        {"dump": "spliced"},
        {"click": "cmd_Run"},
        {"dump": "told"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject toward = state("toward");
    EXPECT_EQ(controlText(toward, "frmFades", "lblStoredDesc"), "8 Frames, 30X20");
    // N 6 below S 8: every Start from 0 up to N - 3.
    EXPECT_EQ(listItems(toward, "frmFades", "cboFrameStart"), (QStringList{"0", "1", "2", "3"}));
    EXPECT_TRUE(formControl(toward, "frmFades", "cboFrameStart")["visible"].toBool());
    EXPECT_FALSE(formControl(toward, "frmFades", "cboFrameEnd")["visible"].toBool());

    const QJsonObject back = state("back");
    EXPECT_EQ(controlText(back, "frmFades", "lblToggle"), "<-----------");
    // Every End from 2 up to min(N, S) - 1.
    EXPECT_EQ(listItems(back, "frmFades", "cboFrameEnd"), (QStringList{"2", "3", "4", "5"}));
    EXPECT_FALSE(formControl(back, "frmFades", "cboFrameStart")["visible"].toBool());

    // End 2: the overlap is 3 frames, and 5 stored frames go in front.
    EXPECT_EQ(state("spliced")["total_frames"].toInt(), 11);
    EXPECT_TRUE(dialogTexts(state("spliced")).empty());
    EXPECT_EQ(dialogTexts(state("told")),
              (std::vector<std::string>{"Animation Size Changed. Settings updated."}));
    EXPECT_EQ(state("told")["total_frames"].toInt(), 11)
        << "the Apply that tells of the new length runs nothing";
}

TEST_F(DialogScript, StoredListsStayEmptyWhenTheSlotIsTooShort) {
    writeSlot(1, 2, 20, 15);
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 6},
      "steps": [
        {"open": "Dissolves"},
        {"set": {"control": "cboDissolveOptions", "text": "Stored Animation #2"}},
        {"click": "lblToggle"},
        {"click": "cmd_Run"},
        {"dump": "refused"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject refused = state("refused");
    EXPECT_TRUE(listItems(refused, "frmDissolves", "cboFrameEnd").isEmpty());
    EXPECT_EQ(dialogTexts(refused), (std::vector<std::string>{"Slot Empty"}));
    EXPECT_EQ(refused["total_frames"].toInt(), 6);
}

TEST_F(DialogScript, WithoutAnAnimationApplyOffersToMakeOne) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp"},
      "steps": [
        {"host": "Van_CreateAnim", "args": [3]},
        {"open": "Fades"},
        {"host": "Van_DeleteFrame", "args": [0]}, {"host": "Van_DeleteFrame", "args": [0]},
        {"host": "Van_DeleteFrame", "args": [0]},
        {"click": "cmd_Run"},
        {"answer": [{"question": 1}, {"input": " 30"}]},
        {"click": "cmd_Run"},
        {"dump": "made"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject made = state("made");
    EXPECT_EQ(made["total_frames"].toInt(), 30) << "the default text \" 30\" reads as 30";
    EXPECT_EQ(listItems(made, "frmFades", "cboFrameEnd").size(), 30);
}

// Every variant of every dialog runs from a script in all four shapes: To, From, ToStored, FromStored.
struct ShapeCase {
    const char* plugin;
    const char* form;
    const char* caption;
    const char* sourceList;
    int sources;                // entries of the source list, the last "Stored Animation #4"
    const char* variantControl; // a list, option buttons with %1, or "" for none
    int variants;
    const char* variantItems = ""; // the variant list's exact entries, separated by '|'
    QStringList absent = {};       // controls the dialog must not have
    QStringList plainSources = {"Swap"};
};

const QStringList kPatternSources =
    QString(
        "Swap|Primary Color|GreyScale|Negative|Red Channel|Green Channel|Blue Channel|Red & Blue Channels|"
        "Red & Green Channels|Green & Blue Channels|Stored Animation #1|Stored Animation #2|"
        "Stored Animation #3|Stored Animation #4")
        .split('|');
const QStringList kTwoPlain = {"Swap", "Primary Color"};

class EveryVariant : public DialogScript, public testing::WithParamInterface<ShapeCase> {};

TEST_P(EveryVariant, RunsInAllFourShapes) {
    const ShapeCase& c = GetParam();
    const EveryShapeRun r =
        playEveryShape(dir.path(), {c.plugin, c.form, c.variantControl, std::max(c.variants, 1),
                                    c.plainSources, c.sourceList});
    expectEveryShapeRan(r);
    EXPECT_EQ(formCaption(r.end, c.form), c.caption);
    const QStringList sources = listItems(r.end, c.form, c.sourceList);
    ASSERT_EQ(sources.size(), c.sources);
    EXPECT_EQ(sources.back(), "Stored Animation #4");
    if (std::string(c.sourceList) == "cboTransitions" && c.sources == 14) {
        EXPECT_EQ(sources, kPatternSources);
    }
    if (*c.variantItems) {
        EXPECT_EQ(listItems(r.end, c.form, c.variantControl), QString(c.variantItems).split('|'));
    }
    for (const QString& control : c.absent)
        EXPECT_TRUE(formControl(r.end, c.form, control).isEmpty()) << control.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, EveryVariant,
    testing::Values(
        ShapeCase{"Wipes", "frmWipes", "Kirrel-Wipes", "cboWipeOptions", 14, "cboTransitions", 4},
        ShapeCase{"Alpha Wipes", "frmAlphaWipes", "Kirrel-Alpha Wipes (Requires Alpha Channel)",
                  "cboWipeOptions", 14, "cboTransitions", 4},
        ShapeCase{"Fades",
                  "frmFades",
                  "Kirrel-Fades",
                  "cboFadeOptions",
                  17,
                  "",
                  0,
                  "",
                  {"cboTransitions", "Label2"}},
        ShapeCase{"Alpha Fades",
                  "frmAlphaFades",
                  "Kirrel-Alpha Fades",
                  "cboFadeOptions",
                  17,
                  "",
                  0,
                  "",
                  {"cboTransitions", "Label2"}},
        ShapeCase{"Dissolves",
                  "frmDissolves",
                  "Kirrel - Dissolves",
                  "cboDissolveOptions",
                  14,
                  "",
                  0,
                  "",
                  {"cboTransitions", "Label2"}},
        ShapeCase{"Pushes", "frmPushes", "Kirrel-Pushes", "cboTransitions", 6, "cboPushOptions", 4},
        ShapeCase{"Slides", "frmSlides", "Kirrel-Slides", "cboTransitions", 6, "cboSlideOptions", 8},
        ShapeCase{"Alpha Slides", "frmAlphaSlides", "Kirrel-Alpha Slides", "cboTransitions", 6,
                  "cboSlideOptions", 8},
        // The pattern dialogs: only the circles show a preview.
        ShapeCase{"Blinds",
                  "frmBlinds",
                  "Kirrel-Blinds",
                  "cboTransitions",
                  14,
                  "cboBlindsOptions",
                  2,
                  "Horizontal Blinds|Vertical Blinds",
                  {"PreviewBox"}},
        ShapeCase{"Diamonds",
                  "frmDiamonds",
                  "Kirrel - Diamonds",
                  "cboTransitions",
                  14,
                  "cboDiamondsOptions",
                  2,
                  "Diamond Open|Diamond Close",
                  {"PreviewBox"}},
        ShapeCase{"Iris",
                  "frmIris",
                  "Kirrel - Iris Transitions",
                  "cboTransitions",
                  14,
                  "cboIrisOptions",
                  2,
                  "Iris Open|Iris Close",
                  {"PreviewBox"}},
        ShapeCase{"Lines",
                  "frmLines",
                  "Kirrel - Lines",
                  "cboTransitions",
                  14,
                  "cboLineOptions",
                  4,
                  "Lines to Left|Lines to Right|Lines Up|Lines Down",
                  {"PreviewBox"}},
        ShapeCase{"X Transition",
                  "frmX",
                  "Kirrel - X Transitons",
                  "cboTransitions",
                  14,
                  "cboXOptions",
                  2,
                  "X Open|X Close",
                  {"PreviewBox"}},
        ShapeCase{"Circles", "frmCircles", "Kirrel - Circle Transition", "cboTransitions", 14,
                  "cboCircleOptions", 2, "Circle Open|Circle Close"},
        // The stripes and blocks: option buttons, or none.
        ShapeCase{"Stripes/Weaves",
                  "frmStripes",
                  "Kirrel-Stripes/Weaves",
                  "cboStripeOptions",
                  14,
                  "optDirection(%1)",
                  3,
                  "",
                  {"optDirection(3)", "cboTransitions"},
                  kTwoPlain},
        ShapeCase{"Push Stripes",
                  "frmPushStripes",
                  "Kirrel-Push Stripes",
                  "cboStripeOptions",
                  14,
                  "optDirection(%1)",
                  2,
                  "",
                  {"optDirection(2)", "cboTransitions"},
                  kTwoPlain},
        ShapeCase{"Slide Stripes",
                  "frmSlideStripes",
                  "Kirrel-Slide Stripes",
                  "cboStripeOptions",
                  14,
                  "optDirection(%1)",
                  2,
                  "",
                  {"optDirection(2)", "cboTransitions"},
                  kTwoPlain},
        ShapeCase{"Threshold Mask",
                  "frmThresholdMask",
                  "Kirrel-Threshold Mask Transition",
                  "cboThreshold",
                  6,
                  "",
                  0,
                  "",
                  {"optDirection(0)", "cboTransitions"},
                  kTwoPlain},
        ShapeCase{"Block Out",
                  "frmBlocks",
                  "Kirrel-Block Out",
                  "cboBlockOptions",
                  6,
                  "",
                  0,
                  "",
                  {"optDirection(0)", "cboTransitions"},
                  kTwoPlain}),
    [](const testing::TestParamInfo<ShapeCase>& i) { return std::string(i.param.form); });

} // namespace
} // namespace kirrel::test
