#pragma once
// What the user does to the panel's controls, told one step at a time to whoever records the session
// (the host window's Tools > Record Session). A step begins before its handler runs and ends after
// it, so that the boxes the handler opens are known to belong to it. Changes made by code (a list
// filled, a value set while another handler runs) are not the user's and are not told.

#include <functional>
#include <string>

class QObject;

namespace kirrel::panel {

class FormBase;

enum class UserEvent {
    Click,  // a button, a clickable label, an option
    Change, // a list, a check box, a slider or a text got a new value
    Leave,  // the focus left a control that checks its value on leaving
    Open,   // a plug-in of the catalogue was double-clicked
    Menu,   // a menu entry of the panel
    Close,  // a dialog was closed as its "Done" does (Escape, the close box)
};

class UserStepSink {
  public:
    virtual ~UserStepSink() = default;
    virtual void beginUserStep(FormBase& form, QObject& control, UserEvent event) = 0;
    virtual void endUserStep() = 0;
};

// The one listener, or nullptr.
void setUserStepSink(UserStepSink* sink);
UserStepSink* userStepSink();

// Runs a handler of the user's as one action behind the event boundary, telling the listener; a
// handler that runs inside another action (code, not the user) is only run.
void runUserStep(FormBase& form, QObject& control, UserEvent event, const std::function<void()>& handler,
                 const std::string& label);

} // namespace kirrel::panel
