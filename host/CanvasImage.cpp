#include "host/CanvasImage.h"

#include "host/AnimationFiles.h"

namespace kirrel::host {

namespace {
constexpr int kLightSquare = 204;
constexpr int kDarkSquare = 153;

inline uchar over(int colour, int back, int a) {
    return static_cast<uchar>((colour * a + back * (255 - a) + 127) / 255);
}
} // namespace

QImage canvasImage(const Picture& picture, const krl::Plane* alpha) {
    QImage img = imageFromPicture(picture);
    if (!alpha || alpha->width() != picture.width() || alpha->height() != picture.height()) return img;
    const int w = std::min(img.width(), alpha->cols());
    const int h = std::min(img.height(), alpha->rows());
    for (int y = 0; y < h; ++y) {
        uchar* line = img.scanLine(y);
        const std::uint8_t* a = alpha->row(y);
        for (int x = 0; x < w; ++x) {
            if (a[x] == 255) continue;
            const int back =
                ((x / kCheckerSquare) + (y / kCheckerSquare)) % 2 == 0 ? kLightSquare : kDarkSquare;
            uchar* px = line + static_cast<std::ptrdiff_t>(3) * x;
            px[0] = over(px[0], back, a[x]);
            px[1] = over(px[1], back, a[x]);
            px[2] = over(px[2], back, a[x]);
        }
    }
    return img;
}

} // namespace kirrel::host
