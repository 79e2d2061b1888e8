// Started where there is no display, kirrel says so and leaves a demo reel behind instead of failing:
// the frames always, the GIF when the converter is there, and a word on why when it is not.

#include "support/Support.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kirrel::test {
namespace {

// Runs kirrel as a user without a display would, in a fresh home; path replaces PATH when given.
struct Reel {
    QTemporaryDir dir;
    QString out;
    QDir folder() const { return QDir(QDir(dir.path()).filePath("kirrel-demo")); }
};

void renderReel(Reel& reel, const QString& path = {}) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* v : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(v);
    env.insert("HOME", reel.dir.path());
    env.insert("XDG_CONFIG_HOME", QDir(reel.dir.path()).filePath("config"));
    env.insert("XDG_DATA_HOME", QDir(reel.dir.path()).filePath("data"));
    if (!path.isNull()) env.insert("PATH", path);
    QProcess p;
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(reel.dir.path());
    p.start(KIRREL_EXE, {});
    ASSERT_TRUE(p.waitForFinished(120000));
    reel.out = QString::fromUtf8(p.readAllStandardOutput());
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    EXPECT_TRUE(reel.out.startsWith("kirrel: no display found")) << reel.out.toStdString();
    EXPECT_TRUE(reel.out.contains(reel.folder().path())) << reel.out.toStdString();

    const QDir folder = reel.folder();
    EXPECT_TRUE(folder.entryList({"*.png"}, QDir::Files, QDir::Name).contains("panel.png"));
    EXPECT_GT(QImage(folder.filePath("window.png")).width(), 500);
    const QStringList frames = QDir(folder.filePath("frames")).entryList({"*.png"}, QDir::Files, QDir::Name);
    ASSERT_EQ(frames.size(), 30);
    EXPECT_EQ(QImage(folder.filePath("frames/0000.png")).size(), QSize(320, 240));
}

TEST(HostWindowDemoReel, WithoutADisplayKirrelRendersFramesPicturesAndAGif) {
    if (QStandardPaths::findExecutable("convert").isEmpty()) GTEST_SKIP() << "ImageMagick is not installed";
    Reel reel;
    ASSERT_NO_FATAL_FAILURE(renderReel(reel));
    EXPECT_TRUE(reel.out.contains("demo.gif ")) << reel.out.toStdString();
    EXPECT_FALSE(QImage(reel.folder().filePath("gif-export.png")).isNull());

    // Every frame of the animation, at its size, a tenth of a second each.
    QProcess identify;
    identify.start("identify", {"-format", "%wx%h %T\n", reel.folder().filePath("demo.gif")});
    ASSERT_TRUE(identify.waitForFinished(60000));
    const QStringList lines = QString::fromUtf8(identify.readAllStandardOutput()).trimmed().split('\n');
    EXPECT_EQ(lines.size(), 30);
    EXPECT_EQ(lines.count("320x240 10"), 30) << lines.join(" | ").toStdString();
}

TEST(HostWindowDemoReel, WithoutTheConverterTheFramesAreWrittenAndTheGifIsSkipped) {
    Reel reel;
    QTemporaryDir emptyPath;
    ASSERT_NO_FATAL_FAILURE(renderReel(reel, emptyPath.path()));
    EXPECT_TRUE(reel.out.contains("the GIF was skipped because ImageMagick's convert was not found"))
        << reel.out.toStdString();
    EXPECT_FALSE(reel.folder().exists("demo.gif"));
}

} // namespace
} // namespace kirrel::test
