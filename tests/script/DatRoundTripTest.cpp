// A script that loads an animation, calls host operations and dumps gives back the same bytes.

#include "host/AnimationFiles.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QTemporaryDir>

namespace kirrel::test {
namespace {

using SessionScript = ScriptTest;

TEST_F(SessionScript, LoadCallDumpGivesBackTheSameBytes) {
    host::Animation a;
    for (int f = 0; f < 3; ++f)
        a.frames.push_back(patternPicture(6, 3, 40 * f));
    host::writeAnimationDat(at("anim.dat"), a);
    const RunResult r = runScript(dir.path(), R"({"host": {"temp_dir": "tmp", "animation": "anim.dat"},
        "steps": [{"host": "Van_GotoFrame", "args": [2]}, {"host": "Van_GetRBuffer"},
                  {"host": "Van_GotoFrame", "args": [0]}, {"dump": "out"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(readFile(at("out/animation.dat")), readFile(at("anim.dat")));
    EXPECT_EQ(readFile(at("trace.txt")),
              "Van_SendFormObject(Mainfrm, 0)\nVan_GetTotalFrames()\nVan_WallpaperFilename()\n"
              "Van_GotoFrame(2)\nVan_GetRBuffer()\nVan_GotoFrame(0)\n");
}

} // namespace
} // namespace kirrel::test
