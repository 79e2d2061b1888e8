#pragma once

namespace kirrel::masks {

// The Alpha Mask filter and the animated masks.
void registerMaskForms();

} // namespace kirrel::masks
