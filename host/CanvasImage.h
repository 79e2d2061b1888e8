#pragma once
// What the canvas shows of a picture: with the alpha display on, every pixel is laid over a grey
// checkerboard by its alpha, so transparent parts read as transparent at a glance.

#include "host/Picture.h"

#include <QImage>

namespace kirrel::host {

// The checkerboard's square size in image pixels.
constexpr int kCheckerSquare = 8;

// The picture proper (W x H). Without an alpha plane (or one of another size) the picture is opaque.
QImage canvasImage(const Picture& picture, const krl::Plane* alpha);

} // namespace kirrel::host
