#pragma once

namespace kirrel::transitions {

// The stripe dialogs, Threshold Mask and Block Out.
void registerStripeAndBlockForms();

} // namespace kirrel::transitions
