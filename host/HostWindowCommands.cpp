// The window's commands: files, frames, the swap picture, the alpha plane, colours, undo and help.
// Every file command reads or writes completely before it touches the host, so a bad file costs a
// message box and nothing else.

#include "host/CanvasView.h"
#include "host/ExportAnimationDialog.h"
#include "host/FileDialogs.h"
#include "host/FrameBar.h"
#include "host/HostExport.h"
#include "host/HostState.h"
#include "host/HostWindow.h"
#include "host/NewAnimationDialog.h"
#include "host/PanelDock.h"
#include "host/PngSequence.h"
#include "host/SessionRecorder.h"
#include "host/WindowCommands.h"
#include "panel/EventGuard.h"
#include "panel/FormBase.h"
#include "panel/Mainfrm.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QInputDialog>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressDialog>
#include <QSettings>
#include <QStatusBar>
#include <QUrl>

#include <algorithm>
#include <exception>

namespace kirrel::host {

namespace {
constexpr int kMessageMs = 6000;
constexpr double kMaxNewAnimationBytes = 8.0 * 1024 * 1024 * 1024;

// Every pattern once, whatever the image plug-ins list twice (jpg and jpeg, tif and tiff are fine;
// the same name in two cases is not).
QString pictureGlobs() {
    QStringList globs;
    for (const QByteArray& f : QImageReader::supportedImageFormats())
        globs << "*." + QString::fromLatin1(f).toLower();
    globs.removeDuplicates();
    return globs.join(' ');
}

QString openFilter() {
    const QString animations = "*.gif *.png *.apng *.webp *.mp4 *.m4v *.mov *.webm *.mkv *.avi *.dat";
    QStringList all = (animations + " " + pictureGlobs()).split(' ');
    all.removeDuplicates();
    return QString("Animations and pictures (%1);;Animated GIF (*.gif);;Animated PNG (*.png *.apng);;"
                   "Animated WebP (*.webp);;Video (*.mp4 *.m4v *.mov *.webm *.mkv *.avi);;"
                   "Kirrel data (*.dat);;Pictures (%2);;All files (*)")
        .arg(all.join(' '), pictureGlobs());
}

QString pictureFilter() {
    return QString("Pictures (%1 *.dat);;All files (*)").arg(pictureGlobs());
}

// A long read or write shows how far it has got, after a moment, with a Cancel button.
class ProgressBox {
  public:
    ProgressBox(QWidget* parent, const QString& text) : box_(text, "Cancel", 0, 100, parent) {
        box_.setWindowModality(Qt::WindowModal);
        box_.setMinimumDuration(400);
    }
    ToolProgress tool() {
        ToolProgress p;
        p.report = [this](double percent) { box_.setValue(static_cast<int>(percent)); };
        p.cancelled = [this] {
            QCoreApplication::processEvents();
            return box_.wasCanceled();
        };
        return p;
    }
    void close() { box_.reset(); }

