// Opening animations that other programs made (apngasm, img2webp, ffmpeg), with their delays,
// transparency over the paper and rotation; frame folders in natural order; a missing tool; and
// damaged files of every format, which open in part with a note or give a clear error.

#include "host/AnimationExport.h"
#include "host/AnimationFiles.h"
#include "support/MediaCheck.h"
#include "support/Support.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

namespace kirrel::test {
namespace {

constexpr std::uint32_t kPaper = 0x204060; // red 0x60, green 0x40, blue 0x20

class MediaRead : public ::testing::Test {
  protected:
    QString at(const QString& name) const { return QDir(dir.path()).filePath(name); }
    void need(const QStringList& tools) {
        if (const QString m = missingTool(tools); !m.isEmpty())
            GTEST_SKIP() << m.toStdString() << " is not installed";
    }
    // Frame f: flat colour (20 + 60 f, 100, 200 - 30 f), with one half-clear pixel at (1, 1) and a
    // clear one at (2, 1).
    QStringList writePngFrames(int n, int w = 6, int h = 4) const {
        QStringList names;
        for (int f = 0; f < n; ++f) {
            QImage img(w, h, QImage::Format_RGBA8888);
            img.fill(QColor(20 + 60 * f, 100, 200 - 30 * f));
            img.setPixelColor(1, 1, QColor(200, 0, 0, 128));
            img.setPixelColor(2, 1, QColor(0, 0, 0, 0));
            names << at(QString("frame%1.png").arg(f + 1, 3, 10, QChar('0')));
            img.save(names.back());
        }
        return names;
    }
    QTemporaryDir dir;
};

// Over the paper: c' = (c a + paper (255 - a) + 127) / 255.
TEST_F(MediaRead, ApngAndWebpFromOtherProgramsKeepDelaysAndLieOverThePaper) {
    need({"apngasm", "img2webp", "ffmpeg", "ffprobe"});
    const QStringList frames = writePngFrames(3);
    const std::vector<int> delays{100, 250, 40};
    QStringList webpArgs{"-lossless"};
    for (int f = 0; f < 3; ++f) {
        writeFile(QString(frames[f]).replace(".png", ".txt"),
                  QString("delay=%1/1000\n").arg(delays[f]).toStdString());
        webpArgs << "-d" << QString::number(delays[f]) << frames[f];
    }
    ASSERT_EQ(runTool("apngasm", QStringList{at("made.png")} + frames).code, 0);
    ASSERT_EQ(runTool("img2webp", webpArgs + QStringList{"-o", at("made.webp")}).code, 0);
    for (const QString file : {"made.png", "made.webp"}) {
        SCOPED_TRACE(file.toStdString());
        const host::Animation a = host::readAnimationFile(at(file), {.paper = kPaper});
        ASSERT_EQ(a.frames.size(), 3u);
        EXPECT_EQ(a.delays, delays);
        EXPECT_TRUE(a.note.empty());
        EXPECT_EQ(a.alpha.at(1, 1), 128);
        EXPECT_EQ(a.alpha.at(2, 1), 0);
        EXPECT_EQ(a.alpha.at(6, 4), 255) << "the ride-along corner repeats the edge";
        for (int f = 0; f < 3; ++f) {
            const host::Picture& p = a.frames[static_cast<std::size_t>(f)];
            EXPECT_EQ(p.r.at(0, 0), 20 + 60 * f);
            EXPECT_EQ(p.b.at(6, 4), 200 - 30 * f);
            EXPECT_EQ(p.r.at(1, 1), (200 * 128 + 0x60 * 127 + 127) / 255);
            EXPECT_EQ(p.g.at(1, 1), (0x40 * 127 + 127) / 255);
            EXPECT_EQ(host::packColor(p.r.at(2, 1), p.g.at(2, 1), p.b.at(2, 1)), kPaper);
        }
    }
    // A plain PNG is a still picture, not an animation.
    const host::Animation still = host::readAnimationFile(frames[0], {.paper = kPaper});
    EXPECT_TRUE(still.frames.empty());
    EXPECT_EQ(still.still.width(), 6);
    EXPECT_EQ(still.alpha.at(2, 1), 0);
}

TEST_F(MediaRead, VideosFromFfmpegGiveEveryFrameTheirTimingAndTheirRotation) {
    need({"ffmpeg", "ffprobe"});
    ASSERT_EQ(
        runTool("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=48x32:rate=10", "-frames:v",
                           "6", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-bf", "2", at("made.mp4")})
            .code,
        0);
    ASSERT_EQ(runTool("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=48x32:rate=25",
                                 "-frames:v", "5", "-c:v", "libvpx-vp9", at("made.webm")})
                  .code,
              0);
    ASSERT_EQ(runTool("ffmpeg", {"-v", "error", "-i", at("made.mp4"), "-c", "copy", "-metadata:s:v",
                                 "rotate=90", at("turned.mov")})
                  .code,
              0);
    const host::Animation mp4 = host::readAnimationFile(at("made.mp4"));
    EXPECT_EQ(mp4.delays, std::vector<int>(6, 100));
    EXPECT_TRUE(mp4.alpha.empty());
    const RgbaFrames decoded = ffmpegFrames(at("made.mp4"), 48, 32);
    EXPECT_EQ(psnr(decoded, mp4.frames), 99) << "the same frames ffmpeg gives, in presentation order";
    EXPECT_EQ(host::readAnimationFile(at("made.webm")).delays, std::vector<int>(5, 40));
    const host::Animation turned = host::readAnimationFile(at("turned.mov"));
    ASSERT_EQ(turned.frames.size(), 6u);
    EXPECT_EQ(turned.frames[0].width(), 32);
    EXPECT_EQ(turned.frames[0].height(), 48);
}

// A cancel ends the tools at once and leaves no private folder behind.
TEST_F(MediaRead, ACancelledReadThrowsCancelledAndLeavesNothing) {
    need({"ffmpeg", "ffprobe"});
    ASSERT_EQ(runTool("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=320x240:rate=25",
                                 "-frames:v", "50", at("long.webm")})
                  .code,
              0);
    auto privateFolders = [] {
        return QDir(QDir::tempPath()).entryList({"kirrel-media-*"}, QDir::Dirs).size();
    };
    const qsizetype before = privateFolders();
    int reports = 0;
    host::ReadOptions options;
    options.progress.report = [&](double) { ++reports; };
    options.progress.cancelled = [&] { return reports >= 3; };
    EXPECT_THROW(host::readAnimationFile(at("long.webm"), options), host::Cancelled);
    EXPECT_EQ(reports, 3);
    EXPECT_EQ(privateFolders(), before);
}

TEST_F(MediaRead, AFolderOfFramesIsReadInNaturalOrder) {
    for (const int n : {10, 9, 1, 2}) {
        QImage img(3, 2, QImage::Format_RGB888);
        img.fill(QColor(n, 0, 0));
        img.save(at(QString("frame%1.png").arg(n)));
    }
    const host::Animation a = host::readAnimationFile(dir.path());
    ASSERT_EQ(a.frames.size(), 4u);
    EXPECT_EQ(a.frames[0].r.at(0, 0), 1);
    EXPECT_EQ(a.frames[2].r.at(0, 0), 9);
    EXPECT_EQ(a.frames[3].r.at(0, 0), 10);
    EXPECT_TRUE(a.delays.empty());
}

TEST_F(MediaRead, AMissingToolIsNamedWithItsPackage) {
    need({"ffmpeg", "ffprobe"});
    const QStringList frames = writePngFrames(2);
    ASSERT_EQ(runTool("apngasm", QStringList{at("made.png")} + frames).code, 0);
    std::vector<host::Picture> pictures(2, host::Picture::filled(5, 4, 0x102030));
    pictures[1] = host::Picture::filled(5, 4, 0x405060);
    const std::vector<int> delays{100, 100};
    host::exportAnimation(at("made.gif"), {pictures, delays, krl::Plane(), 0}, {});
    auto message = [&](const QString& file) -> std::string {
        try {
            host::readAnimationFile(at(file));
        } catch (const host::MissingTool& e) {
            return e.what();
        }
        return "no MissingTool";
    };
    {
        const PathWith none({});
        EXPECT_EQ(message("made.png"),
                  "Opening an APNG file needs ffmpeg, which is not installed. Install Debian's "
                  "ffmpeg package (sudo apt install ffmpeg) and try again.");
        EXPECT_NE(message("made.gif").find("sudo apt install imagemagick"), std::string::npos);
    }
    // Without ImageMagick a GIF still opens, through ffmpeg.
    const PathWith ffmpegOnly({"ffmpeg", "ffprobe"});
    EXPECT_EQ(host::readAnimationFile(at("made.gif")).frames.size(), 2u);
}

class DamagedMedia : public ::testing::TestWithParam<const char*> {};

// Cut to half, cut to its first bytes, or garbage with the right name: never a crash or a hang; a
// file that gave frames says it ends early, one that gave none is named in a clear error.
TEST_P(DamagedMedia, OpensInPartWithANoteOrGivesAClearError) {
    if (const QString m = missingTool({"ffmpeg", "ffprobe", "convert"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString();
    QTemporaryDir dir;
    const QString whole = QDir(dir.path()).filePath(QString("whole.") + GetParam());
    std::vector<host::Picture> frames;
    frames.reserve(12);
    for (int f = 0; f < 12; ++f)
        frames.push_back(patternPicture(40, 30, 17 * f));
    const std::vector<int> delays(frames.size(), 50);
    host::exportAnimation(whole, {frames, delays, krl::Plane(), 0}, {});
    const std::string bytes = readFile(whole);
    const std::vector<std::pair<const char*, std::string>> damaged{
        {"half", bytes.substr(0, bytes.size() / 2)},
        {"start", bytes.substr(0, 40)},
        {"garbage", std::string(3000, '\x5a') + bytes.substr(bytes.size() / 3, 200)},
    };
    for (const auto& [name, content] : damaged) {
        const QString file = QDir(dir.path()).filePath(QString("walk-%1.").arg(name) + GetParam());
        writeFile(file, content);
        SCOPED_TRACE(file.toStdString());
        try {
            const host::Animation a = host::readAnimationFile(file);
            const std::size_t read = a.frames.empty() ? 1 : a.frames.size();
            EXPECT_LT(read, frames.size());
            EXPECT_NE(a.note.find(QFileInfo(file).fileName().toStdString() + " ends early: "),
                      std::string::npos)
                << a.note;
        } catch (const std::runtime_error& e) {
            EXPECT_NE(std::string(e.what()).find(QFileInfo(file).fileName().toStdString()), std::string::npos)
                << e.what();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, DamagedMedia, ::testing::Values("gif", "png", "webp", "mp4", "webm"));

} // namespace
} // namespace kirrel::test
