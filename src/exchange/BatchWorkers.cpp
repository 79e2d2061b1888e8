#include "exchange/BatchWorkers.h"

#include "exchange/BatchOrder.h"
#include "exchange/ConverterProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <thread>

namespace kirrel::exchange {

namespace {

// How far past the first unended line a conversion may start: enough to keep every core busy while a
// slow line holds the front, and a bound on the checks made at every start.
constexpr std::size_t kLookahead = 64;

void deleteMatching(const QString& dir, const QString& pattern, const QString& keep) {
    const QFileInfoList entries =
        QDir(dir).entryInfoList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& e : entries) {
        if (!wildcardMatch(pattern, e.fileName())) continue;
        if (e.fileName() == keep) continue; // the batch file goes last
        if (e.isSymLink() || e.isFile()) QFile::remove(e.absoluteFilePath());
    }
}

RunOutcome missingConverter() {
    return {4, "missing",
            "The converter could not be found: ImageMagick's convert is not installed or not on the search "
            "path."};
}

RunOutcome failedLine(const QString& message) {
    return {1, "failed", message};
}

// The output argument rewritten to the same name inside `folder`, a coder's prefix kept.
QString outputInside(const QString& arg, const QString& folder) {
    static const QRegularExpression prefix("^[A-Za-z0-9_]+:");
    const QRegularExpressionMatch m = prefix.match(arg);
    const int at = m.hasMatch() && m.capturedLength() < arg.size() ? static_cast<int>(m.capturedLength()) : 0;
    return arg.left(at) + folder + "/" + QFileInfo(arg.mid(at)).fileName();
}

// Puts what a line running ahead wrote where it would have written it, over anything there.
QString moveIntoPlace(const QString& from, const QString& temp) {
    QString trouble;
    for (const QFileInfo& e : QDir(from).entryInfoList(QDir::Files | QDir::Hidden | QDir::System)) {
        const QString target = temp + "/" + e.fileName();
        if (std::rename(QFile::encodeName(e.absoluteFilePath()).constData(),
                        QFile::encodeName(target).constData()) != 0 &&
            trouble.isEmpty())
            trouble = "The converter's output " + e.fileName() + " could not be put in place.";
    }
    QDir(from).removeRecursively();
    return trouble;
}

class Run {
  public:
    Run(std::vector<RunLine> lines, const RunnerFolders& folders, const WorkerSettings& settings)
        : lines_(std::move(lines)), folders_(folders), settings_(settings), state_(lines_.size()),
          outcome_(lines_.size()), ranAhead_(lines_.size(), false),
          ahead_(aheadFolder(folders.temp, QCoreApplication::applicationPid())) {}

    RunOutcome go() {
        std::vector<std::thread> workers;
        for (int w = 0; w < std::max(1, settings_.workers); ++w)
            workers.emplace_back([this] { work(); });
        {
            std::unique_lock lock(mutex_);
            while (true) {
                endFront(lock);
                if (first_ >= lines_.size()) break;
                startWhatMay();
                changed_.wait(lock);
            }
            closing_ = true;
        }
        changed_.notify_all();
        for (std::thread& t : workers)
            t.join();
        QDir(ahead_).removeRecursively();
        const auto failed = std::find_if(outcome_.begin(), outcome_.end(),
                                         [](const RunOutcome& o) { return !o.kind.isEmpty(); });
        return failed == outcome_.end() ? RunOutcome{} : *failed;
    }

  private:
    enum class State { Waiting, Queued, Ended };

    // Moves the front past every line that has ended, putting the outputs of lines that ran ahead in
    // place; lines that need no converter are done here when they reach the front.
    void endFront(std::unique_lock<std::mutex>& lock) {
        while (first_ < lines_.size()) {
            const std::size_t i = first_;
            const BatchCommand& cmd = lines_[i].command;
            if (state_[i] == State::Waiting && cmd.kind != BatchCommand::Kind::Convert) {
                state_[i] = State::Ended;
                lock.unlock();
                if (cmd.kind == BatchCommand::Kind::Del)
                    deleteMatching(cmd.args[0], cmd.args[1], settings_.keep);
                lock.lock();
            } else if (state_[i] == State::Waiting && settings_.converter.isEmpty()) {
                state_[i] = State::Ended;
                outcome_[i] = missingConverter();
            }
            if (state_[i] != State::Ended) return;
            if (ranAhead_[i]) {
                lock.unlock();
                const QString trouble = moveIntoPlace(lineFolder(i), folders_.temp);
                lock.lock();
                if (!trouble.isEmpty() && outcome_[i].kind.isEmpty()) outcome_[i] = failedLine(trouble);
            }
            ++first_;
        }
    }

    // Hands the earliest conversions that may start to free workers, the front's first.
    void startWhatMay() {
        if (settings_.converter.isEmpty()) return;
        const std::size_t end = std::min(lines_.size(), first_ + kLookahead);
        for (std::size_t i = first_; i < end && busy_ < std::max(1, settings_.workers); ++i) {
            if (state_[i] != State::Waiting || lines_[i].command.kind != BatchCommand::Kind::Convert)
                continue;
            const bool atFront = i == first_;
            if (!atFront && !mayStartAhead(lines_, first_, i)) continue;
            ConverterCall call{settings_.converter, lines_[i].command.args, lines_[i].workingDir,
                               settings_.environment, folders_.limitSeconds};
            if (!atFront) {
                QDir().mkpath(lineFolder(i));
                call.args[lines_[i].outputArg] = outputInside(call.args[lines_[i].outputArg], lineFolder(i));
                ranAhead_[i] = true;
            }
            state_[i] = State::Queued;
            ++busy_;
            queue_.emplace_back(i, std::move(call));
        }
        if (!queue_.empty()) changed_.notify_all();
    }

    void work() {
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return closing_ || !queue_.empty(); });
            if (queue_.empty()) return;
            const auto [i, call] = std::move(queue_.front());
            queue_.pop_front();
            const bool ahead = ranAhead_[i];
            lock.unlock();
            ConverterResult result = runConverter(call);
            // The converter names the output where the line would have put it, as it does in its turn.
            if (ahead) result.error.replace(lineFolder(i), folders_.temp);
            lock.lock();
            if (!result.ok) outcome_[i] = failedLine(converterFailureMessage(result, call.limitSeconds));
            state_[i] = State::Ended;
            --busy_;
            changed_.notify_all();
        }
    }

    QString lineFolder(std::size_t i) const { return ahead_ + "/" + QString::number(i); }

    std::vector<RunLine> lines_;
    const RunnerFolders& folders_;
    const WorkerSettings& settings_;
    std::vector<State> state_;
    std::vector<RunOutcome> outcome_;
    std::vector<bool> ranAhead_;
    QString ahead_;
    std::size_t first_ = 0;
    int busy_ = 0;
    bool closing_ = false;
    std::deque<std::pair<std::size_t, ConverterCall>> queue_;
    std::mutex mutex_;
    std::condition_variable changed_;
};

} // namespace

QString aheadFolder(const QString& temp, qint64 runnerPid) {
    return temp + "/.kirrel-ahead-" + QString::number(runnerPid);
}

RunOutcome runPlannedLines(const std::vector<BatchCommand>& commands, const RunnerFolders& folders,
                           const QString& startDir, const WorkerSettings& settings) {
    return Run(runLines(commands, folders, startDir), folders, settings).go();
}

} // namespace kirrel::exchange
