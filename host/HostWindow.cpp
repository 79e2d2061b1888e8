#include "host/HostWindow.h"

#include "host/BufferThumbnail.h"
#include "host/CanvasView.h"
#include "host/ColourSwatches.h"
#include "host/FrameBar.h"
#include "host/HostState.h"
#include "host/PanelDock.h"
#include "host/SessionRecorder.h"
#include "panel/EventGuard.h"
#include "panel/WaitEvents.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace kirrel::host {

namespace {
constexpr int kStatusMs = 6000;
}

HostWindow::HostWindow(HostState& host, QWidget* parent) : QMainWindow(parent), host_(host) {
    setObjectName("hostWindow");
    setAcceptDrops(true);
    resize(960, 680);
    buildActions();
    buildMenus();
    buildToolBar();
    buildCentre();
    buildSidePanel();
    buildStatusBar();
    recorder_ = std::make_unique<SessionRecorder>(host_);
    panelDock_ = new PanelDock(this);
    addDockWidget(Qt::LeftDockWidgetArea, panelDock_);

    syncTimer_ = new QTimer(this);
    syncTimer_->setSingleShot(true);
    syncTimer_->setInterval(0);
    connect(syncTimer_, &QTimer::timeout, this, &HostWindow::refreshFromHost);

    host_.onChange = [this] { hostChanged(); };
    host_.onFormSent = [this](QWidget* form) { adoptForm(form); };
    host_.onStopAnimation = [this] { frameBar_->stop(); };
    host_.hasUnsavedChanges = [this] { return isModified(); };
    host_.onStepAdded = [this](const StepSummary& step) { stepAdded(step); };
    host_.onStatus = [this](const std::string& text) {
        statusBar()->showMessage(QString::fromStdString(text), kStatusMs);
    };
    for (QWidget* form : host_.forms())
        adoptForm(form);
    adoptCurrentAsDocument("Untitled");
}

HostWindow::~HostWindow() {
    recorder_->cancel();
    host_.onChange = nullptr;
    host_.onFormSent = nullptr;
    host_.onStopAnimation = nullptr;
    host_.hasUnsavedChanges = nullptr;
    host_.onStepAdded = nullptr;
    host_.onStatus = nullptr;
    if (waitCursor_) QApplication::restoreOverrideCursor();
}

QAction* HostWindow::makeAction(const char* name, const QString& text, std::function<void()> run,
                                const QKeySequence& key) {
    auto* a = new QAction(text, this);
    a->setObjectName(name);
    if (!key.isEmpty()) a->setShortcut(key);
    // Every command is one user action: what it changes is one step of the undo history.
    QString label = text;
    label.remove('&').remove(QString::fromUtf8("…"));
    connect(a, &QAction::triggered, this,
            [run = std::move(run), label = label.toStdString()] { runGuarded(run, label); });
    actions_.push_back(a);
    return a;
}

QAction* HostWindow::action(const QString& name) const {
    const auto found = std::find_if(actions_.begin(), actions_.end(),
                                    [&name](const QAction* a) { return a->objectName() == name; });
    return found == actions_.end() ? nullptr : *found;
}

