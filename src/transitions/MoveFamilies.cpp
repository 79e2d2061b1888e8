#include "transitions/MoveFamilies.h"

namespace kirrel::transitions {

void registerMoveForms() {}

} // namespace kirrel::transitions
