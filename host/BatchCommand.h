#pragma once
// `kirrel batch SCRIPT INPUT... --out DIR`: a session script (a recording of the window, or written
// by hand) played once for every input file, each in a process of its own so that several run at
// once, with the result written into DIR under the input's name. A terminal progress bar, a summary
// with each failure's message at the end, and an exit code that says whether all went well.

#include <QStringList>

#include <string>

namespace kirrel::host {

// Runs the command; `arguments` are those after "batch". `userTempDir` is where the window keeps its
// stored animations, which a recording may splice with. Returns the exit code: 0 all written (or
// already there with --skip-existing), 1 some failed, 2 a wrong command line, 128 + n after signal n.
int runBatchCommand(const QStringList& arguments, const std::string& userTempDir);

const char* batchCommandHelp();

} // namespace kirrel::host
