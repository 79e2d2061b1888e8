// The transition dialogs as a user meets them, through session scripts of the kirrel executable: the
// refusals, the order of an Apply, the lists for a stored source, and every variant of the wipe, fade,
// moving, pattern, stripe and block dialogs in all four shapes; the stripe sizes and their labels, and
// the refusals of Threshold Mask and Block Out in their own words.

#include "support/Fixtures.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace kirrel::test {
namespace {

using DialogScript = ScriptTest;

// One session of refusals, each in its own words, none of them locking the host: a short range, a
// resized animation, an empty slot, Block Out's five frames (which run), Threshold Mask's three, an iris
// whose mask overflows (bounds 9 by 8: the far column lies 1.25 out) and an animation with no frames left.
TEST_F(DialogScript, RefusalsComeBeforeAnythingChanges) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [9, 8], "frames": 5},
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
        {"dump": "empty"},
        {"open": "Block Out"},
        {"set": {"control": "cboFrameStart", "index": 3}}, {"click": "cmd_Run"},
        {"set": {"control": "cboFrameStart", "index": 2}}, {"click": "cmd_Run"},
        {"close": "frmBlocks"},
        {"open": "Threshold Mask"},
        {"set": {"control": "cboFrameStart", "index": 5}}, {"click": "cmd_Run"},
        {"dump": "threshold"},
        {"open": "Iris"}, {"click": "cmd_Run"},
        {"set": {"control": "cboIrisOptions", "index": 1}}, {"click": "lblToggle"}, {"click": "cmd_Run"},
        {"dump": "iris"},
        {"open": "Fades"},
        {"host": "Van_DeleteFrame", "args": [0]}, {"host": "Van_DeleteFrame", "args": [0]},
        {"host": "Van_DeleteFrame", "args": [0]}, {"host": "Van_DeleteFrame", "args": [0]},
        {"host": "Van_DeleteFrame", "args": [0]}, {"host": "Van_DeleteFrame", "args": [0]},
        {"host": "Van_DeleteFrame", "args": [0]},
        {"click": "cmd_Run"},
        {"answer": [{"question": 1}, {"input": " 30"}]},
        {"click": "cmd_Run"},
        {"dump": "made"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    EXPECT_EQ(dialogTexts(state("short")), (std::vector<std::string>{"Need at least 3 frames selected!"}));
    // Start above End: the list just left wins.
    EXPECT_EQ(formControl(state("pulledDown"), "frmWipes", "cboFrameStart")["index"].toInt(), 1);
    EXPECT_EQ(formControl(state("pulledUp"), "frmWipes", "cboFrameEnd")["index"].toInt(), 2);
    EXPECT_EQ(listItems(state("resized"), "frmWipes", "cboFrameEnd").size(), 7)
        << "the lists follow the new count";
    const QJsonObject empty = state("empty");
    EXPECT_EQ(controlText(empty, "frmWipes", "lblStoredDesc"), "This Slot Is Empty!");
    EXPECT_TRUE(formControl(empty, "frmWipes", "lblStoredDesc")["visible"].toBool());
    EXPECT_EQ(controlText(state("threshold"), "frmThresholdMask", "lblWarning"),
              "Requires an active Alpha Channel to use Threshold filter on");

    const QJsonObject iris = state("iris");
    const std::string overflow = "Overflow\n\nNothing was changed.";
    EXPECT_EQ(dialogTexts(iris),
              (std::vector<std::string>{"Need at least 3 frames selected!",
                                        "Animation Size Changed. Settings updated.", "Slot Empty",
                                        "Need at least 5 frames selected!",
                                        "Need at least 3 frames selected!", overflow, overflow}));
    EXPECT_EQ(iris["dialogs"].toArray().last().toObject()["kind"].toString(), "error");
    EXPECT_TRUE(formControl(iris, "frmIris", "cmd_Run")["enabled"].toBool()) << "Apply comes back";
    EXPECT_FALSE(iris["locked"].toBool());
    const auto trace = traceLines();
    EXPECT_EQ(std::count(trace.begin(), trace.end(), "Van_Lock()"), 1) << "only Block Out's five frames ran";

    const QJsonObject made = state("made");
    EXPECT_EQ(made["total_frames"].toInt(), 30) << "the default text \" 30\" reads as 30";
    EXPECT_EQ(listItems(made, "frmFades", "cboFrameEnd").size(), 30);
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

// Every variant of every dialog runs from a script in all four shapes: To, From, ToStored, FromStored,
// after an Apply on an empty slot, whose words differ between dialogs.
struct ShapeCase {
    const char* plugin;
    const char* form;
    const char* caption;
    const char* sourceList;
    int sources;                // entries of the source list, the last "Stored Animation #4"
    const char* variantControl; // a list, option buttons with %1, or "" for none
    int variants;
    const char* variantItems;             // the variant list's exact entries, separated by '|'; "" unchecked
    const char* absent;                   // controls the dialog must not have, separated by '|'
    const char* plain = "Swap";           // the plain sources run, separated by '|'
    const char* slotEmpty = "Slot Empty"; // the refusal of an empty slot; "" unchecked
    int slotW = 16, slotH = 12;
};

QStringList split(const char* items) {
    return *items ? QString(items).split('|') : QStringList{};
}

const QStringList kPatternSources =
    split("Swap|Primary Color|GreyScale|Negative|Red Channel|Green Channel|Blue Channel|Red & Blue Channels|"
          "Red & Green Channels|Green & Blue Channels|Stored Animation #1|Stored Animation #2|"
          "Stored Animation #3|Stored Animation #4");
const QStringList kTwoSources = split(
    "Swap|Primary Color|Stored Animation #1|Stored Animation #2|Stored Animation #3|Stored Animation #4");

QJsonObject setStep(const QString& control, const char* key, const QJsonValue& value) {
    return QJsonObject{{"set", QJsonObject{{"control", control}, {key, value}}}};
}

// The session every dialog is put through, on a host of five 16 x 12 frames and a slot of six flat
// frames: each variant, in each direction, an Apply per plain source, then two with the first slot.
// When the first splice has lengthened the animation the second Apply only tells so; otherwise it
// splices once more, to the same length.
class EveryVariant : public DialogScript, public testing::WithParamInterface<ShapeCase> {};

TEST_P(EveryVariant, RunsInAllFourShapes) {
    const ShapeCase& c = GetParam();
    constexpr int kSlotFrames = 6;
    writeFile(at("tmp/AnimSlot 0.dat"), flatSlotBytes(kSlotFrames, c.slotW, c.slotH));
    const QJsonObject apply{{"click", "cmd_Run"}};
    QJsonArray steps{QJsonObject{{"open", c.plugin}}};
    if (*c.slotEmpty) { // an Apply on an empty slot first, whose words differ between dialogs
        steps.append(setStep(c.sourceList, "text", "Stored Animation #3"));
        steps.append(apply);
    }
    int total = 5, told = 0;
    const QString variantControl = c.variantControl;
    for (int v = 0; v < std::max(c.variants, 1); ++v) {
        if (variantControl.contains("%1"))
            steps.append(setStep(variantControl.arg(v), "value", true));
        else if (!variantControl.isEmpty())
            steps.append(setStep(variantControl, "index", v));
        for (int direction = 0; direction < 2; ++direction) {
            for (const QString& source : split(c.plain)) {
                steps.append(setStep(c.sourceList, "text", source));
                steps.append(apply);
            }
            steps.append(setStep(c.sourceList, "text", "Stored Animation #1"));
            steps.append(apply);
            steps.append(apply);
            steps.append(QJsonObject{{"click", "lblToggle"}});
        }
        // ToStored from the first Start offered (N - 6, or 0 when the slot is longer): Start + 6
        // frames. FromStored from the first End offered (2): 6 - 3 frames go in front.
        const int start = std::max(total - kSlotFrames, 0);
        told += (start + kSlotFrames != total) + 1;
        total = start + kSlotFrames + (kSlotFrames - 3);
    }
    steps.append(QJsonObject{{"dump", "end"}});
    const QJsonObject script{
        {"host", QJsonObject{{"temp_dir", "tmp"}, {"size", QJsonArray{16, 12}}, {"frames", 5}}},
        {"steps", steps}};
    const RunResult r = run(QJsonDocument(script).toJson().toStdString());
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject end = state("end");
    EXPECT_EQ(end["total_frames"].toInt(), total);
    const auto texts = dialogTexts(end);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "Animation Size Changed. Settings updated."), told);
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(told + (*c.slotEmpty ? 1 : 0)))
        << "no refusal, no error";
    if (*c.slotEmpty) {
        EXPECT_EQ(texts.front(), c.slotEmpty);
    }
    EXPECT_FALSE(end["locked"].toBool());
    const auto trace = traceLines();
    EXPECT_GE(std::count(trace.begin(), trace.end(), "Van_Unlock()"),
              std::count(trace.begin(), trace.end(), "Van_Lock()"));

    EXPECT_EQ(formState(end, c.form)["caption"].toString(), c.caption);
    const QStringList sources = listItems(end, c.form, c.sourceList);
    ASSERT_EQ(sources.size(), c.sources);
    EXPECT_EQ(sources.back(), "Stored Animation #4");
    if (std::string(c.sourceList) == "cboTransitions") {
        EXPECT_EQ(sources, c.sources == 14 ? kPatternSources : kTwoSources);
    }
    if (*c.variantItems) {
        EXPECT_EQ(listItems(end, c.form, c.variantControl), split(c.variantItems));
        EXPECT_EQ(formControl(end, c.form, c.variantControl)["index"].toInt(), c.variants - 1);
    }
    for (const QString& control : split(c.absent))
        EXPECT_TRUE(formControl(end, c.form, control).isEmpty()) << control.toStdString();
}