  private:
    QProgressDialog box_;
};

// Keeps the wait pointer up while a file is read or written.
struct WaitPointer {
    WaitPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitPointer() { QApplication::restoreOverrideCursor(); }
};

bool anyTransparent(const krl::Plane& alpha) {
    for (int y = 0; y < alpha.height(); ++y) {
        const std::uint8_t* row = alpha.row(y);
        for (int x = 0; x < alpha.width(); ++x)
            if (row[x] != 255) return true;
    }
    return false;
}
} // namespace

void HostWindow::warn(const QString& title, const QString& text) {
    QMessageBox::warning(this, title, text);
}

QString HostWindow::lastFolder() const {
    const QString f = QSettings().value("window/lastFolder").toString();
    return !f.isEmpty() && QFileInfo(f).isDir() ? f : QDir::homePath();
}

void HostWindow::rememberFolder(const QString& file) {
    const QFileInfo info(file);
    QSettings().setValue("window/lastFolder", info.isDir() ? info.absoluteFilePath() : info.absolutePath());
}

QString HostWindow::pickFile(const QString& title, const QString& filter) {
    QString file = chooseFileToOpen(this, title, lastFolder(), filter);
    if (!file.isEmpty()) rememberFolder(file);
    return file;
}

// --- files ---------------------------------------------------------------------------------------

bool HostWindow::confirmDiscard() {
    if (!isModified()) return true;
    return QMessageBox::question(this, "Kirrel",
                                 "The animation has changes that have not been saved.\nDiscard them?",
                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

bool HostWindow::openAnimation(const QString& path) {
    if (host_.locked() || !confirmDiscard()) return false;
    const QString name = QFileInfo(path).fileName();
    nameAction("Open " + name.toStdString());
    Animation a;
    ProgressBox progress(this, QString("Opening %1…").arg(name));
    try {
        WaitPointer wait;
        a = readAnimationFile(path, ReadOptions{host_.secondaryColor(), progress.tool()});
    } catch (const Cancelled&) {
        statusBar()->showMessage("Opening cancelled: the animation is as it was", kMessageMs);
        return false;
    } catch (const std::exception& e) {
        progress.close();
        warn("Open",
             QString("Kirrel could not open “%1”.\n\n%2").arg(QDir::toNativeSeparators(path), e.what()));
        if (!QFileInfo::exists(path)) {
            recent_.remove(path);
            rebuildRecentMenu();
        }
        return false;
    }
    frameBar_->stop();
    if (a.frames.empty())
        host_.loadStill(std::move(a.still));
    else
        host_.loadAnimation(std::move(a.frames), 0, a.delays);
    // The file's transparency becomes the alpha channel, so alpha-aware effects and transparent
    // exports work on it; the pictures themselves show the paper colour there.
    if (a.alpha.empty())
        host_.fillAlpha(255);
    else
        host_.setAlpha(a.alpha);
    host_.renameBuffer(name.toStdString());
    host_.newFilename(QDir::toNativeSeparators(path).toStdString());
    canvas_->setOutline({});
    recent_.add(path);
    rebuildRecentMenu();
    rememberFolder(path);
    adoptCurrentAsDocument(name, path);
    const QString what = QString("%1: %2, %3 × %4")
                             .arg(name)
                             .arg(host_.totalFrames() ? QString("%1 frames").arg(host_.totalFrames())
                                                      : QString("a still picture"))
                             .arg(host_.bufferWidth())
                             .arg(host_.bufferHeight());
    statusBar()->showMessage(a.note.empty() ? "Opened " + what : QString::fromStdString(a.note), kMessageMs);
    return true;
}

void HostWindow::openFileDialog() {
    const QString file = chooseFileToOpen(this, "Open Animation or Picture", lastFolder(), openFilter());
    if (!file.isEmpty()) openAnimation(file);
}

void HostWindow::openFolderDialog() {
    const QString dir = chooseFolder(this, "Open Frame Folder (PNG frames, in name order)", lastFolder());
    if (!dir.isEmpty()) openAnimation(dir);
}

void HostWindow::rebuildRecentMenu() {
    recentMenu_->clear();
    const QStringList files = recent_.list();
    int n = 0;
    for (const QString& f : files) {
        ++n;
        QAction* a = recentMenu_->addAction(QString("&%1  %2").arg(n).arg(QFileInfo(f).fileName()));
        a->setToolTip(QDir::toNativeSeparators(f));
        a->setStatusTip(QDir::toNativeSeparators(f));
        connect(a, &QAction::triggered, this, [this, f] { runGuarded([&] { openAnimation(f); }); });
    }
    if (files.isEmpty()) recentMenu_->addAction("No recent files")->setEnabled(false);
    recentMenu_->addSeparator();
    QAction* clear = recentMenu_->addAction("Clear Recent Files");
    clear->setEnabled(!files.isEmpty());
    connect(clear, &QAction::triggered, this, [this] {
        recent_.clear();
        rebuildRecentMenu();
    });
}

void HostWindow::newAnimation() {
    const QColor primary(static_cast<int>(host_.primaryColor() & 255),
                         static_cast<int>((host_.primaryColor() >> 8) & 255),
                         static_cast<int>((host_.primaryColor() >> 16) & 255));
    const QColor secondary(static_cast<int>(host_.secondaryColor() & 255),
                           static_cast<int>((host_.secondaryColor() >> 8) & 255),
                           static_cast<int>((host_.secondaryColor() >> 16) & 255));
    NewAnimation start{std::max(host_.totalFrames(), 30), host_.bufferWidth(), host_.bufferHeight(),
                       Qt::white};
    NewAnimationDialog dialog(this, start, primary, secondary);
    if (dialog.exec() != QDialog::Accepted) return;
    const NewAnimation n = dialog.result();
    const double bytes = 3.0 * (n.width + 1) * (n.height + 1) * n.frames;
    if (bytes > kMaxNewAnimationBytes) {
        warn("New Animation",
             QString("%1 frames of %2 × %3 would need %4 GB of memory. Choose fewer frames or a "
                     "smaller size.")
                 .arg(n.frames)
                 .arg(n.width)
                 .arg(n.height)
                 .arg(bytes / (1024.0 * 1024 * 1024), 0, 'f', 1));
        return;
    }
    if (!confirmDiscard()) return;
    frameBar_->stop();
    host_.loadStill(
        Picture::filled(n.width, n.height, packColor(n.fill.red(), n.fill.green(), n.fill.blue())));
    host_.createAnim(n.frames);
    host_.fillAlpha(255);
    host_.renameBuffer("Untitled");
    host_.newFilename("");
    canvas_->setOutline({});
    adoptCurrentAsDocument("Untitled");
    statusBar()->showMessage(
        QString("New animation: %1 frames, %2 × %3").arg(n.frames).arg(n.width).arg(n.height), kMessageMs);
}

void HostWindow::saveFramesDialog() {
    const QString base = QFileInfo(documentTitle_).completeBaseName();
    const QString start = QDir(lastFolder()).filePath((base.isEmpty() ? QString("frames") : base) + ".png");
    QString file = chooseFileToSave(this, "Save Frames as PNG", start, "PNG frames (*.png)",
                                    QFileDialog::DontConfirmOverwrite);
    if (file.isEmpty()) return;
    if (QFileInfo(file).suffix().isEmpty()) file += ".png";
    rememberFolder(file);

    bool withAlpha = false;
    if (anyTransparent(host_.alphaPlane())) {
        const auto answer = QMessageBox::question(
            this, "Save Frames as PNG",
            "The alpha channel has transparent parts.\nSave the frames with that transparency?",
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
        if (answer == QMessageBox::Cancel) return;
        withAlpha = answer == QMessageBox::Yes;
    }
    const QStringList names = pngSequenceNames(file, std::max(1, host_.totalFrames()));
    const auto existing =
        std::count_if(names.begin(), names.end(), [](const QString& n) { return QFileInfo::exists(n); });
    if (existing > 0 && QMessageBox::question(
                            this, "Save Frames as PNG",
                            QString("%1 of the files %2 … %3 already exist.\nReplace them?")
                                .arg(existing)
                                .arg(QFileInfo(names.front()).fileName(), QFileInfo(names.back()).fileName()),
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
        return;
    saveFramesAsPng(file, withAlpha);
}

void HostWindow::exportAnimationDialog() {
    const QString base = QFileInfo(documentTitle_).completeBaseName();
    const QSettings settings;
    const QString extension = settings.value("window/exportExtension", "gif").toString();
    QString start =
        QDir(lastFolder()).filePath((base.isEmpty() ? QString("animation") : base) + "." + extension);
    // Never the file the animation came from: an export beside it keeps the original.
    if (QFileInfo(start) == QFileInfo(documentPath_))
        start = QDir(lastFolder()).filePath(base + "-edited." + extension);
    ExportAnimationDialog dialog(this, start, anyTransparent(host_.alphaPlane()));
    if (dialog.exec() != QDialog::Accepted) return;
    const QString path = dialog.path();
    if (!exportFormatFor(path)) {
        warn("Export Animation", "Choose a file name that ends in .gif, .png, .webp, .mp4 or .webm: the "
                                 "ending says which format to write.");
        return;
    }
    if (QFileInfo::exists(path) &&
        QMessageBox::question(this, "Export Animation",
                              QString("“%1” already exists.\nReplace it?").arg(QFileInfo(path).fileName()),
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
        return;
    rememberFolder(path);
    QSettings().setValue("window/exportExtension", QFileInfo(path).suffix().toLower());
    ProgressBox progress(this, QString("Exporting %1…").arg(QFileInfo(path).fileName()));
    try {
        WaitPointer wait;
        exportHostAnimation(host_, path, dialog.options(), progress.tool());
    } catch (const Cancelled&) {
        statusBar()->showMessage("Export cancelled: nothing was written", kMessageMs);
        return;
    } catch (const std::exception& e) {
        progress.close();
        warn("Export Animation", QString("Kirrel could not export the animation to “%1”.\n\n%2")
                                     .arg(QDir::toNativeSeparators(path), e.what()));
        return;
    }
    statusBar()->showMessage(QString("Exported %1 frame(s) to %2")
                                 .arg(std::max(1, host_.totalFrames()))
                                 .arg(QFileInfo(path).fileName()),
                             kMessageMs);
}

bool HostWindow::saveFramesAsPng(const QString& chosenFile, bool withAlpha) {
    std::vector<Picture> frames;
    frames.reserve(static_cast<std::size_t>(host_.totalFrames()));
    for (int f = 0; f < host_.totalFrames(); ++f)
        frames.push_back(host_.framePicture(f));
    if (frames.empty()) frames.push_back(host_.mainPicture());
    try {
        WaitPointer wait;
        writePngSequence(chosenFile, frames, withAlpha ? &host_.alphaPlane() : nullptr);
    } catch (const std::exception& e) {
        warn("Save Frames as PNG", QString("Kirrel could not save the frames.\n\n%1").arg(e.what()));
        return false;
    }
    const QStringList names = pngSequenceNames(chosenFile, static_cast<int>(frames.size()));
    adoptCurrentAsDocument(documentTitle_, documentPath_);
    statusBar()->showMessage(
        QString("Saved %1 frame(s) as %2 … %3")
            .arg(frames.size())
            .arg(QFileInfo(names.front()).fileName(), QFileInfo(names.back()).fileName()),
        kMessageMs);
    return true;
}

// --- pictures ----------------------------------------------------------------------------------

void HostWindow::undo() {
    moveInHistory(true);
}

void HostWindow::redo() {
    moveInHistory(false);
}

void HostWindow::command(const QString& name, const QJsonObject& args) {
    runWindowCommand(host_, name, args);
    recorder_->windowStep(name, args);
}

void HostWindow::moveInHistory(bool back) {
    const History& history = host_.history();
    const std::string label = back ? history.undoLabel() : history.redoLabel();
    if (host_.locked() || !(back ? history.canUndo() : history.canRedo())) {
        statusBar()->showMessage(back ? "Nothing to undo" : "Nothing to redo", kMessageMs);
        return;
    }
    command(back ? "undo" : "redo");
    statusBar()->showMessage(QString(back ? "Undone: %1" : "Redone: %1").arg(QString::fromStdString(label)),
                             kMessageMs);
}

// After every change the status bar says what changed, and the canvas shows the first frame that
// did (the dialog has put the current frame back by now, as it always does).
void HostWindow::stepAdded(const StepSummary& step) {
    statusBar()->showMessage(QString::fromStdString(describe(step)), kMessageMs);
    if (step.frames && step.frames->first != host_.currentFrame() && host_.totalFrames() > 0) {
        host_.gotoFrame(step.frames->first);
        // The frame shown is where the next command acts: a recording goes there too.
        recorder_->hostStep("Van_GotoFrame", {host_.currentFrame()}, "goto");
    }
}

void HostWindow::swapMainAndSwap() {
    command("swapMainAndSwap");
}

void HostWindow::copyFrameToSwap() {
    command("copyFrameToSwap");
    statusBar()->showMessage(QString("Frame %1 copied to the swap picture").arg(host_.currentFrame()),
                             kMessageMs);
}

void HostWindow::loadImageIntoSwap() {
    const QString file = pickFile("Load Image into Swap", pictureFilter());
    if (file.isEmpty()) return;
    const int w = host_.swapPicture().width(), h = host_.swapPicture().height();
    try {
        command("loadSwap", {{"file", file}});
    } catch (const std::exception& e) {
        warn("Load Image into Swap", QString("Kirrel could not read “%1”.\n\n%2").arg(file, e.what()));
        return;
    }
    (void)w;
    (void)h;
    statusBar()->showMessage(QString("Swap picture loaded from %1").arg(QFileInfo(file).fileName()),
                             kMessageMs);
}

void HostWindow::alphaFromImage() {
    const QString file = pickFile("Alpha from Image (its brightness becomes the alpha)", pictureFilter());
    if (file.isEmpty()) return;
    try {
        command("alphaFromImage", {{"file", file}});
    } catch (const std::exception& e) {
        warn("Alpha from Image", QString("Kirrel could not read “%1”.\n\n%2").arg(file, e.what()));
    }
}

void HostWindow::fillAlpha(int value, const QString& what) {
    command(value ? "fillAlpha" : "clearAlpha");
    if (canvas_->hasOutline()) host_.initMarquee();
    statusBar()->showMessage(
        what + (value ? ": the whole picture is opaque" : ": the whole picture is transparent"), kMessageMs);
}

void HostWindow::setShowAlpha(bool on) {
    if (on == host_.alphaShown()) return;
    on ? host_.alphaOn() : host_.alphaOff();
}

void HostWindow::setColours(QColor primary, QColor secondary) {
    host_.setPrimaryColor(primary.red(), primary.green(), primary.blue());
    host_.setSecondaryColor(secondary.red(), secondary.green(), secondary.blue());
    recorder_->hostStep("Van_SetPrimaryColor", {primary.red(), primary.green(), primary.blue()}, "primary");
    recorder_->hostStep("Van_SetSecondaryColor", {secondary.red(), secondary.green(), secondary.blue()},
                        "secondary");
}

// --- frames ------------------------------------------------------------------------------------

void HostWindow::goToFrame(int frame) {
    if (host_.locked() || host_.totalFrames() == 0) return;
    host_.gotoFrame(std::clamp(frame, 0, host_.totalFrames() - 1));
    // Scrubbing gives many frames on the way: the recording keeps where the user stopped.
    recorder_->hostStep("Van_GotoFrame", {host_.currentFrame()}, "goto");
}

void HostWindow::startRecording() {
    if (recorder_->recording()) return;
    recorder_->start(documentPath_, isModified(), savedAlpha_);
    recordingLabel_->setText("● Recording");
    recordingLabel_->show();
    statusBar()->showMessage(
        "Recording: what you do in the panel and to the pictures becomes a session script. "
        "Tools ▸ Stop Recording saves it.",
        kMessageMs);
    updateActions();
}

void HostWindow::stopRecording() {
    if (!recorder_->recording()) return;
    const QString base = QFileInfo(documentPath_).completeBaseName();
    const QString start =
        QDir(lastFolder()).filePath((base.isEmpty() ? QString("session") : base) + "-session.json");
    const QString file =
        chooseFileToSave(this, "Save the Recorded Session", start, "Session scripts (*.json)");
    if (file.isEmpty()) return; // still recording
    const int steps = recorder_->stepCount();
    if (const auto error = recorder_->stopAndSave(file)) {
        warn("Stop Recording", QString("Kirrel could not save the recording.\n\n%1").arg(*error));
        return;
    }
    recordingLabel_->hide();
    updateActions();
    statusBar()->showMessage(
        QString("Saved %1 step(s) to %2; kirrel batch %2 INPUT... --out DIR plays them on "
                "other files")
            .arg(steps)
            .arg(QFileInfo(file).fileName()),
        kMessageMs * 2);
}

void HostWindow::duplicateFrame() {
    command("duplicateFrame");
}

void HostWindow::setDelayOfAllFrames() {
    if (host_.locked() || host_.totalFrames() == 0) return;
    bool ok = false;
    const int ms = QInputDialog::getInt(
        this, "Set Delay of All Frames",
        "How long every frame stays on screen (milliseconds):", host_.frameDelay(host_.currentFrame()), 10,
        HostState::kMaxDelayMs, 10, &ok);
    if (!ok) return;
    command("setDelayOfAllFrames", {{"ms", ms}});
    statusBar()->showMessage(QString("Every frame now stays %1 ms").arg(ms), kMessageMs);
}

void HostWindow::deleteFrame() {
    const int f = host_.currentFrame();
    if (QMessageBox::question(this, "Delete Frame",
                              QString("Delete frame %1?\n\nEdit ▸ Undo brings it back.").arg(f),
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
        return;
    frameBar_->stop();
    command("deleteFrame");
}

// --- the panel and help ------------------------------------------------------------------------

void HostWindow::showPanel() {
    if (!panel::FormBase::front()) {
        warn("Kirrel", "The Kirrel panel has been closed.");
        return;
    }
    panelDock_->bringForward();
}

void HostWindow::tryWipe() {
    auto* main = qobject_cast<panel::Mainfrm*>(panel::FormBase::find("Mainfrm"));
    if (!main || !main->isVisible()) {
        showPanel();
        return;
    }
    auto* categories = qobject_cast<QListWidget*>(main->control("List1"));
    auto* plugins = qobject_cast<QListWidget*>(main->control("List2"));
    if (!categories || !plugins) return;
    const auto transitions = categories->findItems("Transitions", Qt::MatchExactly);
    if (transitions.isEmpty()) return;
    categories->setCurrentItem(transitions.front());
    const auto wipes = plugins->findItems("Wipes", Qt::MatchExactly);
    if (wipes.isEmpty()) return;
    plugins->setCurrentItem(wipes.front());
    // As a double click: the catalogue opens the plug-in, and a recording notes it.
    emit plugins->itemDoubleClicked(wipes.front());
}

void HostWindow::setWelcomeVisible(bool on) {
    welcome_->setVisible(on);
    if (!on) QSettings().setValue("window/welcomeDismissed", true);
}

void HostWindow::gettingStarted() {
    QMessageBox box(this);
    box.setWindowTitle("Getting Started");
    box.setTextFormat(Qt::RichText);
    box.setText(
        "<h3>Your first effect in a minute</h3>"
        "<p>The big view shows the <b>main buffer</b>: the current frame of the animation. The scrubber "
        "below it moves through the frames; <i>Space</i> plays them.</p>"
        "<p>On the right, <b>Buffers</b> shows the <b>swap picture</b> (the second picture that transitions "
        "bring the animation into), the <b>alpha channel</b> and your two <b>paint colours</b>.</p>"
        "<ol><li>In the <b>Kirrel panel</b>, click <i>Transitions</i> and double-click <i>Wipes</i>.</li>"
        "<li>Keep <i>Swap</i> as the source, choose the frame range and press <i>Apply</i>.</li>"
        "<li>Scrub through the frames to watch the wipe; the dialog's <i>Undo</i> takes it back when you "
        "ticked <i>Save Undo</i>.</li></ol>"
        "<p><b>Splicing:</b> the panel's <i>Tools ▸ Stored Animations Panel</i> keeps up to four animations "
        "(<i>Save</i> stores the one on screen); <i>Utilities ▸ Combine with Stored</i> puts a stored one "
        "before, after or inside the animation. A transition's source list offers the same slots "
        "(<i>Stored Animation #1</i> to <i>#4</i>) beside the swap picture.</p>"
        "<p><b>File ▸ Open</b> reads an animated GIF, a folder of PNG frames, a .dat animation or a single "
        "picture; <b>File ▸ Save Frames as PNG</b> writes the animation as numbered PNG files. The panel's "
        "own <i>File ▸ Open AnimGif</i> and <i>File ▸ Save As AnimGif</i> read and write animated GIFs "
        "through ImageMagick's <i>convert</i>. <b>F2</b> brings the Kirrel panel to the front.</p>");
    box.exec();
}

void HostWindow::about() {
    QMessageBox box(this);
    box.setWindowTitle("About Kirrel");
    box.setTextFormat(Qt::RichText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setText(QString("<h3>Kirrel %1</h3>"
                        "<p>A panel of animation effects — transitions, splicing with stored animations, "
                        "filters, generators, alpha masks, custom effects and GIF/PNG/MNG exchange — with "
                        "its own paint-and-animation host.</p>"
                        "<p><b>Temporary folder</b> (stored animations, undo files):<br><tt>%2</tt></p>"
                        "<p><b>Program folder</b>:<br><tt>%3</tt></p>")
                    .arg(QCoreApplication::applicationVersion().isEmpty()
                             ? QString("1.29")
                             : QCoreApplication::applicationVersion())
                    .arg(QDir::toNativeSeparators(QString::fromStdString(host_.tempDir())).toHtmlEscaped())
                    .arg(QDir::toNativeSeparators(QString::fromStdString(host_.appDir())).toHtmlEscaped()));
    box.exec();
}

// --- window events -----------------------------------------------------------------------------

void HostWindow::closeEvent(QCloseEvent* event) {
    if (programEnded()) {
        event->accept();
        return;
    }
    if (host_.locked() || !confirmDiscard()) {
        event->ignore();
        return;
    }
    // Closing the host closes the panel, which asks its own clean-up question and ends the program.
    if (panel::FormBase* main = panel::FormBase::find("Mainfrm")) {
        main->closeByUser();
        if (!programEnded()) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

void HostWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && !host_.locked()) event->acceptProposedAction();
}

void HostWindow::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    const auto url = std::find_if(urls.begin(), urls.end(), [](const QUrl& u) { return u.isLocalFile(); });
    if (url == urls.end()) return;
    event->acceptProposedAction();
    runGuarded([&] { openAnimation(url->toLocalFile()); });
}

} // namespace kirrel::host
