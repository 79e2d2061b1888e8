#pragma once
// The outside programs the host's own file formats rest on (ffmpeg, ffprobe, ImageMagick's convert):
// finding them, running them without a shell, and what the user is told when one is missing.

#include <QString>
#include <QStringList>

#include <functional>
#include <stdexcept>

namespace kirrel::host {

// A long read or write reports its progress (0..100) and may be cancelled; either may be empty.
struct ToolProgress {
    std::function<void(double percent)> report{};
    std::function<bool()> cancelled{};
};

// A tool the task needs is not installed; the message names the Debian package that brings it.
struct MissingTool : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The user cancelled a running read or write; nothing was changed.
struct Cancelled : std::runtime_error {
    Cancelled() : std::runtime_error("Cancelled: nothing was changed.") {}
};

// The program's path, or empty when it is not on PATH.
QString findTool(const QString& program);
// The same, or MissingTool saying that `task` (e.g. "Opening an APNG file") needs it.
QString requireTool(const QString& program, const QString& task);

} // namespace kirrel::host
