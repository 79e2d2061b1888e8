#include "host/PanelDock.h"

#include "panel/EventGuard.h"
#include "panel/FormBase.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMainWindow>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace kirrel::host {

PanelDock::PanelDock(QWidget* parent) : QDockWidget("Kirrel", parent) {
    setObjectName("panelDock");
    setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    scroll_ = new QScrollArea(this);
    scroll_->setObjectName("panelScroll");
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    forms_ = new QWidget(scroll_);
    forms_->setObjectName("panelForms");
    column_ = new QVBoxLayout(forms_);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    column_->addStretch(1);
    scroll_->setWidget(forms_);
    setWidget(scroll_);
}

void PanelDock::adopt(QWidget* form) {
    if (!form || form->parentWidget() == forms_) return;
    const bool visible = form->isVisible();
    form->setParent(forms_, Qt::Widget);
    // Above the closing stretch, so forms sit at the top of the dock.
    column_->insertWidget(column_->count() - 1, form, 0, Qt::AlignHCenter);
    form->installEventFilter(this);
    adopted_.emplace_back(form);
    if (visible) form->show();
    follow();
}

QWidget* PanelDock::shownForm() const {
    // The panel's own bookkeeping knows which form came to the front last.
    if (panel::FormBase* front = panel::FormBase::front();
        front && front->parentWidget() == forms_ && front->isVisibleTo(forms_))
        return front;
    const auto shown = std::find_if(adopted_.begin(), adopted_.end(), [this](const QPointer<QWidget>& f) {
        return f && f->isVisibleTo(forms_);
    });
    return shown == adopted_.end() ? nullptr : shown->data();
}

void PanelDock::bringForward() {
    if (!isVisible()) show();
    raise();
    if (QWidget* form = shownForm()) {
        form->activateWindow();
        form->setFocus(Qt::OtherFocusReason);
    }
}

bool PanelDock::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::WindowTitleChange:
    case QEvent::Resize:
        // After the event: a form hidden to show another must not leave the dock empty meanwhile.
        QTimer::singleShot(0, this, [this] { follow(); });
        break;
    case QEvent::KeyPress: {
        // Escape anywhere in a dialog is its "Done"; the panel itself stays.
        auto* key = static_cast<QKeyEvent*>(event);
        auto* form = qobject_cast<panel::FormBase*>(watched);
        if (key->key() == Qt::Key_Escape && form && form->objectName() != "Mainfrm") {
            panel::runUserStep(
                *form, *form, panel::UserEvent::Close, [form] { form->closeByUser(); }, form->actionName());
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QDockWidget::eventFilter(watched, event);
}

// The title names the form in front, and the dock is as wide as that form needs.
void PanelDock::follow() {
    QWidget* form = shownForm();
    setWindowTitle(form ? form->windowTitle() : QStringLiteral("Kirrel"));
    if (!form) return;
    const int width = form->sizeHint().expandedTo(form->minimumSize()).width() +
                      scroll_->verticalScrollBar()->sizeHint().width() + 4;
    scroll_->setMinimumWidth(width);
    if (auto* window = qobject_cast<QMainWindow*>(parentWidget()); window && !isFloating())
        window->resizeDocks({this}, {width}, Qt::Horizontal);
}

} // namespace kirrel::host
