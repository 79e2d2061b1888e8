// The host window as the panel and the user drive it: forms live in its dock, the scrubber follows
// the frame and Van_ShowScrub, a run's lock keeps the user's hands off, the wait pointer, progress
// and Cancel button show, the alpha display, the window's own commands with
// the host's undo, PNG sequences, the real dialogs behind the host's boxes, a recorded session
// replayed to the same bytes, and the demo reel kirrel leaves where there is no display.

#include "host/HostWindow.h"
#include "exchange/GifExport.h"
#include "exchange/ImportGif.h"
#include "host/AnimationFiles.h"
#include "host/BufferThumbnail.h"
#include "host/CanvasImage.h"
#include "host/CanvasView.h"
#include "host/ColourSwatches.h"
#include "host/FileFilter.h"
#include "host/FrameBar.h"
#include "host/PanelDock.h"
#include "host/PngSequence.h"
#include "host/QtResponder.h"
#include "host/SampleAnimation.h"
#include "host/SessionRecorder.h"
#include "host/StateDump.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/Panel.h"
#include "panel/Vantry.h"
#include "support/MediaCheck.h"
#include "support/SampleGifs.h"
#include "support/Support.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QInputDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcessEnvironment>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QStandardPaths>
#include <QTimer>

#include <functional>
#include <memory>

namespace kirrel::test {
namespace {

// Acts on the next modal dialog as soon as it is shown (the boxes block until then).
void whenModal(std::function<void(QWidget*)> act) {
    auto* timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            timer->stop();
            timer->deleteLater();
            act(modal);
        }
    });
    timer->start();
}

// Presses a button of the next message box.
void pressOnNextBox(QMessageBox::StandardButton b) {
    whenModal([b](QWidget* box) { qobject_cast<QMessageBox*>(box)->button(b)->click(); });
}

