#pragma once
// What a session script's "dump" step writes: animation.dat, swap.dat, alpha.dat, state.json and
// frames/NNNN.png.

#include <QString>

namespace kirrel::host {

class HostState;

QString stateJson(const HostState& host);
void dumpHost(const HostState& host, const QString& folder);

} // namespace kirrel::host
