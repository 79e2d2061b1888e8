#pragma once
// Host operations by name, for a session script's "host" steps: the user acting in the host.

#include <QJsonArray>
#include <QString>

namespace kirrel::host {

// Calls the named operation through an automation handle (so it is traced). Throws
// std::invalid_argument for an unknown name or wrong arguments.
void callHostOperation(const QString& name, const QJsonArray& args);

} // namespace kirrel::host
