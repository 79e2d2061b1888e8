#include "transitions/PatternFamilies.h"

namespace kirrel::transitions {

void registerPatternForms() {}

} // namespace kirrel::transitions
