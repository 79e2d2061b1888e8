#include "transitions/StretchFamilies.h"

namespace kirrel::transitions {

void registerStretchForms() {}

} // namespace kirrel::transitions
