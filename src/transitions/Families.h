#pragma once
// The transition dialogs as data: each family's form name, caption, variant list, source list and the
// four runs its Apply dispatches to. One dialog class serves them all.

#include <memory>
#include <string>
#include <vector>

class QBoxLayout;

namespace kirrel::panel {
class FormBase;
struct SkinSettings;
} // namespace kirrel::panel

namespace kirrel::transitions {

// What Apply hands to a family that runs with values of its own controls.
struct FamilyRun {
    bool toward; // "----------->": the To shapes
    int slot;    // 0..3 for a stored source, else -1
    int start, end;
    const std::string& source;
    // The pictures' size against the animation's: below 1 for a preview's small copies.
    double scale = 1.0;
};

// Controls a family adds to the shared dialog (option buttons, size buttons, a warning), kept by the
// form for its life.
class FamilyControls {
  public:
    FamilyControls() = default;
    // Controls hand `this` to their widgets' signals: a copy would be wired to the original.
    FamilyControls(const FamilyControls&) = delete;
    FamilyControls& operator=(const FamilyControls&) = delete;
    virtual ~FamilyControls() = default;
    // At Form_Load, after the shared controls are skinned: defaults and colours.
    virtual void load(const panel::SkinSettings& skin) { (void)skin; }
    // Apply's run with the values of these controls; false leaves Apply to the family's four runs.
    virtual bool run(const FamilyRun& request) {
        (void)request;
        return false;
    }
};

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
    // Builds the family's own controls into the form, below the direction row; null for none.
    std::unique_ptr<FamilyControls> (*addControls)(panel::FormBase& form, QBoxLayout& layout) = nullptr;
    // The fewest frames a plain range may hold, and Apply's words for a shorter one.
    int fewestFrames = 3;
    const char* tooFewFramesText = "Need at least 3 frames selected!";
};

// The source lists the families share: every source (the ten read once or made from each frame, then
// the four slots), and only the two read once before the loop with the slots.
const std::vector<const char*>& everySource();
const std::vector<const char*>& sourcesReadOnce();

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
