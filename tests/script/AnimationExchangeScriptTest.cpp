// Session scripts reach the host's own file formats: an animated GIF opens with its delays and its
// transparency on the paper, and "export" writes through the same code as File > Export Animation,
// read back here by the tools themselves.

#include "support/Fixtures.h"
#include "support/MediaCheck.h"
#include "support/SampleGifs.h"

#include <QFileInfo>
#include <QJsonArray>

namespace kirrel::test {
namespace {

using AnimationExchangeScript = ScriptTest;

TEST_F(AnimationExchangeScript, AGifOpensWithItsTimingAndExportsEveryFormat) {
    if (!missingTool({"convert"}).isEmpty() ||
        !missingTool({"ffmpeg", "ffprobe", "identify", "webpmux"}).isEmpty())
        GTEST_SKIP() << "ImageMagick, ffmpeg or webp is not installed";
    const QString gif = makeSampleGifs(at("gifs")).filter("dispose-previous").front();
    const RgbaFrames want = coalescedFrames(gif);
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "gifs/)" +
                            QFileInfo(gif).fileName().toStdString() + R"(", "secondary": [10, 20, 30]},
      "steps": [{"dump": "opened"}, {"export": "out/anim.gif", "loop": 3},
        {"export": "out/anim.webp", "transparency": "none"}, {"export": "out/anim.mp4", "quality": 90}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // A GIF's "no delay" opens as a tenth of a second; the GIF written keeps at least 2 hundredths.
    QJsonArray delays;
    QString gifDelays;
    for (const int ms : want.delaysMs) {
        delays.append(ms ? ms : 100);
        gifDelays += QString::number(std::max(2, ms ? ms / 10 : 10)) + ",";
    }
    EXPECT_EQ(state("opened")["delays"], delays);
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

} // namespace
} // namespace kirrel::test
