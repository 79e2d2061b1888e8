#pragma once
// Our stand-in for the command processor that runs the converter's batch files. It understands
// exactly the lines those files hold and nothing more:
//   - a drive line (two characters: the temporary folder's first two, or a letter and a colon),
//     which changes nothing on a platform without drives;
//   - "cd" followed by the temporary folder, quoted or not;
//   - "del" with one name, bare (letters, digits, '.', '_', '-', '*', '?') or quoted and absolute,
//     whose folder must be the temporary folder itself; '*' and '?' match as the command processor's
//     wildcards do, without regard to case;
//   - a quoted program path that must be the host's converter (App + "/convert.exe", trailing
//     blanks inside the quotes dropped), followed by its arguments.
// Arguments are split at blanks outside quotes, and quotes are removed, as a program's start-up
// code does. Outside quotes only plain option characters may stand, so '&', '|', ';', '<', '>',
// '^', '%', '$', '`' and any control character refuse the file; every quoted part must be an
// absolute path, so a name can never pose as an option, a pipe or a coder prefix of the converter.
//
// The whole file is checked before anything runs: one line it does not understand, and nothing
// runs at all. The converter is started directly, never through a shell, so a name holding quotes,
// '&', ';' or "$()" reaches it as one literal argument or not at all.
//
// Completion is signalled as the panel expects: the batch file is deleted as the very last act, in
// every case. When something went wrong the runner first leaves a marker beside it, named after
// the batch file with ".failed" appended; its first line is "missing" (no converter could be
// found), "failed" (the converter reported an error) or "refused" (the file was not run), and the
// second line says what happened in words for the user.

#include <QList>
#include <QPair>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <vector>

namespace kirrel::exchange {

struct RunnerFolders {
    QString temp; // the only folder the runner deletes in and changes to
    QString app;  // where the batch file expects the converter
    // Outputs written under another name: every converter argument equal to the first of a pair
    // becomes the second. The panel has the converter write beside the user's file and renames the
    // result once it checks out, so that a failed run never leaves a half-written file there.
    QList<QPair<QString, QString>> staged;
    // A single conversion running longer than this is taken to hang.
    int limitSeconds = 15 * 60;
};

struct BatchCommand {
    enum class Kind { Drive, Cd, Del, Convert };
    Kind kind = Kind::Drive;
    QStringList args; // Del: the folder and the pattern; Convert: the converter's arguments
    int line = 0;
};

struct BatchPlan {
    std::vector<BatchCommand> commands;
    QString refusal; // empty when every line was understood
};

// Checks every line of a batch file; nothing is run. startDir is the folder the run starts in.
BatchPlan planBatch(const QByteArray& bytes, const RunnerFolders& folders, const QString& startDir);

// Splits a command line into arguments; a refusal reason goes to why and the result is empty.
QStringList splitArguments(const QString& text, QString* why);

// Case-insensitive match of the command processor's wildcards '*' and '?'.
bool wildcardMatch(const QString& pattern, const QString& name);

// The marker a failed run leaves beside the batch file.
QString failureMarkerPath(const QString& batchPath);

struct RunOutcome {
    int exitCode = 0; // 0 success, 1 converter failed, 2 bad invocation, 3 refused, 4 no converter
    QString kind;     // "", "missing", "failed" or "refused"
    QString message;  // for the user
};

// The environment the converter runs in: the system's, with the memory settings that spare it most
// of its time in the kernel. None of them changes a byte the converter writes.
QProcessEnvironment converterEnvironment();

// How many converters a batch may run at once: KIRREL_BATCH_WORKERS when set (1 runs the lines one
// after another), else one for every core.
int batchWorkers();

// Runs a batch file inside folders.temp. converter is the program that stands for the host's
// converter; empty when none could be found.
RunOutcome runBatchFile(const QString& batchPath, const RunnerFolders& folders, const QString& converter);

// The runner's command line: kirrel_batch --temp DIR --app DIR [--limit SECONDS]
// [--stage NAME STAGED]... BATCHFILE. The converter is the first "convert" on PATH.
int batchRunnerMain(const QStringList& arguments);

} // namespace kirrel::exchange
