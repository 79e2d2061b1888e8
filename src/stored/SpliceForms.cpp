#include "stored/SpliceForms.h"

namespace kirrel::stored {

void registerSpliceForms() {}

} // namespace kirrel::stored
