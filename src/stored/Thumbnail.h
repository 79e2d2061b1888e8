#pragma once
// A slot's thumbnail: frame 0 plotted point by point on a 33 x 25 box and kept beside the data file
// as a 24-bit bitmap. Nothing reads the bitmap but the picture controls, so a missing or damaged one
// is simply shown empty.

#include "pixel/Plane.h"

#include <QImage>

#include <string>

namespace kirrel::stored {

inline constexpr int kThumbWidth = 33;  // 495 twips
inline constexpr int kThumbHeight = 25; // 375 twips

// The box scaled so that the frame's bounds (width, height) span it; for x from 0 to width (outer)
// and y from 0 to height (inner) the point (x, y) takes the pixel whose cell holds it, and the last
// point plotted on a pixel wins: no averaging. Points beyond the box (x = width, y = height) fall
// off its edge; pixels that no point reaches keep the cleared box's black.
QImage plotThumbnail(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int width, int height);

// Writes the picture as a 24-bit bitmap over whatever stood there. Throws std::runtime_error when
// the file cannot be written.
void saveThumbnail(const QImage& thumbnail, const std::string& path);

// The thumbnail as stored; a null image when the file is missing or not a readable bitmap.
QImage loadThumbnail(const std::string& path);

} // namespace kirrel::stored
