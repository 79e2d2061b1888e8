#pragma once
// Reading the frame bitmaps the converter writes. The pixels are taken from the offset that the
// file header gives, and the sizes from whichever information header the file has: the small core
// header (12 bytes) or any of the larger ones (40 bytes and up; the converter writes 124). Frames
// that carry transparency come as 32-bit bitmaps whose channel masks (bit fields) say which byte is
// which; those masks are a layout, not a compression, so such files are read like plain ones. Every
// size is checked against the file before anything is allocated, and nothing is read past its end:
// a damaged file is refused with an error, never read out of bounds.

#include "panel/Vantry.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kirrel::exchange {

struct BitmapFile {
    int result = 0; // the bit count on success; -1 no "BM", -2 under 8 bits, -3 compressed
    int width = 0, height = 0, bitCount = 0, compression = 0, colorsUsed = 0;
    std::vector<std::uint32_t> table; // the colour table's 32-bit entries as stored
    int rowLength = 0;                // bytes in one stored row
    std::vector<std::uint8_t> rows;   // height rows of rowLength bytes, the bottom row first
    // 32-bit pixels: the byte of each channel within a pixel; alpha -1 when every pixel is opaque.
    int redByte = 2, greenByte = 1, blueByte = 0, alphaByte = -1;
};

// Reads a bitmap file. The result codes are reported in BitmapFile::result; a file that is
// truncated or claims impossible sizes throws std::runtime_error("Bad file format"), and a missing
// file "File not found". An uncompressed file of any depth counts as truncated when it lacks rows
// its header promises, even if its pixels are not read.
BitmapFile ReadBitmapFile(const std::string& path);
// The same on bytes in memory (the path is only for messages).
BitmapFile readBitmapBytes(const std::vector<std::uint8_t>& bytes);

// The planes LoadBitmapFrame puts into the host, made with the file's width and height as upper
// bounds: 32-bit, 24-bit and 8-bit files fill them as described below, other bit counts leave them
// at zero. A 32-bit file's transparent pixels are laid over `paper` (packed like the host's colours),
// partly transparent ones blended with it.
void bitmapPlanes(const BitmapFile& f, krl::Plane& r, krl::Plane& g, krl::Plane& b,
                  std::uint32_t paper = 0xFFFFFF);

// Puts a bitmap file into the host: frame 0 makes a new buffer of the file's size first; frames
// below 1 go to the main buffer, others into their frame. 32-bit, 24-bit and 8-bit files fill the
// planes; other bit counts leave them at zero. An 8-bit file's table entry is taken with red in its
// low byte, green next and blue in the third, as this panel has always read it. A file that is not a
// bitmap at all (-1) changes nothing.
void LoadBitmapFrame(Vantry::Vantry_Class& van, const std::string& path, int frame,
                     std::uint32_t paper = 0xFFFFFF);
// The same for a file already read.
void putBitmapFrame(Vantry::Vantry_Class& van, const BitmapFile& f, const std::string& path, int frame,
                    std::uint32_t paper);

} // namespace kirrel::exchange
