#pragma once
// The transition dialogs as data: each family's form name, caption, variant list, source list and the
// four runs its Apply dispatches to. One dialog class serves them all.

#include <string>
#include <vector>

namespace kirrel::transitions {

struct TransitionFamily {
    const char* formName;
    const char* caption;
    // Empty for a family without variants: the dialog then has no variant list and no caption for it.
    std::vector<const char*> variants;
    const char* sourceListName;
    std::vector<const char*> sources;
    // The four run shapes, by variant (list index; 0 without variants).
    void (*to)(int variant, int start, int end, const std::string& source);
    void (*from)(int variant, int start, int end, const std::string& source);
    void (*toStored)(int variant, int start, int slot);
    void (*fromStored)(int variant, int end, int slot);
    // The list the variants are offered in, and Apply's words for an empty slot.
    const char* variantListName = "cboTransitions";
    const char* slotEmptyText = "Slot Empty";
};

const TransitionFamily& wipesFamily();
const TransitionFamily& alphaWipesFamily();
const TransitionFamily& fadesFamily();
const TransitionFamily& alphaFadesFamily();
const TransitionFamily& dissolvesFamily();
const TransitionFamily& pushesFamily();
const TransitionFamily& slidesFamily();
const TransitionFamily& alphaSlidesFamily();

// Makes the family dialogs known to the panel by their form names.
void registerTransitionForms();

} // namespace kirrel::transitions
