#include "host/BufferThumbnail.h"

#include <QPainter>

#include <algorithm>

namespace kirrel::host {

BufferThumbnail::BufferThumbnail(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setMinimumSize(120, 80);
}

void BufferThumbnail::setImage(const QImage& image) {
    image_ = image;
    updateGeometry();
    update();
}

int BufferThumbnail::heightForWidth(int w) const {
    if (image_.isNull() || image_.width() == 0) return w * 3 / 4;
    return std::clamp(w * image_.height() / image_.width(), 60, kMaxHeight);
}

void BufferThumbnail::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0x2d, 0x2f, 0x33));
    if (image_.isNull()) return;
    const QSize fitted = image_.size().scaled(size() - QSize(6, 6), Qt::KeepAspectRatio);
    const QRect target(QPoint((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
    painter.drawImage(target, image_);
    painter.setPen(QColor(0, 0, 0, 120));
    painter.drawRect(target.adjusted(-1, -1, 0, 0));
}

} // namespace kirrel::host
