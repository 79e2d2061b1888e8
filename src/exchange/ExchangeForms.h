#pragma once

namespace kirrel::exchange {

// GIF, PNG and MNG export, GIF import and the sprite sheet.
void registerExchangeForms();

} // namespace kirrel::exchange
