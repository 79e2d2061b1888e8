// Started where there is no display, kirrel says so and leaves a demo reel behind instead of failing.

#include "support/Support.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kirrel::test {
namespace {

TEST(HostWindowDemoReel, WithoutADisplayKirrelRendersFramesAndPictures) {
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* v : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(v);
    env.insert("HOME", dir.path());
    env.insert("XDG_CONFIG_HOME", QDir(dir.path()).filePath("config"));
    env.insert("XDG_DATA_HOME", QDir(dir.path()).filePath("data"));
    QProcess p;
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(dir.path());
    p.start(KIRREL_EXE, {});
    ASSERT_TRUE(p.waitForFinished(120000));
    const QString out = QString::fromUtf8(p.readAllStandardOutput());
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    EXPECT_TRUE(out.startsWith("kirrel: no display found")) << out.toStdString();

    const QDir reel(QDir(dir.path()).filePath("kirrel-demo"));
    EXPECT_TRUE(out.contains(reel.path())) << out.toStdString();
    EXPECT_EQ(reel.entryList({"*.png"}, QDir::Files, QDir::Name).contains("panel.png"), true);
    const QImage window(reel.filePath("window.png"));
    EXPECT_GT(window.width(), 500);
    const QStringList frames = QDir(reel.filePath("frames")).entryList({"*.png"}, QDir::Files, QDir::Name);
    ASSERT_EQ(frames.size(), 30);
    EXPECT_EQ(QImage(reel.filePath("frames/0000.png")).size(), QSize(320, 240));
}

} // namespace
} // namespace kirrel::test
