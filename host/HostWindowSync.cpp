// How the window follows the host: run state at once, pictures coalesced or live during a run, the
// scrubber, the enabled state of commands, and the panel's forms as tool windows.

#include "host/BufferThumbnail.h"
#include "host/CanvasImage.h"
#include "host/CanvasView.h"
#include "host/ColourSwatches.h"
#include "host/FrameBar.h"
#include "host/HostState.h"
#include "host/HostWindow.h"
#include "host/PanelDock.h"
#include "host/SelectionOutline.h"
#include "host/SessionRecorder.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QScreen>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace kirrel::host {

namespace {
// While a run holds the lock there is no event loop, so the window paints itself at this interval.
constexpr qint64 kLivePaintMs = 120;
constexpr int kWaitPointer = 11;

bool samePicture(const krl::Plane& a, const krl::Plane& b) {
    return a.sharesBufferWith(b) || (a.empty() && b.empty());
}

QColor colourOf(std::uint32_t packed) {
    return QColor(static_cast<int>(packed & 255), static_cast<int>((packed >> 8) & 255),
                  static_cast<int>((packed >> 16) & 255));
}
} // namespace

void HostWindow::hostChanged() {
    applyRunState();
    if (!syncTimer_->isActive()) syncTimer_->start();
    if (!host_.locked()) return;
    // A run in progress: show its frames as they are written, a few times a second.
    if (livePaint_.isValid() && livePaint_.elapsed() < kLivePaintMs) return;
    livePaint_.start();
    refreshFromHost();
    canvas_->repaint();
    frameBar_->repaint();
    statusBar()->repaint();
}

void HostWindow::applyRunState() {
    const bool locked = host_.locked();
    if (locked != shownLocked_) {
        shownLocked_ = locked;
        for (QWidget* w : lockable_)
            w->setEnabled(!locked);
        menuBar()->setEnabled(!locked);
        lockLabel_->setVisible(locked);
        releaseLock_->setVisible(locked);
        if (locked)
            frameBar_->stop();
        else
            livePaint_.invalidate();
        updateActions();
    }
    const bool wait = host_.pointer() == kWaitPointer;
    if (wait != waitCursor_) {
        waitCursor_ = wait;
        if (wait)
            QApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QApplication::restoreOverrideCursor();
    }
    // The run's per-frame status while it is open, else the host's own progress bar.
    const bool status = host_.statusOpen();
    const double value = status ? host_.statusValue() : host_.progress();
    const bool shown = status || value > 0;
    progress_->setVisible(shown);
    runLabel_->setVisible(shown);
    cancelRun_->setVisible(shown);
    if (shown) {
        progress_->setValue(std::clamp(static_cast<int>(std::lround(value)), 0, 100));
        runLabel_->setText(status ? "Running effect:" : "Working:");
    }
}

void HostWindow::refreshFromHost() {
    syncTimer_->stop();
    if (host_.filename() != shownFilename_ && !host_.filename().empty() && !host_.locked()) {
        shownFilename_ = host_.filename();
        const QString path = QString::fromStdString(shownFilename_);
        setWelcomeVisible(false);
        adoptCurrentAsDocument(QFileInfo(path).fileName(), path);
        return;
    }
    applyRunState();
    syncPictures();
    syncScrubber();
    swatches_->setColours(colourOf(host_.primaryColor()), colourOf(host_.secondaryColor()));
    const QColor p = swatches_->primary(), s = swatches_->secondary();
    colourText_->setText(QString("Primary %1\nSecondary %2").arg(p.name().toUpper(), s.name().toUpper()));
    {
        const QSignalBlocker b1(action("showAlpha")), b2(showAlphaBox_);
        action("showAlpha")->setChecked(host_.alphaShown());
        showAlphaBox_->setChecked(host_.alphaShown());
    }
    sizeLabel_->setText(QString("%1 × %2").arg(host_.bufferWidth()).arg(host_.bufferHeight()));
    updateActions();
    updateTitle();
}

void HostWindow::syncPictures() {
    const Picture& main = host_.mainPicture();
    const krl::Plane& alpha = host_.alphaPlane();
    const bool alphaOn = host_.alphaShown();
    const bool mainSame =
        samePicture(main.r, shownR_) && samePicture(main.g, shownG_) && samePicture(main.b, shownB_);
    if (!mainSame || alphaOn != shownAlphaOn_ || (alphaOn && !samePicture(alpha, shownA_))) {
        canvas_->setImage(canvasImage(main, alphaOn ? &alpha : nullptr));
        shownR_ = main.r;
        shownG_ = main.g;
        shownB_ = main.b;
        shownA_ = alpha;
        shownAlphaOn_ = alphaOn;
    }
    // The outline is rebuilt when the host is told to rebuild its marquee, and goes with a new size.
    if (host_.marqueeBuilds() != shownMarquee_) {
        shownMarquee_ = host_.marqueeBuilds();
        canvas_->setOutline(selectionOutline(alpha));
    } else if (canvas_->hasOutline() &&
               (alpha.width() != canvas_->image().width() || alpha.height() != canvas_->image().height())) {
        canvas_->setOutline({});
    }
    if (!samePicture(alpha, thumbA_)) {
        alphaView_->setImage(imageFromPlane(alpha));
        thumbA_ = alpha;
    }
    const Picture& swap = host_.swapPicture();
    if (!samePicture(swap.r, swapR_) || !samePicture(swap.g, swapG_) || !samePicture(swap.b, swapB_)) {
        swapView_->setImage(imageFromPicture(swap));
        swapR_ = swap.r;
        swapG_ = swap.g;
        swapB_ = swap.b;
    }
}

