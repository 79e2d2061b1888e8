#include "panel/DisabledWhileRunning.h"

#include <QWidget>

namespace kirrel::panel {

DisabledWhileRunning::DisabledWhileRunning(std::vector<QWidget*> controls) : controls_(std::move(controls)) {
    for (QWidget* w : controls_)
        w->setEnabled(false);
}

DisabledWhileRunning::~DisabledWhileRunning() {
    for (QWidget* w : controls_)
        w->setEnabled(true);
}

} // namespace kirrel::panel