void HostWindow::buildActions() {
    QStyle* s = style();
    makeAction(
        "newAnimation", "&New Animation…", [this] { newAnimation(); }, QKeySequence::New)
        ->setIcon(s->standardIcon(QStyle::SP_FileIcon));
    makeAction(
        "open", "&Open…", [this] { openFileDialog(); }, QKeySequence::Open)
        ->setIcon(s->standardIcon(QStyle::SP_DialogOpenButton));
    makeAction(
        "openFolder", "Open &Frame Folder…", [this] { openFolderDialog(); }, QKeySequence("Ctrl+Shift+O"))
        ->setIcon(s->standardIcon(QStyle::SP_DirOpenIcon));
    makeAction(
        "saveFrames", "&Save Frames as PNG…", [this] { saveFramesDialog(); }, QKeySequence::Save)
        ->setIcon(s->standardIcon(QStyle::SP_DialogSaveButton));
    makeAction(
        "exportAnimation", "&Export Animation…", [this] { exportAnimationDialog(); }, QKeySequence("Ctrl+E"));
    makeAction(
        "quit", "&Quit", [this] { close(); }, QKeySequence::Quit);

    makeAction(
        "undo", "&Undo", [this] { undo(); }, QKeySequence::Undo)
        ->setIcon(s->standardIcon(QStyle::SP_ArrowBack));
    makeAction(
        "redo", "&Redo", [this] { redo(); }, QKeySequence("Ctrl+Shift+Z"))
        ->setIcon(s->standardIcon(QStyle::SP_ArrowForward));
    action("redo")->setShortcuts({QKeySequence("Ctrl+Shift+Z"), QKeySequence("Ctrl+Y")});

    makeAction(
        "zoomFit", "&Fit to Window", [this] { canvas_->setFit(); }, QKeySequence("Ctrl+0"));
    makeAction(
        "zoomActual", "&Actual Size (1:1)", [this] { canvas_->setZoom(1.0); }, QKeySequence("Ctrl+1"));
    makeAction(
        "zoomIn", "Zoom &In", [this] { canvas_->zoomBy(std::sqrt(2.0)); }, QKeySequence::ZoomIn);
    makeAction(
        "zoomOut", "Zoom &Out", [this] { canvas_->zoomBy(1 / std::sqrt(2.0)); }, QKeySequence::ZoomOut);
    QAction* showAlpha = makeAction(
        "showAlpha", "Show &Alpha", [] {}, QKeySequence("Ctrl+Shift+A"));
    showAlpha->setCheckable(true);
    connect(showAlpha, &QAction::toggled, this, [this](bool on) { setShowAlpha(on); });
    QAction* outline = makeAction("showOutline", "Show Selection &Outline", [] {});
    outline->setCheckable(true);
    outline->setChecked(true);
    connect(outline, &QAction::toggled, this, [this](bool on) { canvas_->setOutlineVisible(on); });

    makeAction(
        "playStop", "&Play / Stop", [this] { frameBar_->playing() ? frameBar_->stop() : frameBar_->play(); },
        QKeySequence(Qt::Key_Space));
    makeAction(
        "firstFrame", "&First Frame", [this] { goToFrame(0); }, QKeySequence(Qt::Key_Home));
    makeAction(
        "previousFrame", "P&revious Frame", [this] { goToFrame(host_.currentFrame() - 1); },
        QKeySequence(Qt::Key_Comma))
        ->setShortcuts({QKeySequence(Qt::Key_Comma), QKeySequence(Qt::Key_Left)});
    makeAction(
        "nextFrame", "&Next Frame", [this] { goToFrame(host_.currentFrame() + 1); },
        QKeySequence(Qt::Key_Period))
        ->setShortcuts({QKeySequence(Qt::Key_Period), QKeySequence(Qt::Key_Right)});
    makeAction(
        "lastFrame", "&Last Frame", [this] { goToFrame(host_.totalFrames() - 1); },
        QKeySequence(Qt::Key_End));
    makeAction(
        "duplicateFrame", "&Duplicate Frame", [this] { duplicateFrame(); }, QKeySequence("Ctrl+D"));
    makeAction("deleteFrame", "De&lete Frame…", [this] { deleteFrame(); });
    makeAction("delayAllFrames", "Set Delay of &All Frames…", [this] { setDelayOfAllFrames(); });
    makeAction("recordSession", "&Record Session", [this] { startRecording(); });
    makeAction("stopRecording", "&Stop Recording…", [this] { stopRecording(); });

    makeAction(
        "swapMainAndSwap", "&Swap Main and Swap", [this] { swapMainAndSwap(); },
        QKeySequence("Ctrl+Shift+X"));
    makeAction("copyFrameToSwap", "&Copy Frame to Swap", [this] { copyFrameToSwap(); });
    makeAction("loadSwap", "&Load Image into Swap…", [this] { loadImageIntoSwap(); });

    makeAction("alphaFromImage", "Alpha from &Image…", [this] { alphaFromImage(); });
    makeAction("clearAlpha", "&Clear Alpha (transparent)", [this] { fillAlpha(0, "Clear Alpha"); });
    makeAction("fillAlpha", "&Fill Alpha (opaque)", [this] { fillAlpha(255, "Fill Alpha"); });

    makeAction(
        "showPanel", "Kirrel &Panel", [this] { showPanel(); }, QKeySequence("F2"));
    makeAction(
        "gettingStarted", "&Getting Started", [this] { gettingStarted(); }, QKeySequence::HelpContents);
    makeAction("about", "&About Kirrel", [this] { about(); });
}