void HostWindow::syncScrubber() {
    // The scrubber follows the current frame, and shows what Van_ShowScrub last said until the frame
    // moves again.
    const int total = host_.totalFrames();
    const int current = host_.currentFrame();
    const bool scrubCalled =
        host_.scrubPosition() != shownScrubPos_ || host_.scrubTotal() != shownScrubTotal_;
    int position = frameBar_->position();
    if (current != shownFrame_ || total != shownTotal_)
        position = current;
    else if (scrubCalled)
        position = host_.scrubPosition();
    shownFrame_ = current;
    shownTotal_ = total;
    shownScrubPos_ = host_.scrubPosition();
    shownScrubTotal_ = host_.scrubTotal();
    frameBar_->showFrames(position, total);
}

void HostWindow::updateActions() {
    const bool free = !host_.locked();
    const bool animated = host_.totalFrames() > 0;
    for (QAction* a : actions_)
        a->setEnabled(free);
    const History& history = host_.history();
    action("undo")->setEnabled(free && history.canUndo());
    action("undo")->setText(history.canUndo() ? "&Undo " + QString::fromStdString(history.undoLabel())
                                              : "&Undo");
    action("redo")->setEnabled(free && history.canRedo());
    action("redo")->setText(history.canRedo() ? "&Redo " + QString::fromStdString(history.redoLabel())
                                              : "&Redo");
    for (const char* n : {"playStop", "firstFrame", "previousFrame", "nextFrame", "lastFrame",
                          "duplicateFrame", "deleteFrame"})
        action(n)->setEnabled(free && animated);
    action("playStop")->setEnabled(free && host_.totalFrames() > 1);
    action("recordSession")->setEnabled(free && !recorder_->recording());
    action("stopRecording")->setEnabled(free && recorder_->recording());
    // The panel stays reachable during a run: its forms are separate windows.
    action("showPanel")->setEnabled(true);
}

void HostWindow::updateTitle() {
    // The panel names the buffer after a whole path; the title shows the file's name.
    QString name = QFileInfo(QString::fromStdString(host_.bufferName())).fileName();
    if (name.isEmpty()) name = documentTitle_;
    setWindowTitle(name + "[*] — Kirrel");
    setWindowModified(isModified());
}

bool HostWindow::isModified() const {
    if (static_cast<int>(savedFrames_.size()) != host_.totalFrames()) return true;
    if (savedDelays_ != host_.frameDelays()) return true;
    auto same = [](const Picture& a, const Picture& b) {
        return samePicture(a.r, b.r) && samePicture(a.g, b.g) && samePicture(a.b, b.b);
    };
    if (savedFrames_.empty()) return !same(savedStill_, host_.mainPicture());
    for (int f = 0; f < host_.totalFrames(); ++f)
        if (!same(savedFrames_[static_cast<std::size_t>(f)], host_.framePicture(f))) return true;
    return false;
}

void HostWindow::adoptCurrentAsDocument(const QString& title, const QString& path) {
    savedFrames_.clear();
    for (int f = 0; f < host_.totalFrames(); ++f)
        savedFrames_.push_back(host_.framePicture(f));
    savedStill_ = host_.mainPicture();
    savedDelays_ = host_.frameDelays();
    savedAlpha_ = host_.alphaPlane();
    documentTitle_ = title;
    documentPath_ = path;
    refreshFromHost();
}

void HostWindow::showHover(QPoint pixel) {
    if (pixel.x() < 0) {
        statusBar()->clearMessage();
        return;
    }
    const Picture& p = host_.mainPicture();
    const krl::Plane& a = host_.alphaPlane();
    if (pixel.x() > p.width() || pixel.y() > p.height()) return;
    QString text = QString("x %1  y %2    R %3  G %4  B %5")
                       .arg(pixel.x())
                       .arg(pixel.y())
                       .arg(p.r.at(pixel.x(), pixel.y()))
                       .arg(p.g.at(pixel.x(), pixel.y()))
                       .arg(p.b.at(pixel.x(), pixel.y()));
    if (pixel.x() <= a.width() && pixel.y() <= a.height())
        text += QString("  A %1").arg(a.at(pixel.x(), pixel.y()));
    statusBar()->showMessage(text);
}

// --- the panel's forms ------------------------------------------------------------------------------

void HostWindow::adoptForm(QWidget* form) {
    panelDock_->adopt(form);
}

} // namespace kirrel::host
