// Session scripts reach the host's own file formats: an animated GIF opens with its delays and its
// transparency on the paper, the host block may set the delays, and "export" writes through the same
// code as File > Export Animation, read back here by the tools themselves.

#include "support/Fixtures.h"
#include "support/MediaCheck.h"
#include "support/SampleGifs.h"

#include <QFileInfo>
#include <QJsonArray>

namespace kirrel::test {
namespace {

std::vector<int> ints(const QJsonValue& v) {
    std::vector<int> out;
    for (const auto& x : v.toArray())
        out.push_back(x.toInt());
    return out;
}

using AnimationExchangeScript = ScriptTest;

TEST_F(AnimationExchangeScript, AGifOpensWithItsTimingAndExportsEveryFormat) {
    if (!haveConvert() || !missingTool({"ffmpeg", "ffprobe", "identify", "webpmux"}).isEmpty())
        GTEST_SKIP() << "ImageMagick, ffmpeg or webp is not installed";
    const QString gif = makeSampleGifs(at("gifs")).filter("dispose-previous").front();
    const CoalescedGif want = coalescedGif(gif);
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "gifs/)" +
                            QFileInfo(gif).fileName().toStdString() + R"(", "secondary": [10, 20, 30]},
      "steps": [{"dump": "opened"}, {"export": "out/anim.gif", "loop": 3},
        {"export": "out/anim.webp", "transparency": "none"}, {"export": "out/anim.mp4", "quality": 90}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    std::vector<int> delays;
    QString gifDelays;
    for (const int cs : want.delaysCs) {
        delays.push_back(cs ? cs * 10 : 100);
        gifDelays += QString::number(std::max(2, delays.back() / 10)) + ",";
    }
    EXPECT_EQ(ints(state("opened")["delays"]), delays);
    EXPECT_EQ(pixelsUnlikeCoalesced(dumped("opened"), want, host::packColor(10, 20, 30), false), 0);

    EXPECT_EQ(QString(runTool("identify", {"-format", "%T,", at("out/anim.gif")}).out), gifDelays);
    QString info;
    const RgbaFrames webp = webpFrames(at("out/anim.webp"), info);
    EXPECT_EQ(webp.frames.size(), want.frames.size());
    int clear = 0;
    for (const auto& f : webp.frames)
        for (std::size_t i = 3; i < f.size(); i += 4)
            clear += f[i] != 255;
    EXPECT_EQ(clear, 0) << "\"none\" makes every pixel opaque";
    EXPECT_EQ(probe(at("out/anim.mp4")).startsMs.size(), want.frames.size());
}

TEST_F(AnimationExchangeScript, TheHostBlockSetsDelaysAndBadExportsAreScriptErrors) {
    const auto delaysOf = [&](const std::string& setting) {
        const RunResult r = run(R"({"host": {"size": [6, 4], "frames": 3, "delays": )" + setting +
                                R"(}, "steps": [{"dump": "a"}]})");
        return r.exitCode == 0 ? ints(state("a")["delays"]) : std::vector<int>{r.exitCode};
    };
    EXPECT_EQ(delaysOf("[40, 50, 60]"), (std::vector<int>{40, 50, 60}));
    EXPECT_EQ(delaysOf("70"), (std::vector<int>{70, 70, 70}));
    EXPECT_EQ(delaysOf("[40, 50]"), std::vector<int>{2});
    EXPECT_EQ(delaysOf("[40, -1, 9]"), std::vector<int>{2});
    for (const char* bad :
         {R"({"export": "out.bmp"})", R"({"export": "out.gif", "loop": -1})",
          R"({"export": "out.gif", "colour": 1})", R"({"export": "out.mp4", "quality": 101})"}) {
        const RunResult e =
            run(std::string(R"({"host": {"size": [6, 4], "frames": 3}, "steps": [)") + bad + "]}");
        EXPECT_EQ(e.exitCode, 2) << bad;
        EXPECT_NE(e.err.find("step 1"), std::string::npos) << e.err;
    }
}

} // namespace
} // namespace kirrel::test
