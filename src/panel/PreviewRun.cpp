#include "panel/PreviewRun.h"

#include "host/ScratchHost.h"
#include "stored/SlotCopies.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>

namespace kirrel::panel {

namespace {

constexpr const char* kNothing = "Nothing to preview";
constexpr const char* kFailed = "The preview failed";

PreviewFrames words(std::string text) {
    PreviewFrames out;
    out.text = std::move(text);
    return out;
}

} // namespace

PreviewRunner::PreviewRunner(int boxWidth, int boxHeight)
    : boxWidth_(boxWidth), boxHeight_(boxHeight), copies_(boxWidth, boxHeight) {}

PreviewRunner::~PreviewRunner() = default;

PreviewFrames PreviewRunner::run(const PreviewPlan& plan) {
    try {
        return runOnScratch(plan);
    } catch (const host::ScratchStop& stop) {
        // Apply would ask the user something here; the preview has no one to ask.
        return words(stop.reason);
    } catch (const std::bad_alloc&) {
        return words("Out of memory");
    } catch (const std::exception& e) {
        return words(*e.what() ? e.what() : kFailed);
    } catch (...) {
        // Not even the panel's own end of the program: a preview ends nothing but itself.
        return words(kFailed);
    }
}

const std::string& PreviewRunner::scratchFolder() {
    if (!folder_) {
        folder_ = std::make_unique<QTemporaryDir>();
        if (!folder_->isValid()) {
            folder_.reset();
            throw std::runtime_error("No room for the preview's files");
        }
        folderPath_ = folder_->path().toStdString();
        slots_ = std::make_unique<stored::SlotCopies>(folderPath_, boxWidth_, boxHeight_);
    }
    return folderPath_;
}

PreviewFrames PreviewRunner::runOnScratch(const PreviewPlan& plan) {
    if (!plan.refusal.empty()) return words(plan.refusal);
    const host::HostState& real = host::runningHost();
    const int total = real.totalFrames();
    if (!plan.run || plan.first < 0 || plan.first > plan.last || plan.last >= total) return words(kNothing);

    host::HostState scratch;
    copies_.copyInto(scratch, real, plan.first, plan.last, scratchFolder());
    if (plan.slot >= 0) slots_->refresh(real.tempDir(), plan.slot);
    const double scale =
        real.bufferWidth() > 0 ? static_cast<double>(scratch.bufferWidth()) / real.bufferWidth() : 1.0;
    {
        host::ScratchHost scope(scratch);
        plan.run(scale);
    }
    // A run that refuses says why in a message box and changes nothing.
    const auto& boxes = scratch.dialogs();
    const auto said = std::find_if(boxes.rbegin(), boxes.rend(), [](const host::DialogRecord& d) {
        return d.kind == "message" || d.kind == "error";
    });
    if (said != boxes.rend()) return words(said->text);

    // Frames the run added next to its range belong to what it shows.
    const int last = std::min(plan.last + scratch.totalFrames() - total, scratch.totalFrames() - 1);
    PreviewFrames out;
    for (int f = plan.first; f <= last; ++f) {
        out.frames.push_back(scratch.framePicture(f));
        out.delays.push_back(scratch.frameDelay(f));
    }
    if (out.frames.empty()) return words(kNothing);
    return out;
}

} // namespace kirrel::panel
