#include "generators/GeneratorForms.h"

namespace kirrel::generators {

void registerGeneratorForms() {}

} // namespace kirrel::generators
