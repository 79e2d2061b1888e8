// What the window shows of the pictures and what its commands do to them: the alpha display and the
// selection outline, swap and alpha commands with the host's undo, the PNG sequence round trip, and
// files that cannot be read.

#include "HostWindowSupport.h"

#include "host/BufferThumbnail.h"
#include "host/CanvasImage.h"
#include "host/CanvasView.h"
#include "host/ColourSwatches.h"
#include "host/FrameBar.h"
#include "host/PngSequence.h"
#include "host/SelectionOutline.h"
#include "panel/Vantry.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>

#include <algorithm>

namespace kirrel::test {
namespace {

krl::Plane alphaWithBox(int w, int h, QRect box) {
    krl::Plane a(w, h);
    for (int y = box.top(); y <= box.bottom(); ++y)
        for (int x = box.left(); x <= box.right(); ++x)
            a.at(x, y) = 255;
    return a;
}

bool hasLine(const std::vector<QLine>& lines, QLine l) {
    return std::find(lines.begin(), lines.end(), l) != lines.end();
}

TEST(SelectionOutline, TracesSelectedRegionsWithMergedEdges) {
    // A box of pixels 2..5 x 1..3 in an 8 x 6 picture: four lines along its pixel corners.
    const auto box = host::selectionOutline(alphaWithBox(8, 6, QRect(QPoint(2, 1), QPoint(5, 3))));
    ASSERT_EQ(box.size(), 4u);
    EXPECT_TRUE(hasLine(box, QLine(2, 1, 6, 1)));
    EXPECT_TRUE(hasLine(box, QLine(2, 4, 6, 4)));
    EXPECT_TRUE(hasLine(box, QLine(2, 1, 2, 4)));
    EXPECT_TRUE(hasLine(box, QLine(6, 1, 6, 4)));

    // A hole inside a selection is outlined too; the unseen last column and row never count.
    krl::Plane ring(6, 6);
    ring.fill(255);
    ring.at(2, 2) = 0;
    const auto holed = host::selectionOutline(ring);
    EXPECT_EQ(holed.size(), 8u);
    EXPECT_TRUE(hasLine(holed, QLine(0, 0, 6, 0)));
    EXPECT_TRUE(hasLine(holed, QLine(2, 2, 3, 2)));

    // Half-transparent counts as selected from 128 up; nothing selected, nothing drawn.
    krl::Plane half(4, 4);
    half.fill(127);
    EXPECT_TRUE(host::selectionOutline(half).empty());
    half.fill(128);
    EXPECT_EQ(host::selectionOutline(half).size(), 4u);
}

TEST_F(HostWindowTest, AlphaDisplayAndMarqueeFollowTheHost) {
    Vantry::Vantry_Class van;
    const QColor opaque = window->canvas()->image().pixelColor(1, 1);
    van.Van_SetAbuffer(alphaWithBox(64, 48, QRect(QPoint(16, 16), QPoint(31, 31))));
    settle();
    // Alpha is drawn only while the alpha display is on.
    EXPECT_EQ(window->canvas()->image().pixelColor(1, 1), opaque);
    van.Van_AlphaOn();
    settle();
    const QColor checker = window->canvas()->image().pixelColor(1, 1);
    EXPECT_EQ(checker, QColor(204, 204, 204)); // fully transparent: the light checker square
    EXPECT_EQ(window->canvas()->image().pixelColor(1, host::kCheckerSquare + 1), QColor(153, 153, 153));
    EXPECT_EQ(window->canvas()->image().pixelColor(20, 20),
              host::imageFromPicture(host().mainPicture()).pixelColor(20, 20));

    // The outline waits for the marquee to be rebuilt, and is taken from the alpha of that moment.
    EXPECT_FALSE(window->canvas()->hasOutline());
    van.Van_InitMarquee();
    settle();
    EXPECT_TRUE(window->canvas()->hasOutline());

    van.Van_AlphaOff();
    settle();
    EXPECT_EQ(window->canvas()->image().pixelColor(1, 1), opaque);
    EXPECT_FALSE(window->action("showAlpha")->isChecked());
    window->action("showAlpha")->trigger();
    EXPECT_TRUE(host().alphaShown());
}

TEST_F(HostWindowTest, SwapAndAlphaCommandsUndoThroughTheHost) {
    const host::Picture main = host().mainPicture();
    const host::Picture swap = host().swapPicture();
    EXPECT_FALSE(window->action("undo")->isEnabled());

    window->action("swapMainAndSwap")->trigger();
    EXPECT_EQ(host().mainPicture(), swap);
    EXPECT_EQ(host().swapPicture(), main);
    EXPECT_EQ(host().framePicture(host().currentFrame()), swap); // the frame itself changed
    settle();
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_TRUE(window->action("undo")->isEnabled());
    window->action("undo")->trigger();
    EXPECT_EQ(host().mainPicture(), main);

    window->action("copyFrameToSwap")->trigger();
    EXPECT_EQ(host().swapPicture(), main);
    settle();
    EXPECT_EQ(window->swapView()->image(), host::imageFromPicture(main));

    window->action("clearAlpha")->trigger();
    EXPECT_EQ(host().alphaPlane().at(5, 5), 0);
    window->action("undo")->trigger();
    EXPECT_EQ(host().alphaPlane().at(5, 5), 255);
    window->action("clearAlpha")->trigger();
    window->action("fillAlpha")->trigger();
    EXPECT_EQ(host().alphaPlane().at(63, 47), 255);
}

TEST_F(HostWindowTest, PngSequenceRoundTripsAndClearsTheModifiedMark) {
    Vantry::Vantry_Class van;
    van.Van_SetRbuffer(krl::Plane(64, 48));
    settle();
    EXPECT_TRUE(window->isModified());

    const QString dir = QDir(scratch.path()).filePath("walk");
    QDir().mkpath(dir);
    ASSERT_TRUE(window->saveFramesAsPng(QDir(dir).filePath("walk.png"), false));
    EXPECT_FALSE(window->isModified());
    EXPECT_TRUE(QFile::exists(QDir(dir).filePath("walk_0000.png")));
    EXPECT_TRUE(QFile::exists(QDir(dir).filePath("walk_0011.png")));

    std::vector<host::Picture> before;
    for (int f = 0; f < host().totalFrames(); ++f)
        before.push_back(host().framePicture(f));
    host().loadAnimation(host::sampleAnimation(3, 10, 10));
    window->adoptCurrentAsDocument("Other");
    ASSERT_TRUE(window->openAnimation(dir));
    ASSERT_EQ(host().totalFrames(), 12);
    for (int f = 0; f < 12; ++f) {
        // The hidden last column and row are not part of a PNG; they repeat the edge when read back.
        EXPECT_EQ(host::imageFromPicture(host().framePicture(f)), host::imageFromPicture(before[f])) << f;
    }
    EXPECT_FALSE(window->isModified());
    EXPECT_TRUE(window->windowTitle().startsWith("walk"));
}

TEST(PngSequence, NamesGrowWithLongAnimationsAndCarryAlpha) {
    const QStringList names = host::pngSequenceNames("/x/run.png", 12000);
    EXPECT_EQ(names.front(), "/x/run_00000.png");
    EXPECT_EQ(names.back(), "/x/run_11999.png");
    EXPECT_EQ(host::pngSequenceNames("/x/run", 2).front(), "/x/run_0000.png");

    QTemporaryDir dir;
    host::Picture p = host::Picture::filled(4, 4, 0x00FF00);
    krl::Plane alpha(4, 4);
    alpha.at(1, 1) = 200;
    host::writePngSequence(QDir(dir.path()).filePath("a.png"), {p}, &alpha);
    const QImage back(QDir(dir.path()).filePath("a_0000.png"));
    EXPECT_EQ(qAlpha(back.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(back.pixel(1, 1)), 200);
    EXPECT_THROW(host::writePngSequence("/nonexistent-dir/a.png", {p}, nullptr), std::runtime_error);
}

TEST_F(HostWindowTest, UnreadableFileWarnsAndKeepsTheAnimation) {
    const QString bad = QDir(scratch.path()).filePath("broken.gif");
    writeFile(bad, "GIF89a not really");
    const host::Picture frame3 = host().framePicture(3);
    QString warning;
    whenModal([&](QWidget* box) {
        auto* m = qobject_cast<QMessageBox*>(box);
        ASSERT_NE(m, nullptr);
        warning = m->text();
        m->accept();
    });
    EXPECT_FALSE(window->openAnimation(bad));
    EXPECT_TRUE(warning.contains("broken.gif"));
    EXPECT_EQ(host().totalFrames(), 12);
    EXPECT_EQ(host().framePicture(3), frame3);
}

TEST_F(HostWindowTest, UnsavedChangesAreNotDiscardedWithoutAsking) {
    const QString other = QDir(scratch.path()).filePath("still.png");
    ASSERT_TRUE(host::imageFromPicture(host::sampleSwapPicture(20, 10)).save(other));
    Vantry::Vantry_Class van;
    van.Van_SetGbuffer(krl::Plane(64, 48));
    whenModal([](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(QMessageBox::No)->click(); });
    EXPECT_FALSE(window->openAnimation(other));
    EXPECT_EQ(host().totalFrames(), 12);

    whenModal([](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(QMessageBox::Yes)->click(); });
    EXPECT_TRUE(window->openAnimation(other));
    EXPECT_EQ(host().totalFrames(), 0);
    EXPECT_EQ(host().bufferWidth(), 20);
    EXPECT_EQ(host().swapPicture().width(), 20); // the swap picture follows the new size
}

TEST_F(HostWindowTest, ColourAndFrameCommandsReachTheHost) {
    auto* swatches = window->findChild<host::ColourSwatches*>("colourSwatches");
    ASSERT_NE(swatches, nullptr);
    emit swatches->coloursChosen(QColor(10, 20, 30), QColor(200, 100, 50));
    EXPECT_EQ(host().primaryColor(), 10u | (20u << 8) | (30u << 16));
    EXPECT_EQ(host().secondaryColor(), 200u | (100u << 8) | (50u << 16));
    settle();
    EXPECT_EQ(swatches->primary(), QColor(10, 20, 30));
    Vantry::Vantry_Class van;
    van.Van_SetPrimaryColor(1, 2, 3);
    settle();
    EXPECT_EQ(swatches->primary(), QColor(1, 2, 3));

    // Duplicating the current frame inserts a copy after it and moves there.
    van.Van_GotoFrame(4);
    const host::Picture four = host().framePicture(4);
    window->action("duplicateFrame")->trigger();
    EXPECT_EQ(host().totalFrames(), 13);
    EXPECT_EQ(host().currentFrame(), 5);
    EXPECT_EQ(host().framePicture(5), four);
    // Deleting asks, and "No" deletes nothing.
    whenModal([](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(QMessageBox::No)->click(); });
    window->action("deleteFrame")->trigger();
    EXPECT_EQ(host().totalFrames(), 13);
    whenModal([](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(QMessageBox::Yes)->click(); });
    window->action("deleteFrame")->trigger();
    EXPECT_EQ(host().totalFrames(), 12);
    settle();
    EXPECT_EQ(window->frameBar()->slider()->maximum(), 11);
}

} // namespace
} // namespace kirrel::test
