#pragma once
// The stand-in host's main window: a small paint-and-animation viewer around the panel. It shows the
// main buffer (fitted or zoomed, alpha over a checkerboard, the selection outline), the frame scrubber
// with playback, the swap picture, the alpha plane and the two paint colours, and it offers the
// file, swap, alpha and undo commands of a host. The panel and its forms live in a dock beside the
// canvas, so nothing the panel opens covers the picture.
//
// The window follows the host through HostState's hooks: cheap run state (lock, wait pointer,
// progress) at once, pictures coalesced after the event, and live while a run holds the lock so the
// user sees the run advance.

#include "host/AnimationFiles.h"
#include "host/History.h"
#include "host/RecentFiles.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <vector>

class QAction;
class QCheckBox;
class QLabel;
class QMenu;
class QProgressBar;
class QScrollArea;
class QTimer;
class QToolButton;

namespace kirrel::host {

class CanvasView;
class ColourSwatches;
class FrameBar;
class HostState;
class BufferThumbnail;
class PanelDock;
class SessionRecorder;

class HostWindow : public QMainWindow {
    Q_OBJECT
  public:
    explicit HostWindow(HostState& host, QWidget* parent = nullptr);
    ~HostWindow() override;

    // Reads everything the window shows from the host now (otherwise done just after each change).
    void refreshFromHost();

    // Opens an animation, a frame folder or a picture; a file that cannot be read gives a message box
    // and leaves the animation as it was. Asks first when the animation has unsaved changes.
    bool openAnimation(const QString& path);
    // Shows the animation as a fresh, unmodified document (what main() does with the sample).
    void adoptCurrentAsDocument(const QString& title, const QString& path = {});
    bool saveFramesAsPng(const QString& chosenFile, bool withAlpha);
    bool isModified() const;
    // The welcome strip above the canvas that points a newcomer at a first wipe.
    void setWelcomeVisible(bool on);

    CanvasView* canvas() const { return canvas_; }
    FrameBar* frameBar() const { return frameBar_; }
    QProgressBar* progressBar() const { return progress_; }
    BufferThumbnail* swapView() const { return swapView_; }
    PanelDock* panelDock() const { return panelDock_; }
    SessionRecorder& recorder() const { return *recorder_; }
    QAction* action(const QString& name) const;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    // construction
    void buildActions();
    void buildMenus();
    void buildToolBar();
    void buildCentre();
    void buildSidePanel();
    void buildStatusBar();
    QAction* makeAction(const char* name, const QString& text, std::function<void()> run,
                        const QKeySequence& key = {});

    // host -> window
    void hostChanged();
    void applyRunState();
    void syncPictures();
    void syncScrubber();
    void updateActions();
    void updateTitle();
    void adoptForm(QWidget* form);
    void showHover(QPoint pixel);

    // commands
    void newAnimation();
    void openFileDialog();
    void openFolderDialog();
    void saveFramesDialog();
    void exportAnimationDialog();
    void rebuildRecentMenu();
    bool confirmDiscard();
    void undo();
    void redo();
    void moveInHistory(bool back);
    // One of the shared window commands on the host (see WindowCommands.h).
    void command(const QString& name, const QJsonObject& args = {});
    void stepAdded(const StepSummary& step);
    void swapMainAndSwap();
    void copyFrameToSwap();
    void loadImageIntoSwap();
    void alphaFromImage();
    void fillAlpha(int value, const QString& what);
    void setShowAlpha(bool on);
    void setColours(QColor primary, QColor secondary);
    void goToFrame(int frame);
    void duplicateFrame();
    void deleteFrame();
    void setDelayOfAllFrames();
    void startRecording();
    void stopRecording();
    void showPanel();
    void tryWipe();
    void gettingStarted();
    void about();
    void warn(const QString& title, const QString& text);
    QString pickFile(const QString& title, const QString& filter);
    void rememberFolder(const QString& file);
    QString lastFolder() const;

    HostState& host_;
    RecentFiles recent_;

    CanvasView* canvas_ = nullptr;
    QScrollArea* canvasArea_ = nullptr;
    FrameBar* frameBar_ = nullptr;
    QWidget* welcome_ = nullptr;
    QWidget* sidePanel_ = nullptr;
    BufferThumbnail* swapView_ = nullptr;
    BufferThumbnail* alphaView_ = nullptr;
    QCheckBox* showAlphaBox_ = nullptr;
    ColourSwatches* swatches_ = nullptr;
    QLabel* colourText_ = nullptr;
    QLabel* sizeLabel_ = nullptr;
    QLabel* zoomLabel_ = nullptr;
    QLabel* runLabel_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QLabel* lockLabel_ = nullptr;
    QToolButton* releaseLock_ = nullptr;
    QToolButton* cancelRun_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    QList<QAction*> actions_;
    QList<QWidget*> lockable_;
    QTimer* syncTimer_ = nullptr;

    // What the window last showed; planes share their buffers with the host's (copy-on-write), so
    // comparing buffers tells cheaply whether a picture changed.
    krl::Plane shownR_, shownG_, shownB_, shownA_, swapR_, swapG_, swapB_, thumbA_;
    bool shownAlphaOn_ = false;
    int shownMarquee_ = 0;
    int shownFrame_ = -1, shownTotal_ = -1, shownScrubPos_ = 0, shownScrubTotal_ = 0;
    bool shownLocked_ = false;
    bool waitCursor_ = false;
    QElapsedTimer livePaint_;

    // The document as last opened or saved, for the unsaved-changes question.
    std::vector<Picture> savedFrames_;
    std::vector<int> savedDelays_;
    Picture savedStill_;
    QString documentTitle_, documentPath_;
    // The file name the host last recorded: a new one (the panel's imports name the animation after
    // the file they read) makes the animation on screen the saved document.
    std::string shownFilename_;

    PanelDock* panelDock_ = nullptr;
    std::unique_ptr<SessionRecorder> recorder_;
    QLabel* recordingLabel_ = nullptr;
    krl::Plane savedAlpha_;
};

} // namespace kirrel::host
