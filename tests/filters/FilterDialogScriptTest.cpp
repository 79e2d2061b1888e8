// The filter dialog as a user meets it through session scripts: the refusal after the animation's size
// changed, the frame lists pulling each other along, the order of an Apply, and the offer to make an
// animation for a range when there is none.

#include "support/Fixtures.h"

#include <QFile>
#include <QJsonArray>

#include <algorithm>

namespace kirrel::test {
namespace {

class FilterDialogScript : public ScriptTest {
  protected:
    static QJsonObject control(const QJsonObject& state, const QString& name) {
        return formControl(state, "frmToon", name);
    }
};

bool startsWith(const std::string& line, const std::string& call) {
    return line.rfind(call, 0) == 0;
}

// Calls (each a line's beginning) appear in the trace in this order, starting from `from`.
void expectInOrder(const std::vector<std::string>& trace, std::size_t from,
                   const std::vector<std::string>& order) {
    auto it = trace.begin() + static_cast<std::ptrdiff_t>(from);
    for (const std::string& call : order) {
        it = std::find_if(it, trace.end(), [&](const std::string& l) { return startsWith(l, call); });
        ASSERT_NE(it, trace.end()) << call << " missing or out of order";
        ++it;
    }
}

TEST_F(FilterDialogScript, SizeChangeIsRefusedOnceThenTheRunKeepsItsOrder) {
    const RunResult r =
        run(R"JS({"host": {"temp_dir": "tmp", "size": [30, 20], "frames": 5, "current_frame": 4},
      "steps": [
        {"open": "Toonify Filter"},
        {"set": {"control": "cboFrameEnd", "index": 1}},
        {"set": {"control": "cboFrameStart", "index": 3}},
        {"leave": "cboFrameStart"},
        {"dump": "pulled"},
        {"host": "Van_CreateAnim", "args": [7]},
        {"host": "Van_GotoFrame", "args": [4]},
        {"click": "cmd_Run"},
        {"dump": "resized"},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"set": {"control": "cboFrameStart", "index": 1}},
        {"set": {"control": "cboFrameEnd", "index": 2}},
        {"set": {"control": "slider_toon", "value": 4}},
        {"click": "cmd_Run"},
        {"dump": "ran"},
        {"screenshot": "toon.png"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;

    const QJsonObject pulled = state("pulled");
    EXPECT_EQ(control(pulled, "cboFrameEnd")["text"].toString(), "3");

    const QJsonObject resized = state("resized");
    EXPECT_EQ(dialogTexts(resized).back(), "Animation Size Changed. Settings updated.");
    EXPECT_EQ(control(resized, "cboFrameStart")["items"].toArray().size(), 7);
    EXPECT_EQ(control(resized, "cboFrameEnd")["text"].toString(), "6");

    const auto trace = traceLines();
    const auto refused = std::find_if(trace.begin(), trace.end(),
                                      [](const std::string& l) { return startsWith(l, "Van_MessageBox"); });
    ASSERT_NE(refused, trace.end());
    const auto stop = std::find_if(refused, trace.end(),
                                   [](const std::string& l) { return startsWith(l, "Van_StopAnimation"); });
    ASSERT_NE(stop, trace.end()) << "the second Apply runs";
    ASSERT_GE(stop - trace.begin(), 2);
    EXPECT_TRUE(startsWith(*(stop - 2), "Van_GetCurrentFrame"));
    EXPECT_TRUE(startsWith(*(stop - 1), "Van_GetTotalFrames"));
    expectInOrder(trace, static_cast<std::size_t>(stop - trace.begin()),
                  {"Van_GetRFrame(0)", "Van_GotoFrame(1)", "Van_SetRbuffer", "Van_GotoFrame(2)",
                   "Van_GotoFrame(1)", "Van_SetProgress(0)", "Van_GotoFrame(4)", "Van_Refresh"});
    EXPECT_TRUE(startsWith(trace.back(), "Van_Refresh"));
    EXPECT_TRUE(QFile::exists(at("toon.png")));
}

TEST_F(FilterDialogScript, ARangeWithoutAnimationOffersToMakeOne) {
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [16, 12]},
      "steps": [
        {"open": "Toonify Filter"},
        {"set": {"control": "optDirection(1)", "value": true}},
        {"answer": [{"question": 6}, {"input": " 4"}]},
        {"click": "cmd_Run"},
        {"dump": "made"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject made = state("made");
    const auto shown = dialogTexts(made);
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.front(), "No Animation in memory!\n\n\nWould you like to create an animation now?");
    EXPECT_EQ(control(made, "cboFrameEnd")["text"].toString(), "3");
}

} // namespace
} // namespace kirrel::test
