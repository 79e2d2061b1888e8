// The host window as the panel drives it: forms live in its dock, the scrubber follows the
// frame and Van_ShowScrub, a run's lock keeps the user's hands off, the wait pointer and progress show,
// and Van_StopAnimation stops playback.

#include "HostWindowSupport.h"

#include "exchange/GifExport.h"
#include "exchange/ImportGif.h"
#include "host/CanvasView.h"
#include "host/FrameBar.h"
#include "host/PanelDock.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/Panel.h"
#include "panel/Vantry.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>

namespace kirrel::test {
namespace {

// The panel and every form it opens live in the dock beside the canvas: a dialog takes the panel's
// place, Escape is its "Done", and at no window size does a form cover the canvas.
TEST_F(HostWindowTest, PanelAndItsDialogsLiveInTheDockBesideTheCanvas) {
    panel::startPanel();
    panel::FormBase* main = panel::FormBase::find("Mainfrm");
    ASSERT_NE(main, nullptr);
    host::PanelDock* dock = window->panelDock();
    EXPECT_TRUE(dock->isAncestorOf(main));
    EXPECT_FALSE(main->isWindow());
    EXPECT_TRUE(main->isVisible());

    main->findChild<QAction*>("menuStored")->trigger();
    panel::FormBase* stored = panel::FormBase::find("frmMultiAnims");
    ASSERT_NE(stored, nullptr);
    settle();
    EXPECT_TRUE(dock->isAncestorOf(stored));
    EXPECT_TRUE(stored->isVisible());
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(dock->windowTitle(), stored->windowTitle());

    const QWidget* canvas = window->findChild<QWidget*>("canvasArea");
    for (QSize size : {QSize(800, 560), QSize(1200, 800), QSize(1700, 1000)}) {
        window->resize(size);
        settle();
        const QRect canvasRect(canvas->mapToGlobal(QPoint(0, 0)), canvas->size());
        for (panel::FormBase* f : panel::FormBase::openForms()) {
            if (!f->isVisible()) continue;
            EXPECT_FALSE(QRect(f->mapToGlobal(QPoint(0, 0)), f->size()).intersects(canvasRect))
                << f->objectName().toStdString() << " at " << size.width() << "x" << size.height();
        }
    }

    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(stored, &escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    settle();
    EXPECT_EQ(panel::FormBase::find("frmMultiAnims"), nullptr);
    EXPECT_TRUE(main->isVisible());
    QCoreApplication::sendEvent(main, &escape);
    EXPECT_TRUE(main->isVisible()) << "the panel itself stays";

    delete main;
    EXPECT_TRUE(window->isVisible());
}

// The panel's imports replace the animation and its Quit ends the host: the host asks first about
// unsaved work, and keeping it ends the import before the converter runs, or keeps the program
// open; after an import the window shows the file's name.
TEST_F(HostWindowTest, PanelImportsAndQuitAskAboutUnsavedWork) {
    Vantry::Vantry_Class van;
    van.Van_SetBbuffer(krl::Plane(64, 48));
    ASSERT_TRUE(window->isModified());
    const host::Picture before = host().framePicture(0);
    answerFile("/nowhere/walk.gif");
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    runGuarded([] {
        Vantry::Vantry_Class v;
        exchange::ImportGifDirect(v);
    });
    EXPECT_TRUE(calls("Van_GetTempDir").empty()) << "no converter run";
    EXPECT_EQ(host().framePicture(0).b, before.b);
    EXPECT_EQ(host().dialogs().back().kind, "question");

    panel::startPanel();
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    panel::FormBase::find("Mainfrm")->findChild<QAction*>("menuQuit")->trigger();
    EXPECT_FALSE(programEnded());

    // A named animation becomes the document: its name in the title, nothing unsaved.
    van.Van_RenameBuffer("/some/where/walk.gif");
    van.Van_NewFilename("/some/where/walk.gif");
    settle();
    EXPECT_FALSE(window->isModified());
    EXPECT_TRUE(window->windowTitle().startsWith("walk.gif"));
}

// While the converter runs the window takes no new action, but its Cancel button ends the run at
// once: the converter's group is ended, nothing changed, nothing is left behind.
TEST_F(HostWindowTest, TheCancelButtonEndsAHangingConverterAndNothingElseGetsThrough) {
    const QString fake = QString::fromStdString(tempDir()) + "/../fake";
    QDir().mkpath(fake);
    writeFile(fake + "/convert", "#!/bin/sh\nexec sleep 600\n");
    QFile::setPermissions(fake + "/convert", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(fake) + ":" + path);
    qputenv("KIRREL_BATCH_RUNNER", QFile::encodeName(QFileInfo(KIRREL_EXE).absolutePath() + "/kirrel_batch"));
    host().setAppDir(QFileInfo(KIRREL_EXE).absolutePath().toStdString());
    const host::HostSnapshot before = host().snapshot();
    auto clickLater = [](QWidget* w, int ms) {
        QTimer::singleShot(ms, w, [w] {
            const QPointF at(w->width() / 2.0, w->height() / 2.0);
            for (QEvent::Type t : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(w, new QMouseEvent(t, at, w->mapToGlobal(at), Qt::LeftButton,
                                                               Qt::LeftButton, Qt::NoModifier));
        });
    };
    clickLater(window->findChild<QWidget*>("swapMainAndSwapButton"), 300); // held back
    clickLater(window->findChild<QWidget*>("cancelRun"), 800);
    answerFile(QDir(scratch.path()).filePath("out.gif").toStdString());
    QElapsedTimer clock;
    clock.start();
    runGuarded([] {
        Vantry::Vantry_Class van;
        exchange::ExportGifGlobal(van, exchange::kGifGlobal, 10, 0);
    });
    qputenv("PATH", path);
    qunsetenv("KIRREL_BATCH_RUNNER");
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_EQ(host().lastStatus(), "Cancelled: nothing was changed.");
    EXPECT_FALSE(host::contentDiffers(host().snapshot(), before)) << "the swap click was held back";
    EXPECT_EQ(host().currentFrame(), before.current);
    EXPECT_EQ(host().progress(), 0);
    EXPECT_FALSE(QFileInfo::exists(QDir(scratch.path()).filePath("out.gif")));
    EXPECT_TRUE(QDir(QString::fromStdString(tempDir())).entryList(QDir::Files).isEmpty());
}

TEST_F(HostWindowTest, ScrubberFollowsGotoFrameAndShowScrub) {
    Vantry::Vantry_Class van;
    QSlider* slider = window->frameBar()->slider();
    EXPECT_EQ(slider->maximum(), 11);

    van.Van_GotoFrame(7);
    settle();
    EXPECT_EQ(slider->value(), 7);
    EXPECT_EQ(window->canvas()->image(), host::imageFromPicture(host().framePicture(7)));
    EXPECT_TRUE(window->frameBar()->findChild<QLabel*>("frameLabel")->text().contains("Frame 7"));

    van.Van_ShowScrub(3, 12);
    settle();
    EXPECT_EQ(slider->value(), 3);
    van.Van_GotoFrame(9);
    settle();
    EXPECT_EQ(slider->value(), 9);

    // A new frame count reaches the scrubber's range.
    van.Van_InsertFrame(9);
    van.Van_ShowScrub(0, van.Van_GetTotalFrames());
    settle();
    EXPECT_EQ(slider->maximum(), 12);

    // The user's scrubbing moves the host's frame.
    slider->setValue(4);
    EXPECT_EQ(host().currentFrame(), 4);
}

TEST_F(HostWindowTest, LockKeepsTheUserOutUntilUnlock) {
    Vantry::Vantry_Class van;
    van.Van_GotoFrame(2);
    van.Van_Lock();
    settle();
    QSlider* slider = window->frameBar()->slider();
    EXPECT_FALSE(slider->isEnabled());
    EXPECT_FALSE(window->canvas()->isEnabled());
    EXPECT_FALSE(window->menuBar()->isEnabled());
    EXPECT_FALSE(window->action("open")->isEnabled());
    EXPECT_FALSE(window->action("nextFrame")->isEnabled());

    // Clicks and keys on the scrubber do nothing; a playback tick or a frame command neither.
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(slider->width() - 2, slider->height() / 2.0),
                      slider->mapToGlobal(QPointF(slider->width() - 2, slider->height() / 2.0)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(slider, &press);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
    QApplication::sendEvent(slider, &key);
    emit window->frameBar()->frameRequested(8);
    window->action("nextFrame")->trigger();
    settle();
    EXPECT_EQ(host().currentFrame(), 2);

    // The panel itself keeps going: the host's lock is no obstacle to the run.
    van.Van_GotoFrame(5);
    van.Van_Unlock();
    settle();
    EXPECT_TRUE(slider->isEnabled());
    EXPECT_TRUE(window->menuBar()->isEnabled());
    EXPECT_EQ(slider->value(), 5);
    window->action("nextFrame")->trigger();
    EXPECT_EQ(host().currentFrame(), 6);

    // Unlocking when nothing is locked is harmless.
    van.Van_Unlock();
    settle();
    EXPECT_TRUE(slider->isEnabled());
}

TEST_F(HostWindowTest, WaitPointerAndProgressFollowTheRun) {
    Vantry::Vantry_Class van;
    van.Van_ChangePointer(11);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    van.Van_RestorePointer();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    van.Van_RestorePointer(); // harmless without a change
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);

    QProgressBar* bar = window->progressBar();
    EXPECT_FALSE(bar->isVisible());
    van.van_status(40.4);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->value(), 40);
    van.van_StatusClose();
    EXPECT_FALSE(bar->isVisible());
    van.van_StatusClose();
    EXPECT_FALSE(bar->isVisible());

    van.Van_SetProgress(70);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->value(), 70);
    van.Van_SetProgress(0);
    EXPECT_FALSE(bar->isVisible());
}

TEST_F(HostWindowTest, LiveRunRepaintsWithoutAnEventLoop) {
    // A run writes frames under the lock with no event loop in between: the window must still show
    // them, without waiting for the run to end.
    Vantry::Vantry_Class van;
    van.Van_Lock();
    processEventsFor(130); // the live paint interval passes; from here on no event is processed
    van.Van_GotoFrame(6);
    EXPECT_EQ(window->frameBar()->slider()->value(), 6);
    EXPECT_EQ(window->canvas()->image(), host::imageFromPicture(host().framePicture(6)));
    van.Van_Unlock();
}

TEST_F(HostWindowTest, StopAnimationStopsPlayback) {
    host::FrameBar* bar = window->frameBar();
    host().setFrameDelays(std::vector<int>(static_cast<std::size_t>(host().totalFrames()), 15));
    bar->play();
    ASSERT_TRUE(bar->playing());
    processEventsFor(120);
    EXPECT_GT(host().currentFrame(), 0);

    Vantry::Vantry_Class van;
    van.Van_StopAnimation();
    EXPECT_FALSE(bar->playing());
    const int stoppedAt = host().currentFrame();
    processEventsFor(60);
    EXPECT_EQ(host().currentFrame(), stoppedAt);

    // A lock stops playback too, so that no frame moves under a run.
    bar->play();
    van.Van_Lock();
    EXPECT_FALSE(bar->playing());
    van.Van_Unlock();
}

TEST_F(HostWindowTest, ClosingTheHostEndsTheProgramThroughThePanel) {
    int endings = 0;
    setProgramEndHandler([&] { ++endings; });
    struct ForgetHandler {
        ~ForgetHandler() { setProgramEndHandler({}); }
    } forget;
    panel::startPanel();
    writeFile(QString::fromStdString(tempDir() + "/AnimUndo.dat"), "x");

    // Unsaved frames: the window asks first, and "No" keeps everything open.
    Vantry::Vantry_Class van;
    van.Van_SetBbuffer(krl::Plane(64, 48));
    whenModal([](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(QMessageBox::No)->click(); });
    EXPECT_FALSE(window->close());
    EXPECT_FALSE(programEnded());
    EXPECT_NE(panel::FormBase::find("Mainfrm"), nullptr);

    // "Yes": the panel's own quit runs, with its clean-up question, and the program ends.
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    whenModal([](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(QMessageBox::Yes)->click(); });
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(programEnded());
    EXPECT_EQ(endings, 1);
    ASSERT_FALSE(host().dialogs().empty());
    EXPECT_EQ(host().dialogs().back().text, "\nClear Animation Undo file?");
    EXPECT_EQ(calls("Van_Unlock").size(), 1u); // the panel leaves the host usable
}

} // namespace
} // namespace kirrel::test
