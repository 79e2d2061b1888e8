#include "host/HostExport.h"

#include "host/HostState.h"

namespace kirrel::host {

void exportHostAnimation(const HostState& host, const QString& path, const ExportOptions& options,
                         const ToolProgress& progress) {
    std::vector<Picture> frames;
    std::vector<int> delays;
    for (int f = 0; f < host.totalFrames(); ++f) {
        frames.push_back(host.framePicture(f));
        delays.push_back(host.frameDelay(f));
    }
    if (frames.empty()) {
        frames.push_back(host.mainPicture());
        delays.push_back(HostState::kDefaultDelayMs);
    }
    exportAnimation(path, ExportInput{frames, delays, host.alphaPlane(), host.secondaryColor()}, options,
                    progress);
}

} // namespace kirrel::host
