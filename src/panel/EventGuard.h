#pragma once
// The event boundary. Every handler of a user's action runs through guarded(): an unexpected failure
// inside an effect (a division by zero, an overflow, a file that cannot be opened) becomes an error
// box and the program stays usable; the panel's own "end the program" unwinds to here; a session
// script that has no answer for a box stops the action and is reported by the script runner.

#include "host/Responder.h"

#include <functional>
#include <optional>
#include <string>

namespace kirrel {

// Thrown by endProgram(): the rest of the handler does not run, as after the language's End.
struct ProgramEnd {};

[[noreturn]] void endProgram();
bool programEnded();
void resetProgramEnded();
// Called once when the program ends (the window closes the application).
void setProgramEndHandler(std::function<void()> handler);

// The abort a responder raised inside the last guarded action, if any; taking it clears it.
std::optional<std::string> takeScriptAbort();

// Every action is one step of the host's undo history when it changed the host's content. The step's
// label is the one named inside the action, else the default label given here (a form's caption).
void runGuarded(const std::function<void()>& action, const std::string& defaultLabel = {});
// Whether an action runs now: what happens inside one is its doing, not a new act of the user.
bool insideAction();
// Names the step of the action that runs now ("Wipes", "Open AnimGif"); the first name wins.
void nameAction(const std::string& label);
// Marks the action as a run (an effect's Apply): if it changes nothing and says nothing, the host's
// status bar says that nothing changed.
void markRunAction();

template <class F> auto guarded(F f) {
    return [f = std::move(f)](auto&&... args) { runGuarded([&] { f(args...); }); };
}

} // namespace kirrel
