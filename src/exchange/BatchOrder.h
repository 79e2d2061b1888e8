#pragma once
// Which lines of a planned batch may run before the lines ahead of them have ended, without anything
// that can be seen coming out differently from running them one after another.
//
// A line that runs ahead writes its output into a folder of its own; the output is moved into place
// only when every line before it has ended. So files appear, are read and are deleted in the batch's
// order, and whoever watches the temporary folder sees what a run line by line shows. A conversion
// may run ahead when
//   - it holds only options known to write nothing but its output, and its output is one plain file
//     in the temporary folder (so it can be written elsewhere and moved);
//   - none of its inputs is a pattern the converter would expand; and
//   - no line before it that has not ended yet writes or deletes a file it reads (see mayTouch).
// Every other line runs in order: once each line before it has ended.

#include "exchange/BatchRunner.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kirrel::exchange {

// A file a line reads, writes or deletes, as a folder and a name compared without regard to case (the
// platform the batch files were made for ignores it).
struct FileRef {
    QString folder; // the folder's canonical path where it exists
    QString name;   // lower case
    enum class Kind {
        Name,    // one file; a converter writing it may make up "name-N.ext" beside it
        Pattern, // a name the converter expands or makes up files from: anything in the folder
        Deleted, // a delete's wildcard pattern
    } kind = Kind::Name;
};

// A planned line as the runner runs it, with the files it touches.
struct RunLine {
    BatchCommand command; // a converter's arguments with the staged names put in
    QString workingDir;   // the folder the line runs in
    bool mayRunAhead = false;
    int outputArg = -1;          // the argument naming the output, when the line may run ahead
    std::vector<FileRef> reads;  // what it may read, when it may run ahead
    std::vector<FileRef> writes; // what it may write or delete
};

// Every planned line with its files. startDir is the folder the run starts in.
std::vector<RunLine> runLines(const std::vector<BatchCommand>& commands, const RunnerFolders& folders,
                              const QString& startDir);

// Whether a line writing or deleting `written` may change the file `read`.
bool mayTouch(const FileRef& written, const FileRef& read);

// Whether line `index` may start while the lines from `firstUnended` up to it have not all ended.
bool mayStartAhead(const std::vector<RunLine>& lines, std::size_t firstUnended, std::size_t index);

} // namespace kirrel::exchange
