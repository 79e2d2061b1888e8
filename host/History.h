#pragma once
// The host's undo history: one step per user action that changed the animation, its delays, the
// alpha channel or the swap picture, whoever made the change (a panel run, a host command, an
// import). A step keeps the host's content before and after the action. Pictures are shared
// copy-on-write, so a step holds only the planes the action replaced: a step that touched 10 of 300
// frames costs 10 frames. The oldest steps go when the history would hold more than its memory
// budget (planes no other step and not the current content holds) or more steps than its limit.

#include "host/Picture.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kirrel::host {

// What an undo step puts back: the host's content and the frame shown.
struct HostSnapshot {
    std::vector<Picture> frames;
    std::vector<int> delays;
    Picture still;
    krl::Plane alpha;
    Picture swap;
    int current = 0;
};

// Frames whose planes differ between two snapshots of the same animation, as the first and last
// such frame; nothing when none differs. A frame count that changed counts from the first frame
// that differs to the end.
struct ChangedFrames {
    int first = 0, last = 0;
};
std::optional<ChangedFrames> changedFrames(const HostSnapshot& before, const HostSnapshot& after);
// What one step changed, for the words the user reads after it.
struct StepSummary {
    std::string label;
    std::optional<ChangedFrames> frames;
    bool frameCount = false, delays = false, alpha = false, swap = false;
};
StepSummary summarize(const std::string& label, const HostSnapshot& before, const HostSnapshot& after);
// "Wipes: frames 10–30 changed", "Swap Main and Swap: the swap picture changed", ...
std::string describe(const StepSummary& s);
// Whether anything the history keeps differs (the frame shown does not count).
bool contentDiffers(const HostSnapshot& a, const HostSnapshot& b);
// Where a plane of `after` holds the same bytes as the plane in the same place of `before`, the
// after plane is made to share before's buffer, so that equal content costs no memory twice.
void shareUnchangedPlanes(const HostSnapshot& before, HostSnapshot& after);

class History {
  public:
    static constexpr std::size_t kDefaultBudget = std::size_t{2} << 30; // 2 GiB
    static constexpr int kDefaultMaxSteps = 1000;

    // Adds a step after the current one; the steps that could have been redone go.
    void push(std::string label, HostSnapshot before, HostSnapshot after, const HostSnapshot& now);
    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < steps_.size(); }
    // The step an undo or a redo would take back or bring again.
    const std::string& undoLabel() const;
    const std::string& redoLabel() const;
    // Moves one step back or forward and gives the content to show.
    std::optional<HostSnapshot> undo();
    std::optional<HostSnapshot> redo();

    // Labels of the steps that can be undone, oldest first, and of those that can be redone, the
    // next first.
    std::vector<std::string> undoLabels() const;
    std::vector<std::string> redoLabels() const;

    // Bytes of planes the history alone keeps alive, beside the current content.
    std::size_t cost(const HostSnapshot& now) const;
    void setBudget(std::size_t bytes, int maxSteps = kDefaultMaxSteps);
    void clear();

  private:
    struct Step {
        std::string label;
        HostSnapshot before, after;
    };
    void trim(const HostSnapshot& now);

    std::vector<Step> steps_;
    std::size_t done_ = 0;
    std::size_t budget_ = kDefaultBudget;
    int maxSteps_ = kDefaultMaxSteps;
};

} // namespace kirrel::host
