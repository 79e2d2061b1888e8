#include "host/HostState.h"

#include "host/JsonText.h"
#include "host/Resources.h"
#include "host/ScratchHost.h"

#include <algorithm>
#include <cmath>

namespace kirrel::host {

namespace {
constexpr const char* kBoxTitle = "Kirrel";
constexpr int kStartWidth = 320;
constexpr int kStartHeight = 240;
constexpr int kMaxFrames = 32767;

// The host's answers when nobody is there to give one: messages pass, anything that needs an
// answer stops the action (a session script without a queued answer).
class NobodyResponder final : public Responder {
  public:
    void message(const std::string&, const std::string&) override {}
    int question(const std::string& text, const std::string&) override {
        throw ScriptAbort{"question: " + text};
    }
    double value(const std::string& title, double, double) override {
        throw ScriptAbort{"value box: " + title};
    }
    std::string fileOpen(const std::string& title, const std::string&, const std::string&) override {
        throw ScriptAbort{"file requester: " + title};
    }
    std::string fileSave(const std::string& title, const std::string&, const std::string&) override {
        throw ScriptAbort{"file requester: " + title};
    }
    std::optional<std::string> input(const std::string& prompt, const std::string&,
                                     const std::string&) override {
        throw ScriptAbort{"input box: " + prompt};
    }
    void error(const std::string&, const std::string&) override {}
};

krl::Plane opaque(int w, int h) {
    krl::Plane p(w, h);
    p.fill(255);
    return p;
}

std::string numberText(double v) {
    return jsonNumber(v);
}
} // namespace

HostState& runningHost() {
    static HostState host;
    HostState* scratch = ScratchHost::current();
    return scratch ? *scratch : host;
}

HostState::HostState()
    : still_(Picture::filled(kStartWidth, kStartHeight, 0xFFFFFF)), alpha_(opaque(kStartWidth, kStartHeight)),
      swap_(Picture::filled(kStartWidth, kStartHeight, 0xFFFFFF)) {
    initResources();
}

Responder& HostState::answerer() {
    static NobodyResponder nobody;
    if (responder_) return *responder_;
    return nobody;
}

const Picture& HostState::mainPicture() const {
    return frames_.empty() ? still_ : frames_[static_cast<std::size_t>(current_)];
}

Picture& HostState::mainPictureMut() {
    return frames_.empty() ? still_ : frames_[static_cast<std::size_t>(current_)];
}

// --- size and frames ---------------------------------------------------------------------------

void HostState::gotoFrame(long long f) {
    if (!validFrame(f)) return;
    current_ = static_cast<int>(f);
    changed();
}

void HostState::insertFrame(long long n) {
    // The panel reads the frame count as a 16-bit number: one frame more would read as negative.
    if (!validFrame(n) || totalFrames() >= kMaxFrames) return;
    const auto at = static_cast<std::size_t>(n);
    // After the last frame the insertion is an append of the frame shown now, which is frame n itself
    // for the splices and an earlier frame for the ping-pong append.
    const bool append = n == totalFrames() - 1 && validFrame(current_);
    Picture copy = append ? frames_[static_cast<std::size_t>(current_)] : frames_[at];
    frames_.insert(frames_.begin() + static_cast<std::ptrdiff_t>(at) + 1, std::move(copy));
    const int delay = delays_[append ? static_cast<std::size_t>(current_) : at];
    delays_.insert(delays_.begin() + static_cast<std::ptrdiff_t>(at) + 1, delay);
    if (current_ > n) ++current_;
    changed();
}

void HostState::deleteFrame(long long f) {
    if (!validFrame(f)) return;
    if (frames_.size() == 1) still_ = frames_.front();
    frames_.erase(frames_.begin() + static_cast<std::ptrdiff_t>(f));
    delays_.erase(delays_.begin() + static_cast<std::ptrdiff_t>(f));
    if (current_ >= totalFrames()) current_ = std::max(0, totalFrames() - 1);
    changed();
}

void HostState::createAnim(long long count) {
    if (count < 1) return;
    count = std::min<long long>(count, kMaxFrames);
    Picture pic = mainPicture();
    frames_.assign(static_cast<std::size_t>(count), pic);
    delays_.assign(static_cast<std::size_t>(count), kDefaultDelayMs);
    still_ = pic;
    current_ = 0;
    changed();
}

void HostState::newBuffer(long long w, long long h) {
    const int nw = static_cast<int>(std::clamp<long long>(w, 0, 32766));
    const int nh = static_cast<int>(std::clamp<long long>(h, 0, 32766));
    frames_.clear();
    delays_.clear();
    current_ = 0;
    still_ = Picture::filled(nw, nh, 0xFFFFFF);
    fitExtrasToBuffer();
    changed();
}

void HostState::fitExtrasToBuffer() {
    const int w = bufferWidth();
    const int h = bufferHeight();
    if (alpha_.width() != w || alpha_.height() != h)
        alpha_ = alpha_.empty() ? opaque(w, h) : scalePlane(alpha_, w, h);
    if (swap_.width() != w || swap_.height() != h) swap_ = scalePicture(swap_, w, h);
}

void HostState::showScrub(long long position, long long total) {
    scrubPos_ = static_cast<int>(position);
    scrubTotal_ = static_cast<int>(total);
    changed();
}

void HostState::stopAnimation() {
    ++stopRequests_;
    if (onStopAnimation) onStopAnimation();
}

void HostState::refresh() {
    changed();
}

// --- planes ------------------------------------------------------------------------------------

namespace {
// The plane keeps the picture's constness.
template <class P> auto& channelOf(P& p, Channel c) {
    return c == Channel::R ? p.r : c == Channel::G ? p.g : p.b;
}
} // namespace

krl::Plane HostState::getBuffer(Channel c) const {
    return channelOf(mainPicture(), c);
}

void HostState::setBuffer(Channel c, const krl::Plane& p) {
    channelOf(mainPictureMut(), c) = fitPlane(p, bufferWidth(), bufferHeight());
    changed();
}

void HostState::setAlpha(const krl::Plane& p) {
    alpha_ = fitPlane(p, bufferWidth(), bufferHeight());
    changed();
}

krl::Plane HostState::getSwap(Channel c) const {
    return channelOf(swap_, c);
}

void HostState::setSwap(Channel c, const krl::Plane& p) {
    channelOf(swap_, c) = fitPlane(p, bufferWidth(), bufferHeight());
    changed();
}

krl::Plane HostState::getFrame(Channel c, long long f) const {
    if (!validFrame(f)) return krl::Plane(bufferWidth(), bufferHeight());
    return channelOf(frames_[static_cast<std::size_t>(f)], c);
}

void HostState::setFrame(Channel c, const krl::Plane& p, long long f) {
    if (!validFrame(f)) return;
    channelOf(frames_[static_cast<std::size_t>(f)], c) = fitPlane(p, bufferWidth(), bufferHeight());
    changed();
}

krl::Plane HostState::getLayer(Channel c, long long layer) const {
    if (layer <= 0 || layer > static_cast<long long>(extraLayers_.size())) return getBuffer(c);
    return fitPlane(channelOf(extraLayers_[static_cast<std::size_t>(layer - 1)], c), bufferWidth(),
                    bufferHeight());
}

// --- timing ------------------------------------------------------------------------------------

int HostState::frameDelay(int f) const {
    return validFrame(f) ? delays_[static_cast<std::size_t>(f)] : kDefaultDelayMs;
}

void HostState::setFrameDelay(long long f, int ms) {
    if (!validFrame(f)) return;
    delays_[static_cast<std::size_t>(f)] = ms > 0 ? std::min(ms, kMaxDelayMs) : kDefaultDelayMs;
    changed();
}

void HostState::setFrameDelays(const std::vector<int>& ms) {
    for (std::size_t f = 0; f < delays_.size(); ++f)
        delays_[f] = f < ms.size() && ms[f] > 0 ? std::min(ms[f], kMaxDelayMs) : kDefaultDelayMs;
    changed();
}

// --- the undo history ----------------------------------------------------------------------------

// An animation's still picture is only a stale copy of a frame: it is not kept, so that it neither
// costs the history memory nor hides a replaced frame's planes from its count.
HostSnapshot HostState::snapshot() const {
    return {frames_, delays_, frames_.empty() ? still_ : Picture(), alpha_, swap_, current_};
}

void HostState::restore(const HostSnapshot& s) {
    frames_ = s.frames;
    delays_ = s.delays;
    delays_.resize(frames_.size(), kDefaultDelayMs);
    still_ = frames_.empty() ? s.still
                             : frames_[static_cast<std::size_t>(std::clamp(s.current, 0, totalFrames() - 1))];
    alpha_ = s.alpha;
    swap_ = s.swap;
    current_ = frames_.empty() ? 0 : std::clamp(s.current, 0, totalFrames() - 1);
    changed();
}

void HostState::beginAction() {
    cancel_ = false;
    actionStart_ = snapshot();
    historyMoved_ = false;
    actionBoxes_ = dialogs_.size();
    actionStatus_ = false;
}

void HostState::endAction(const std::string& label, bool run) {
    if (!actionStart_) return;
    HostSnapshot before = std::move(*actionStart_);
    actionStart_.reset();
    if (historyMoved_) return;
    HostSnapshot after = snapshot();
    if (!contentDiffers(before, after)) {
        if (run && dialogs_.size() == actionBoxes_ && !actionStatus_) showStatus(label + ": nothing changed");
        return;
    }
    // Planes rewritten with the bytes they held cost nothing: the host shares the old buffers again.
    shareUnchangedPlanes(before, after);
    frames_ = after.frames;
    if (frames_.empty()) still_ = after.still;
    alpha_ = after.alpha;
    swap_ = after.swap;
    const StepSummary summary = summarize(label, before, after);
    history_.push(label, std::move(before), after, after);
    if (onStepAdded) onStepAdded(summary);
}

void HostState::showStatus(const std::string& text) {
    actionStatus_ = true;
    lastStatus_ = text;
    if (onStatus) onStatus(text);
}

void HostState::rollbackAction() {
    if (!actionStart_) return;
    restore(*actionStart_);
    actionStart_.reset();
}

bool HostState::undo() {
    if (locked_) return false;
    auto s = history_.undo();
    if (!s) return false;
    historyMoved_ = true;
    restore(*s);
    return true;
}

bool HostState::redo() {
    if (locked_) return false;
    auto s = history_.redo();
    if (!s) return false;
    historyMoved_ = true;
    restore(*s);
    return true;
}

// --- undo, progress ----------------------------------------------------------------------------

void HostState::saveUndo() {
    undoPicture_ = mainPicture();
    undoAlpha_ = alpha_;
    hasUndo_ = true;
}

bool HostState::restoreUndo() {
    if (!hasUndo_) return false;
    Picture& main = mainPictureMut();
    main.r = fitPlane(undoPicture_.r, bufferWidth(), bufferHeight());
    main.g = fitPlane(undoPicture_.g, bufferWidth(), bufferHeight());
    main.b = fitPlane(undoPicture_.b, bufferWidth(), bufferHeight());
    alpha_ = fitPlane(undoAlpha_, bufferWidth(), bufferHeight());
    changed();
    return true;
}

void HostState::status(double percent) {
    statusOpen_ = true;
    statusValue_ = percent;
    changed();
}

void HostState::statusClose() {
    statusOpen_ = false;
    changed();
}

void HostState::setProgress(double percent) {
    progress_ = percent;
    changed();
}

// --- dialogs -----------------------------------------------------------------------------------

void HostState::messageBox(const std::string& text) {
    dialogs_.push_back({"message", text, kBoxTitle, "null"});
    answerer().message(text, kBoxTitle);
}

int HostState::questionBox(const std::string& text) {
    dialogs_.push_back({"question", text, kBoxTitle, "null"});
    const int a = answerer().question(text, kBoxTitle);
    dialogs_.back().answer = std::to_string(a);
    return a;
}

double HostState::valueBox(const std::string& title, double minimum, double maximum) {
    dialogs_.push_back({"value", title, kBoxTitle, "null"});
    const double v = answerer().value(title, minimum, maximum);
    dialogs_.back().answer = numberText(v);
    return v;
}

std::string HostState::requestFileOpen(const std::string& title, const std::string& def,
                                       const std::string& filter) {
    dialogs_.push_back({"file_open", title, kBoxTitle, "null"});
    std::string f = answerer().fileOpen(title, def, filter);
    dialogs_.back().answer = jsonQuote(f);
    return f;
}

std::string HostState::requestFileSave(const std::string& title, const std::string& def,
                                       const std::string& filter) {
    dialogs_.push_back({"file_save", title, kBoxTitle, "null"});
    std::string f = answerer().fileSave(title, def, filter);
    dialogs_.back().answer = jsonQuote(f);
    return f;
}

int HostState::confirmDiscard() {
    if (!hasUnsavedChanges || !hasUnsavedChanges()) return 1;
    const std::string text = "The animation has changes that have not been saved.\nDiscard them?";
    dialogs_.push_back({"question", text, kBoxTitle, "null"});
    const int a = answerer().discard(text, kBoxTitle);
    dialogs_.back().answer = std::to_string(a);
    return a;
}

std::optional<std::string> HostState::inputBox(const std::string& prompt, const std::string& title,
                                               const std::string& def) {
    dialogs_.push_back({"input", prompt, title, "null"});
    auto a = answerer().input(prompt, title, def);
    dialogs_.back().answer = a ? jsonQuote(*a) : "null";
    return a;
}

void HostState::reportError(const std::string& text) {
    dialogs_.push_back({"error", text, kBoxTitle, "null"});
    answerer().error(text, kBoxTitle);
}

void HostState::sendFormObject(QWidget* form) {
    if (std::find(forms_.begin(), forms_.end(), form) == forms_.end()) forms_.push_back(form);
    if (onFormSent) onFormSent(form);
}

void HostState::forgetForm(QWidget* form) {
    forms_.erase(std::remove(forms_.begin(), forms_.end(), form), forms_.end());
}

// --- set-up --------------------------------------------------------------------------------------

void HostState::loadAnimation(std::vector<Picture> frames, int current, const std::vector<int>& delays) {
    if (frames.empty()) return;
    const int w = frames.front().width();
    const int h = frames.front().height();
    for (auto& f : frames)
        if (f.width() != w || f.height() != h) f = scalePicture(f, w, h);
    frames_ = std::move(frames);
    delays_.assign(frames_.size(), kDefaultDelayMs);
    setFrameDelays(delays);
    current_ = std::clamp(current, 0, totalFrames() - 1);
    still_ = frames_[static_cast<std::size_t>(current_)];
    fitExtrasToBuffer();
    changed();
}

void HostState::loadStill(Picture p) {
    frames_.clear();
    delays_.clear();
    current_ = 0;
    still_ = std::move(p);
    fitExtrasToBuffer();
    changed();
}

void HostState::swapMainAndSwap() {
    Picture& main = mainPictureMut();
    Picture fitted = scalePicture(swap_, bufferWidth(), bufferHeight());
    swap_ = std::move(main);
    main = std::move(fitted);
    changed();
}

void HostState::copyFrameToSwap() {
    swap_ = mainPicture();
    changed();
}

void HostState::fillAlpha(int value) {
    alpha_ = krl::Plane(bufferWidth(), bufferHeight());
    alpha_.fill(static_cast<std::uint8_t>(std::clamp(value, 0, 255)));
    changed();
}

void HostState::loadSwap(const Picture& p) {
    swap_ = scalePicture(p, bufferWidth(), bufferHeight());
    changed();
}

} // namespace kirrel::host
