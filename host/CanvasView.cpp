#include "host/CanvasView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace kirrel::host {

namespace {
constexpr int kMargin = 12;
constexpr double kMinZoom = 0.125;
constexpr double kMaxZoom = 16.0;
const QColor kSurround(0x2d, 0x2f, 0x33);
} // namespace

CanvasView::CanvasView(QScrollArea* area) : QWidget(area), area_(area), ants_(new QTimer(this)) {
    setMouseTracking(true);
    setObjectName("canvas");
    area_->setWidget(this);
    area_->setAlignment(Qt::AlignCenter);
    area_->setWidgetResizable(true);
    QPalette p = area_->palette();
    p.setColor(QPalette::Window, kSurround);
    area_->setPalette(p);
    area_->setBackgroundRole(QPalette::Window);
    connect(ants_, &QTimer::timeout, this, [this] {
        antsPhase_ = (antsPhase_ + 1) % 8;
        update();
    });
}

void CanvasView::setImage(const QImage& image) {
    const bool resized = image.size() != image_.size();
    image_ = image;
    if (resized) relayout();
    update();
}

void CanvasView::setOutline(std::vector<QLine> lines) {
    outline_ = std::move(lines);
    if (outline_.empty() || !outlineVisible_)
        ants_->stop();
    else if (!ants_->isActive())
        ants_->start(160);
    update();
}

void CanvasView::setOutlineVisible(bool on) {
    outlineVisible_ = on;
    setOutline(std::move(outline_));
}

double CanvasView::zoom() const {
    if (!fit_ || image_.isNull()) return zoom_;
    const QSize room = area_->viewport()->size() - QSize(2 * kMargin, 2 * kMargin);
    if (room.width() <= 0 || room.height() <= 0) return 1.0;
    return std::min(static_cast<double>(room.width()) / image_.width(),
                    static_cast<double>(room.height()) / image_.height());
}

void CanvasView::setFit() {
    fit_ = true;
    relayout();
}

void CanvasView::setZoom(double z) {
    zoom_ = std::clamp(z, kMinZoom, kMaxZoom);
    fit_ = false;
    relayout();
}

void CanvasView::zoomBy(double factor) {
    // Steps land on powers of two so that the pixels stay square blocks.
    const double current = zoom();
    const double next = std::pow(2.0, std::round(std::log2(current * factor) * 2) / 2);
    setZoom(next == current ? current * factor : next);
}

void CanvasView::relayout() {
    if (fit_) {
        area_->setWidgetResizable(true);
    } else {
        area_->setWidgetResizable(false);
        resize(sizeHint());
    }
    updateGeometry();
    update();
    emit zoomChanged();
}

QSize CanvasView::sizeHint() const {
    if (image_.isNull()) return {320, 240};
    const double z = fit_ ? 1.0 : zoom_;
    return {static_cast<int>(std::ceil(image_.width() * z)) + 2 * kMargin,
            static_cast<int>(std::ceil(image_.height() * z)) + 2 * kMargin};
}

QRectF CanvasView::imageRect() const {
    if (image_.isNull()) return {};
    const double z = zoom();
    const QSizeF size(image_.width() * z, image_.height() * z);
    const QPointF topLeft(std::max<double>(kMargin, (width() - size.width()) / 2),
                          std::max<double>(kMargin, (height() - size.height()) / 2));
    return {QPointF(std::round(topLeft.x()), std::round(topLeft.y())), size};
}

QPoint CanvasView::imagePixelAt(QPoint widgetPos) const {
    const QRectF r = imageRect();
    if (r.isEmpty() || !r.contains(widgetPos)) return {-1, -1};
    const double z = zoom();
    const int x = std::clamp(static_cast<int>((widgetPos.x() - r.left()) / z), 0, image_.width() - 1);
    const int y = std::clamp(static_cast<int>((widgetPos.y() - r.top()) / z), 0, image_.height() - 1);
    return {x, y};
}

void CanvasView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kSurround);
    if (image_.isNull()) return;
    const QRectF r = imageRect();
    // A soft shadow lifts the picture off the surround.
    painter.fillRect(r.translated(3, 3), QColor(0, 0, 0, 90));
    const double z = zoom();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, z < 1.0);
    painter.drawImage(r, image_);
    if (outline_.empty() || !outlineVisible_) return;

    painter.save();
    painter.translate(r.topLeft());
    painter.scale(z, z);
    painter.setRenderHint(QPainter::Antialiasing, false);
    QPen white(Qt::white, 0);
    painter.setPen(white);
    painter.drawLines(outline_.data(), static_cast<int>(outline_.size()));
    QPen ants(Qt::black, 0, Qt::CustomDashLine);
    ants.setDashPattern({4, 4});
    ants.setDashOffset(antsPhase_);
    painter.setPen(ants);
    painter.drawLines(outline_.data(), static_cast<int>(outline_.size()));
    painter.restore();
}

void CanvasView::mouseMoveEvent(QMouseEvent* event) {
    emit this->hovered(imagePixelAt(event->position().toPoint()));
    QWidget::mouseMoveEvent(event);
}

void CanvasView::leaveEvent(QEvent* event) {
    emit this->hovered({-1, -1});
    QWidget::leaveEvent(event);
}

void CanvasView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (fit_) emit zoomChanged();
}

void CanvasView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QWidget::wheelEvent(event);
        return;
    }
    zoomBy(event->angleDelta().y() > 0 ? std::sqrt(2.0) : 1 / std::sqrt(2.0));
    event->accept();
}

} // namespace kirrel::host
