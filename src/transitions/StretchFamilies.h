#pragma once

namespace kirrel::transitions {

// The Stretch and Squeeze dialog.
void registerStretchForms();

} // namespace kirrel::transitions