void HostWindow::buildMenus() {
    auto add = [this](QMenu* m, std::initializer_list<const char*> names) {
        for (const char* n : names) {
            if (*n == '-')
                m->addSeparator();
            else
                m->addAction(action(n));
        }
    };
    QMenu* file = menuBar()->addMenu("&File");
    add(file, {"newAnimation", "open", "openFolder"});
    recentMenu_ = file->addMenu("Open &Recent");
    recentMenu_->setObjectName("recentMenu");
    add(file, {"-", "saveFrames", "exportAnimation", "-", "quit"});
    add(menuBar()->addMenu("&Edit"), {"undo", "redo"});
    add(menuBar()->addMenu("&View"),
        {"zoomFit", "zoomActual", "zoomIn", "zoomOut", "-", "showAlpha", "showOutline"});
    add(menuBar()->addMenu("F&rame"),
        {"playStop", "-", "firstFrame", "previousFrame", "nextFrame", "lastFrame", "-", "duplicateFrame",
         "deleteFrame", "-", "delayAllFrames"});
    add(menuBar()->addMenu("&Swap"), {"swapMainAndSwap", "copyFrameToSwap", "loadSwap"});
    add(menuBar()->addMenu("&Alpha"), {"alphaFromImage", "clearAlpha", "fillAlpha", "-", "showAlpha"});
    add(menuBar()->addMenu("&Tools"), {"recordSession", "stopRecording"});
    add(menuBar()->addMenu("&Window"), {"showPanel"});
    add(menuBar()->addMenu("&Help"), {"gettingStarted", "-", "about"});
    rebuildRecentMenu();
}

void HostWindow::buildToolBar() {
    QToolBar* bar = addToolBar("Tools");
    bar->setObjectName("toolBar");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(16, 16));
    for (const char* n : {"open", "saveFrames"})
        bar->addAction(action(n));
    bar->addSeparator();
    bar->addAction(action("undo"));
    bar->addAction(action("redo"));
    bar->addSeparator();
    // Toolbar buttons show the actions' short icon texts.
    auto textAction = [&](const char* name, const QString& text, const QString& tip) {
        QAction* a = action(name);
        a->setIconText(text);
        a->setToolTip(tip);
        bar->addAction(a);
    };
    textAction("zoomFit", "Fit", "Fit the picture to the window (Ctrl+0)");
    textAction("zoomActual", "1:1", "Show every pixel once (Ctrl+1)");
    textAction("zoomOut", "−", "Zoom out (Ctrl+-)");
    textAction("zoomIn", "+", "Zoom in (Ctrl++)");
    bar->addSeparator();
    textAction("showAlpha", "Alpha", "Show the alpha channel over a checkerboard (Ctrl+Shift+A)");
    bar->addSeparator();
    textAction("showPanel", "Kirrel Panel", "Bring the Kirrel panel to the front (F2)");
    lockable_.push_back(bar);
}

