#pragma once
// The host window's commands on the pictures, one table for the window's menus, a session script's
// {"window": ...} steps and a recording of the user's session, so that a recorded command replays
// exactly as it ran: undo and redo, the swap picture, the alpha channel, frames and their delays.

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace kirrel::host {

class HostState;

// Runs the named command with its arguments ("frame", "ms", "file"); false for a name no command
// has. Throws std::runtime_error for a picture file that cannot be read, std::invalid_argument for
// an argument out of range.
bool runWindowCommand(HostState& host, const QString& name, const QJsonObject& args = {});
QStringList windowCommandNames();

} // namespace kirrel::host
