#include "stored/ThumbnailBox.h"

#include "stored/Thumbnail.h"

#include <QPixmap>

namespace kirrel::stored {

panel::PictureBox* makeThumbnailBox(QWidget* form, const QString& name) {
    auto* box = new panel::PictureBox(form);
    box->setObjectName(name);
    box->setFixedSize(kThumbWidth * kThumbZoom + 2, kThumbHeight * kThumbZoom + 2);
    box->setAlignment(Qt::AlignCenter);
    box->setStyleSheet("background-color: #101010; border: 1px solid #2a2a2a;");
    return box;
}

void showThumbnail(panel::PictureBox* box, const QImage& thumbnail, QSize pictureSize) {
    if (thumbnail.isNull()) {
        box->setPixmap(QPixmap());
        return;
    }
    QSize shown(kThumbWidth * kThumbZoom, kThumbHeight * kThumbZoom);
    if (pictureSize.width() > 0 && pictureSize.height() > 0)
        shown = pictureSize.scaled(shown, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    // Each stored pixel becomes a block: the thumbnail is small enough to read that way.
    box->setPixmap(
        QPixmap::fromImage(thumbnail.scaled(shown, Qt::IgnoreAspectRatio, Qt::FastTransformation)));
}

} // namespace kirrel::stored
