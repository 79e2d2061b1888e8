#pragma once
// The picture box in which a slot row shows its thumbnail: the 33 x 25 bitmap drawn at twice its
// size, and a dark well when the slot is empty.

#include "panel/Controls.h"

#include <QImage>
#include <QSize>
#include <QString>

class QWidget;

namespace kirrel::stored {

inline constexpr int kThumbZoom = 2;

// A picture box of the thumbnail's displayed size, named for its row (e.g. "picThumbnail(2)").
panel::PictureBox* makeThumbnailBox(QWidget* form, const QString& name);
// Shows the thumbnail scaled to the box; a null image clears the box.
// The thumbnail file has one fixed size whatever the animation's shape; given the animation's
// picture size, the box shows it in that shape again, the rest of the box left dark.
void showThumbnail(panel::PictureBox* box, const QImage& thumbnail, QSize pictureSize = {});

} // namespace kirrel::stored
