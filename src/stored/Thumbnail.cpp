#include "stored/Thumbnail.h"

#include "stored/DataFile.h"

#include <QImageReader>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace kirrel::stored {

namespace {
// The box pixel that holds point v of a scale 0..bound spread over `pixels` pixels.
long long cellOf(long long v, long long bound, long long pixels) {
    return bound > 0 ? v * pixels / bound : 0;
}
} // namespace

QImage plotThumbnail(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int width, int height) {
    QImage box(kThumbWidth, kThumbHeight, QImage::Format_RGB32);
    box.fill(Qt::black);
    // The planes come from the host at the header's bounds; the smallest of them bounds the loop so
    // that nothing is ever read outside a plane.
    const int xs = std::min({width, r.width(), g.width(), b.width()});
    const int ys = std::min({height, r.height(), g.height(), b.height()});
    // With x outer and y inner, the point that lands last on a pixel is the one with the largest x of
    // its column cell and, for that x, the largest y of its row cell; so one pass per axis finds
    // them, and the plot costs no more than the box, whatever the frame's size.
    int lastX[kThumbWidth], lastY[kThumbHeight];
    std::fill(std::begin(lastX), std::end(lastX), -1);
    std::fill(std::begin(lastY), std::end(lastY), -1);
    for (int x = 0; x <= xs; ++x)
        if (const long long px = cellOf(x, width, kThumbWidth); px < kThumbWidth) lastX[px] = x;
    for (int y = 0; y <= ys; ++y)
        if (const long long py = cellOf(y, height, kThumbHeight); py < kThumbHeight) lastY[py] = y;
    for (int px = 0; px < kThumbWidth; ++px) {
        if (lastX[px] < 0) continue;
        for (int py = 0; py < kThumbHeight; ++py) {
            if (lastY[py] < 0) continue;
            const int x = lastX[px], y = lastY[py];
            box.setPixel(px, py, qRgb(r.at(x, y), g.at(x, y), b.at(x, y)));
        }
    }
    return box;
}

void saveThumbnail(const QImage& thumbnail, const std::string& path) {
    // An image without alpha is written with 24 bits a pixel.
    const QImage rgb = thumbnail.convertToFormat(QImage::Format_RGB32);
    if (!rgb.save(QString::fromStdString(path), "BMP"))
        throw std::runtime_error(fileNameOf(path) + " cannot be written.");
}

QImage loadThumbnail(const std::string& path) {
    QImageReader reader(QString::fromStdString(path), "BMP");
    // A thumbnail is small; anything claiming to be large is not one of ours.
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > 4 * kThumbWidth || size.height() > 4 * kThumbHeight) return {};
    QImage image;
    if (!reader.read(&image)) return {};
    return image;
}

} // namespace kirrel::stored
