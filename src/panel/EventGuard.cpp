#include "panel/EventGuard.h"

#include "host/HostState.h"
#include "host/MediaTools.h"

#include <exception>
#include <new>
#include <stdexcept>

namespace kirrel {

namespace {
bool ended = false;
std::optional<std::string> pendingAbort;
std::function<void()> endHandler;
int depth = 0;
std::string actionLabel;   // named inside the action
std::string defaultLabel_; // the first default of the action's boundaries
bool runAction = false;

std::string describe(const std::exception& e) {
    if (dynamic_cast<const std::bad_alloc*>(&e)) return "Out of memory";
    const std::string what = e.what();
    return what.empty() ? std::string("Unexpected error") : what;
}
} // namespace

void endProgram() {
    throw ProgramEnd{};
}
bool programEnded() {
    return ended;
}
void resetProgramEnded() {
    ended = false;
}
void setProgramEndHandler(std::function<void()> handler) {
    endHandler = std::move(handler);
}

std::optional<std::string> takeScriptAbort() {
    auto a = std::move(pendingAbort);
    pendingAbort.reset();
    return a;
}

bool insideAction() {
    return depth > 0;
}

void markRunAction() {
    if (depth > 0) runAction = true;
}

void nameAction(const std::string& label) {
    if (depth > 0 && actionLabel.empty()) actionLabel = label;
}

void runGuarded(const std::function<void()>& action, const std::string& defaultLabel) {
    // A handler may raise another event synchronously (a list click filling another list): only the
    // outermost boundary catches, so the inner failure unwinds the whole user action.
    if (depth > 0) {
        if (defaultLabel_.empty()) defaultLabel_ = defaultLabel;
        action();
        return;
    }
    struct Depth {
        Depth() { ++depth; }
        ~Depth() { --depth; }
    } guard;
    // The host is taken now: an action that ends the program may leave no host worth asking later.
    host::HostState& host = host::runningHost();
    actionLabel.clear();
    defaultLabel_ = defaultLabel;
    runAction = false;
    host.beginAction();
    struct Step {
        host::HostState& host;
        ~Step() {
            host.endAction(!actionLabel.empty()     ? actionLabel
                           : !defaultLabel_.empty() ? defaultLabel_
                                                    : "Change",
                           runAction);
        }
    } step{host};
    try {
        action();
    } catch (const ProgramEnd&) {
        ended = true;
        if (endHandler) endHandler();
    } catch (const host::ScriptAbort& a) {
        pendingAbort = a.reason;
    } catch (const std::exception& e) {
        // A failed or cancelled action changes nothing: the host's content and the frame shown go
        // back to how the action found them, so that no half-done run or half-read file is left.
        host.rollbackAction();
        // A run that failed midway never reached its own Van_Unlock. The program goes on after the
        // report, so the host is released here as the panel's shutdown would release it; otherwise
        // the user would face a window that takes no input, a wait pointer and a status that never end.
        host.statusClose();
        host.unlock();
        host.restorePointer();
        host.setProgress(0);
        if (dynamic_cast<const host::Cancelled*>(&e))
            host.showStatus(e.what());
        else
            host.reportError(describe(e) + "\n\nNothing was changed.");
    }
}

} // namespace kirrel
