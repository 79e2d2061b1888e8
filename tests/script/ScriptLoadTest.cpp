// The host set-up of a session script: animation, swap and alpha from .dat files or pictures,
// a folder of PNG frames in name order, and paths relative to the script's folder.

#include "host/AnimationFiles.h"
#include "support/Support.h"

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
    QImage img(kW, kH, QImage::Format_Grayscale8);
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            img.scanLine(y)[x] = static_cast<uchar>(17 * x + 60 * y);
    return img;
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
    return planeBytes([&](int x, int y) { return qRed(img.pixel(x, y)); }) +
           planeBytes([&](int x, int y) { return qGreen(img.pixel(x, y)); }) +
           planeBytes([&](int x, int y) { return qBlue(img.pixel(x, y)); });
}

struct LoadCase {
    const char* name;
    bool pictures; // swap and alpha as PNG pictures rather than .dat files
};

class ScriptLoad : public ::testing::TestWithParam<LoadCase> {};

TEST_P(ScriptLoad, FolderOfFramesSwapAndAlphaComeBackInTheDump) {
    QTemporaryDir dir;
    // The script lives in a sub-folder and is run from its parent: every path is the script's.
    const QDir sub(QDir(dir.path()).filePath("session"));
    QDir().mkpath(sub.filePath("frames"));
    const char* names[] = {"b.png", "c.png", "a.png"}; // written out of order; read by name
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(colourImage(20 * i).save(sub.filePath("frames/") + names[i]));
    const QImage swapImage = colourImage(90);
    const std::string swapBytes = pictureBytes(swapImage);
    const std::string alphaBytes =
        planeBytes([g = greyImage()](int x, int y) { return g.constScanLine(y)[x]; });
    if (GetParam().pictures) {
        ASSERT_TRUE(swapImage.save(sub.filePath("swap.png")));
        ASSERT_TRUE(greyImage().save(sub.filePath("alpha.png")));
    } else {
        writeFile(sub.filePath("swap.dat"), int16le({kW, kH}) + swapBytes);
        writeFile(sub.filePath("alpha.dat"), int16le({kW, kH}) + alphaBytes);
    }
    const std::string ext = GetParam().pictures ? ".png" : ".dat";
    const RunResult r = runScript(dir.path(),
                                  R"({"host": {"temp_dir": "tmp", "animation": "frames", "swap": "swap)" +
                                      ext + R"(", "alpha": "alpha)" + ext +
                                      R"(", "current_frame": 1}, "steps": [{"dump": "out"}]})",
                                  "session/session.json");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(QDir(sub.filePath("tmp")).exists());
    const QDir out(sub.filePath("out"));
    EXPECT_EQ(readFile(out.filePath("animation.dat")), int16le({3, kW, kH}) + pictureBytes(colourImage(40)) +
                                                           pictureBytes(colourImage(0)) +
                                                           pictureBytes(colourImage(20)));
    EXPECT_EQ(readFile(out.filePath("swap.dat")), int16le({kW, kH}) + swapBytes);
    EXPECT_EQ(readFile(out.filePath("alpha.dat")), int16le({kW, kH}) + alphaBytes);
    EXPECT_EQ(QImage(out.filePath("frames/0002.png")).convertToFormat(QImage::Format_RGB888),
              colourImage(20));
    EXPECT_EQ(readJsonObject(out.filePath("state.json"))["current_frame"].toInt(), 1);
}

INSTANTIATE_TEST_SUITE_P(SwapAndAlpha, ScriptLoad,
                         ::testing::Values(LoadCase{"DatFiles", false}, LoadCase{"Pictures", true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ScriptLoadStill, OnePictureIsAStillAndASwapOfAnotherSizeIsFitted) {
    QTemporaryDir dir;
    const QDir d(dir.path());
    ASSERT_TRUE(colourImage(0).save(d.filePath("still.png")));
    writeFile(d.filePath("swap.dat"), int16le({1, 1}) + std::string(12, '\x07'));
    const RunResult r = runScript(dir.path(), R"({"host": {"temp_dir": "tmp", "animation": "still.png",
        "swap": "swap.dat"}, "steps": [{"dump": "out"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject s = readJsonObject(d.filePath("out/state.json"));
    EXPECT_EQ(s["total_frames"].toInt(), 0);
    EXPECT_EQ(s["width"].toInt(), kW);
    EXPECT_EQ(s["height"].toInt(), kH);
    EXPECT_EQ(readFile(d.filePath("out/animation.dat")), int16le({0, kW, kH}) + pictureBytes(colourImage(0)));
    const std::string plane((kW + 1) * (kH + 1), '\x07');
    EXPECT_EQ(readFile(d.filePath("out/swap.dat")), int16le({kW, kH}) + plane + plane + plane);
}

} // namespace
} // namespace kirrel::test
