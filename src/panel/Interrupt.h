#pragma once
// Ctrl+C and a polite kill (SIGINT, SIGTERM) while Kirrel works: instead of dying with a converter
// half way through a file, the program notes the signal; the wait in progress ends its tools, the
// action's working files go, and the program then ends with the signal's exit code (128 + number).

namespace kirrel {

// Installs the handlers (once); before that, the signals keep their default meaning.
void installInterruptHandlers();
// Whether a signal came, and which (0 for none).
bool interrupted();
int interruptSignal();
// For tests: forget a signal that came.
void clearInterrupt();

} // namespace kirrel
