// A newcomer's first session, end to end through the kirrel executable and the real converter: a GIF
// made with ImageMagick is opened from the panel's File menu, wiped into the swap picture, the wipe is
// undone, the animation is stored in a slot and spliced with itself, and the result leaves as a GIF
// that identify reads back.

#include "host/AnimationFiles.h"
#include "support/Support.h"

#include <QDir>
#include <QImage>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace kirrel::test {
namespace {

constexpr int kFrames = 6, kWidth = 40, kHeight = 30;
// Colours a GIF's palette keeps exactly, one per frame; the swap picture is white.
const char* const kColours[kFrames] = {"#FF0000", "#00FF00", "#0000FF", "#FFFF00", "#00FFFF", "#FF00FF"};

QString run(const QString& program, const QStringList& args, const QString& dir) {
    QProcess p;
    p.setWorkingDirectory(dir);
    p.start(program, args);
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        return "FAILED: " + QString::fromLocal8Bit(p.readAllStandardError());
    return QString::fromLocal8Bit(p.readAllStandardOutput());
}

int whitePixels(const host::Picture& p) {
    int n = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            n += p.r.at(x, y) == 255 && p.g.at(x, y) == 255 && p.b.at(x, y) == 255;
    return n;
}

TEST(FirstSession, OpenWipeUndoSpliceAndExportAGif) {
    if (QStandardPaths::findExecutable("convert").isEmpty() ||
        QStandardPaths::findExecutable("identify").isEmpty())
        GTEST_SKIP() << "ImageMagick is not installed";
    QTemporaryDir dir;
    const QDir at(dir.path());
    QStringList make{"-size", QString("%1x%2").arg(kWidth).arg(kHeight)};
    for (const char* c : kColours)
        make << QString("xc:") + c;
    make << "-set"
         << "delay"
         << "10"
         << "-loop"
         << "0"
         << "walk.gif";
    ASSERT_FALSE(run("convert", make, dir.path()).startsWith("FAILED"));
    ASSERT_FALSE(run("convert", {"-size", QString("%1x%2").arg(kWidth).arg(kHeight), "xc:white", "swap.png"},
                     dir.path())
                     .startsWith("FAILED"));

    // The host starts as the window does, on a picture of its own; everything else is the user's doing.
    const RunResult r =
        runScript(dir.path(), R"JS({"host": {"temp_dir": "tmp", "size": [20, 20], "swap": "swap.png"},
      "steps": [
        {"answer": [{"file": "walk.gif"}]},
        {"menu": "menuImportAnimGif"},
        {"dump": "opened"},
        {"open": "Wipes"},
        {"set": {"control": "cboTransitions", "index": 1}},
        {"set": {"control": "cboWipeOptions", "text": "Swap"}},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"click": "cmd_Run"},
        {"dump": "wiped"},
        {"click": "cmdUndo"},
        {"dump": "undone"},
        {"close": "frmWipes"},
        {"menu": "menuStored"},
        {"click": "cmdSave(0)"},
        {"close": "frmMultiAnims"},
        {"open": "Combine with Stored"},
        {"set": {"control": "optSlot(0)", "value": true}},
        {"set": {"control": "optCombineAnim(1)", "value": true}},
        {"click": "cmd_Run"},
        {"dump": "combined"},
        {"close": "frmCombineAnims"},
        {"menu": "menuExportAnimGif"},
        {"set": {"control": "chkGlobalDelay", "value": 1}},
        {"set": {"control": "txtDelay", "text": "7"}},
        {"answer": [{"file": "first.gif"}]},
        {"click": "cmdSave"},
        {"dump": "exported"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // No step of the walk tells the user anything went wrong.
    for (const char* dump : {"opened", "wiped", "undone", "combined", "exported"})
        for (const auto& v :
             readJsonObject(at.filePath(QString(dump) + "/state.json"))["dialogs"].toArray()) {
            const QJsonObject box = v.toObject();
            EXPECT_NE(box["kind"].toString(), "message")
                << dump << ": " << box["text"].toString().toStdString();
        }

    const auto opened = host::readAnimationDat(at.filePath("opened/animation.dat")).frames;
    ASSERT_EQ(opened.size(), std::size_t{kFrames});
    for (int f = 0; f < kFrames; ++f) {
        const QColor c(kColours[f]);
        EXPECT_EQ(opened[f].r.at(kWidth / 2, kHeight / 2), c.red()) << f;
        EXPECT_EQ(opened[f].g.at(0, 0), c.green()) << f;
        EXPECT_EQ(opened[f].b.at(kWidth - 1, kHeight - 1), c.blue()) << f;
    }

    // The wipe brings the white swap picture in: none of it at the start, all of it at the end, and
    // more with every frame between. Undo gives the opened animation back exactly.
    const auto wiped = host::readAnimationDat(at.filePath("wiped/animation.dat")).frames;
    ASSERT_EQ(wiped.size(), opened.size());
    EXPECT_EQ(whitePixels(wiped.back()), kWidth * kHeight);
    for (int f = 1; f < kFrames; ++f)
        EXPECT_GT(whitePixels(wiped[f]), whitePixels(wiped[f - 1])) << f;
    const auto undone = host::readAnimationDat(at.filePath("undone/animation.dat")).frames;
    ASSERT_EQ(undone.size(), opened.size());
    for (int f = 0; f < kFrames; ++f)
        EXPECT_TRUE(undone[f] == opened[f]) << "frame " << f;

    // Appending the stored copy doubles the animation.
    const auto combined = host::readAnimationDat(at.filePath("combined/animation.dat")).frames;
    ASSERT_EQ(combined.size(), 2u * kFrames);
    for (int f = 0; f < 2 * kFrames; ++f)
        EXPECT_TRUE(combined[f] == opened[f % kFrames]) << "frame " << f;

    // The export holds every frame at the animation's size with the delay asked for, and its colours.
    const QString gif = at.filePath("first.gif");
    const QString frames = run("identify", {"-format", "%wx%h %T\n", gif}, dir.path());
    QStringList expected;
    for (int f = 0; f < 2 * kFrames; ++f)
        expected << QString("%1x%2 7").arg(kWidth).arg(kHeight);
    EXPECT_EQ(frames.trimmed().split('\n').join(" | ").toStdString(), expected.join(" | ").toStdString());
    QImageReader reader(gif);
    for (int f = 0; f < 2 * kFrames; ++f) {
        const QImage frame = reader.read();
        ASSERT_FALSE(frame.isNull()) << "frame " << f;
        EXPECT_EQ(frame.pixelColor(kWidth / 2, kHeight / 2), QColor(kColours[f % kFrames])) << "frame " << f;
    }
}

} // namespace
} // namespace kirrel::test
