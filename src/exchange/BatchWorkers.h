#pragma once
// Runs the lines of a planned batch with up to a given number of converters at once. Lines start in
// the batch's order; a conversion that does not depend on the lines before it starts while they still
// run, writes into a folder of its own and has its output moved into place once they have all ended
// (see BatchOrder.h). Deletes, folder changes and every other conversion wait until each line before
// them has ended. As with one line after another, a failed line does not stop the batch, and the first
// failure in the batch's order is the one reported.

#include "exchange/BatchRunner.h"

#include <QProcessEnvironment>
#include <QString>

#include <vector>

namespace kirrel::exchange {

struct WorkerSettings {
    QString converter; // empty when none could be found
    QProcessEnvironment environment;
    int workers = 1;
    QString keep; // the batch file's name: its deletes pass it over, it goes last
};

RunOutcome runPlannedLines(const std::vector<BatchCommand>& commands, const RunnerFolders& folders,
                           const QString& startDir, const WorkerSettings& settings);

// The folder that lines running ahead write into, inside the temporary folder; one per runner.
QString aheadFolder(const QString& temp, qint64 runnerPid);
// The wildcard pattern of every such folder, for clearing up after a runner that was ended.
inline constexpr const char* kAheadFolderPattern = ".kirrel-ahead-*";

} // namespace kirrel::exchange
