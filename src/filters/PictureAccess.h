#pragma once
// Planes onto the screen and into bitmap files. A picture box is the work surface a picture is drawn
// into; the image control beside it keeps the result, so the box can be drawn into again at once.

#include "panel/Controls.h"
#include "panel/Vantry.h"
#include "pixel/Plane.h"

#include <QImage>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace kirrel::filters {

// The error raised by the bitmap helpers: their own number, the helper that failed and the text.
class DibError : public std::runtime_error {
  public:
    static constexpr std::uint32_t kNumber = 0x800403F0u;
    DibError(const std::string& text, std::string source)
        : std::runtime_error(text), source_(std::move(source)) {}
    const std::string& source() const { return source_; }

  private:
    std::string source_;
};

// Draws a packed bottom-up 24-bit pixel array (see DibLayout.h) upright into the box, which takes
// the picture's size and keeps it.
void SetDIBPixels24Bit(panel::PictureBox* box, int width, int height,
                       const std::vector<std::uint8_t>& pixels);
// The box's picture read back as 24-bit colour; a box without a picture can't be read.
QImage GetDIBPixels24Bit(const panel::PictureBox* box);
// The box's picture read back through its palette; only 1, 4 and 8 bits per pixel are taken.
QImage GetDIBPixelsWithPalette(const panel::PictureBox* box);

// Shows three planes: their upper bounds are the picture's size, so a 0..200 plane shows 200 x 200
// and its last row and column stay out. The image control keeps the picture; the box is left empty,
// sized as the picture.
void ShowPlanes(panel::PictureBox* box, QLabel* image, const krl::Plane& r, const krl::Plane& g,
                const krl::Plane& b);

// The file a frame's bitmap goes to in the temporary folder: "temp", the frame number, ".bmp".
std::string frameBitmapPath(const std::string& tempDir, int frame);
// Writes one frame as a W x H 24-bit BMP (the planes' last row and column stay out). The current
// frame is read from the main buffer, which may hold paint not yet in the store; any other frame is
// read in place from the store, without moving there. Returns the file's path.
std::string Save_BMP(Vantry::Vantry_Class& van, int frame);
inline std::string SaveFrameBitmap(Vantry::Vantry_Class& van, int frame) {
    return Save_BMP(van, frame);
}

} // namespace kirrel::filters
