#include "transitions/MoveFamilies.h"

#include "panel/FormBase.h"
#include "transitions/Boxes.h"
#include "transitions/Crosses.h"
#include "transitions/Doors.h"
#include "transitions/RowsColumns.h"
#include "transitions/TransitionForm.h"

#include <iterator>

namespace kirrel::transitions {

namespace {

template <std::size_t N> std::vector<const char*> listOf(const char* const (&texts)[N]) {
    return {std::begin(texts), std::end(texts)};
}

} // namespace

// All four take the source from cboTransitions and list their variants under a name of their own.
// Only Rows and Columns reports an empty slot with a full stop.
const TransitionFamily& rowsColumnsFamily() {
    static const TransitionFamily f{"frmRowsColumns",
                                    "Kirrel-Rows and Columns",
                                    listOf(kRowsColumnsVariants),
                                    "cboTransitions",
                                    everySource(),
                                    runRowColumnTo,
                                    runRowColumnFrom,
                                    runRowColumnToStored,
                                    runRowColumnFromStored,
                                    "cboRCOptions",
                                    "Slot Empty."};
    return f;
}

const TransitionFamily& crossesFamily() {
    static const TransitionFamily f{"frmCrosses",      "Kirrel-Crosses", listOf(kCrossesVariants),
                                    "cboTransitions",  everySource(),    runCrossTo,
                                    runCrossFrom,      runCrossToStored, runCrossFromStored,
                                    "cboCrossOptions", "Slot Empty"};
    return f;
}

const TransitionFamily& boxesFamily() {
    static const TransitionFamily f{
        "frmBoxes", "Kirrel-Boxes", listOf(kBoxesVariants), "cboTransitions", everySource(), runBoxTo,
        runBoxFrom, runBoxToStored, runBoxFromStored,       "cboBoxOptions",  "Slot Empty"};
    return f;
}

const TransitionFamily& doorsFamily() {
    static const TransitionFamily f{
        "frmDoors",  "Kirrel-Doors",  listOf(kDoorsVariants), "cboTransitions", sourcesReadOnce(), runDoorTo,
        runDoorFrom, runDoorToStored, runDoorFromStored,      "cboDoorOptions", "Slot Empty"};
    return f;
}

void registerMoveForms() {
    for (const TransitionFamily* family :
         {&rowsColumnsFamily(), &crossesFamily(), &boxesFamily(), &doorsFamily()})
        panel::registerForm(family->formName, [family] { return new TransitionForm(*family); });
}

} // namespace kirrel::transitions
