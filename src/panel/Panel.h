#pragma once
// Starting the panel, and the way back to it from a dialog.

namespace kirrel::panel {

// Registers every form and procedure, loads Mainfrm and shows it.
void startPanel();
// A dialog's "Done": shows Mainfrm again.
void showMainPanel();

} // namespace kirrel::panel
