#include "host/History.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

namespace kirrel::host {

namespace {

bool samePlane(const krl::Plane& a, const krl::Plane& b) {
    return a.sharesBufferWith(b) || (a.empty() && b.empty());
}

bool samePicture(const Picture& a, const Picture& b) {
    return samePlane(a.r, b.r) && samePlane(a.g, b.g) && samePlane(a.b, b.b);
}

bool equalBytes(const krl::Plane& a, const krl::Plane& b) {
    return a.sameBounds(b) && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

// A frame changed when one of its planes holds other bytes; a plane that was merely rewritten with
// the same bytes does not count.
bool frameChanged(const Picture& a, const Picture& b) {
    if (samePicture(a, b)) return false;
    return !equalBytes(a.r, b.r) || !equalBytes(a.g, b.g) || !equalBytes(a.b, b.b);
}

void share(const krl::Plane& before, krl::Plane& after) {
    if (!samePlane(before, after) && equalBytes(before, after)) after = before;
}

void sharePicture(const Picture& before, Picture& after) {
    share(before.r, after.r);
    share(before.g, after.g);
    share(before.b, after.b);
}

template <class F> void forEachPlane(const HostSnapshot& s, F f) {
    auto picture = [&](const Picture& p) {
        f(p.r);
        f(p.g);
        f(p.b);
    };
    for (const Picture& p : s.frames)
        picture(p);
    picture(s.still);
    picture(s.swap);
    f(s.alpha);
}

} // namespace

std::optional<ChangedFrames> changedFrames(const HostSnapshot& before, const HostSnapshot& after) {
    const std::size_t common = std::min(before.frames.size(), after.frames.size());
    std::optional<int> first, last;
    for (std::size_t f = 0; f < common; ++f)
        if (frameChanged(before.frames[f], after.frames[f])) {
            if (!first) first = static_cast<int>(f);
            last = static_cast<int>(f);
        }
    if (after.frames.size() != before.frames.size() && !after.frames.empty()) {
        if (!first) first = static_cast<int>(common);
        last = static_cast<int>(after.frames.size()) - 1;
    }
    if (!first) return std::nullopt;
    return ChangedFrames{*first, *last};
}

StepSummary summarize(const std::string& label, const HostSnapshot& before, const HostSnapshot& after) {
    StepSummary s;
    s.label = label;
    s.frames = changedFrames(before, after);
    s.frameCount = before.frames.size() != after.frames.size();
    s.delays = !s.frameCount && before.delays != after.delays;
    s.alpha = !samePlane(before.alpha, after.alpha) && !equalBytes(before.alpha, after.alpha);
    s.swap = frameChanged(before.swap, after.swap);
    if (before.frames.empty() && after.frames.empty() && frameChanged(before.still, after.still))
        s.frames = ChangedFrames{0, 0};
    return s;
}

std::string describe(const StepSummary& s) {
    std::vector<std::string> parts;
    if (s.frames) {
        if (s.frames->first == s.frames->last)
            parts.push_back("frame " + std::to_string(s.frames->first) + " changed");
        else
            parts.push_back("frames " + std::to_string(s.frames->first) + "\u2013" +
                            std::to_string(s.frames->last) + " changed");
    }
    if (s.delays) parts.push_back("frame delays changed");
    if (s.alpha) parts.push_back("the alpha channel changed");
    if (s.swap) parts.push_back("the swap picture changed");
    std::string text = s.label + ": ";
    for (std::size_t i = 0; i < parts.size(); ++i)
        text += (i ? ", " : "") + parts[i];
    return parts.empty() ? s.label + ": done" : text;
}

bool contentDiffers(const HostSnapshot& a, const HostSnapshot& b) {
    if (a.frames.size() != b.frames.size() || a.delays != b.delays) return true;
    for (std::size_t f = 0; f < a.frames.size(); ++f)
        if (frameChanged(a.frames[f], b.frames[f])) return true;
    if (a.frames.empty() && frameChanged(a.still, b.still)) return true;
    return frameChanged(a.swap, b.swap) || (!samePlane(a.alpha, b.alpha) && !equalBytes(a.alpha, b.alpha));
}

void shareUnchangedPlanes(const HostSnapshot& before, HostSnapshot& after) {
    const std::size_t common = std::min(before.frames.size(), after.frames.size());
    for (std::size_t f = 0; f < common; ++f)
        sharePicture(before.frames[f], after.frames[f]);
    sharePicture(before.still, after.still);
    sharePicture(before.swap, after.swap);
    share(before.alpha, after.alpha);
}

void History::push(std::string label, HostSnapshot before, HostSnapshot after, const HostSnapshot& now) {
    steps_.resize(done_);
    steps_.push_back({std::move(label), std::move(before), std::move(after)});
    done_ = steps_.size();
    trim(now);
}

const std::string& History::undoLabel() const {
    static const std::string none;
    return canUndo() ? steps_[done_ - 1].label : none;
}

const std::string& History::redoLabel() const {
    static const std::string none;
    return canRedo() ? steps_[done_].label : none;
}

std::optional<HostSnapshot> History::undo() {
    if (!canUndo()) return std::nullopt;
    return steps_[--done_].before;
}

std::optional<HostSnapshot> History::redo() {
    if (!canRedo()) return std::nullopt;
    return steps_[done_++].after;
}

std::vector<std::string> History::undoLabels() const {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < done_; ++i)
        out.push_back(steps_[i].label);
    return out;
}

std::vector<std::string> History::redoLabels() const {
    std::vector<std::string> out;
    for (std::size_t i = done_; i < steps_.size(); ++i)
        out.push_back(steps_[i].label);
    return out;
}

std::size_t History::cost(const HostSnapshot& now) const {
    std::unordered_set<const std::uint8_t*> current;
    forEachPlane(now, [&](const krl::Plane& p) { current.insert(p.data()); });
    std::unordered_set<const std::uint8_t*> counted;
    std::size_t bytes = 0;
    auto add = [&](const krl::Plane& p) {
        if (p.empty() || current.count(p.data()) || !counted.insert(p.data()).second) return;
        bytes += p.size();
    };
    for (const Step& s : steps_) {
        forEachPlane(s.before, add);
        forEachPlane(s.after, add);
    }
    return bytes;
}

void History::setBudget(std::size_t bytes, int maxSteps) {
    budget_ = bytes;
    maxSteps_ = std::max(1, maxSteps);
}

// The oldest steps go first; the newest stays even when it alone is over the budget, so that the
// action just taken can always be undone.
void History::trim(const HostSnapshot& now) {
    std::size_t drop = 0;
    while (steps_.size() - drop > static_cast<std::size_t>(maxSteps_))
        ++drop;
    if (drop) {
        steps_.erase(steps_.begin(), steps_.begin() + static_cast<std::ptrdiff_t>(drop));
        done_ -= std::min(done_, drop);
    }
    while (steps_.size() > 1 && cost(now) > budget_) {
        steps_.erase(steps_.begin());
        if (done_ > 0) --done_;
    }
}

void History::clear() {
    steps_.clear();
    done_ = 0;
}

} // namespace kirrel::host