void HostWindow::buildCentre() {
    auto* centre = new QWidget(this);
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    welcome_ = new QFrame(centre);
    welcome_->setObjectName("welcome");
    welcome_->setStyleSheet("#welcome { background: #fff6d8; border-bottom: 1px solid #e0cf8f; }");
    auto* strip = new QHBoxLayout(welcome_);
    strip->setContentsMargins(12, 6, 8, 6);
    auto* text = new QLabel("<b>Welcome to Kirrel.</b> This is a sample animation with a swap picture beside "
                            "it. Try a first effect: in the Kirrel panel choose <i>Transitions ▸ Wipes</i>, "
                            "pick <i>Swap</i> as the source and press <i>Apply</i>.",
                            welcome_);
    text->setWordWrap(true);
    strip->addWidget(text, 1);
    auto* tryIt = new QPushButton("Try a Wipe", welcome_);
    tryIt->setObjectName("tryWipe");
    connect(tryIt, &QPushButton::clicked, this, [this] { tryWipe(); });
    strip->addWidget(tryIt);
    auto* dismiss = new QToolButton(welcome_);
    dismiss->setText("✕");
    dismiss->setAutoRaise(true);
    dismiss->setToolTip("Hide this hint");
    connect(dismiss, &QToolButton::clicked, this, [this] { setWelcomeVisible(false); });
    strip->addWidget(dismiss);
    welcome_->hide();
    column->addWidget(welcome_);

    canvasArea_ = new QScrollArea(centre);
    canvasArea_->setObjectName("canvasArea");
    canvasArea_->setFrameShape(QFrame::NoFrame);
    canvas_ = new CanvasView(canvasArea_);
    connect(canvas_, &CanvasView::hovered, this, &HostWindow::showHover);
    connect(canvas_, &CanvasView::zoomChanged, this, [this] {
        zoomLabel_->setText(canvas_->fitting() ? QString("Fit %1%").arg(qRound(canvas_->zoom() * 100))
                                               : QString("%1%").arg(qRound(canvas_->zoom() * 100)));
    });
    column->addWidget(canvasArea_, 1);

    frameBar_ = new FrameBar(centre);
    connect(frameBar_, &FrameBar::frameRequested, this, &HostWindow::goToFrame);
    frameBar_->delayOf = [this](int f) { return host_.frameDelay(f); };
    connect(frameBar_, &FrameBar::delayEdited, this, [this](int f, int ms) {
        runGuarded(
            [&] {
                if (!host_.locked()) command("setFrameDelay", {{"frame", f}, {"ms", ms}});
            },
            "Frame Delay");
    });
    column->addWidget(frameBar_);
    setCentralWidget(centre);
    // The frame keys belong to the canvas and the frame bar: in the panel's dialogs the same keys
    // move through lists and text.
    canvas_->setFocusPolicy(Qt::StrongFocus);
    for (const char* name : {"firstFrame", "previousFrame", "nextFrame", "lastFrame"}) {
        QAction* a = action(name);
        a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        centre->addAction(a);
    }
    lockable_ << canvasArea_ << frameBar_;
}

void HostWindow::buildSidePanel() {
    auto* dock = new QDockWidget("Buffers", this);
    dock->setObjectName("sideDock");
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    sidePanel_ = new QWidget(dock);
    auto* column = new QVBoxLayout(sidePanel_);
    column->setContentsMargins(8, 4, 8, 8);

    auto buttonFor = [&](QWidget* parent, const char* actionName, const QString& text) {
        auto* b = new QPushButton(text, parent);
        b->setObjectName(QString(actionName) + "Button");
        QAction* a = action(actionName);
        connect(b, &QPushButton::clicked, a, &QAction::trigger);
        connect(a, &QAction::changed, b, [a, b] { b->setEnabled(a->isEnabled()); });
        return b;
    };

    auto* swapBox = new QGroupBox("Swap picture", sidePanel_);
    auto* swapColumn = new QVBoxLayout(swapBox);
    swapView_ = new BufferThumbnail(swapBox);
    swapView_->setObjectName("swapView");
    swapView_->setToolTip("The swap buffer: the second picture that transitions bring the animation into");
    swapColumn->addWidget(swapView_);
    auto* swapRow = new QHBoxLayout;
    swapRow->addWidget(buttonFor(swapBox, "swapMainAndSwap", "⇄ Swap"));
    swapRow->addWidget(buttonFor(swapBox, "copyFrameToSwap", "Copy Frame"));
    swapColumn->addLayout(swapRow);
    swapColumn->addWidget(buttonFor(swapBox, "loadSwap", "Load Image…"));
    column->addWidget(swapBox);

    auto* alphaBox = new QGroupBox("Alpha channel", sidePanel_);
    auto* alphaColumn = new QVBoxLayout(alphaBox);
    alphaView_ = new BufferThumbnail(alphaBox);
    alphaView_->setObjectName("alphaView");
    alphaView_->setToolTip("The alpha plane of the main buffer: white is opaque, black transparent");
    alphaColumn->addWidget(alphaView_);
    showAlphaBox_ = new QCheckBox("Show alpha on the canvas", alphaBox);
    showAlphaBox_->setObjectName("showAlphaBox");
    connect(showAlphaBox_, &QCheckBox::toggled, action("showAlpha"), &QAction::setChecked);
    alphaColumn->addWidget(showAlphaBox_);
    auto* alphaRow = new QHBoxLayout;
    alphaRow->addWidget(buttonFor(alphaBox, "clearAlpha", "Clear"));
    alphaRow->addWidget(buttonFor(alphaBox, "fillAlpha", "Fill"));
    alphaColumn->addLayout(alphaRow);
    alphaColumn->addWidget(buttonFor(alphaBox, "alphaFromImage", "Alpha from Image…"));
    column->addWidget(alphaBox);

    auto* colourBox = new QGroupBox("Colours", sidePanel_);
    auto* colourRow = new QHBoxLayout(colourBox);
    swatches_ = new ColourSwatches(colourBox);
    connect(swatches_, &ColourSwatches::coloursChosen, this, &HostWindow::setColours);
    colourRow->addWidget(swatches_);
    colourText_ = new QLabel(colourBox);
    colourText_->setObjectName("colourText");
    colourText_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    colourRow->addWidget(colourText_, 1);
    column->addWidget(colourBox);
    column->addStretch(1);

    dock->setWidget(sidePanel_);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    // The canvas gets the room; the side panel starts narrow (docks take their size once shown).
    QTimer::singleShot(0, this, [this, dock] { resizeDocks({dock}, {240}, Qt::Horizontal); });
    lockable_.push_back(sidePanel_);
}

