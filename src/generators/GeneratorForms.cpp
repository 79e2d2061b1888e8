#include "generators/GeneratorForms.h"

#include "generators/FrameToolForms.h"
#include "generators/GeneratorDialogs.h"
#include "panel/FormBase.h"

namespace kirrel::generators {

void registerGeneratorForms() {
    panel::registerForm("frmTVSnow", [] { return new frmTVSnow; });
    panel::registerForm("frmFlicker", [] { return new frmFlicker; });
    panel::registerForm("frmGenThreshold", [] { return new frmGenThreshold; });
    panel::registerForm("frmVertHold", [] { return new frmVertHold; });
    panel::registerForm("frmFocus", [] { return new frmFocus; });
    panel::registerForm("frmFrameSwap", [] { return new FrameToolForm(frameSwapTraits()); });
    panel::registerForm("frmFrameCopy", [] { return new FrameToolForm(frameCopyTraits()); });
    panel::registerForm("frmPingPong", [] { return new frmPingPong; });
}

} // namespace kirrel::generators
