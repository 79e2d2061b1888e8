// A newcomer's first session, end to end through the kirrel executable and the real converter: a GIF
// made with ImageMagick is opened from the panel's File menu, wiped into the swap picture, the wipe is
// undone, the animation is stored in a slot and spliced with itself, and the result leaves as a GIF
// that identify and Qt's own reader read back.

#include "support/Fixtures.h"
#include "support/MediaCheck.h"

#include <QImageReader>
#include <QJsonArray>

namespace kirrel::test {
namespace {

constexpr int kFrames = 6, kWidth = 40, kHeight = 30;
// Colours a GIF's palette keeps exactly, one per frame; the swap picture is white.
const char* const kColours[kFrames] = {"#FF0000", "#00FF00", "#0000FF", "#FFFF00", "#00FFFF", "#FF00FF"};

int whitePixels(const host::Picture& p) {
    int n = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            n += p.r.at(x, y) == 255 && p.g.at(x, y) == 255 && p.b.at(x, y) == 255;
    return n;
}

using FirstSession = ScriptTest;

TEST_F(FirstSession, OpenWipeUndoSpliceAndExportAGif) {
    if (const QString m = missingTool({"convert", "identify"}); !m.isEmpty()) GTEST_SKIP() << m.toStdString();
    const QString size = QString("%1x%2").arg(kWidth).arg(kHeight);
    QStringList make{"-size", size};
    for (const char* c : kColours)
        make << QString("xc:") + c;
    ASSERT_EQ(
        runTool("convert", make + QStringList{"-set", "delay", "10", "-loop", "0", at("walk.gif")}).code, 0);
    ASSERT_EQ(runTool("convert", {"-size", size, "xc:white", at("swap.png")}).code, 0);

    // The host starts as the window does, on a picture of its own; everything else is the user's doing.
    // The script carries comments, as the documentation's examples do; the last one ends the file.
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [20, 20], "swap": "swap.png"}, // "a"
      "steps": [
        {"answer": [{"file": "walk.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "opened"},
        {"open": "Wipes"},
        {"set": {"control": "cboTransitions", "index": 1}},
        {"set": {"control": "cboWipeOptions", "text": "Swap"}},
        {"set": {"control": "chkUndoSave", "value": 1}},
        {"click": "cmd_Run"}, {"dump": "wiped"}, {"click": "cmdUndo"}, {"dump": "undone"},
        {"close": "frmWipes"}, {"menu": "menuStored"}, {"click": "cmdSave(0)"}, {"close": "frmMultiAnims"},
        {"open": "Combine with Stored"},
        {"set": {"control": "optSlot(0)", "value": true}},
        {"set": {"control": "optCombineAnim(1)", "value": true}},
        {"click": "cmd_Run"}, {"dump": "combined"}, {"close": "frmCombineAnims"},
        {"menu": "menuExportAnimGif"},
        {"set": {"control": "chkGlobalDelay", "value": 1}},
        {"set": {"control": "txtDelay", "text": "7"}},
        {"answer": [{"file": "first.gif"}]}, {"click": "cmdSave"}, {"dump": "exported"}]} // saved)JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // No step of the walk tells the user anything went wrong.
    for (const char* dump : {"opened", "wiped", "undone", "combined", "exported"})
        for (const QJsonValue box : state(dump)["dialogs"].toArray())
            EXPECT_NE(box["kind"].toString(), "message")
                << dump << ": " << box["text"].toString().toStdString();

    const auto opened = dumped("opened");
    ASSERT_EQ(opened.size(), std::size_t{kFrames});
    for (int f = 0; f < kFrames; ++f) {
        const QColor c(kColours[f]);
        EXPECT_EQ(opened[f].r.at(kWidth / 2, kHeight / 2), c.red()) << f;
        EXPECT_EQ(opened[f].g.at(0, 0), c.green()) << f;
        EXPECT_EQ(opened[f].b.at(kWidth - 1, kHeight - 1), c.blue()) << f;
    }
    // The wipe brings the white swap picture in: all of it at the end, and more with every frame
    // before. Undo gives the opened animation back exactly; appending the stored copy doubles it.
    const auto wiped = dumped("wiped");
    ASSERT_EQ(wiped.size(), opened.size());
    EXPECT_EQ(whitePixels(wiped.back()), kWidth * kHeight);
    for (int f = 1; f < kFrames; ++f)
        EXPECT_GT(whitePixels(wiped[f]), whitePixels(wiped[f - 1])) << f;
    EXPECT_TRUE(dumped("undone") == opened);
    const auto combined = dumped("combined");
    ASSERT_EQ(combined.size(), 2u * kFrames);
    for (int f = 0; f < 2 * kFrames; ++f)
        EXPECT_TRUE(combined[f] == opened[f % kFrames]) << "frame " << f;

    // The export holds every frame at the animation's size with the delay asked for, and its colours.
    const QString gif = at("first.gif");
    EXPECT_EQ(QString(runTool("identify", {"-format", "%wx%h %T,", gif}).out),
              QString("%1 7,").arg(size).repeated(2 * kFrames));
    QImageReader reader(gif);
    for (int f = 0; f < 2 * kFrames; ++f)
        EXPECT_EQ(reader.read().pixelColor(kWidth / 2, kHeight / 2), QColor(kColours[f % kFrames])) << f;
}

} // namespace
} // namespace kirrel::test
