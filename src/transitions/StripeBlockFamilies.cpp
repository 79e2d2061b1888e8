#include "transitions/StripeBlockFamilies.h"

namespace kirrel::transitions {

void registerStripeAndBlockForms() {}

} // namespace kirrel::transitions
