#include "exchange/ConverterRun.h"

#include "exchange/BatchRunner.h"
#include "host/HostState.h"
#include "host/MediaTools.h"
#include "panel/Interrupt.h"
#include "panel/WaitEvents.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

namespace kirrel::exchange {

namespace {
constexpr int kPollMs = 20;
// After the last awaited file is gone the runner only has to exit; it is given this long.
constexpr int kReapMs = 10000;
} // namespace

QString batchRunnerProgram(const std::string& appDir) {
    const QByteArray env = qgetenv("KIRREL_BATCH_RUNNER");
    if (!env.isEmpty()) return QString::fromLocal8Bit(env);
    QString beside = QCoreApplication::applicationDirPath() + "/kirrel_batch";
    if (QFileInfo(beside).isExecutable()) return beside;
    return QString::fromStdString(appDir) + "/kirrel_batch";
}

bool entryExists(const QString& dir, const QString& pattern) {
    const QStringList names =
        QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return std::any_of(names.begin(), names.end(),
                       [&pattern](const QString& n) { return wildcardMatch(pattern, n); });
}

void writeBatchFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("Path not found: " + path);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("Disk full: " + path);
}

ConverterRun::ConverterRun(std::string temp, std::string app)
    : temp_(std::move(temp)), app_(std::move(app)) {}

ConverterRun::~ConverterRun() {
    if (process_ && process_->state() != QProcess::NotRunning) endRunner();
}

void ConverterRun::redirect(const std::string& inBatch, const std::string& staged) {
    redirects_.emplace_back(inBatch, staged);
}

void ConverterRun::start(const QString& batchName) {
    batchName_ = batchName;
    const QString temp = QString::fromStdString(temp_);
    const QString batchPath = temp + "/" + batchName;
    // A marker left by an earlier run says nothing about this one.
    for (const QFileInfo& e : QDir(temp).entryInfoList(QDir::Files))
        if (e.fileName().compare(batchName + ".failed", Qt::CaseInsensitive) == 0)
            QFile::remove(e.filePath());
    process_ = std::make_unique<QProcess>();
    process_->setProgram(batchRunnerProgram(app_));
    QStringList args = {"--temp",  temp,
                        "--app",   QString::fromStdString(app_),
                        "--limit", QString::number(host::runningHost().converterTimeoutSeconds())};
    for (const auto& [from, to] : redirects_)
        args << "--stage" << QString::fromStdString(from) << QString::fromStdString(to);
    process_->setArguments(args << batchPath);
    // The runner starts in the temporary folder, where the bare names of the batch files live, and
    // leads a process group of its own: ending the group ends every converter it started.
    process_->setWorkingDirectory(temp);
    process_->setStandardInputFile(QProcess::nullDevice());
    process_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_->setChildProcessModifier([] { ::setpgid(0, 0); });
    clock_.start();
    process_->start();
    if (!process_->waitForStarted(30000)) {
        startFailure_ = ConverterFailure{
            "runner", "The converter's batch runner could not be started: " + process_->program() + " (" +
                          process_->errorString() + ")."};
    }
}

bool ConverterRun::runnerEnded() {
    return !process_ || process_->state() == QProcess::NotRunning;
}

void ConverterRun::endRunner() {
    const qint64 pid = process_->processId();
    if (pid > 0) ::kill(-static_cast<pid_t>(pid), SIGKILL);
    process_->waitForFinished(kReapMs);
}

void ConverterRun::stopIfAsked() {
    if (runnerEnded()) return;
    const host::HostState& host = host::runningHost();
    if (host.cancelRequested() || interrupted()) {
        endRunner();
        throw host::Cancelled();
    }
    // The runner ends a single conversion past the limit and says so; this is the backstop for a run
    // that hangs anywhere else, given a little more time so that the runner's word comes first.
    const int limit = host.converterTimeoutSeconds();
    if (clock_.isValid() && clock_.elapsed() > qint64{limit} * 1000 + 5000) {
        endRunner();
        throw std::runtime_error(
            "The converter did not finish within " +
            (limit % 60 == 0 ? std::to_string(limit / 60) + " minutes" : std::to_string(limit) + " seconds") +
            " and was stopped.");
    }
}

void ConverterRun::pause() {
    stopIfAsked();
    if (!runnerEnded()) process_->waitForFinished(kPollMs);
    panel::processEventsWhileWaiting();
    stopIfAsked();
}

void ConverterRun::waitGone(const QString& pattern) {
    const QString temp = QString::fromStdString(temp_);
    while (entryExists(temp, pattern)) {
        if (runnerEnded()) return;
        pause();
    }
}

std::optional<ConverterFailure> ConverterRun::finish() {
    while (process_ && process_->state() != QProcess::NotRunning)
        pause();
    const QString temp = QString::fromStdString(temp_);
    // A batch file the runner never took up would otherwise wait there for a later run.
    for (const QFileInfo& e : QDir(temp).entryInfoList(QDir::Files))
        if (e.fileName().compare(batchName_, Qt::CaseInsensitive) == 0) QFile::remove(e.filePath());
    if (startFailure_) return startFailure_;
    for (const QFileInfo& e : QDir(temp).entryInfoList(QDir::Files)) {
        if (e.fileName().compare(batchName_ + ".failed", Qt::CaseInsensitive) != 0) continue;
        QFile marker(e.filePath());
        std::optional<ConverterFailure> f;
        if (marker.open(QIODevice::ReadOnly)) {
            const QStringList lines = QString::fromUtf8(marker.read(qint64{64} * 1024)).split('\n');
            f = ConverterFailure{lines.value(0).trimmed(), lines.value(1).trimmed()};
            marker.close();
        }
        QFile::remove(e.filePath());
        return f;
    }
    // A runner that died before it could say anything still counts as a failure.
    if (process_ && (process_->exitStatus() != QProcess::NormalExit || process_->exitCode() == 2))
        return ConverterFailure{"runner", "The converter run ended unexpectedly."};
    return std::nullopt;
}

std::string failureText(const ConverterFailure& f) {
    return f.message.toStdString();
}

} // namespace kirrel::exchange
