#include "customfx/CustomFxForms.h"

namespace kirrel::customfx {

void registerCustomFxForms() {}

} // namespace kirrel::customfx
