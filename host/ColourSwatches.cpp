#include "host/ColourSwatches.h"

#include <QColorDialog>
#include <QMouseEvent>
#include <QPainter>

namespace kirrel::host {

ColourSwatches::ColourSwatches(QWidget* parent) : QWidget(parent) {
    setObjectName("colourSwatches");
    setCursor(Qt::PointingHandCursor);
    setToolTip("Primary colour (front) and secondary colour (back).\nClick a swatch to choose a colour; "
               "the arrows exchange them, the small squares reset to black and white.");
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ColourSwatches::setColours(QColor primary, QColor secondary) {
    if (primary == primary_ && secondary == secondary_) return;
    primary_ = primary;
    secondary_ = secondary;
    update();
}

void ColourSwatches::paintEvent(QPaintEvent*) {
    QPainter p(this);
    auto swatch = [&](const QRect& r, const QColor& c) {
        p.setPen(QColor(40, 40, 40));
        p.setBrush(c);
        p.drawRect(r.adjusted(0, 0, -1, -1));
        p.setPen(QColor(255, 255, 255, 160));
        p.setBrush(Qt::NoBrush);
        p.drawRect(r.adjusted(1, 1, -2, -2));
    };
    swatch(secondaryRect(), secondary_);
    swatch(primaryRect(), primary_);

    // Exchange arrows: a small curved double arrow.
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setPen(QPen(palette().color(QPalette::WindowText), 1.4));
    const QRect e = exchangeRect().adjusted(4, 4, -4, -4);
    p.drawArc(QRect(e.left() - e.width(), e.top(), 2 * e.width(), 2 * e.height()), 0, 90 * 16);
    p.drawLine(e.topLeft(), e.topLeft() + QPoint(3, -3));
    p.drawLine(e.topLeft(), e.topLeft() + QPoint(3, 3));
    p.drawLine(e.bottomRight(), e.bottomRight() + QPoint(-3, -3));
    p.drawLine(e.bottomRight(), e.bottomRight() + QPoint(3, -3));

    // Reset: a tiny black square over a tiny white one.
    p.setRenderHint(QPainter::Antialiasing, false);
    const QRect r = resetRect();
    p.setPen(QColor(40, 40, 40));
    p.setBrush(Qt::white);
    p.drawRect(QRect(r.left() + 6, r.top() + 6, 10, 10));
    p.setBrush(Qt::black);
    p.drawRect(QRect(r.left() + 1, r.top() + 1, 10, 10));
}

void ColourSwatches::mousePressEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (exchangeRect().contains(at)) {
        emit coloursChosen(secondary_, primary_);
    } else if (resetRect().contains(at)) {
        emit coloursChosen(Qt::black, Qt::white);
    } else if (primaryRect().contains(at)) {
        pick(true);
    } else if (secondaryRect().contains(at)) {
        pick(false);
    }
}

void ColourSwatches::pick(bool primary) {
    const QColor start = primary ? primary_ : secondary_;
    const QColor c = QColorDialog::getColor(start, this, primary ? "Primary Colour" : "Secondary Colour");
    if (!c.isValid()) return;
    emit coloursChosen(primary ? c : primary_, primary ? secondary_ : c);
}

} // namespace kirrel::host