void HostWindow::buildStatusBar() {
    QStatusBar* bar = statusBar();
    sizeLabel_ = new QLabel(bar);
    zoomLabel_ = new QLabel(bar);
    zoomLabel_->setMinimumWidth(zoomLabel_->fontMetrics().horizontalAdvance("Fit 1600%") + 6);
    runLabel_ = new QLabel(bar);
    runLabel_->hide();
    progress_ = new QProgressBar(bar);
    progress_->setObjectName("progress");
    progress_->setRange(0, 100);
    progress_->setMaximumWidth(180);
    progress_->setMaximumHeight(16);
    progress_->hide();
    lockLabel_ = new QLabel("Locked by a running effect", bar);
    lockLabel_->setObjectName("lockLabel");
    lockLabel_->setStyleSheet("color: #a0522d; font-weight: bold;");
    lockLabel_->hide();
    releaseLock_ = new QToolButton(bar);
    releaseLock_->setObjectName("releaseLock");
    releaseLock_->setText("Release");
    releaseLock_->setToolTip(
        "An effect that stopped with an error can leave the host locked; this unlocks it.");
    connect(releaseLock_, &QToolButton::clicked, this, [this] {
        if (QMessageBox::question(
                this, "Release the Lock",
                "Unlock the host?\n\nDo this only when no effect is running any more (an effect "
                "that stopped with an error leaves the host locked).",
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
            return;
        host_.restorePointer();
        host_.unlock();
    });
    releaseLock_->hide();
    // The way out of a long wait for the converter (Escape does the same); the only control that
    // takes a click while the wait runs.
    cancelRun_ = new QToolButton(bar);
    cancelRun_->setObjectName("cancelRun");
    cancelRun_->setText("Cancel");
    cancelRun_->setToolTip("Stop what runs now; nothing is changed (Escape)");
    panel::markUsableWhileWaiting(cancelRun_);
    connect(cancelRun_, &QToolButton::clicked, this, [this] { host_.requestCancel(); });
    cancelRun_->hide();
    recordingLabel_ = new QLabel(bar);
    recordingLabel_->setObjectName("recordingLabel");
    recordingLabel_->setStyleSheet("color: #b00020; font-weight: bold;");
    recordingLabel_->hide();
    bar->addPermanentWidget(recordingLabel_);
    bar->addPermanentWidget(runLabel_);
    bar->addPermanentWidget(progress_);
    bar->addPermanentWidget(cancelRun_);
    bar->addPermanentWidget(lockLabel_);
    bar->addPermanentWidget(releaseLock_);
    bar->addPermanentWidget(sizeLabel_);
    bar->addPermanentWidget(zoomLabel_);
}

} // namespace kirrel::host
