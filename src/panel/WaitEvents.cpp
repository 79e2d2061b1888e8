#include "panel/WaitEvents.h"

#include "host/HostState.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

namespace kirrel::panel {

namespace {

constexpr const char* kUsableWhileWaiting = "kirrelUsableWhileWaiting";

bool isUserInput(QEvent::Type t) {
    switch (t) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Wheel:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::ContextMenu:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

class Gate : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!isUserInput(event->type())) return false;
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            host::runningHost().requestCancel();
            return true;
        }
        for (auto* w = qobject_cast<QWidget*>(watched); w; w = w->parentWidget())
            if (w->property(kUsableWhileWaiting).toBool()) return false;
        return true;
    }
};

} // namespace

void processEventsWhileWaiting() {
    if (!QCoreApplication::instance()) return;
    static Gate gate;
    QCoreApplication::instance()->installEventFilter(&gate);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QCoreApplication::instance()->removeEventFilter(&gate);
}

void markUsableWhileWaiting(QWidget* control) {
    control->setProperty(kUsableWhileWaiting, true);
}

} // namespace kirrel::panel
