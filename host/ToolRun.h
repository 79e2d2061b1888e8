#pragma once
// Running one of the media tools: without a shell, arguments as a list, in a process group of its
// own so that a cancel ends at once whatever it started, and its output read as it comes so that a
// long stream of frames is never held whole.

#include "host/MediaTools.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

namespace kirrel::host {

class ToolRun {
  public:
    // Starts the program; throws std::runtime_error when it cannot be started.
    ToolRun(const QString& program, const QStringList& args, ToolProgress progress = {});
    ~ToolRun(); // ends a tool that is still running, with its process group
    ToolRun(const ToolRun&) = delete;
    ToolRun& operator=(const ToolRun&) = delete;

    using Sink = std::function<void(const char* data, qint64 size)>;
    // Hands the tool's standard output to `sink` as it arrives until the tool ends, and returns its
    // exit code (-1 when it crashed). A cancel ends the tool and throws Cancelled; whatever the sink
    // throws ends the tool too and is passed on.
    int finish(const Sink& sink = {});
    // The same, keeping the whole output (for the tools' short reports).
    int finish(QByteArray& out);
    // The last of what the tool wrote to its error output, trimmed, for a message.
    QString complaint() const;

  private:
    void takeErrorOutput();
    void end();

    QProcess process_;
    ToolProgress progress_;
    QByteArray errors_;
};

// A private temporary folder for one read or write, removed with everything in it on every exit path.
class PrivateFolder {
  public:
    PrivateFolder(); // throws std::runtime_error when none can be made
    QString path(const QString& name) const;
    // A plain-named link to `file` in the folder: a tool that reads patterns (%d, [1], *, ?) or options
    // (a leading '-') in a file name then opens exactly that file. A copy where links cannot be made.
    QString linkTo(const QString& file, const QString& name) const;

  private:
    QTemporaryDir dir_;
};

} // namespace kirrel::host
