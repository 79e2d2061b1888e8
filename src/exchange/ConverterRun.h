#pragma once
// One run of a converter batch file as the panel sees it: the file is written into the temporary
// folder, handed to our batch runner (kirrel_batch, a separate process started without a shell), and
// the panel waits by watching the disk for the files the batch deletes.
//
// The waits poll: a short sleep between looks, with the window's own events (painting, timers, the
// progress display) handled meanwhile, so the panel neither burns a core nor freezes. Input events
// are held back until the run ends, so that no second run can start while the fixed file names are
// in use. A wait also ends when the runner process has ended, whatever is left on the disk: a
// runner that could not start, or that refused its file, never leaves the panel spinning. What went
// wrong is read from the marker the runner leaves (see BatchRunner.h).

#include <QProcess>
#include <QString>

#include <memory>
#include <optional>
#include <string>

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
    ~ConverterRun();

    // Starts the batch file named (as the platform is told it: its case may differ from the file's).
    void start(const QString& batchName);
    // Polls until no entry of the temporary folder matches the pattern, or the runner has ended.
    void waitGone(const QString& pattern);
    // One pause of the polling: a short sleep with the window's events handled.
    void pause();
    bool runnerEnded();
    // Lets the runner finish and reads its marker; nothing when the run went well.
    std::optional<ConverterFailure> finish();

  private:
    std::string temp_, app_;
    QString batchName_;
    std::unique_ptr<QProcess> process_;
    std::optional<ConverterFailure> startFailure_;
};

// The message a failed run gives the user.
std::string failureText(const ConverterFailure& f);

} // namespace kirrel::exchange
