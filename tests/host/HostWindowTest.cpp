// The host window as the panel drives it: forms become its tool windows, the scrubber follows the
// frame and Van_ShowScrub, a run's lock keeps the user's hands off, the wait pointer and progress show,
// and Van_StopAnimation stops playback.

#include "HostWindowSupport.h"

#include "host/CanvasView.h"
#include "host/FrameBar.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/Panel.h"
#include "panel/Vantry.h"

#include <QAction>
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

TEST_F(HostWindowTest, PanelOpensAsToolWindowOfTheHost) {
    panel::startPanel();
    panel::FormBase* main = panel::FormBase::find("Mainfrm");
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(main->parentWidget(), window.get());
    EXPECT_TRUE(main->isWindow());
    EXPECT_EQ(main->windowType(), Qt::Tool);
    EXPECT_TRUE(main->isVisible());

    // A dialog of the panel is a tool window too, and takes the panel's place on the screen.
    main->findChild<QAction*>("menuStored")->trigger();
    panel::FormBase* stored = panel::FormBase::find("frmMultiAnims");
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->parentWidget(), window.get());
    EXPECT_EQ(stored->windowType(), Qt::Tool);
    EXPECT_TRUE(stored->isVisible());
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(stored->pos().y(), main->pos().y());

    // Closing the panel's forms leaves the host window standing.
    delete stored;
    delete main;
    EXPECT_TRUE(window->isVisible());
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
