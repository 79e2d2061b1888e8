#pragma once

namespace kirrel::transitions {

// The Blinds, Diamonds, Iris, Lines, X and Circles dialogs.
void registerPatternForms();

} // namespace kirrel::transitions