// The moving dialogs run from a filtered copy of the frame as well, where they offer one.
constexpr const char* kThreePlain = "Swap|Primary Color|Green & Blue Channels";

INSTANTIATE_TEST_SUITE_P(
    Dialogs, EveryVariant,
    testing::Values(
        ShapeCase{"Wipes", "frmWipes", "Kirrel-Wipes", "cboWipeOptions", 14, "cboTransitions", 4, "", ""},
        ShapeCase{"Alpha Wipes", "frmAlphaWipes", "Kirrel-Alpha Wipes (Requires Alpha Channel)",
                  "cboWipeOptions", 14, "cboTransitions", 4, "", ""},
        ShapeCase{"Fades", "frmFades", "Kirrel-Fades", "cboFadeOptions", 17, "", 0, "",
                  "cboTransitions|Label2"},
        ShapeCase{"Alpha Fades", "frmAlphaFades", "Kirrel-Alpha Fades", "cboFadeOptions", 17, "", 0, "",
                  "cboTransitions|Label2"},
        ShapeCase{"Dissolves", "frmDissolves", "Kirrel - Dissolves", "cboDissolveOptions", 14, "", 0, "",
                  "cboTransitions|Label2"},
        ShapeCase{"Pushes", "frmPushes", "Kirrel-Pushes", "cboTransitions", 6, "cboPushOptions", 4,
                  "Push To Left|Push To Right|Push Up|Push Down", "", "Swap", "Slot Empty."},
        ShapeCase{"Slides", "frmSlides", "Kirrel-Slides", "cboTransitions", 6, "cboSlideOptions", 8, "", "",
                  "Swap", "Slot Empty."},
        ShapeCase{"Alpha Slides", "frmAlphaSlides", "Kirrel-Alpha Slides", "cboTransitions", 6,
                  "cboSlideOptions", 8, "", "", "Swap", "Slot Empty."},
        // The pattern dialogs: only the circles show a preview.
        ShapeCase{"Blinds", "frmBlinds", "Kirrel-Blinds", "cboTransitions", 14, "cboBlindsOptions", 2,
                  "Horizontal Blinds|Vertical Blinds", "PreviewBox"},
        ShapeCase{"Diamonds", "frmDiamonds", "Kirrel - Diamonds", "cboTransitions", 14, "cboDiamondsOptions",
                  2, "Diamond Open|Diamond Close", "PreviewBox"},
        ShapeCase{"Iris", "frmIris", "Kirrel - Iris Transitions", "cboTransitions", 14, "cboIrisOptions", 2,
                  "Iris Open|Iris Close", "PreviewBox"},
        ShapeCase{"Lines", "frmLines", "Kirrel - Lines", "cboTransitions", 14, "cboLineOptions", 4,
                  "Lines to Left|Lines to Right|Lines Up|Lines Down", "PreviewBox"},
        ShapeCase{"X Transition", "frmX", "Kirrel - X Transitons", "cboTransitions", 14, "cboXOptions", 2,
                  "X Open|X Close", "PreviewBox"},
        ShapeCase{"Circles", "frmCircles", "Kirrel - Circle Transition", "cboTransitions", 14,
                  "cboCircleOptions", 2, "Circle Open|Circle Close", ""},
        // The stripes and blocks: option buttons, or none.
        ShapeCase{"Stripes/Weaves", "frmStripes", "Kirrel-Stripes/Weaves", "cboStripeOptions", 14,
                  "optDirection(%1)", 3, "", "optDirection(3)|cboTransitions", "Swap|Primary Color",
                  "Slot Empty."},
        ShapeCase{"Push Stripes", "frmPushStripes", "Kirrel-Push Stripes", "cboStripeOptions", 14,
                  "optDirection(%1)", 2, "", "optDirection(2)|cboTransitions", "Swap|Primary Color",
                  "Slot Empty."},
        ShapeCase{"Slide Stripes", "frmSlideStripes", "Kirrel-Slide Stripes", "cboStripeOptions", 14,
                  "optDirection(%1)", 2, "", "optDirection(2)|cboTransitions", "Swap|Primary Color",
                  "Slot Empty."},
        ShapeCase{"Threshold Mask", "frmThresholdMask", "Kirrel-Threshold Mask Transition", "cboThreshold", 6,
                  "", 0, "", "optDirection(0)|cboTransitions", "Swap|Primary Color", ""},
        ShapeCase{"Block Out", "frmBlocks", "Kirrel-Block Out", "cboBlockOptions", 6, "", 0, "",
                  "optDirection(0)|cboTransitions", "Swap|Primary Color", ""},
        // Rows, columns, crosses, boxes and doors: both spellings of the empty slot stay.
        ShapeCase{"Rows/Columns", "frmRowsColumns", "Kirrel-Rows and Columns", "cboTransitions", 14,
                  "cboRCOptions", 4, "Row Open|Row Close|Column Open|Column Close", "", kThreePlain,
                  "Slot Empty."},
        ShapeCase{"Crosses", "frmCrosses", "Kirrel-Crosses", "cboTransitions", 14, "cboCrossOptions", 2,
                  "Cross Open|Cross Close", "", kThreePlain, "Slot Empty"},
        ShapeCase{"Boxes", "frmBoxes", "Kirrel-Boxes", "cboTransitions", 14, "cboBoxOptions", 2,
                  "Box Open|Box Close", "", kThreePlain, "Slot Empty"},
        ShapeCase{"Doors", "frmDoors", "Kirrel-Doors", "cboTransitions", 6, "cboDoorOptions", 4,
                  "Horizontal Door Open|Horizontal Door Close|Vertical Door Open|Vertical Door Close", "",
                  "Swap|Primary Color", "Slot Empty"},
        // A slot of another size, so that the stored twins scale it.
        ShapeCase{
            "Stretch/Squeeze", "frmStretches", "Kirrel-Stretch / Squeeze", "cboTransitions", 6,
            "cboStretchOptions", 18,
            "Stretch Over From Left|Stretch Over From Right|Stretch Over From Top|Stretch Over From Bottom|"
            "Stretch Horizontally From Center|Stretch Vertically From Center|Stretch Away To Left|"
            "Stretch Away To Right|Stretch Away To Top|Stretch Away To Bottom|"
            "Stretch Horizontally To Center|Stretch Vertically To Center|Squeeze To Left|Squeeze To Right|"
            "Squeeze To Top|Squeeze To Bottom|Squeeze Horizontally To Center|Squeeze Vertically To Center",
            "", "Swap|Primary Color", "Slot Empty.", 20, 9}),
    [](const testing::TestParamInfo<ShapeCase>& i) { return std::string(i.param.form); });

