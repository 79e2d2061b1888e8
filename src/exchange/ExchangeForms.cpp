#include "exchange/ExchangeForms.h"

namespace kirrel::exchange {

void registerExchangeForms() {}

} // namespace kirrel::exchange
