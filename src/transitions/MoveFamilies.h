#pragma once
// The Rows/Columns, Crosses, Boxes and Doors dialogs as rows of the transition family table.

#include "transitions/Families.h"

namespace kirrel::transitions {

const TransitionFamily& rowsColumnsFamily();
const TransitionFamily& crossesFamily();
const TransitionFamily& boxesFamily();
const TransitionFamily& doorsFamily();

// Makes the four dialogs known to the panel by their form names.
void registerMoveForms();

} // namespace kirrel::transitions
