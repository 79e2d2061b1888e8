#pragma once
// The stripe dialogs (Stripes/Weaves, Push Stripes, Slide Stripes), Threshold Mask and Block Out, as
// rows of the shared transition dialog.

#include "transitions/Families.h"

namespace kirrel::transitions {

const TransitionFamily& stripesFamily();
const TransitionFamily& pushStripesFamily();
const TransitionFamily& slideStripesFamily();
const TransitionFamily& thresholdMaskFamily();
const TransitionFamily& blockOutFamily();

// Makes these dialogs known to the panel by their form names.
void registerStripeAndBlockForms();

} // namespace kirrel::transitions
