#pragma once
// Host operations by name, for a session script's "host" steps: the user acting in the host.

#include <QJsonArray>
#include <QString>

#include <stdexcept>

namespace kirrel::host {

// A "host" step the script got wrong: an unknown operation or arguments it cannot take.
struct HostOperationError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

// Calls the named operation through an automation handle (so it is traced). Throws
// HostOperationError for an unknown name or wrong arguments.
void callHostOperation(const QString& name, const QJsonArray& args);

} // namespace kirrel::host
