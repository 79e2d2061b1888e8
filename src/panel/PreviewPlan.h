#pragma once
// What a form tells its live preview: the run Apply would make with the controls as they stand.

#include <functional>
#include <string>

namespace kirrel::panel {

struct PreviewPlan {
    // Set when Apply would refuse to run as things stand: these words are shown and nothing runs.
    std::string refusal;
    // The frames the run reads and writes; what it leaves there (and in the frames it adds next to
    // them) is shown.
    int first = 0, last = -1;
    // The slot (0..3) of a stored animation the run reads, else -1.
    int slot = -1;
    // The run, made exactly as Apply makes it. `scale` is the copies' size against the frames' (1 for
    // an animation that fits the preview): a run that takes sizes in pixels may scale them by it.
    std::function<void(double scale)> run;
};
using PreviewPlanner = std::function<PreviewPlan()>;

} // namespace kirrel::panel
