// A step that ends the program ends the script cleanly; the panel's undo clean-up asks only when
// the animation undo file exists, and answer 2 keeps all three files.

#include "support/Fixtures.h"

#include <QDir>
#include <QFile>

#include <set>

namespace kirrel::test {
namespace {

const char* const kUndoFiles[] = {"AnimUndo.dat", "AlphaUndo.dat", "SwapUndo.dat"};

struct QuitCase {
    const char* name;
    std::string step;
    std::set<std::string> undoBefore;
    std::string answer; // queued before the step, or empty
    bool asks;
    std::set<std::string> undoAfter;
    int exitCode = 0;
};

class EndingStep : public ScriptTest, public testing::WithParamInterface<QuitCase> {};

TEST_P(EndingStep, EndsTheScriptAndCleansUpAsAnswered) {
    const QuitCase& c = GetParam();
    const QDir tmp(at("tmp"));
    for (const std::string& f : c.undoBefore)
        writeFile(tmp.filePath(QString::fromStdString(f)), "undo");
    const std::string answer = c.answer.empty() ? "" : R"({"answer": [)" + c.answer + "]}, ";
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "size": [4, 3], "frames": 2},
        "steps": [)" + answer +
                            c.step + R"(, {"host": "Van_Refresh"}, {"dump": "late"}]})");

    EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    EXPECT_EQ(lineCount(r.err), c.exitCode == 0 ? 0 : 1) << r.err;
    const std::string trace = readFile(at("trace.txt"));
    EXPECT_EQ(trace.find("Van_QuestionBox(\"\\nClear Animation Undo file?\")") != std::string::npos, c.asks)
        << trace;
    EXPECT_EQ(trace.find("Van_Refresh"), std::string::npos) << "a step after the end was played";
    EXPECT_FALSE(QDir(dir.path()).exists("late"));
    for (const char* f : kUndoFiles)
        EXPECT_EQ(QFile::exists(tmp.filePath(f)), c.undoAfter.count(f) == 1) << f;
}

const std::set<std::string> kAll = {"AnimUndo.dat", "AlphaUndo.dat", "SwapUndo.dat"};
const std::set<std::string> kAlphaSwap = {"AlphaUndo.dat", "SwapUndo.dat"};
const std::string kQuit = R"({"menu": "menuQuit"})";
const std::string kClose = R"({"close": "Mainfrm"})";

INSTANTIATE_TEST_SUITE_P(
    QuitAndClose, EndingStep,
    ::testing::Values(QuitCase{"QuitWithoutUndo", kQuit, {}, "", false, {}},
                      QuitCase{"QuitLeavesLoneAlphaAndSwap", kQuit, kAlphaSwap, "", false, kAlphaSwap},
                      QuitCase{"QuitAnsweredNo", kQuit, kAll, R"({"question": 2})", true, kAll},
                      QuitCase{"QuitAnsweredYes", kQuit, kAll, R"({"question": 1})", true, {}},
                      QuitCase{
                          "QuitYesWithAnimUndoOnly", kQuit, {"AnimUndo.dat"}, R"({"question": 6})", true, {}},
                      QuitCase{"CloseWithoutUndo", kClose, {}, "", false, {}},
                      QuitCase{"CloseAnsweredNo", kClose, kAll, R"({"question": 2})", true, kAll},
                      QuitCase{"CloseAnsweredYes", kClose, kAll, R"({"question": 7})", true, {}},
                      QuitCase{"CloseWithNoAnswerQueued", kClose, kAll, "", true, kAll, 2}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(EndingStep, CloseRestoresPointerAndUnlocksLast) {
    const RunResult r = run(R"({"host": {"temp_dir": "tmp"},
        "steps": [{"host": "Van_Lock"}, {"host": "Van_ChangePointer", "args": [11]}, {"close": "Mainfrm"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const std::string trace = readFile(at("trace.txt"));
    const std::string tail = "Van_RestorePointer()\nVan_Unlock()\n";
    EXPECT_EQ(trace.substr(trace.size() - std::min(trace.size(), tail.size())), tail) << trace;
}

} // namespace
} // namespace kirrel::test
