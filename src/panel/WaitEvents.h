#pragma once
// While the panel waits for an outside program, the window must stay alive (painting, progress,
// timers) but take no new action, since a second run would meet the first one's files. The one
// input that passes is the way out: a click on a control marked as the wait's Cancel button, and
// Escape, which asks the host to cancel.

class QWidget;

namespace kirrel::panel {

// Handles the window's pending events as described above.
void processEventsWhileWaiting();
// Marks a control (the host's Cancel button) as usable while a wait runs.
void markUsableWhileWaiting(QWidget* control);

} // namespace kirrel::panel
