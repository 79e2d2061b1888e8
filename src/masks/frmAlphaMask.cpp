#include "masks/frmAlphaMask.h"

#include "masks/AlphaMaskMod.h"
#include "masks/MaskSources.h"
#include "panel/DisabledWhileRunning.h"

#include <QPushButton>

namespace kirrel::masks {

namespace {
const MaskDialogTraits kAlphaMaskTraits{
    "frmAlphaMask", "Kirrel - Alpha  Mask", "Composite Image using the Alpha Channel as a Mask", true, 1, 0};

void showAlphaPlane(Vantry::Vantry_Class& van) {
    van.Van_AlphaOff();
    van.Van_AlphaOn();
    van.Van_InitMarquee();
}
} // namespace

frmAlphaMask::frmAlphaMask() : MaskDialog(kAlphaMaskTraits, alphaMaskSources()) {
    finishLayout();
}

void frmAlphaMask::loadExtras() {
    showAlphaPlane(van());
}

void frmAlphaMask::undo() {
    MaskDialog::undo();
    showAlphaPlane(van());
}

void frmAlphaMask::run() {
    const std::optional<int> remembered = beginRun(multipleFrames());
    if (!remembered) return;
    // The undo is saved before the sources are compared: a refused run has replaced it all the same.
    saveUndoIfChecked();
    if (darker() == lighter()) {
        van().Van_MessageBox(kTwoSources);
        return;
    }
    const panel::DisabledWhileRunning busy({cmdRun()});
    if (currentFrameChosen()) AlphaMask(lighter(), darker());
    if (multipleFrames())
        for (int frame = startIndex(); frame <= endIndex(); ++frame) {
            van().Van_GotoFrame(frame);
            AlphaMask(lighter(), darker());
        }
    cmdRun()->setEnabled(true);
    endRun(*remembered);
}

} // namespace kirrel::masks
