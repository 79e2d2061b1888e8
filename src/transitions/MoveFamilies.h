#pragma once

namespace kirrel::transitions {

// The Rows/Columns, Crosses, Boxes and Doors dialogs.
void registerMoveForms();

} // namespace kirrel::transitions
