#pragma once
// A stand-in for the running host, for work whose result is looked at but never kept (a dialog's live
// preview runs the very procedures Apply runs, on copies). While a ScratchHost scope lives:
// - runningHost(), and so every Vantry_Class handle made meanwhile, reaches the scratch host;
// - no call is traced: the session did not make it;
// - the scratch host's boxes are answered by nobody: a message passes (the scratch host's dialog log
//   keeps its words), and anything that asks for an answer ends the work with ScratchStop.
// The event boundary and the undo history are not involved: the scope is not a user's action.
// Handles made before the scope keep reaching the host they were made on.

#include "host/HostState.h"
#include "panel/Trace.h"

#include <string>

namespace kirrel::host {

// Thrown where work on a scratch host would need an answer from the user.
struct ScratchStop {
    std::string reason;
};

class ScratchHost {
  public:
    explicit ScratchHost(HostState& scratch);
    ~ScratchHost();
    ScratchHost(const ScratchHost&) = delete;
    ScratchHost& operator=(const ScratchHost&) = delete;

    // The scratch host of the innermost scope, or nullptr outside every scope.
    static HostState* current();

  private:
    HostState& scratch_;
    HostState* outer_;
    Responder* outerResponder_;
    Vantry::TracePause quiet_;
};

} // namespace kirrel::host
