#include "transitions/StretchFamilies.h"

#include "panel/FormBase.h"
#include "transitions/Families.h"
#include "transitions/Stretches.h"
#include "transitions/TransitionForm.h"

#include <algorithm>
#include <vector>

namespace kirrel::transitions {

namespace {

std::vector<const char*> stretchOptionTexts() {
    std::vector<const char*> texts(kStretchOptions.size());
    std::transform(kStretchOptions.begin(), kStretchOptions.end(), texts.begin(),
                   [](const StretchOption& o) { return o.text; });
    return texts;
}

} // namespace

// The options are listed under a name of their own and the source is taken from cboTransitions, which
// offers only the two sources read once before the loop and the four slots; an empty slot is reported
// with a full stop.
const TransitionFamily& stretchesFamily() {
    static const TransitionFamily f{"frmStretches",       "Kirrel-Stretch / Squeeze",
                                    stretchOptionTexts(), "cboTransitions",
                                    sourcesReadOnce(),    runStretchTo,
                                    runStretchFrom,       runStretchToStored,
                                    runStretchFromStored, "cboStretchOptions",
                                    "Slot Empty."};
    return f;
}

void registerStretchForms() {
    const TransitionFamily* family = &stretchesFamily();
    panel::registerForm(family->formName, [family] { return new TransitionForm(*family); });
}

} // namespace kirrel::transitions
