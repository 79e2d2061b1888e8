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

void showThumbnail(panel::PictureBox* box, const QImage& thumbnail) {
    if (thumbnail.isNull()) {
        box->setPixmap(QPixmap());
        return;
    }
    // Each stored pixel becomes a square block: the thumbnail is small enough to read that way.
    box->setPixmap(QPixmap::fromImage(thumbnail.scaled(kThumbWidth * kThumbZoom, kThumbHeight * kThumbZoom,
                                                       Qt::IgnoreAspectRatio, Qt::FastTransformation)));
}

} // namespace kirrel::stored