// Three pixels high is a stored 6: rows 0..2 fill from the left, rows 3..5 from the right. At the
// middle of 0..2 half the width (10 of 21 columns) is filled.
TEST_F(DialogScript, StripeSizesAreKeptDoubledShownHalvedAndRunDoubled) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 15], "frames": 3,
                                           "primary": [1, 2, 3]},
      "steps": [
        {"open": "Stripes/Weaves"},
        {"dump": "load"},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"set": {"control": "cboStripeOptions", "text": "Primary Color"}},
        {"click": "cmd_Run"}, {"dump": "fine"},
        {"answer": [{"value": 3}, {"value": 0}, {"value": -1}, {"value": 1}]},
        {"click": "cmdHsize"}, {"dump": "three"},
        {"click": "cmdVsize"}, {"dump": "zero"},
        {"click": "cmdHsize"}, {"dump": "backedOut"},
        {"click": "cmd_Run"}, {"dump": "coarse"},
        {"click": "cmdHsize"}, {"dump": "one"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject load = state("load");
    const QString form = "frmStripes";
    for (const auto& [control, text] : {std::pair{"lblHSize", "Size: 1 pixel high"},
                                        {"lblVSize", "Size: 1 pixel wide"},
                                        {"cmdHsize", "Set Height"},
                                        {"cmdVsize", "Set Width"},
                                        {"optDirection(0)", " Weaves"},
                                        {"optDirection(1)", "Horizontal Stripes"},
                                        {"optDirection(2)", "Vertical Stripes"}})
        EXPECT_EQ(controlText(load, form, control), text);
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
    for (std::size_t k = 0; k < 4; ++k) {
        EXPECT_NE(boxes[k].find("Set Horizontal Stripe Size"), std::string::npos) << boxes[k];
        EXPECT_NE(boxes[k].find(k < 2 ? ", 1, " : ", 3, "), std::string::npos) << boxes[k];
    }

    // The coarse run goes over the fine one's frames, whose row 3 filled from the right as well.
    const krl::Plane fine = dumped("fine")[1].r, coarse = dumped("coarse")[1].r;
    EXPECT_NE(fine.at(0, 1), 1) << "one pixel high: row 1 fills from the right";
    EXPECT_EQ(fine.at(0, 0), 1);
    EXPECT_EQ(coarse.at(0, 1), 1) << "three pixels high: row 1 fills from the left";
    EXPECT_EQ(coarse.at(0, 2), 1);
    EXPECT_NE(coarse.at(0, 3), 1);
    EXPECT_EQ(coarse.at(20, 3), 1);
}

} // namespace
} // namespace kirrel::test
