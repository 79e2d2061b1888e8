#include "exchange/ConverterRun.h"

#include "exchange/BatchRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>

#include <fstream>
#include <stdexcept>

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
    for (const QString& n : names)
        if (wildcardMatch(pattern, n)) return true;
    return false;
}

void writeBatchFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("Path not found: " + path);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("Disk full: " + path);
}

ConverterRun::ConverterRun(std::string temp, std::string app)
    : temp_(std::move(temp)), app_(std::move(app)) {}

ConverterRun::~ConverterRun() {
    // A run abandoned by an error is not killed: the runner finishes and removes its own files.
    if (process_ && process_->state() != QProcess::NotRunning) {
        process_->waitForFinished(kReapMs);
    }
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
    process_->setArguments({"--temp", temp, "--app", QString::fromStdString(app_), batchPath});
    // The runner starts in the temporary folder, where the bare names of the batch files live.
    process_->setWorkingDirectory(temp);
    process_->setStandardInputFile(QProcess::nullDevice());
    process_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
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

void ConverterRun::pause() {
    if (!runnerEnded()) process_->waitForFinished(kPollMs);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void ConverterRun::waitGone(const QString& pattern) {
    const QString temp = QString::fromStdString(temp_);
    while (entryExists(temp, pattern)) {
        if (runnerEnded()) return;
        pause();
    }
}

std::optional<ConverterFailure> ConverterRun::finish() {
    if (process_ && process_->state() != QProcess::NotRunning) process_->waitForFinished(kReapMs);
    const QString temp = QString::fromStdString(temp_);
    // A batch file the runner never took up would otherwise wait there for a later run.
    if (runnerEnded())
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