void processEventsFor(int ms) {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

// The converter's batch runner, built beside the kirrel program.
void useBuiltConverter() {
    qputenv("KIRREL_BATCH_RUNNER", QFile::encodeName(QFileInfo(KIRREL_EXE).absolutePath() + "/kirrel_batch"));
    host::runningHost().setAppDir(QFileInfo(KIRREL_EXE).absolutePath().toStdString());
}

// A fresh host with the sample animation and swap picture, and a window shown offscreen over it.
class HostWindowTest : public HostTest {
  protected:
    void SetUp() override {
        QStandardPaths::setTestModeEnabled(true);
        HostTest::SetUp();
        host().loadAnimation(host::sampleAnimation(12, 64, 48));
        host().loadSwap(host::sampleSwapPicture(64, 48));
        window = std::make_unique<host::HostWindow>(host());
        window->adoptCurrentAsDocument("Sample");
        window->resize(900, 600);
        window->show();
        QCoreApplication::processEvents();
    }
    void TearDown() override {
        window.reset();
        qunsetenv("KIRREL_BATCH_RUNNER");
        HostTest::TearDown();
    }
    // What the window shows after the host changed (normally just after the event).
    void settle() {
        QCoreApplication::processEvents();
        window->refreshFromHost();
    }
    QString at(const QString& rel) const { return QDir(scratch.path()).filePath(rel); }
    QImage canvasImage() const { return window->canvas()->image(); }
    QSlider* slider() const { return window->frameBar()->slider(); }
    void trigger(const char* action) { window->action(action)->trigger(); }

    std::unique_ptr<host::HostWindow> window;
    Vantry::Vantry_Class van;
};

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
        for (panel::FormBase* f : panel::FormBase::openForms())
            EXPECT_FALSE(f->isVisible() &&
                         QRect(f->mapToGlobal(QPoint(0, 0)), f->size()).intersects(canvasRect))
                << f->objectName().toStdString() << " at " << size.width() << "x" << size.height();
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

// Unsaved work is never replaced or left without asking, and "No" keeps everything: the panel's imports
// (before the converter runs) and Quit, closing the window, opening a file. An unreadable file is
// named and changes nothing. "Yes" to opening takes the file, the swap picture following its size;
// "Yes" to closing runs the panel's own quit, with its clean-up question, and ends the program.
TEST_F(HostWindowTest, UnsavedWorkIsNeverDiscardedWithoutAsking) {
    int endings = 0;
    setProgramEndHandler([&] { ++endings; });
    struct ForgetHandler {
        ~ForgetHandler() { setProgramEndHandler({}); }
    } forget;
    panel::startPanel();
    writeFile(QString::fromStdString(tempDir() + "/AnimUndo.dat"), "x");
    writeFile(at("broken.gif"), "GIF89a not really");
    ASSERT_TRUE(host::imageFromPicture(host::sampleSwapPicture(20, 10)).save(at("still.png")));
    const host::HostSnapshot before = host().snapshot();
    QString warning;
    whenModal([&](QWidget* box) {
        warning = qobject_cast<QMessageBox*>(box)->text();
        qobject_cast<QMessageBox*>(box)->accept();
    });
    EXPECT_FALSE(window->openAnimation(at("broken.gif")));
    EXPECT_TRUE(warning.contains("broken.gif"));
    EXPECT_FALSE(host::contentDiffers(host().snapshot(), before));

    van.Van_SetBbuffer(krl::Plane(64, 48));
    ASSERT_TRUE(window->isModified());
    const host::HostSnapshot unsaved = host().snapshot();
    answerFile("/nowhere/walk.gif");
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    runGuarded([this] { exchange::ImportGifDirect(van); });
    EXPECT_TRUE(calls("Van_GetTempDir").empty()) << "no converter run";
    EXPECT_EQ(host().dialogs().back().kind, "question");
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    panel::FormBase::find("Mainfrm")->findChild<QAction*>("menuQuit")->trigger();
    pressOnNextBox(QMessageBox::No);
    EXPECT_FALSE(window->close());
    pressOnNextBox(QMessageBox::No);
    EXPECT_FALSE(window->openAnimation(at("still.png")));
    EXPECT_FALSE(programEnded());
    EXPECT_NE(panel::FormBase::find("Mainfrm"), nullptr);
    EXPECT_FALSE(host::contentDiffers(host().snapshot(), unsaved));

    pressOnNextBox(QMessageBox::Yes);
    EXPECT_TRUE(window->openAnimation(at("still.png")));
    EXPECT_EQ(host().totalFrames(), 0);
    EXPECT_EQ(host().bufferWidth(), 20);
    EXPECT_EQ(host().swapPicture().width(), 20);
    // A named animation becomes the document: its name in the title, nothing unsaved.
    van.Van_SetGbuffer(krl::Plane(20, 10));
    van.Van_RenameBuffer("/some/where/walk.gif");
    van.Van_NewFilename("/some/where/walk.gif");
    settle();
    EXPECT_FALSE(window->isModified());
    EXPECT_TRUE(window->windowTitle().startsWith("walk.gif"));

    van.Van_SetGbuffer(krl::Plane(20, 10));
    responder.push({host::QueuedAnswer::Kind::Question, 2, {}});
    pressOnNextBox(QMessageBox::Yes);
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(programEnded());
    EXPECT_EQ(endings, 1);
    EXPECT_EQ(host().dialogs().back().text, "\nClear Animation Undo file?");
    EXPECT_EQ(calls("Van_Unlock").size(), 1u); // the panel leaves the host usable
}

// While the converter runs the window takes no new action, but its Cancel button ends the run at
// once: the converter's group is ended, nothing changed, nothing is left behind.
TEST_F(HostWindowTest, TheCancelButtonEndsAHangingConverterAndNothingElseGetsThrough) {
    writeFile(at("fake/convert"), "#!/bin/sh\nexec sleep 600\n");
    QFile::setPermissions(at("fake/convert"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(at("fake")) + ":" + path);
    useBuiltConverter();
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
    answerFile(at("out.gif").toStdString());
    QElapsedTimer clock;
    clock.start();
    runGuarded([this] { exchange::ExportGifGlobal(van, exchange::kGifGlobal, 10, 0); });
    qputenv("PATH", path);
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_EQ(host().lastStatus(), "Cancelled: nothing was changed.");
    EXPECT_FALSE(host::contentDiffers(host().snapshot(), before)) << "the swap click was held back";
    EXPECT_EQ(host().currentFrame(), before.current);
    EXPECT_EQ(host().progress(), 0);
    EXPECT_FALSE(QFileInfo::exists(at("out.gif")));
    EXPECT_TRUE(QDir(QString::fromStdString(tempDir())).entryList(QDir::Files).isEmpty());
}

TEST_F(HostWindowTest, LockKeepsTheUserOutAndStopsPlaybackAndThePointerAndProgressFollowTheRun) {
    host::FrameBar* bar = window->frameBar();
    host().setFrameDelays(std::vector<int>(12, 15));
    bar->play();
    processEventsFor(120);
    EXPECT_GT(host().currentFrame(), 0);
    van.Van_StopAnimation();
    EXPECT_FALSE(bar->playing());
    const int stoppedAt = host().currentFrame();
    processEventsFor(60);
    EXPECT_EQ(host().currentFrame(), stoppedAt);

    // A lock stops playback too, so that no frame moves under a run.
    bar->play();
    van.Van_GotoFrame(2);
    van.Van_Lock();
    EXPECT_FALSE(bar->playing());
    settle();
    EXPECT_FALSE(slider()->isEnabled());
    EXPECT_FALSE(window->canvas()->isEnabled());
    EXPECT_FALSE(window->menuBar()->isEnabled());
    EXPECT_FALSE(window->action("open")->isEnabled());
    EXPECT_FALSE(window->action("nextFrame")->isEnabled());
    // Clicks and keys on the scrubber do nothing; a playback tick or a frame command neither.
    const QPointF end(slider()->width() - 2, slider()->height() / 2.0);
    QMouseEvent press(QEvent::MouseButtonPress, end, slider()->mapToGlobal(end), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(slider(), &press);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
    QApplication::sendEvent(slider(), &key);
    emit bar->frameRequested(8);
    trigger("nextFrame");
    settle();
    EXPECT_EQ(host().currentFrame(), 2);

    // A run writes frames under the lock with no event loop in between: the window still shows
    // them, without waiting for the run to end.
    processEventsFor(130); // the live paint interval passes; from here on no event is processed
    van.Van_GotoFrame(6);
    EXPECT_EQ(slider()->value(), 6);
    EXPECT_EQ(canvasImage(), host::imageFromPicture(host().framePicture(6)));

    // The panel itself keeps going: the host's lock is no obstacle to the run.
    van.Van_GotoFrame(5);
    van.Van_Unlock();
    settle();
    EXPECT_TRUE(slider()->isEnabled());
    EXPECT_TRUE(window->menuBar()->isEnabled());
    EXPECT_EQ(slider()->value(), 5);
    trigger("nextFrame");
    EXPECT_EQ(host().currentFrame(), 6);
    van.Van_Unlock(); // unlocking when nothing is locked is harmless
    settle();
    EXPECT_TRUE(slider()->isEnabled());

    // The wait pointer and the progress bar follow the run too.
    QProgressBar* progress = window->progressBar();
    EXPECT_FALSE(progress->isVisible());
    van.Van_ChangePointer(11);
    van.van_status(40.4);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    EXPECT_EQ(progress->isVisible() ? progress->value() : -1, 40);
    for (int i = 0; i < 2; ++i) { // the second time is harmless
        van.Van_RestorePointer();
        van.van_StatusClose();
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_FALSE(progress->isVisible());
    }
    van.Van_SetProgress(70);
    EXPECT_EQ(progress->isVisible() ? progress->value() : -1, 70);
    van.Van_SetProgress(0);
    EXPECT_FALSE(progress->isVisible());
}

krl::Plane alphaWithBox(int w, int h, QRect box) {
    krl::Plane a(w, h);
    for (int y = box.top(); y <= box.bottom(); ++y)
        for (int x = box.left(); x <= box.right(); ++x)
            a.at(x, y) = 255;
    return a;
}

TEST_F(HostWindowTest, SwapAndAlphaCommandsUndoAndTheAlphaDisplayAndMarqueeFollowTheHost) {
    // The swap and alpha commands, undone through the host.
    const host::Picture main = host().mainPicture();
    const host::Picture swap = host().swapPicture();
    EXPECT_FALSE(window->action("undo")->isEnabled());
    trigger("swapMainAndSwap");
    EXPECT_EQ(host().mainPicture(), swap);
    EXPECT_EQ(host().swapPicture(), main);
    EXPECT_EQ(host().framePicture(host().currentFrame()), swap); // the frame itself changed
    settle();
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_TRUE(window->action("undo")->isEnabled());
    trigger("undo");
    EXPECT_EQ(host().mainPicture(), main);

    trigger("copyFrameToSwap");
    EXPECT_EQ(host().swapPicture(), main);
    settle();
    EXPECT_EQ(window->swapView()->image(), host::imageFromPicture(main));

    trigger("clearAlpha");
    EXPECT_EQ(host().alphaPlane().at(5, 5), 0);
    trigger("undo");
    EXPECT_EQ(host().alphaPlane().at(5, 5), 255);
    trigger("clearAlpha");
    trigger("fillAlpha");
    EXPECT_EQ(host().alphaPlane().at(63, 47), 255);

    // The alpha display and the marquee.
    const QColor opaque = canvasImage().pixelColor(1, 1);
    van.Van_SetAbuffer(alphaWithBox(64, 48, QRect(QPoint(16, 16), QPoint(31, 31))));
    settle();
    EXPECT_EQ(canvasImage().pixelColor(1, 1), opaque) << "alpha is drawn only while the display is on";
    van.Van_AlphaOn();
    settle();
    EXPECT_EQ(canvasImage().pixelColor(1, 1), QColor(204, 204, 204)); // clear: the light checker square
    EXPECT_EQ(canvasImage().pixelColor(1, host::kCheckerSquare + 1), QColor(153, 153, 153));
    EXPECT_EQ(canvasImage().pixelColor(20, 20),
              host::imageFromPicture(host().mainPicture()).pixelColor(20, 20));

    // The outline waits for the marquee to be rebuilt, and is taken from the alpha of that moment.
    EXPECT_FALSE(window->canvas()->hasOutline());
    van.Van_InitMarquee();
    settle();
    EXPECT_TRUE(window->canvas()->hasOutline());

    van.Van_AlphaOff();
    settle();
    EXPECT_EQ(canvasImage().pixelColor(1, 1), opaque);
    EXPECT_FALSE(window->action("showAlpha")->isChecked());
    trigger("showAlpha");
    EXPECT_TRUE(host().alphaShown());
}

TEST_F(HostWindowTest, ColourFrameAndScrubberCommandsReachTheHost) {
    auto* swatches = window->findChild<host::ColourSwatches*>("colourSwatches");
    ASSERT_NE(swatches, nullptr);
    emit swatches->coloursChosen(QColor(10, 20, 30), QColor(200, 100, 50));
    EXPECT_EQ(host().primaryColor(), 10u | (20u << 8) | (30u << 16));
    EXPECT_EQ(host().secondaryColor(), 200u | (100u << 8) | (50u << 16));
    van.Van_SetPrimaryColor(1, 2, 3);
    settle();
    EXPECT_EQ(swatches->primary(), QColor(1, 2, 3));

    // Duplicating the current frame inserts a copy after it and moves there.
    van.Van_GotoFrame(4);
    const host::Picture four = host().framePicture(4);
    trigger("duplicateFrame");
    EXPECT_EQ(host().totalFrames(), 13);
    EXPECT_EQ(host().currentFrame(), 5);
    EXPECT_EQ(host().framePicture(5), four);
    // Deleting asks, and "No" deletes nothing.
    pressOnNextBox(QMessageBox::No);
    trigger("deleteFrame");
    EXPECT_EQ(host().totalFrames(), 13);
    pressOnNextBox(QMessageBox::Yes);
    trigger("deleteFrame");
    EXPECT_EQ(host().totalFrames(), 12);
    settle();
    EXPECT_EQ(slider()->maximum(), 11);

    // The scrubber follows the host's frame and Van_ShowScrub, and a new frame count reaches its
    // range; the user's scrubbing moves the host's frame.
    van.Van_GotoFrame(7);
    settle();
    EXPECT_TRUE(window->frameBar()->findChild<QLabel*>("frameLabel")->text().contains("Frame 7"));
    van.Van_ShowScrub(3, 12);
    settle();
    EXPECT_EQ(slider()->value(), 3);
    van.Van_InsertFrame(9);
    van.Van_ShowScrub(0, van.Van_GetTotalFrames());
    settle();
    EXPECT_EQ(slider()->maximum(), 12);
    slider()->setValue(4);
    EXPECT_EQ(host().currentFrame(), 4);
}

TEST_F(HostWindowTest, PngSequenceRoundTripsCarriesAlphaAndClearsTheModifiedMark) {
    van.Van_SetRbuffer(krl::Plane(64, 48));
    settle();
    EXPECT_TRUE(window->isModified());
    QDir().mkpath(at("walk"));
    ASSERT_TRUE(window->saveFramesAsPng(at("walk/walk.png"), false));
    EXPECT_FALSE(window->isModified());
    EXPECT_TRUE(QFile::exists(at("walk/walk_0000.png")));
    EXPECT_TRUE(QFile::exists(at("walk/walk_0011.png")));

    std::vector<QImage> before;
    for (int f = 0; f < host().totalFrames(); ++f)
        before.push_back(host::imageFromPicture(host().framePicture(f)));
    host().loadAnimation(host::sampleAnimation(3, 10, 10));
    window->adoptCurrentAsDocument("Other");
    ASSERT_TRUE(window->openAnimation(at("walk")));
    ASSERT_EQ(host().totalFrames(), 12);
    // The hidden last column and row are not part of a PNG; they repeat the edge when read back.
    for (int f = 0; f < 12; ++f)
        EXPECT_EQ(host::imageFromPicture(host().framePicture(f)), before[f]) << f;
    EXPECT_FALSE(window->isModified());
    EXPECT_TRUE(window->windowTitle().startsWith("walk"));

    // Names grow with long animations; the alpha goes with the frames.
    const QStringList names = host::pngSequenceNames("/x/run.png", 12000);
    EXPECT_EQ(names.front(), "/x/run_00000.png");
    EXPECT_EQ(names.back(), "/x/run_11999.png");
    EXPECT_EQ(host::pngSequenceNames("/x/run", 2).front(), "/x/run_0000.png");
    const host::Picture p = host::Picture::filled(4, 4, 0x00FF00);
    krl::Plane alpha(4, 4);
    alpha.at(1, 1) = 200;
    host::writePngSequence(at("a.png"), {p}, &alpha);
    EXPECT_EQ(qAlpha(QImage(at("a_0000.png")).pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(QImage(at("a_0000.png")).pixel(1, 1)), 200);
    EXPECT_THROW(host::writePngSequence("/nonexistent-dir/a.png", {p}, nullptr), std::runtime_error);
}

// The real dialogs behind the host's boxes: the panel's file filters in Qt's form, and the answers
// that the panel tests for (2 for no, a negative value for backing out, an empty text for cancel).
TEST_F(HostWindowTest, QtFiltersAndBoxesAnswerAsThePanelExpects) {
    EXPECT_EQ(host::qtFileFilter("gif(*.gif)|*.gif"), "gif (*.gif)");
    EXPECT_EQ(host::qtFileFilter("Pictures|*.png;*.bmp|Any|*.*"), "Pictures (*.png *.bmp);;Any (*.*)");
    EXPECT_EQ(host::qtFileFilter("cfx(*.cfx)"), "cfx (*.cfx)");
    EXPECT_EQ(host::qtFileFilter("*.png"), "*.png (*.png)");
    EXPECT_EQ(host::qtFileFilter(""), "All files (*)");
    EXPECT_EQ(host::filterSuffix("gif(*.gif)|*.gif"), "gif");
    EXPECT_EQ(host::filterSuffix("Any|*.*"), "");
    EXPECT_EQ(host::filterSuffix(""), "");

    host::QtResponder dialogs{[this] { return static_cast<QWidget*>(window.get()); }};
    pressOnNextBox(QMessageBox::No);
    EXPECT_EQ(dialogs.question("\nClear Animation Undo file?", "Kirrel"), 2);
    whenModal([](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        EXPECT_EQ(box->text(), "Clear Animation Undo file?"); // the panel's layout line feeds go
        box->button(QMessageBox::Yes)->click();
    });
    EXPECT_EQ(dialogs.question("\nClear Animation Undo file?", "Kirrel"), 6);

    whenModal([](QWidget* w) { qobject_cast<QInputDialog*>(w)->reject(); });
    EXPECT_EQ(dialogs.value("Number of stripes", 2, 50), -1);
    whenModal([](QWidget* w) {
        auto* d = qobject_cast<QInputDialog*>(w);
        // The box opens on the minimum it is given (the stripe sizes pass their current value
        // there) and lets the user go down to 0.
        EXPECT_EQ(d->intValue(), 2);
        EXPECT_EQ(d->intMinimum(), 0);
        EXPECT_EQ(d->intMaximum(), 50);
        d->setIntValue(99); // held to the range
        d->accept();
    });
    EXPECT_EQ(dialogs.value("Number of stripes", 2, 50), 50);

    whenModal([](QWidget* w) {
        auto* d = qobject_cast<QInputDialog*>(w);
        EXPECT_EQ(d->textValue(), " 30");
        EXPECT_EQ(d->windowTitle(), "Frame count");
        d->setTextValue("12");
        d->accept();
    });
    EXPECT_EQ(dialogs.input(" Create new animation", "Frame count", " 30"), std::optional<std::string>("12"));
    whenModal([](QWidget* w) { qobject_cast<QInputDialog*>(w)->reject(); });
    EXPECT_EQ(dialogs.input(" Create new animation", "Frame count", " 30"), std::nullopt);
}

// Tools > Record Session: a session in the window becomes a script that kirrel --script plays to the
// same animation, swap and alpha, byte for byte.
class SessionRecording : public HostWindowTest {
  protected:
    // Opens the wipes as the user does: their category, then a double click; the wipe is into the
    // primary colour.
    void openWipes() {
        panel::startPanel();
        window->recorder().start({}, true, host().alphaPlane());
        auto* main = panel::FormBase::find("Mainfrm");
        auto* cats = qobject_cast<QListWidget*>(main->control("List1"));
        auto* plugins = qobject_cast<QListWidget*>(main->control("List2"));
        cats->setCurrentItem(cats->findItems("Transitions", Qt::MatchExactly).front());
        QListWidgetItem* item = plugins->findItems("Wipes", Qt::MatchExactly).front();
        plugins->setCurrentItem(item);
        emit plugins->itemDoubleClicked(item);
        wipes<QComboBox>("cboWipeOptions")->setCurrentText("Primary Color");
    }
    template <class T> static T* wipes(const QString& name) {
        return qobject_cast<T*>(panel::FormBase::find("frmWipes")->control(name));
    }
    // Plays the script with a dump added at its end.
    ToolOutput replay(const QString& script) {
        QJsonObject root = readJsonObject(script);
        QJsonArray steps = root["steps"].toArray();
        steps.append(QJsonObject{{"dump", "replayed"}});
        root["steps"] = steps;
        writeFile(at("replay.json"), QJsonDocument(root).toJson().toStdString());
        return runTool(KIRREL_EXE, {"--script", at("replay.json")}, scratch.path());
    }
};

TEST_F(SessionRecording, ARecordedSessionReplaysToTheSameBytes) {
    if (!missingTool({"convert"}).isEmpty()) GTEST_SKIP() << "ImageMagick is not installed";
    const QString gif = makeSampleGifs(at("gifs")).filter("dispose-mix").front();
    useBuiltConverter();
    openWipes();
    wipes<QComboBox>("cboFrameStart")->setCurrentIndex(2);
    wipes<QPushButton>("cmd_Run")->click();
    wipes<QPushButton>("cmdCancel")->click();
    trigger("swapMainAndSwap");
    trigger("nextFrame");
    trigger("nextFrame");
    // A box the user answers: the import asks for its file.
    answerFile(gif.toStdString());
    responder.push({host::QueuedAnswer::Kind::Question, 1, {}}); // yes, the wiped frames may go
    panel::FormBase::find("Mainfrm")->findChild<QAction*>("menuImportAnimGif")->trigger();
    trigger("clearAlpha");
    settle();

    ASSERT_FALSE(window->recorder().stopAndSave(at("walk-session.json")).has_value());
    const std::string text = readFile(at("walk-session.json"));
    for (const char* step : {R"({"open":"Wipes"})", R"("click":"cmd_Run")", R"({"window":"swapMainAndSwap"})",
                             R"("Van_GotoFrame")", R"({"answer":[{"file":"gifs/)",
                             R"({"menu":"menuImportAnimGif"})", R"({"window":"clearAlpha"})"})
        EXPECT_NE(text.find(step), std::string::npos) << step << "\n" << text;
    EXPECT_EQ(text.find("cboFrameEnd"), std::string::npos) << "untouched lists are not steps";

    dumpHost(host(), at("recorded"));
    qunsetenv("KIRREL_BATCH_RUNNER");
    const ToolOutput r = replay(at("walk-session.json"));
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    for (const char* file : {"animation.dat", "swap.dat", "alpha.dat"})
        EXPECT_TRUE(readFile(at(QString("recorded/") + file)) == readFile(at(QString("replayed/") + file)))
            << file;
}

// Started where there is no display, kirrel says so and leaves a demo reel behind instead of failing:
// the frames always, the GIF when the converter is there, and a word on why when it is not. Runs
// kirrel as such a user would, in a fresh home; `path` replaces PATH when given.
QString renderReel(const QTemporaryDir& home, const QString& path = {}) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* v : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(v);
    env.insert("HOME", home.path());
    env.insert("XDG_CONFIG_HOME", home.filePath("config"));
    env.insert("XDG_DATA_HOME", home.filePath("data"));
    if (!path.isNull()) env.insert("PATH", path);
    QProcess p;
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(home.path());
    p.start(KIRREL_EXE, {});
    EXPECT_TRUE(p.waitForFinished(120000));
    const QString out = QString::fromUtf8(p.readAllStandardOutput());
    const QDir folder(home.filePath("kirrel-demo"));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    EXPECT_TRUE(out.startsWith("kirrel: no display found") && out.contains(folder.path()))
        << out.toStdString();
    EXPECT_TRUE(folder.exists("panel.png"));
    EXPECT_GT(QImage(folder.filePath("window.png")).width(), 500);
    EXPECT_EQ(QDir(folder.filePath("frames")).entryList({"*.png"}, QDir::Files).size(), 30);
    EXPECT_EQ(QImage(folder.filePath("frames/0000.png")).size(), QSize(320, 240));
    return out;
}

TEST(HostWindowDemoReel, WithoutADisplayKirrelRendersTheFramesAndAGifWhenItCan) {
    QTemporaryDir home, withoutConverter, emptyPath;
    EXPECT_TRUE(renderReel(withoutConverter, emptyPath.path())
                    .contains("the GIF was skipped because ImageMagick's convert was not found"));
    EXPECT_FALSE(QFileInfo::exists(withoutConverter.filePath("kirrel-demo/demo.gif")));
    if (!missingTool({"convert"}).isEmpty()) GTEST_SKIP() << "ImageMagick is not installed";
    EXPECT_TRUE(renderReel(home).contains("demo.gif "));
    EXPECT_FALSE(QImage(home.filePath("kirrel-demo/gif-export.png")).isNull());
    // Every frame of the animation, at its size, a tenth of a second each.
    EXPECT_EQ(
        QString(runTool("identify", {"-format", "%wx%h %T,", home.filePath("kirrel-demo/demo.gif")}).out),
        QString("320x240 10,").repeated(30));
}

} // namespace
} // namespace kirrel::test
