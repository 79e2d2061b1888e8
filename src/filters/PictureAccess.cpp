#include "filters/PictureAccess.h"

#include "filters/DibLayout.h"

#include <QPixmap>

#include <fstream>

namespace kirrel::filters {

void SetDIBPixels24Bit(panel::PictureBox* box, int width, int height,
                       const std::vector<std::uint8_t>& pixels) {
    const int stride = dibRowBytes(width);
    if (width <= 0 || height <= 0 || pixels.size() < static_cast<std::size_t>(stride) * height)
        throw DibError("Error using StretchDIBits", "DIBHelper.SetDIBPixels24Bit");
    QImage image(width, height, QImage::Format_RGB888);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* src = pixels.data() + static_cast<std::size_t>(height - 1 - y) * stride;
        uchar* dst = image.scanLine(y);
        for (int x = 0; x < width; ++x) {
            dst[3 * x] = src[3 * x + 2];
            dst[3 * x + 1] = src[3 * x + 1];
            dst[3 * x + 2] = src[3 * x];
        }
    }
    box->setFixedSize(width, height);
    box->setPixmap(QPixmap::fromImage(image));
}

QImage GetDIBPixels24Bit(const panel::PictureBox* box) {
    const QPixmap pm = box->pixmap();
    if (pm.isNull()) throw DibError("Error using GetDIBits", "DIBHelper.GetDIBPixels24Bit");
    return pm.toImage().convertToFormat(QImage::Format_RGB888);
}

QImage GetDIBPixelsWithPalette(const panel::PictureBox* box) {
    const QPixmap pm = box->pixmap();
    if (pm.isNull()) throw DibError("Error using GetDIBits", "DIBHelper.GetDIBPixelsWithPalette");
    const QImage image = pm.toImage();
    const int depth = image.depth();
    if (depth != 1 && depth != 4 && depth != 8)
        throw DibError("The number of bits per pixel must be 1, 4, or 8",
                       "DIBHelper.GetDIBPixelsWithPalette");
    return image;
}

void ShowPlanes(panel::PictureBox* box, QLabel* image, const krl::Plane& r, const krl::Plane& g,
                const krl::Plane& b) {
    const int width = r.width();
    const int height = r.height();
    SetDIBPixels24Bit(box, width, height, packDib24(r, g, b, width, height));
    image->setPixmap(box->pixmap());
    image->setFixedSize(width, height);
    box->setPixmap(QPixmap());
}

std::string frameBitmapPath(const std::string& tempDir, int frame) {
    return tempDir + "/temp" + std::to_string(frame) + ".bmp";
}

std::string Save_BMP(Vantry::Vantry_Class& van, int frame) {
    const std::string path = frameBitmapPath(van.Van_GetTempDir(), frame);
    const int w = van.Van_BufferWidth();
    const int h = van.Van_BufferHeight();
    const int current = van.Van_GetCurrentFrame();
    krl::Plane r, g, b;
    if (frame == current) {
        r = van.Van_GetRBuffer();
        g = van.Van_GetGBuffer();
        b = van.Van_GetBBuffer();
    } else {
        r = van.Van_GetRFrame(frame);
        g = van.Van_GetGFrame(frame);
        b = van.Van_GetBFrame(frame);
    }
    const std::vector<std::uint8_t> bytes = bmpFile24(r, g, b, w, h);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("Path not found: " + path);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    // The stream buffers what it is given: a full disk shows only when the bytes are pushed out.
    out.close();
    if (out.fail()) throw std::runtime_error("Disk full: " + path);
    return path;
}

} // namespace kirrel::filters
