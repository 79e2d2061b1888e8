// A session script that cannot be played, or whose host files are damaged, stops with exit code 2
// and one clear line on stderr, without playing a step (and without allocating what an absurd header
// claims); answers it did not use are reported without changing a successful exit.

#include "support/Fixtures.h"

#include <QDir>

namespace kirrel::test {
namespace {

struct BadScript {
    const char* name;
    std::string json;
    std::string says;      // part of the one line
    std::string file = {}; // written before the run: a folder when it ends in '/'
    std::string bytes = {};
};

class ScriptFailure : public ScriptTest, public testing::WithParamInterface<BadScript> {};

TEST_P(ScriptFailure, ExitsTwoWithOneClearLine) {
    const BadScript& c = GetParam();
    if (c.file.ends_with('/'))
        QDir().mkpath(at(QString::fromStdString(c.file)));
    else if (!c.file.empty())
        writeFile(at(QString::fromStdString(c.file)), c.bytes);
    const RunResult r = run(c.json);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(lineCount(r.err), 1) << r.err;
    EXPECT_EQ(r.err.rfind("kirrel: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find(c.says), std::string::npos) << r.err;
    EXPECT_EQ(readFile(at("trace.txt")).find("Van_Refresh"), std::string::npos) << "a later step was played";
}

std::string steps(const std::string& list) {
    return R"({"host": {"temp_dir": "tmp", "size": [4, 3]}, "steps": [)" + list +
           R"(, {"host": "Van_Refresh"}]})";
}

std::string withDelays(const std::string& delays) {
    return R"({"host": {"size": [6, 4], "frames": 3, "delays": )" + delays +
           R"(}, "steps": [{"host": "Van_Refresh"}]})";
}

// A host file given as `setting`, holding `bytes`.
BadScript hostile(const char* name, const std::string& setting, const std::string& file,
                  const std::string& bytes, const std::string& says) {
    return {name,
            R"({"host": {"temp_dir": "tmp", ")" + setting + R"(": ")" + file +
                R"("}, "steps": [{"host": "Van_Refresh"}]})",
            says, file, bytes};
}

const std::string kShort = "is shorter than its header says";
const std::string k4x4 = int16le({2, 4, 4}) + std::string(3 * 25, '\x40'); // one frame of the two it claims

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
        BadScript{"AnswerOfNoKind", steps(R"({"answer": [{"maybe": 1}]})"), "an answer is"},
        BadScript{"ExportOfNoKnownFormat", steps(R"({"export": "out.bmp"})"),
                  "step 1: \"export\" needs a file ending in .gif, .png, .apng, .webp, .mp4 or .webm"},
        BadScript{"ExportLoopBelowZero", steps(R"({"export": "out.gif", "loop": -1})"),
                  "step 1: \"loop\" is a whole number from 0 to 65535"},
        BadScript{"ExportUnknownSetting", steps(R"({"export": "out.gif", "colour": 1})"),
                  "step 1: an export step has no \"colour\""},
        BadScript{"ExportQualityAbove100", steps(R"({"export": "out.mp4", "quality": 101})"),
                  "step 1: \"quality\" is a whole number from 0 to 100"},
        BadScript{"DelaysShortOfTheFrames", withDelays("[40, 50]"),
                  "host: \"delays\" must hold one delay per frame (3)"},
        BadScript{"DelayBelowOne", withDelays("[40, -1, 9]"),
                  "host: a delay is a number of milliseconds from 1 to 655350"},
        hostile("EmptyAnimation", "animation", "a.dat", "", "host: a.dat: " + kShort),
        hostile("HeaderCut", "animation", "a.dat", int16le({3, 4}), kShort),
        hostile("PlanesCut", "animation", "a.dat", k4x4, kShort),
        hostile("StillCut", "animation", "a.dat", int16le({0, 4, 4}) + std::string(74, '\0'), kShort),
        hostile("NegativeFrames", "animation", "a.dat", int16le({-5, 1, 1}) + std::string(400, '\0'),
                "negative frame count"),
        hostile("NegativeWidth", "animation", "a.dat", int16le({1, -1, 4}) + std::string(400, '\0'),
                "negative picture size"),
        hostile("AbsurdFrames", "animation", "a.dat", int16le({32767, 32767, 32767}) + std::string(100, '\0'),
                kShort),
        hostile("SwapNegative", "swap", "s.dat", int16le({-2, 3}) + std::string(100, '\0'), "s.dat: "),
        hostile("SwapCut", "swap", "s.dat", int16le({100, 100}) + std::string(10, '\0'), kShort),
        hostile("AlphaAbsurd", "alpha", "m.dat", int16le({32767, 32767}), kShort),
        hostile("AlphaHeaderCut", "alpha", "m.dat", "\x01", kShort),
        hostile("JunkPicture", "animation", "a.png", "not a picture at all", "a.png: "),
        hostile("JunkSwapPicture", "swap", "s.png", "\x89PNG\r\n\x1a\n broken", "s.png: "),
        hostile("FolderWithoutFrames", "animation", "frames/", "", "holds no PNG frames"),
        BadScript{"Missing", R"({"host": {"animation": "gone.dat"}, "steps": [{"host": "Van_Refresh"}]})",
                  "gone.dat: does not exist"}),
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
