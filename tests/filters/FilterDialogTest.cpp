// The filter dialogs as only a session script shows them: the refusal after the animation's size changed, the
// frame lists pulling each other along, the order of an Apply, and the offer to make an animation for a
// range. What a run does to the frame shown and to a range is the in-process tests' business.

#include "filters/FilterTestSupport.h"
#include "support/Fixtures.h"

#include <QCheckBox>
#include <QFile>
#include <QJsonArray>
#include <QSlider>

#include <algorithm>

namespace kirrel::test {
namespace {

using FilterDialogScript = ScriptTest;

QJsonObject toonControl(const QJsonObject& state, const QString& name) {
    return formControl(state, "frmToon", name);
}

TEST_F(FilterDialogScript, SizeChangeIsRefusedOnceThenTheRunKeepsItsOrder) {
    const RunResult r =
        run(R"JS({"host": {"temp_dir": "tmp", "size": [30, 20], "frames": 5, "current_frame": 4},
      "steps": [
        {"open": "Toonify Filter"},
        {"set": {"control": "cboFrameEnd", "index": 1}},
        {"set": {"control": "cboFrameStart", "index": 3}}, {"leave": "cboFrameStart"}, {"dump": "pulled"},
        {"host": "Van_CreateAnim", "args": [7]}, {"host": "Van_GotoFrame", "args": [4]},
        {"click": "cmd_Run"}, {"dump": "resized"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"set": {"control": "cboFrameStart", "index": 1}}, {"set": {"control": "cboFrameEnd", "index": 2}},
        {"set": {"control": "slider_toon", "value": 4}},
        {"click": "cmd_Run"}, {"screenshot": "toon.png"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(toonControl(state("pulled"), "cboFrameEnd")["text"].toString(), "3");
    const QJsonObject resized = state("resized");
    EXPECT_EQ(dialogTexts(resized).back(), "Animation Size Changed. Settings updated.");
    EXPECT_EQ(toonControl(resized, "cboFrameStart")["items"].toArray().size(), 7);
    EXPECT_EQ(toonControl(resized, "cboFrameEnd")["text"].toString(), "6");

    // After the one refusal the second Apply reads where the user stands, stops the playback, saves
    // the undo, runs the range, and comes back to the frame it started on.
    const auto trace = traceLines();
    auto starts = [](const std::string& call) {
        return [call](const std::string& l) { return l.starts_with(call); };
    };
    auto it = std::find_if(trace.begin(), trace.end(), starts("Van_MessageBox"));
    it = std::find_if(it, trace.end(), starts("Van_StopAnimation"));
    ASSERT_NE(it, trace.end()) << "the second Apply runs";
    ASSERT_GE(it - trace.begin(), 2);
    EXPECT_TRUE((it - 2)->starts_with("Van_GetCurrentFrame"));
    EXPECT_TRUE((it - 1)->starts_with("Van_GetTotalFrames"));
    for (const char* call : {"Van_GetRFrame(0)", "Van_GotoFrame(1)", "Van_SetRbuffer", "Van_GotoFrame(2)",
                             "Van_GotoFrame(1)", "Van_SetProgress(0)", "Van_GotoFrame(4)", "Van_Refresh"}) {
        it = std::find_if(it, trace.end(), starts(call));
        ASSERT_NE(it, trace.end()) << call << " missing or out of order";
        ++it;
    }
    EXPECT_TRUE(trace.back().starts_with("Van_Refresh"));
    EXPECT_TRUE(QFile::exists(at("toon.png")));
}

TEST_F(FilterDialogScript, ARangeWithoutAnimationOffersToMakeOne) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [16, 12]},
      "steps": [
        {"open": "Toonify Filter"}, {"set": {"control": "optDirection(1)", "value": true}},
        {"answer": [{"question": 6}, {"input": " 4"}]}, {"click": "cmd_Run"}, {"dump": "made"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject made = state("made");
    const auto shown = dialogTexts(made);
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.front(), "No Animation in memory!\n\n\nWould you like to create an animation now?");
    EXPECT_EQ(toonControl(made, "cboFrameEnd")["text"].toString(), "3");
}

} // namespace
} // namespace kirrel::test
