#pragma once
// The in-memory host: frames, the main buffer with its alpha, the swap buffer, layers, colours,
// the run bracket, progress, the scrubber, single-picture undo, folders, and the modal boxes
// (answered by a Responder). It is what every Vantry_Class handle reaches.
//
// Decisions the panel leaves to its host, made the way an animator would expect:
// - The main buffer writes through to the current frame at once, so GotoFrame never loses a change.
// - NewBuffer(W, H) starts afresh: the animation goes (Total 0) and the main buffer becomes a white
//   still picture; the swap picture and the alpha plane are scaled to the new size, so a user's
//   swap picture and mask survive a size change.
// - CreateAnim / CreateAnimAdv make every frame a copy of the picture in the main buffer and make
//   frame 0 current.
// - InsertFrame(n) puts a copy of frame n at n+1 and moves later frames up by one; at the last frame
//   it appends a copy of the current frame, which is frame n unless another frame is shown.
// - An animation holds at most 32767 frames, the most a 16-bit frame count can say: CreateAnim asked
//   for more makes that many, and InsertFrame at the limit does nothing.
// - Frame numbers outside 0..Total-1 are ignored by the writers; readers give a black plane.
// - A plane of the wrong size handed to a Set call is cropped or padded with black to fit.
// - Fresh alpha is fully opaque (255 everywhere).
// - Every frame has a delay, the milliseconds it stays on screen when the animation plays. Frames the
//   host makes itself (CreateAnim, a new buffer) get the animation's rate; an inserted frame copies
//   the delay of the frame it copies.

#include "host/DialogLog.h"
#include "host/History.h"
#include "host/Picture.h"
#include "host/Responder.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace kirrel::host {

enum class Channel { R, G, B };

class HostState {
  public:
    HostState();

    // --- size and frames ---
    int bufferWidth() const { return still_.width(); }
    int bufferHeight() const { return still_.height(); }
    int totalFrames() const { return static_cast<int>(frames_.size()); }
    int currentFrame() const { return current_; }
    void gotoFrame(long long f);
    void insertFrame(long long n);
    void deleteFrame(long long f);
    void createAnim(long long count);
    void newBuffer(long long w, long long h);
    void showScrub(long long position, long long total);
    void stopAnimation();
    void refresh();

    // --- planes ---
    krl::Plane getBuffer(Channel c) const;
    void setBuffer(Channel c, const krl::Plane& p);
    krl::Plane getAlpha() const { return alpha_; }
    void setAlpha(const krl::Plane& p);
    krl::Plane getSwap(Channel c) const;
    void setSwap(Channel c, const krl::Plane& p);
    krl::Plane getFrame(Channel c, long long f) const;
    void setFrame(Channel c, const krl::Plane& p, long long f);
    krl::Plane getLayer(Channel c, long long layer) const;

    // --- timing ---
    static constexpr int kDefaultDelayMs = 100; // the animation's rate where nothing else is said
    static constexpr int kMaxDelayMs = 655350;  // what a GIF's delay can hold
    int frameDelay(int f) const;
    const std::vector<int>& frameDelays() const { return delays_; }
    void setFrameDelay(long long f, int ms);
    // One delay per frame; missing entries, and 0 (no delay given), become the animation's rate.
    void setFrameDelays(const std::vector<int>& ms);
    int layerCount() const { return 1 + static_cast<int>(extraLayers_.size()); }
    int currentLayer() const { return currentLayer_; }
    int layerOpacity() const { return layerOpacity_; }

    // --- colours and alpha display ---
    std::uint32_t primaryColor() const { return primary_; }
    std::uint32_t secondaryColor() const { return secondary_; }
    void setPrimaryColor(int r, int g, int b) {
        primary_ = packColor(r, g, b);
        changed();
    }
    void setSecondaryColor(int r, int g, int b) {
        secondary_ = packColor(r, g, b);
        changed();
    }
    void alphaOn() {
        alphaShown_ = true;
        changed();
    }
    void alphaOff() {
        alphaShown_ = false;
        changed();
    }
    void initMarquee() {
        ++marqueeBuilds_;
        changed();
    }
    void saveUndo();
    bool restoreUndo(); // the host's own undo of one picture; false when there is none
    bool hasUndo() const { return hasUndo_; }

    // A short word in the status bar (a refusal that needs no box); nothing to answer.
    void showStatus(const std::string& text);
    const std::string& lastStatus() const { return lastStatus_; }
    std::function<void(const std::string&)> onStatus;

    // --- cancelling a wait ---
    // The user asked to stop what runs (the Cancel button, Escape); a wait that can stop ends and
    // the action changes nothing. Every action starts without it.
    void requestCancel() { cancel_ = true; }
    bool cancelRequested() const { return cancel_; }
    // How long one run of the converter may take before it is taken to hang.
    int converterTimeoutSeconds() const { return converterTimeout_; }
    void setConverterTimeoutSeconds(int s) { converterTimeout_ = s > 0 ? s : 900; }

    // --- the undo history ---
    // A user action begins and ends (the event boundary brackets every action); a change of the
    // content between the two becomes one undo step under the label. Undo and redo inside an action
    // move in the history instead.
    void beginAction();
    // `run` marks an action of a run button: when it changed nothing and said nothing, the status bar
    // says so, rather than leaving the user to wonder.
    void endAction(const std::string& label, bool run = false);
    // The action failed or was cancelled: the content and the frame shown go back to how the action
    // found them, and no step is kept.
    void rollbackAction();
    bool undo();
    bool redo();
    History& history() { return history_; }
    const History& history() const { return history_; }
    HostSnapshot snapshot() const;
    void restore(const HostSnapshot& s);
    // A step was added: what it changed.
    std::function<void(const StepSummary&)> onStepAdded;

