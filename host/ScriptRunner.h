#pragma once
// Plays a session script headless: sets the host up, opens the panel, and plays the steps as a user
// would act (see `kirrel --help`). Exit code 0 when every step ran or the program ended itself; 2
// with one clear line for a malformed script or a box that had no queued answer.

#include <QJsonObject>
#include <QString>

#include <string>

namespace kirrel::host {

struct ScriptResult {
    int exitCode = 0;
    std::string message;  // the one line for stderr when exitCode is not 0
    std::string leftover; // answers not used, reported on stderr
};

ScriptResult runSessionScript(const QString& scriptPath, const QString& tracePath = {});

// A script file as JSON (its // comments dropped); an empty object and the reason when it is not one.
QJsonObject readSessionScript(const QString& scriptPath, std::string& error);

// Text of `kirrel --help`.
const char* sessionScriptHelp();

} // namespace kirrel::host
