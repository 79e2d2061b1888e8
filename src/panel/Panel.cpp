#include "panel/Panel.h"

#include "panel/Mainfrm.h"
#include "panel/Registry.h"

namespace kirrel::panel {

void startPanel() {
    registerEverything();
    if (FormBase::find("Mainfrm")) return;
    registerForm("Mainfrm", [] { return new Mainfrm; });
    FormBase* main = loadFormByName("Mainfrm");
    main->showForm();
}

void showMainPanel() {
    if (FormBase* main = FormBase::find("Mainfrm")) main->showForm();
}

} // namespace kirrel::panel
