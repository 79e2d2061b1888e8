// A session script that cannot be played stops with exit code 2 and one clear line on stderr;
// answers it did not use are reported without changing a successful exit.

#include "support/Fixtures.h"

#include <QDir>

namespace kirrel::test {
namespace {

struct BadScript {
    const char* name;
    std::string json;
    std::string says; // part of the one line
};

class ScriptFailure : public ScriptTest, public testing::WithParamInterface<BadScript> {};

TEST_P(ScriptFailure, ExitsTwoWithOneClearLine) {
    const RunResult r = run(GetParam().json);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(lineCount(r.err), 1) << r.err;
    EXPECT_EQ(r.err.rfind("kirrel: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find(GetParam().says), std::string::npos) << r.err;
    // The steps after the failing one are not played.
    EXPECT_EQ(readFile(at("trace.txt")).find("Van_Refresh"), std::string::npos);
}

std::string steps(const std::string& list) {
    return R"({"host": {"temp_dir": "tmp", "size": [4, 3]}, "steps": [)" + list +
           R"(, {"host": "Van_Refresh"}]})";
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, ScriptFailure,
    ::testing::Values(
        BadScript{"MalformedJson", R"({"host": {"temp_dir": "tmp"}, "steps": [ {"open": "Wipes"} })",
                  "not valid JSON"},
        BadScript{"NotAnObject", R"([{"host": "Van_Refresh"}])", "JSON object"},
        BadScript{"StepsNotAList", R"({"steps": {"host": "Van_Refresh"}})", "\"steps\""},
        BadScript{"UnknownHostSetting",
                  R"({"host": {"animaton": "a.dat"}, "steps": [{"host": "Van_Refresh"}]})", "animaton"},
        BadScript{"UnknownStep", steps(R"({"jump": "Wipes"})"), "unknown step"},
        BadScript{"UnknownControl", steps(R"({"click": "cmdNothing"})"), "no control cmdNothing"},
        BadScript{"UnknownHostOperation", steps(R"({"host": "Van_Fly", "args": []})"), "Van_Fly"},
        BadScript{"ArgumentBeyondRange", steps(R"({"host": "Van_GotoFrame", "args": [1e20]})"),
                  "out of range"},
        BadScript{"WrongArgumentCount", steps(R"({"host": "Van_GotoFrame", "args": []})"), "Van_GotoFrame"},
        BadScript{"QuestionWithoutAnswer", steps(R"({"host": "Van_QuestionBox", "args": ["x"]})"),
                  "no queued answer for the question box \"x\""},
        BadScript{"ValueWithoutAnswer", steps(R"({"host": "Van_ValueBox", "args": ["How many?", 1, 9]})"),
                  "value box \"How many?\""},
        BadScript{"FileWithoutAnswer",
                  steps(R"({"host": "Van_RequestFile_save", "args": ["Save", "", "gif"]})"),
                  "file box \"Save\""},
        BadScript{"AnswerOfTheWrongKind",
                  steps(R"({"answer": [{"value": 3}]}, {"host": "Van_QuestionBox", "args": ["Go\non?"]})"),
                  "question box \"Go on?\" found a queued value answer"},
        BadScript{"AnswerOfNoKind", steps(R"({"answer": [{"maybe": 1}]})"), "an answer is"}),
    [](const auto& info) { return std::string(info.param.name); });

using ScriptRun = ScriptTest;

TEST_F(ScriptRun, LeftoverAnswersAreReportedAndExitStaysZero) {
    const RunResult r = run(steps(R"({"answer": [{"question": 2}, {"file": "a.gif"}]},
        {"host": "Van_QuestionBox", "args": ["x"]}, {"answer": [{"input": "7"}]})"));
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "unused answer: file\nunused answer: input\n");
}

} // namespace
} // namespace kirrel::test
