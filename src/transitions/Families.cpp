#include "transitions/Families.h"

#include "panel/FormBase.h"
#include "transitions/AlphaSlides.h"
#include "transitions/Dissolves.h"
#include "transitions/Fades.h"
#include "transitions/Pushes.h"
#include "transitions/Slides.h"
#include "transitions/TransitionForm.h"
#include "transitions/Wipes.h"

namespace kirrel::transitions {

namespace {

// Every source list ends with the four slots; these texts choose the splicing runs.
std::vector<const char*> withSlots(std::vector<const char*> sources) {
    sources.insert(sources.end(), {"Stored Animation #1", "Stored Animation #2", "Stored Animation #3",
                                   "Stored Animation #4"});
    return sources;
}

const std::vector<const char*> kPlainSources =
    withSlots({"Swap", "Primary Color", "GreyScale", "Negative", "Red Channel", "Green Channel",
               "Blue Channel", "Red & Blue Channels", "Red & Green Channels", "Green & Blue Channels"});

// The fades add three sources that work on the frame alone.
const std::vector<const char*> kFadeSources =
    withSlots({"Swap", "Primary Color", "GreyScale", "Negative", "Red Channel", "Green Channel",
               "Blue Channel", "Red & Blue Channels", "Red & Green Channels", "Green & Blue Channels",
               "Brightness", "Darkness", "White Noise (TV Snow)"});

// The moving pictures take only the two sources read once before the loop.
const std::vector<const char*> kMoveSources = withSlots({"Swap", "Primary Color"});

const std::vector<const char*> kWipeVariantList(std::begin(kWipeVariants), std::end(kWipeVariants));

template <WipeFamily F> void wipeTo(int v, int s, int e, const std::string& src) {
    runWipeTo(F, v, s, e, src);
}
template <WipeFamily F> void wipeFrom(int v, int s, int e, const std::string& src) {
    runWipeFrom(F, v, s, e, src);
}
template <WipeFamily F> void wipeToStored(int v, int s, int slot) {
    runWipeToStored(F, v, s, slot);
}
template <WipeFamily F> void wipeFromStored(int v, int e, int slot) {
    runWipeFromStored(F, v, e, slot);
}

template <FadeFamily F> void fadeTo(int, int s, int e, const std::string& src) {
    runFadeTo(F, s, e, src);
}
template <FadeFamily F> void fadeFrom(int, int s, int e, const std::string& src) {
    runFadeFrom(F, s, e, src);
}
template <FadeFamily F> void fadeToStored(int, int s, int slot) {
    runFadeToStored(F, s, slot);
}
template <FadeFamily F> void fadeFromStored(int, int e, int slot) {
    runFadeFromStored(F, e, slot);
}

void dissolveTo(int, int s, int e, const std::string& src) {
    DissolveTo(s, e, src);
}
void dissolveFrom(int, int s, int e, const std::string& src) {
    DissolveFrom(s, e, src);
}
void dissolveToStored(int, int s, int slot) {
    Dissolve2Stored(s, slot);
}
void dissolveFromStored(int, int e, int slot) {
    DissolveFromStored(e, slot);
}

} // namespace

const std::vector<const char*>& everySource() {
    return kPlainSources;
}
const std::vector<const char*>& sourcesReadOnce() {
    return kMoveSources;
}

const TransitionFamily& wipesFamily() {
    static const TransitionFamily f{"frmWipes",
                                    "Kirrel-Wipes",
                                    kWipeVariantList,
                                    "cboWipeOptions",
                                    kPlainSources,
                                    wipeTo<WipeFamily::Plain>,
                                    wipeFrom<WipeFamily::Plain>,
                                    wipeToStored<WipeFamily::Plain>,
                                    wipeFromStored<WipeFamily::Plain>};
    return f;
}

const TransitionFamily& alphaWipesFamily() {
    static const TransitionFamily f{"frmAlphaWipes",
                                    "Kirrel-Alpha Wipes (Requires Alpha Channel)",
                                    kWipeVariantList,
                                    "cboWipeOptions",
                                    kPlainSources,
                                    wipeTo<WipeFamily::Alpha>,
                                    wipeFrom<WipeFamily::Alpha>,
                                    wipeToStored<WipeFamily::Alpha>,
                                    wipeFromStored<WipeFamily::Alpha>};
    return f;
}

const TransitionFamily& fadesFamily() {
    static const TransitionFamily f{"frmFades",
                                    "Kirrel-Fades",
                                    {},
                                    "cboFadeOptions",
                                    kFadeSources,
                                    fadeTo<FadeFamily::Plain>,
                                    fadeFrom<FadeFamily::Plain>,
                                    fadeToStored<FadeFamily::Plain>,
                                    fadeFromStored<FadeFamily::Plain>};
    return f;
}

const TransitionFamily& alphaFadesFamily() {
    static const TransitionFamily f{"frmAlphaFades",
                                    "Kirrel-Alpha Fades",
                                    {},
                                    "cboFadeOptions",
                                    kFadeSources,
                                    fadeTo<FadeFamily::Alpha>,
                                    fadeFrom<FadeFamily::Alpha>,
                                    fadeToStored<FadeFamily::Alpha>,
                                    fadeFromStored<FadeFamily::Alpha>};
    return f;
}

const TransitionFamily& dissolvesFamily() {
    static const TransitionFamily f{"frmDissolves",       "Kirrel - Dissolves", {},
                                    "cboDissolveOptions", kPlainSources,        dissolveTo,
                                    dissolveFrom,         dissolveToStored,     dissolveFromStored};
    return f;
}

// The moving pictures list their variants under a name of their own and take the source from
// cboTransitions; an empty slot is reported with a full stop.
const TransitionFamily& pushesFamily() {
    static const TransitionFamily f{
        "frmPushes",      "Kirrel-Pushes", {std::begin(kPushVariants), std::end(kPushVariants)},
        "cboTransitions", kMoveSources,    runPushTo,
        runPushFrom,      runPushToStored, runPushFromStored,
        "cboPushOptions", "Slot Empty."};
    return f;
}

const TransitionFamily& slidesFamily() {
    static const TransitionFamily f{
        "frmSlides",       "Kirrel-Slides",  {std::begin(kSlideVariants), std::end(kSlideVariants)},
        "cboTransitions",  kMoveSources,     runSlideTo,
        runSlideFrom,      runSlideToStored, runSlideFromStored,
        "cboSlideOptions", "Slot Empty."};
    return f;
}

const TransitionFamily& alphaSlidesFamily() {
    static const TransitionFamily f{
        "frmAlphaSlides",  "Kirrel-Alpha Slides", {std::begin(kSlideVariants), std::end(kSlideVariants)},
        "cboTransitions",  kMoveSources,          runAlphaSlideTo,
        runAlphaSlideFrom, runAlphaSlideToStored, runAlphaSlideFromStored,
        "cboSlideOptions", "Slot Empty."};
    return f;
}

void registerTransitionForms() {
    for (const TransitionFamily* family :
         {&wipesFamily(), &alphaWipesFamily(), &fadesFamily(), &alphaFadesFamily(), &dissolvesFamily(),
          &pushesFamily(), &slidesFamily(), &alphaSlidesFamily()})
        panel::registerForm(family->formName, [family] { return new TransitionForm(*family); });
}

} // namespace kirrel::transitions
