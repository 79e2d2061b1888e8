#pragma once

#include "transitions/Families.h"

namespace kirrel::transitions {

// The Stretch and Squeeze dialog's table entry.
const TransitionFamily& stretchesFamily();

// The Stretch and Squeeze dialog.
void registerStretchForms();

} // namespace kirrel::transitions
