// A step that ends the program ends the script cleanly; the panel's undo clean-up asks only when
// the animation undo file exists, and answer 2 keeps all three files; closing the panel unlocks.

#include "support/Fixtures.h"

#include <QDir>
#include <QFile>

namespace kirrel::test {
namespace {

const QStringList kUndoFiles = {"AnimUndo.dat", "AlphaUndo.dat", "SwapUndo.dat"};
const QStringList kAlphaSwap = {"AlphaUndo.dat", "SwapUndo.dat"};
const std::string kQuit = R"({"menu": "menuQuit"})";
const std::string kClose = R"({"close": "Mainfrm"})";

struct QuitCase {
    const char* name;
    std::string step;
    QStringList undoBefore;
    std::string answer; // queued before the step, or empty
    bool asks;
    QStringList undoAfter;
    int exitCode = 0;
};

class EndingStep : public ScriptTest, public testing::WithParamInterface<QuitCase> {};

TEST_P(EndingStep, EndsTheScriptAndCleansUpAsAnswered) {
    const QuitCase& c = GetParam();
    for (const QString& f : c.undoBefore)
        writeFile(at("tmp/" + f), "undo");
    const std::string answer = c.answer.empty() ? "" : R"({"answer": [)" + c.answer + "]}, ";
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "size": [4, 3], "frames": 2}, "steps": [
        {"host": "Van_Lock"}, {"host": "Van_ChangePointer", "args": [11]}, )" +
                            answer + c.step + R"(, {"host": "Van_Refresh"}, {"dump": "late"}]})");
    EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    EXPECT_EQ(lineCount(r.err), c.exitCode == 0 ? 0 : 1) << r.err;
    const std::string trace = readFile(at("trace.txt"));
    EXPECT_EQ(trace.find("Van_QuestionBox(\"\\nClear Animation Undo file?\")") != std::string::npos, c.asks)
        << trace;
    EXPECT_EQ(trace.find("Van_Refresh"), std::string::npos) << "a step after the end was played";
    EXPECT_FALSE(QDir(dir.path()).exists("late"));
    for (const QString& f : kUndoFiles)
        EXPECT_EQ(QFile::exists(at("tmp/" + f)), c.undoAfter.contains(f)) << f.toStdString();
    // Closing the panel hands the host back: the pointer restored, then unlocked, last of all.
    const std::vector<std::string> lines = traceLines();
    if (c.step == kClose && c.exitCode == 0) {
        EXPECT_EQ(std::vector(lines.end() - 2, lines.end()),
                  (std::vector<std::string>{"Van_RestorePointer()", "Van_Unlock()"}));
    }
}

INSTANTIATE_TEST_SUITE_P(
    QuitAndClose, EndingStep,
    ::testing::Values(QuitCase{"QuitWithoutUndo", kQuit, {}, "", false, {}},
                      QuitCase{"QuitLeavesLoneAlphaAndSwap", kQuit, kAlphaSwap, "", false, kAlphaSwap},
                      QuitCase{"QuitAnsweredNo", kQuit, kUndoFiles, R"({"question": 2})", true, kUndoFiles},
                      QuitCase{"QuitAnsweredYes", kQuit, kUndoFiles, R"({"question": 1})", true, {}},
                      QuitCase{
                          "QuitYesWithAnimUndoOnly", kQuit, {"AnimUndo.dat"}, R"({"question": 6})", true, {}},
                      QuitCase{"CloseWithoutUndo", kClose, {}, "", false, {}},
                      QuitCase{"CloseAnsweredNo", kClose, kUndoFiles, R"({"question": 2})", true, kUndoFiles},
                      QuitCase{"CloseAnsweredYes", kClose, kUndoFiles, R"({"question": 7})", true, {}},
                      QuitCase{"CloseWithNoAnswerQueued", kClose, kUndoFiles, "", true, kUndoFiles, 2}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace kirrel::test
