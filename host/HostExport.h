#pragma once
// The host's animation as File > Export Animation and a session script's "export" step write it:
// its frames (a still picture as one frame), their delays, the alpha channel and the paper colour.

#include "host/AnimationExport.h"

namespace kirrel::host {

class HostState;

void exportHostAnimation(const HostState& host, const QString& path, const ExportOptions& options,
                         const ToolProgress& progress = {});

} // namespace kirrel::host
