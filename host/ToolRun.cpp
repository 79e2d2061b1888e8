#include "host/ToolRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <stdexcept>

#if defined(__unix__)
#include <csignal>
#include <sys/types.h>
#include <unistd.h>
#endif

namespace kirrel::host {

namespace {
constexpr int kPollMs = 50;             // how often a quiet tool is checked for a cancel
constexpr qsizetype kKeptErrors = 4096; // enough of a tool's complaint for a message
} // namespace

ToolRun::ToolRun(const QString& program, const QStringList& args, ToolProgress progress)
    : progress_(std::move(progress)) {
    process_.setStandardInputFile(QProcess::nullDevice());
#if defined(__unix__)
    process_.setChildProcessModifier([] { ::setpgid(0, 0); });
#endif
    process_.start(program, args, QIODevice::ReadOnly);
    if (!process_.waitForStarted(-1))
        throw std::runtime_error(
            (QFileInfo(program).fileName() + " could not be started: " + process_.errorString())
                .toStdString());
}

ToolRun::~ToolRun() {
    end();
}

void ToolRun::end() {
    if (process_.state() == QProcess::NotRunning) return;
#if defined(__unix__)
    if (process_.processId() > 0) ::kill(-static_cast<pid_t>(process_.processId()), SIGKILL);
#endif
    process_.kill();
    process_.waitForFinished(-1);
}

void ToolRun::takeErrorOutput() {
    const QByteArray more =
        process_.readAllStandardError(); // read even when not kept, so the pipe never fills
    if (errors_.size() < kKeptErrors) errors_ += more.left(kKeptErrors - errors_.size());
}

int ToolRun::finish(const Sink& sink) {
    try {
        for (;;) {
            if (progress_.cancelled && progress_.cancelled()) throw Cancelled();
            const bool more = process_.waitForReadyRead(kPollMs);
            const QByteArray out = process_.readAllStandardOutput();
            if (sink && !out.isEmpty()) sink(out.constData(), out.size());
            takeErrorOutput();
            if (!more && process_.state() == QProcess::NotRunning) break;
        }
    } catch (...) {
        end();
        throw;
    }
    if (process_.exitStatus() != QProcess::NormalExit) return -1;
    return process_.exitCode();
}

int ToolRun::finish(QByteArray& out) {
    return finish([&out](const char* data, qint64 size) { out.append(data, static_cast<qsizetype>(size)); });
}

QString ToolRun::complaint() const {
    // The first line names what went wrong; the later ones are usually its consequences.
    QString text = QString::fromLocal8Bit(errors_).trimmed().section('\n', 0, 0).trimmed();
    // ImageMagick ends its lines with where in its own source the complaint was raised.
    const qsizetype where = text.indexOf(" @ ");
    if (where > 0) text.truncate(where);
    return text;
}

PrivateFolder::PrivateFolder() : dir_(QDir::tempPath() + "/kirrel-media-XXXXXX") {
    if (!dir_.isValid())
        throw std::runtime_error("Kirrel could not make a temporary folder in " +
                                 QDir::toNativeSeparators(QDir::tempPath()).toStdString());
}

QString PrivateFolder::path(const QString& name) const {
    return dir_.filePath(name);
}

QString PrivateFolder::linkTo(const QString& file, const QString& name) const {
    QString link = path(name);
    const QString target = QFileInfo(file).absoluteFilePath();
    if (!QFile::link(target, link) && !QFile::copy(target, link))
        throw std::runtime_error((QFileInfo(file).fileName() + " could not be opened").toStdString());
    return link;
}

} // namespace kirrel::host
