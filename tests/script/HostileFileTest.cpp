// Damaged files given to the host's loaders: a clear one-line refusal naming the file, exit 2, no
// crash, and no allocation of what an absurd header claims.

#include "support/Support.h"

#include <QDir>

namespace kirrel::test {
namespace {

struct HostileFile {
    const char* name;
    const char* setting; // "animation", "swap" or "alpha"
    const char* file;
    std::string bytes;
    std::string says;
    bool exists = true;
};

const std::string kShort = "is shorter than its header says";
const std::string kOneFrame4x4 = int16le({2, 4, 4}) + std::string(3 * 25, '\x40'); // claims two frames

class HostileInput : public ::testing::TestWithParam<HostileFile> {};

TEST_P(HostileInput, RefusedWithOneLine) {
    const HostileFile& c = GetParam();
    QTemporaryDir dir;
    const QDir d(dir.path());
    if (std::string(c.file).back() == '/')
        QDir().mkpath(d.filePath(c.file));
    else if (c.exists)
        writeFile(d.filePath(c.file), c.bytes);
    const RunResult r = runScript(dir.path(), std::string(R"({"host": {"temp_dir": "tmp", ")") + c.setting +
                                                  R"(": ")" + c.file + R"("}, "steps": [{"dump": "out"}]})");
    EXPECT_EQ(r.exitCode, 2) << r.err;
    EXPECT_EQ(lineCount(r.err), 1) << r.err;
    EXPECT_NE(r.err.find(c.says), std::string::npos) << r.err;
    EXPECT_FALSE(d.exists("out")) << "the steps ran on a host that was not set up";
}

INSTANTIATE_TEST_SUITE_P(
    Files, HostileInput,
    ::testing::Values(
        HostileFile{"EmptyAnimation", "animation", "a.dat", "", "a.dat: " + kShort},
        HostileFile{"HeaderCut", "animation", "a.dat", int16le({3, 4}), kShort},
        HostileFile{"PlanesCut", "animation", "a.dat", kOneFrame4x4, kShort},
        HostileFile{"StillCut", "animation", "a.dat", int16le({0, 4, 4}) + std::string(74, '\0'), kShort},
        HostileFile{"NegativeFrames", "animation", "a.dat", int16le({-5, 1, 1}) + std::string(400, '\0'),
                    "negative frame count"},
        HostileFile{"NegativeWidth", "animation", "a.dat", int16le({1, -1, 4}) + std::string(400, '\0'),
                    "negative picture size"},
        HostileFile{"AbsurdFrames", "animation", "a.dat",
                    int16le({32767, 32767, 32767}) + std::string(100, '\0'), kShort},
        HostileFile{"SwapNegative", "swap", "s.dat", int16le({-2, 3}) + std::string(100, '\0'), "s.dat: "},
        HostileFile{"SwapCut", "swap", "s.dat", int16le({100, 100}) + std::string(10, '\0'), kShort},
        HostileFile{"AlphaAbsurd", "alpha", "m.dat", int16le({32767, 32767}), kShort},
        HostileFile{"AlphaHeaderCut", "alpha", "m.dat", "\x01", kShort},
        HostileFile{"JunkPicture", "animation", "a.png", "not a picture at all", "a.png: "},
        HostileFile{"JunkSwapPicture", "swap", "s.png", "\x89PNG\r\n\x1a\n broken", "s.png: "},
        HostileFile{"FolderWithoutFrames", "animation", "frames/", "", "holds no PNG frames"},
        HostileFile{"Missing", "animation", "gone.dat", "", "does not exist", false}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace kirrel::test
