// The panel's two ways in, "Open AnimGif" (the converter writes GIF frames) and "Import AnimGif" (PNG
// frames turned into bitmaps), give every sample GIF as ImageMagick coalesces it, with every clear
// pixel on the paper colour, and name the animation after the file, leaving no working file behind.

#include "support/Fixtures.h"
#include "support/SampleGifs.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

namespace kirrel::test {
namespace {

class GifImportWays : public ScriptTest {
  protected:
    void SetUp() override {
        if (!missingTool({"convert"}).isEmpty()) GTEST_SKIP() << "ImageMagick is not installed";
    }
};

TEST_F(GifImportWays, BothPanelWaysGiveTheCoalescedFramesOnThePaper) {
    const QStringList gifs = makeSampleGifs(at("gifs"));
    std::string steps;
    for (int i = 0; i < gifs.size(); ++i) {
        const std::string file = "gifs/" + QFileInfo(gifs[i]).fileName().toStdString();
        steps += R"({"answer": [{"file": ")" + file + R"("}]}, {"open": "Import AnimGif"}, {"dump": "png)" +
                 std::to_string(i) + R"("},)";
        steps += R"({"answer": [{"file": ")" + file +
                 R"("}]}, {"menu": "menuImportAnimGif"}, {"dump": "direct)" + std::to_string(i) + R"("},)";
    }
    steps.pop_back();
    const RunResult r =
        run(R"({"host": {"temp_dir": "tmp", "secondary": [192, 160, 96]}, "steps": [)" + steps + "]}");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const std::uint32_t paper = host::packColor(192, 160, 96);
    for (int i = 0; i < gifs.size(); ++i) {
        SCOPED_TRACE(gifs[i].toStdString());
        const RgbaFrames want = coalescedFrames(gifs[i]);
        for (const char* way : {"png", "direct"}) {
            SCOPED_TRACE(way);
            const QString dump = way + QString::number(i);
            EXPECT_EQ(pixelsUnlikeCoalesced(dumped(dump), want, paper, false), 0);
            for (const auto& d : state(dump)["dialogs"].toArray())
                EXPECT_EQ(d.toObject()["kind"].toString(), "file_open")
                    << d.toObject()["text"].toString().toStdString();
        }
    }
    EXPECT_TRUE(QDir(at("tmp")).entryList({"gif_frame*", "temp*", "*.bat"}, QDir::Files).isEmpty());
    // The animation is named after the chosen file, never after a working file.
    const std::vector<std::string> names = [&] {
        std::vector<std::string> out;
        for (const std::string& l : traceLines())
            if (l.rfind("Van_RenameBuffer(", 0) == 0) out.push_back(l);
        return out;
    }();
    ASSERT_FALSE(names.empty());
    EXPECT_NE(names.back().find(QFileInfo(gifs.back()).fileName().toStdString()), std::string::npos);
}

} // namespace
} // namespace kirrel::test
