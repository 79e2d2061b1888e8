#pragma once
// A live preview's run: a form's plan of what Apply would do with its controls as they stand, carried
// out on a scratch host that holds small copies of the running host's content (see host/ScratchHost.h
// and host/ScaledCopies.h). The running host, its trace, its history and its temporary folder never
// see the run.

#include "host/Picture.h"
#include "host/ScaledCopies.h"
#include "panel/PreviewPlan.h"

#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

namespace kirrel::stored {
class SlotCopies;
}

namespace kirrel::panel {

// What a preview shows: frames with their delays in milliseconds, or a short text when the run
// refused or failed.
struct PreviewFrames {
    std::vector<host::Picture> frames;
    std::vector<int> delays;
    std::string text;
};

class PreviewRunner {
  public:
    // Pictures are brought within boxWidth x boxHeight pixels.
    PreviewRunner(int boxWidth, int boxHeight);
    ~PreviewRunner();
    PreviewRunner(const PreviewRunner&) = delete;
    PreviewRunner& operator=(const PreviewRunner&) = delete;

    // Never throws: whatever goes wrong in the run becomes the text shown.
    PreviewFrames run(const PreviewPlan& plan);

  private:
    PreviewFrames runOnScratch(const PreviewPlan& plan);
    const std::string& scratchFolder();

    int boxWidth_, boxHeight_;
    host::ScaledCopies copies_;
    // Made when a stored animation is first asked for: most previews never need them.
    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<stored::SlotCopies> slots_;
    std::string folderPath_;
};

} // namespace kirrel::panel
