#pragma once
// One run of a converter batch file as the panel sees it: the file is written into the temporary
// folder, handed to our batch runner (kirrel_batch, a separate process started without a shell, in a
// process group of its own), and the panel waits by watching the disk for the files the batch
// deletes.
//
// The waits poll: a short sleep between looks, with the window's own events handled meanwhile, so
// the panel neither burns a core nor freezes. The user's input is held back until the run ends (a
// second run would meet the first one's files), but for the way out: the host's Cancel button and
// Escape. A cancel, a signal to end the program, or a run past the time limit ends the runner and
// every converter it started at once, and the wait throws; the action then changes nothing. A wait
// also ends when the runner process has ended, whatever is left on the disk: a runner that could not
// start, or that refused its file, never leaves the panel spinning. What went wrong is read from the
// marker the runner leaves (see BatchRunner.h).

#include <QProcess>
#include <QString>

#include <QElapsedTimer>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kirrel::exchange {

struct ConverterFailure {
    QString kind;    // "missing", "failed", "refused" or "runner" (the runner itself could not start)
    QString message; // for the user
};

// The runner program: KIRREL_BATCH_RUNNER if set, else kirrel_batch beside the running program, else
// in the host's program folder.
QString batchRunnerProgram(const std::string& appDir);

// True when an entry of the folder matches the wildcard pattern, without regard to case, as the
// platform the batch files were made for looks names up.
bool entryExists(const QString& dir, const QString& pattern);

// Writes a batch file afresh (a stale file of an earlier run must not leave its tail behind).
void writeBatchFile(const std::string& path, const std::string& bytes);

class ConverterRun {
  public:
    ConverterRun(std::string temp, std::string app);
    ~ConverterRun(); // a runner still running is ended, with every converter it started

    // The runner writes what the batch calls `inBatch` under `staged` instead (see OutputStage).
    void redirect(const std::string& inBatch, const std::string& staged);
    // Starts the batch file named (as the platform is told it: its case may differ from the file's).
    void start(const QString& batchName);
    // Polls until no entry of the temporary folder matches the pattern, or the runner has ended.
    void waitGone(const QString& pattern);
    // One pause of the polling: a short sleep with the window's events handled. Throws when the user
    // cancelled, the program is asked to end, or the run went past the time limit.
    void pause();
    bool runnerEnded();
    // Lets the runner finish and reads its marker; nothing when the run went well.
    std::optional<ConverterFailure> finish();

  private:
    void stopIfAsked();
    void endRunner();

    std::string temp_, app_;
    QString batchName_;
    std::unique_ptr<QProcess> process_;
    std::optional<ConverterFailure> startFailure_;
    std::vector<std::pair<std::string, std::string>> redirects_;
    QElapsedTimer clock_;
};

// The message a failed run gives the user.
std::string failureText(const ConverterFailure& f);

} // namespace kirrel::exchange
