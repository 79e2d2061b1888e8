#include "panel/Controls.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>

namespace kirrel::panel {

void ClickLabel::mouseReleaseEvent(QMouseEvent* e) {
    QLabel::mouseReleaseEvent(e);
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint())) emit clicked();
}

QString controlKind(const QObject* c) {
    if (qobject_cast<const QComboBox*>(c)) return "combo";
    if (qobject_cast<const QListWidget*>(c)) return "list";
    if (qobject_cast<const QCheckBox*>(c)) return "check";
    if (qobject_cast<const QRadioButton*>(c)) return "option";
    if (qobject_cast<const QPushButton*>(c)) return "button";
    if (qobject_cast<const QAbstractSlider*>(c)) return "slider";
    if (qobject_cast<const QLineEdit*>(c)) return "text";
    if (qobject_cast<const PictureBox*>(c)) return "picture";
    if (qobject_cast<const ClickLabel*>(c)) return "clicklabel";
    if (qobject_cast<const QLabel*>(c)) return "label";
    if (qobject_cast<const QAction*>(c)) return "menu";
    return "other";
}

} // namespace kirrel::panel
