#include "filters/frmNightVision.h"

#include "filters/NightvisionMod.h"

namespace kirrel::filters {

namespace {

const FilterTraits kNightVisionTraits{"frmNightVision",
                                      "Kirrel-NightVision Filter",
                                      "Creates a Nightvison goggles type effect",
                                      120,
                                      /*runDisablesUndoAndDone=*/false,
                                      /*gotoFrameAfterUndoSave=*/true,
                                      /*showAgainAfterRange=*/true};

} // namespace

frmNightVision::frmNightVision() : FilterForm(kNightVisionTraits) {
    finishLayout();
}

void frmNightVision::currentFrame() {
    NightVisionCurrentFrame(*this);
}

void frmNightVision::frameRange() {
    NightVisionFrameRange(*this);
}

} // namespace kirrel::filters
