#pragma once
// The pattern dialogs as transition family rows: Blinds, Diamonds, Iris, Lines, X and Circles.

#include "transitions/Families.h"

namespace kirrel::transitions {

const TransitionFamily& blindsFamily();
const TransitionFamily& diamondsFamily();
const TransitionFamily& irisFamily();
const TransitionFamily& linesFamily();
const TransitionFamily& xFamily();
const TransitionFamily& circlesFamily();

// The Blinds, Diamonds, Iris, Lines, X and Circles dialogs.
void registerPatternForms();

} // namespace kirrel::transitions
