#pragma once
// The CFX file: a small animation kept as a recipe for compositing two pictures, with the two key
// colours it was drawn in. Little-endian throughout:
//
//   offset  0  int16  Type, always 1
//           2  30     Title, one byte per character, blank-padded, no terminator
//          32  int16  Frames
//          34  int16  Width   (upper bound of x)
//          36  int16  Height  (upper bound of y)
//          38  6      primary red, green, blue; secondary red, green, blue
//          44  ...    per frame the red, green and blue planes, (Width+1) x (Height+1) bytes each, x fastest
//
// Reading checks the header against the file's length before any plane is allocated, so a short or
// damaged file is refused with a clear text (a stored::DamagedFile) and never read past its end.
// Writing starts at the beginning of the file without truncating it: over a longer old file the
// old tail stays behind, and readers, which go by the header, never see it.

#include "pixel/Triple.h"

#include <QFile>

#include <cstdint>
#include <string>

namespace kirrel::customfx {

inline constexpr int kTitleLength = 30;
inline constexpr int kHeaderBytes = 44;
inline constexpr const char* kCfxFilter = "cfx(*.cfx)|*.cfx";

struct KeyBytes {
    std::uint8_t r = 0, g = 0, b = 0;
};

// A colour as the host packs it (red in the low byte) split into its bytes.
KeyBytes splitColour(int packed);

// The title as the file keeps it: cut to 30 characters, each in the single-byte code page (a
// character it lacks becomes '?'), blank-padded on the right.
std::string titleField(const std::string& utf8Title);
// Trailing blanks go; a field of nothing but blanks stays as it is. The result is UTF-8.
std::string trimTitle(const std::string& field);

struct CfxHeader {
    std::int16_t type = 0;
    std::string title; // the raw 30-byte field
    std::int16_t frames = 0;
    std::int16_t width = 0;
    std::int16_t height = 0;
    KeyBytes primary, secondary;
};

class CfxReader {
  public:
    // Opens the file and reads Type and Title. Throws std::runtime_error when the file cannot be
    // opened, stored::DamagedFile when it is too short for them.
    explicit CfxReader(const std::string& path);

    const CfxHeader& header() const { return header_; }
    // Reads Frames, Width, Height and the key colours, and checks that the file holds every frame the
    // header promises (throws stored::DamagedFile otherwise). Only for a Type 1 file.
    void readRest();
    // The next frame into t, whose planes get the header's bounds.
    void readFrame(krl::Triple& t);

  private:
    void readBytes(void* out, long long n, const char* fault);
    std::int16_t readInt16();
    [[noreturn]] void damaged(const std::string& fault) const;

    QFile file_;
    std::string path_;
    CfxHeader header_;
};

class CfxWriter {
  public:
    // Throws std::runtime_error when the file cannot be opened for writing.
    explicit CfxWriter(const std::string& path);

    void writeHeader(const CfxHeader& h);
    void writePlane(const krl::Plane& p);
    // Throws std::runtime_error when the bytes did not all reach the disk.
    void close();

  private:
    void writeBytes(const void* p, long long n);
    void writeInt16(int v);

    QFile file_;
    std::string path_;
};

} // namespace kirrel::customfx
