#include "masks/MaskForms.h"

namespace kirrel::masks {

void registerMaskForms() {}

} // namespace kirrel::masks
