#pragma once
// The transparent PNG export of the current layer: the panel writes a colour bitmap and a mask
// bitmap and lets the converter join them, the mask's grey becoming the opacity.

#include "panel/Vantry.h"
#include "pixel/Plane.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kirrel::exchange {

// Where the mask's grey comes from (the option buttons' indices).
enum class MaskSource { AlphaChannel = 0, PrimaryColour = 1, LayerOpacity = 2 };

// Bytes in one stored row: W*3 padded to a multiple of four. (The panel once left the row one byte
// short when W*3 mod 4 is 3, and put W*4*H + 54 with W*4 as a 16-bit number into the size field;
// the converter on this platform refuses both, "insufficient image data" and "improper image
// header", so these files are written the way every bitmap reader expects.)
int layerRowBytes(int width);

// The whole file: a 54-byte header with the true file size and H rows of W pixels (blue, green,
// red), bottom row first; the planes' last column and row stay out. onRow is told the plane row
// each stored row holds.
std::vector<std::uint8_t> layerBitmapBytes(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b,
                                           int width, int height,
                                           const std::function<void(int y)>& onRow = {});

// The mask planes: every channel the same grey, for x 0..W and y 0..H.
void makeMask(krl::Plane& r, krl::Plane& g, krl::Plane& b, MaskSource source, std::uint32_t primary,
              const krl::Plane& alpha, std::uint8_t opacity);

// Writes png_main.bmp (isMain not 0) or png_mask.bmp into the temporary folder.
void WriteLayerBitmap(Vantry::Vantry_Class& van, short isMain, int layer, MaskSource source);

// Asks for the file and runs the conversion.
void ExportLayerPNG(Vantry::Vantry_Class& van, MaskSource source);

} // namespace kirrel::exchange
