// The host set-up of a session script: animation, swap and alpha from .dat files or pictures, given
// back byte for byte by a dump; a folder of PNG frames in natural order, a still picture, one delay
// for every frame, and paths relative to the script's folder.

#include "support/Fixtures.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>

#include <functional>

namespace kirrel::test {
namespace {

constexpr int kW = 5, kH = 3;

// A picture of kW x kH pixels; its bounds are kW, kH, so the last column and row repeat the edge.
QImage colourImage(int seed) {
    QImage img(kW, kH, QImage::Format_RGB888);
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            img.setPixel(x, y, qRgb(10 * x + seed, 40 * y + seed, 200 - seed));
    return img;
}

QImage greyImage() {
    return colourImage(30).convertToFormat(QImage::Format_Grayscale8);
}

// The bytes a plane of bounds kW, kH holds for a picture of kW x kH pixels.
std::string planeBytes(const std::function<int(int, int)>& pixel) {
    std::string out;
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x <= kW; ++x)
            out += static_cast<char>(pixel(std::min(x, kW - 1), std::min(y, kH - 1)));
    return out;
}

std::string pictureBytes(const QImage& img) {
    std::string out;
    for (const int shift : {16, 8, 0}) // red, green, blue
        out += planeBytes([&](int x, int y) { return static_cast<int>(img.pixel(x, y) >> shift) & 255; });
    return out;
}

class ScriptLoad : public ScriptTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ScriptLoad, FolderOfFramesSwapAndAlphaComeBackInTheDump) {
    // The script lives in a sub-folder and is run from its parent: every path is the script's.
    const QDir sub(at("session"));
    QDir().mkpath(sub.filePath("frames"));
    // Written out of order; read in natural order, frame2 before frame10.
    const char* names[] = {"frame2.png", "frame10.png", "frame1.png"};
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(colourImage(20 * i).save(sub.filePath("frames/") + names[i]));
    const std::string swap = int16le({kW, kH}) + pictureBytes(colourImage(90));
    const std::string alpha =
        int16le({kW, kH}) + planeBytes([g = greyImage()](int x, int y) { return g.constScanLine(y)[x]; });
    const QString ext = GetParam();
    const std::string frames = int16le({3, kW, kH}) + pictureBytes(colourImage(40)) +
                               pictureBytes(colourImage(0)) + pictureBytes(colourImage(20));
    writeFile(sub.filePath("anim.dat"), frames);
    if (ext == "png") {
        ASSERT_TRUE(colourImage(90).save(sub.filePath("swap.png")));
        ASSERT_TRUE(greyImage().save(sub.filePath("alpha.png")));
    } else {
        writeFile(sub.filePath("swap.dat"), swap);
        writeFile(sub.filePath("alpha.dat"), alpha);
    }
    const RunResult r =
        runScript(dir.path(),
                  QString(R"({"host": {"temp_dir": "tmp", "animation": "%2", "swap": "swap.%1",
                      "alpha": "alpha.%1", "current_frame": 1, "delays": 70}, "steps": [{"host": "Van_GotoFrame",
                      "args": [2]}, {"host": "Van_GetRBuffer"}, {"host": "Van_GotoFrame", "args": [1]}, {"dump": "out"}]})")
                      .arg(ext, ext == "png" ? "frames" : "anim.dat")
                      .toStdString(),
                  "session/session.json");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(QDir(sub.filePath("tmp")).exists());
    EXPECT_EQ(readFile(sub.filePath("out/animation.dat")), frames);
    EXPECT_EQ(readFile(sub.filePath("out/swap.dat")), swap);
    EXPECT_EQ(readFile(sub.filePath("out/alpha.dat")), alpha);
    EXPECT_EQ(QImage(sub.filePath("out/frames/0002.png")).convertToFormat(QImage::Format_RGB888),
              colourImage(20));
    const QJsonObject state = readJsonObject(sub.filePath("out/state.json"));
    EXPECT_EQ(state["current_frame"].toInt(), 1);
    EXPECT_EQ(state["delays"], (QJsonArray{70, 70, 70})) << "one delay for every frame";
    // The panel starts first; then the script's own calls, as they were made.
    EXPECT_EQ(readFile(at("trace.txt")),
              "Van_SendFormObject(Mainfrm, 0)\nVan_GetTotalFrames()\n"
              "Van_WallpaperFilename()\nVan_GotoFrame(2)\nVan_GetRBuffer()\nVan_GotoFrame(1)\n");
}

INSTANTIATE_TEST_SUITE_P(SwapAndAlpha, ScriptLoad, ::testing::Values("dat", "png"),
                         [](const auto& info) { return std::string(info.param); });

using ScriptLoadStill = ScriptTest;

TEST_F(ScriptLoadStill, OnePictureIsAStillAndASwapOfAnotherSizeIsFitted) {
    ASSERT_TRUE(colourImage(0).save(at("still.png")));
    writeFile(at("swap.dat"), int16le({1, 1}) + std::string(12, '\x07'));
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "still.png",
        "swap": "swap.dat"}, "steps": [{"dump": "out"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(state("out")["total_frames"].toInt(), 0);
    EXPECT_EQ(readFile(at("out/animation.dat")), int16le({0, kW, kH}) + pictureBytes(colourImage(0)));
    const std::string plane((kW + 1) * (kH + 1), '\x07');
    EXPECT_EQ(readFile(at("out/swap.dat")), int16le({kW, kH}) + plane + plane + plane);
}

} // namespace
} // namespace kirrel::test
