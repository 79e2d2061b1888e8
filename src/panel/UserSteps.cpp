#include "panel/UserSteps.h"

#include "panel/EventGuard.h"

namespace kirrel::panel {

namespace {
UserStepSink* listener = nullptr;
}

void setUserStepSink(UserStepSink* sink) {
    listener = sink;
}

UserStepSink* userStepSink() {
    return listener;
}

void runUserStep(FormBase& form, QObject& control, UserEvent event, const std::function<void()>& handler,
                 const std::string& label) {
    UserStepSink* sink = insideAction() ? nullptr : listener;
    if (sink) sink->beginUserStep(form, control, event);
    runGuarded(handler, label);
    if (sink) sink->endUserStep();
}

} // namespace kirrel::panel
