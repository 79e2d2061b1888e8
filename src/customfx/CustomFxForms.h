#pragma once

namespace kirrel::customfx {

// The CFX builder and player and the CFX import.
void registerCustomFxForms();

} // namespace kirrel::customfx
