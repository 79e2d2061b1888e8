// The transition dialogs as a user meets them, through session scripts of the kirrel executable: the
// refusals, the order of an Apply, the lists for a stored source, and every variant of the eight
// dialogs in all four shapes.

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

class DialogScript : public testing::Test {
  protected:
    RunResult run(const std::string& json) { return runScript(dir.path(), json); }
    QString at(const QString& rel) const { return QDir(dir.path()).filePath(rel); }
    QJsonObject state(const QString& dump) const {
        return QJsonDocument::fromJson(QByteArray::fromStdString(readFile(at(dump + "/state.json"))))
            .object();
    }
    static QJsonObject control(const QJsonObject& state, const QString& form, const QString& name) {
        for (const auto& f : state["forms"].toArray())
            if (f.toObject()["name"].toString() == form)
                for (const auto& c : f.toObject()["controls"].toArray())
                    if (c.toObject()["name"].toString() == name) return c.toObject();
        return {};
    }
    static QStringList items(const QJsonObject& control) {
        QStringList out;
        for (const auto& i : control["items"].toArray())
            out << i.toString();
        return out;
    }
    static std::vector<std::string> messages(const QJsonObject& state) { return dialogTexts(state); }
    std::vector<std::string> traceLines() const { return traceFileLines(at("trace.txt")); }
    // A slot file of n flat frames (bounds w, h) in the script's temporary folder.
    void writeSlot(int slot, int n, int w, int h) {
        std::string bytes = int16le({n, w, h});
        bytes.append(static_cast<std::size_t>(n) * 3 * (w + 1) * (h + 1), '\x40');
        writeFile(at(QString("tmp/AnimSlot %1.dat").arg(slot)), bytes);
    }
    QTemporaryDir dir;
};

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
    EXPECT_EQ(messages(shortRange), (std::vector<std::string>{"Need at least 3 frames selected!"}));
    EXPECT_FALSE(shortRange["locked"].toBool());

    // Start above End: the list just left wins.
    EXPECT_EQ(control(state("pulledDown"), "frmWipes", "cboFrameStart")["index"].toInt(), 1);
    EXPECT_EQ(control(state("pulledUp"), "frmWipes", "cboFrameEnd")["index"].toInt(), 2);

    const QJsonObject resized = state("resized");
    EXPECT_EQ(messages(resized).back(), "Animation Size Changed. Settings updated.");
    EXPECT_EQ(items(control(resized, "frmWipes", "cboFrameEnd")).size(), 7)
        << "the lists follow the new count";

    const QJsonObject empty = state("empty");
    EXPECT_EQ(control(empty, "frmWipes", "lblStoredDesc")["text"].toString(), "This Slot Is Empty!");
    EXPECT_TRUE(control(empty, "frmWipes", "lblStoredDesc")["visible"].toBool());
    EXPECT_EQ(messages(empty).back(), "Slot Empty");
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
    EXPECT_EQ(messages(empty).back(), "Slot Empty.");
    EXPECT_EQ(items(control(empty, "frmPushes", "cboTransitions")),
              (QStringList{"Swap", "Primary Color", "Stored Animation #1", "Stored Animation #2",
                           "Stored Animation #3", "Stored Animation #4"}));
    EXPECT_EQ(items(control(empty, "frmPushes", "cboPushOptions")),
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
    EXPECT_TRUE(messages(after).empty());

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
    EXPECT_EQ(control(toward, "frmFades", "lblStoredDesc")["text"].toString(), "8 Frames, 30X20");
    // N 6 below S 8: every Start from 0 up to N - 3.
    EXPECT_EQ(items(control(toward, "frmFades", "cboFrameStart")), (QStringList{"0", "1", "2", "3"}));
    EXPECT_TRUE(control(toward, "frmFades", "cboFrameStart")["visible"].toBool());
    EXPECT_FALSE(control(toward, "frmFades", "cboFrameEnd")["visible"].toBool());

    const QJsonObject back = state("back");
    EXPECT_EQ(control(back, "frmFades", "lblToggle")["text"].toString(), "<-----------");
    // Every End from 2 up to min(N, S) - 1.
    EXPECT_EQ(items(control(back, "frmFades", "cboFrameEnd")), (QStringList{"2", "3", "4", "5"}));
    EXPECT_FALSE(control(back, "frmFades", "cboFrameStart")["visible"].toBool());

    // End 2: the overlap is 3 frames, and 5 stored frames go in front.
    EXPECT_EQ(state("spliced")["total_frames"].toInt(), 11);
    EXPECT_TRUE(messages(state("spliced")).empty());
    EXPECT_EQ(messages(state("told")),
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
    EXPECT_TRUE(items(control(refused, "frmDissolves", "cboFrameEnd")).isEmpty());
    EXPECT_EQ(messages(refused), (std::vector<std::string>{"Slot Empty"}));
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
    EXPECT_EQ(items(control(made, "frmFades", "cboFrameEnd")).size(), 30);
}

// Every variant of every dialog runs from a script in all four shapes: To, From, ToStored, FromStored.
struct DialogCase {
    const char* plugin;
    const char* form;
    const char* sourceList;
    int variants; // 0: no variant list
    const char* caption;
    int sources;
    const char* variantList = "cboTransitions";
};

class EveryVariant : public DialogScript, public testing::WithParamInterface<DialogCase> {};

TEST_P(EveryVariant, RunsInAllFourShapes) {
    const DialogCase& c = GetParam();
    const EveryShapeRun r = playEveryShape(
        dir.path(),
        {c.plugin, c.form, c.variants ? c.variantList : "", std::max(c.variants, 1), {"Swap"}, c.sourceList});
    expectEveryShapeRan(r);
    EXPECT_EQ(formCaption(r.end, c.form), c.caption);
    const QStringList sources = listItems(r.end, c.form, c.sourceList);
    ASSERT_EQ(sources.size(), c.sources);
    EXPECT_EQ(sources.back(), "Stored Animation #4");
    EXPECT_EQ(formControl(r.end, c.form, c.variantList).isEmpty(), c.variants == 0);
    EXPECT_EQ(formControl(r.end, c.form, "Label2").isEmpty(), c.variants == 0);
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, EveryVariant,
    testing::Values(
        DialogCase{"Wipes", "frmWipes", "cboWipeOptions", 4, "Kirrel-Wipes", 14},
        DialogCase{"Alpha Wipes", "frmAlphaWipes", "cboWipeOptions", 4,
                   "Kirrel-Alpha Wipes (Requires Alpha Channel)", 14},
        DialogCase{"Fades", "frmFades", "cboFadeOptions", 0, "Kirrel-Fades", 17},
        DialogCase{"Alpha Fades", "frmAlphaFades", "cboFadeOptions", 0, "Kirrel-Alpha Fades", 17},
        DialogCase{"Dissolves", "frmDissolves", "cboDissolveOptions", 0, "Kirrel - Dissolves", 14},
        DialogCase{"Pushes", "frmPushes", "cboTransitions", 4, "Kirrel-Pushes", 6, "cboPushOptions"},
        DialogCase{"Slides", "frmSlides", "cboTransitions", 8, "Kirrel-Slides", 6, "cboSlideOptions"},
        DialogCase{"Alpha Slides", "frmAlphaSlides", "cboTransitions", 8, "Kirrel-Alpha Slides", 6,
                   "cboSlideOptions"}),
    [](const testing::TestParamInfo<DialogCase>& i) { return std::string(i.param.form); });

} // namespace
} // namespace kirrel::test