    // --- run bracket and progress ---
    void lock() {
        locked_ = true;
        changed();
    }
    void unlock() {
        locked_ = false;
        changed();
    }
    void changePointer(int p) {
        pointer_ = p;
        changed();
    }
    void restorePointer() {
        pointer_ = 0;
        changed();
    }
    void status(double percent);
    void statusClose();
    void setProgress(double percent);

    // --- dialogs and paths ---
    void messageBox(const std::string& text);
    int questionBox(const std::string& text);
    double valueBox(const std::string& title, double minimum, double maximum);
    std::string requestFileOpen(const std::string& title, const std::string& def, const std::string& filter);
    std::string requestFileSave(const std::string& title, const std::string& def, const std::string& filter);
    // When the animation has unsaved changes, asks whether they may go for another animation; 2 means
    // the user keeps them. Nothing is asked (and 1 returned) when nothing is unsaved.
    int confirmDiscard();
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& def);
    void reportError(const std::string& text);
    const std::string& tempDir() const { return tempDir_; }
    const std::string& appDir() const { return appDir_; }
    const std::string& wallpaper() const { return wallpaper_; }
    void sendFormObject(QWidget* form);
    void renameBuffer(const std::string& name) {
        bufferName_ = name;
        changed();
    }
    void newFilename(const std::string& path) { filename_ = path; }

    // --- set-up and inspection by the stand-in's own window and by session scripts ---
    void setResponder(Responder* r) { responder_ = r; }
    Responder* responder() const { return responder_; }
    void setTempDir(const std::string& d) { tempDir_ = d; }
    void setAppDir(const std::string& d) { appDir_ = d; }
    void setWallpaper(const std::string& f) { wallpaper_ = f; }
    void loadAnimation(std::vector<Picture> frames, int current = 0, const std::vector<int>& delays = {});
    void loadStill(Picture p);
    void loadSwap(const Picture& p);
    void setPrimaryPacked(std::uint32_t c) { primary_ = c; }
    void setSecondaryPacked(std::uint32_t c) { secondary_ = c; }
    void setLayerOpacity(int o) { layerOpacity_ = o; }
    void addLayer(Picture p) { extraLayers_.push_back(std::move(p)); }

    // --- the window's own commands on the pictures ---
    void swapMainAndSwap();    // the main buffer and the swap picture change places
    void copyFrameToSwap();    // the swap picture becomes a copy of the main buffer
    void fillAlpha(int value); // 0 clears the alpha plane (transparent), 255 fills it (opaque)

    const Picture& mainPicture() const;
    const Picture& framePicture(int f) const { return frames_.at(static_cast<std::size_t>(f)); }
    const Picture& swapPicture() const { return swap_; }
    const krl::Plane& alphaPlane() const { return alpha_; }
    bool locked() const { return locked_; }
    int pointer() const { return pointer_; }
    double progress() const { return progress_; }
    bool statusOpen() const { return statusOpen_; }
    double statusValue() const { return statusValue_; }
    int scrubPosition() const { return scrubPos_; }
    int scrubTotal() const { return scrubTotal_; }
    bool alphaShown() const { return alphaShown_; }
    int marqueeBuilds() const { return marqueeBuilds_; }
    int stopRequests() const { return stopRequests_; }
    const std::string& bufferName() const { return bufferName_; }
    const std::string& filename() const { return filename_; }
    const DialogLog& dialogs() const { return dialogs_; }
    const std::vector<QWidget*>& forms() const { return forms_; }
    void forgetForm(QWidget* form);

    // The window listens to redraw; set by whoever shows the host.
    std::function<void()> onChange;
    std::function<void(QWidget*)> onFormSent;
    std::function<void()> onStopAnimation;
    // Whether the animation holds changes the user has not saved; set by the window, which keeps the
    // saved document. Without it (a session script) nothing counts as unsaved.
    std::function<bool()> hasUnsavedChanges;

  private:
    Picture& mainPictureMut();
    bool validFrame(long long f) const { return f >= 0 && f < totalFrames(); }
    void fitExtrasToBuffer();
    void changed() {
        if (onChange) onChange();
    }
    Responder& answerer();

    Picture still_;               // the main buffer when there is no animation
    std::vector<Picture> frames_; // the animation; the current frame *is* the main buffer
    std::vector<int> delays_;     // milliseconds, one per frame
    int current_ = 0;
    krl::Plane alpha_;
    Picture swap_;
    std::vector<Picture> extraLayers_;
    int currentLayer_ = 0;
    int layerOpacity_ = 255;
    std::uint32_t primary_ = 0;          // black
    std::uint32_t secondary_ = 0xFFFFFF; // white
    bool locked_ = false;
    int pointer_ = 0;
    double progress_ = 0;
    bool statusOpen_ = false;
    double statusValue_ = 0;
    int scrubPos_ = 0;
    int scrubTotal_ = 0;
    bool alphaShown_ = false;
    int marqueeBuilds_ = 0;
    int stopRequests_ = 0;
    Picture undoPicture_;
    krl::Plane undoAlpha_;
    bool hasUndo_ = false;
    std::string tempDir_, appDir_, wallpaper_, bufferName_, filename_;
    DialogLog dialogs_;
    History history_;
    std::optional<HostSnapshot> actionStart_;
    bool historyMoved_ = false;
    std::size_t actionBoxes_ = 0;
    bool actionStatus_ = false;
    std::string lastStatus_;
    bool cancel_ = false;
    int converterTimeout_ = 900;
    std::vector<QWidget*> forms_;
    Responder* responder_ = nullptr;
};

// The one running host that every Vantry_Class handle reaches; a scratch host instead while a
// ScratchHost scope lives.
HostState& runningHost();

} // namespace kirrel::host
