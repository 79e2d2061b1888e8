#include "transitions/PatternFamilies.h"

#include "panel/FormBase.h"
#include "transitions/Patterns.h"
#include "transitions/TransitionForm.h"

#include <iterator>

namespace kirrel::transitions {

namespace {

// The pattern dialogs take every source from cboTransitions and list their variants under a name of
// their own.

template <PatternFamily F> void patternTo(int v, int s, int e, const std::string& src) {
    runPatternTo(F, v, s, e, src);
}
template <PatternFamily F> void patternFrom(int v, int s, int e, const std::string& src) {
    runPatternFrom(F, v, s, e, src);
}
template <PatternFamily F> void patternToStored(int v, int s, int slot) {
    runPatternToStored(F, v, s, slot);
}
template <PatternFamily F> void patternFromStored(int v, int e, int slot) {
    runPatternFromStored(F, v, e, slot);
}

template <PatternFamily F, std::size_t N>
TransitionFamily family(const char* form, const char* caption, const char* const (&variants)[N],
                        const char* variantList) {
    return {form,
            caption,
            {std::begin(variants), std::end(variants)},
            "cboTransitions",
            everySource(),
            patternTo<F>,
            patternFrom<F>,
            patternToStored<F>,
            patternFromStored<F>,
            variantList,
            "Slot Empty"};
}

// The circles draw their mask on a picture of the dialog before the frames: it stays hidden, so that
// a surface as large as the frame does not stretch the dialog.
class CirclesForm : public TransitionForm {
  public:
    explicit CirclesForm(const TransitionFamily& f) : TransitionForm(f) { makePicture("PreviewBox")->hide(); }
};

} // namespace

const TransitionFamily& blindsFamily() {
    static const TransitionFamily f =
        family<PatternFamily::Blinds>("frmBlinds", "Kirrel-Blinds", kBlindsVariants, "cboBlindsOptions");
    return f;
}

const TransitionFamily& diamondsFamily() {
    static const TransitionFamily f = family<PatternFamily::Diamonds>(
        "frmDiamonds", "Kirrel - Diamonds", kDiamondsVariants, "cboDiamondsOptions");
    return f;
}

const TransitionFamily& irisFamily() {
    static const TransitionFamily f =
        family<PatternFamily::Iris>("frmIris", "Kirrel - Iris Transitions", kIrisVariants, "cboIrisOptions");
    return f;
}

const TransitionFamily& linesFamily() {
    static const TransitionFamily f =
        family<PatternFamily::Lines>("frmLines", "Kirrel - Lines", kLinesVariants, "cboLineOptions");
    return f;
}

const TransitionFamily& xFamily() {
    static const TransitionFamily f =
        family<PatternFamily::X>("frmX", "Kirrel - X Transitons", kXVariants, "cboXOptions");
    return f;
}

const TransitionFamily& circlesFamily() {
    static const TransitionFamily f = family<PatternFamily::Circles>(
        "frmCircles", "Kirrel - Circle Transition", kCirclesVariants, "cboCircleOptions");
    return f;
}

void registerPatternForms() {
    for (const TransitionFamily* f :
         {&blindsFamily(), &diamondsFamily(), &irisFamily(), &linesFamily(), &xFamily()})
        panel::registerForm(f->formName, [f] { return new TransitionForm(*f); });
    panel::registerForm(circlesFamily().formName, [] { return new CirclesForm(circlesFamily()); });
}

} // namespace kirrel::transitions
