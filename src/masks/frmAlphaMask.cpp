#include "masks/frmAlphaMask.h"

#include "masks/AlphaMaskMod.h"
#include "masks/MaskSources.h"
#include "panel/DisabledWhileRunning.h"
#include "stored/AnimUndo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>

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

void frmAlphaMask::cmdUndo_Click() {
    MaskDialog::cmdUndo_Click();
    showAlphaPlane(van());
}

void frmAlphaMask::cmd_Run_Click() {
    const int remembered = van().Van_GetCurrentFrame();
    TotalFrames = van().Van_GetTotalFrames();
    if (!frameCountUnchanged()) return;
    van().Van_StopAnimation();
    if (optMultiple()->isChecked() && TotalFrames == 0) {
        animationCheck();
        return;
    }
    // The undo is saved before the sources are compared: a refused run has replaced it all the same.
    stored::saveUndoIfChecked(chkUndoSave());
    if (darker() == lighter()) {
        van().Van_MessageBox(kTwoSources);
        return;
    }
    const panel::DisabledWhileRunning busy({cmdRun()});
    if (optCurrent()->isChecked()) AlphaMask(lighter(), darker());
    if (optMultiple()->isChecked())
        for (int frame = startIndex(); frame <= endIndex(); ++frame) {
            van().Van_GotoFrame(frame);
            AlphaMask(lighter(), darker());
        }
    cmdRun()->setEnabled(true);
    van().Van_GotoFrame(remembered);
    van().Van_Refresh();
}

} // namespace kirrel::masks
