#pragma once
// The animated-mask file (.msk): a grey animation that steers a mix frame by frame.
//
// Layout, little-endian, no magic number: int32 Width, int32 Height (the planes' upper bounds, so a
// picture is Width + 1 wide), int32 Frames, then Frames planes of (Width+1) x (Height+1) bytes, x
// fastest, with nothing between rows or frames. A pixel is the mean of the frame's red, green and
// blue, rounded to the nearest byte.
//
// The reader checks the header against the file's length before it allocates anything, so a
// damaged file gives a DamagedFile with a clear text instead of a crash or an absurd allocation.
// The writer opens without truncating: a shorter mask written over a longer file leaves the old
// tail, which no reader looks at since the header decides what is read.

#include "pixel/Plane.h"
#include "pixel/Triple.h"

#include <QFile>

#include <cstdint>
#include <string>

namespace kirrel::masks {

inline constexpr const char* kMaskFilter = "msk(*.msk)|*.msk";
inline constexpr int kMaskHeaderBytes = 12;
inline constexpr int kLargestMaskBound = 32767;
// A mask's first frame is shown as a picture only up to this many pixels (4096 x 4096); a larger
// one is described but not drawn, rather than building a picture no screen could show.
inline constexpr long long kMaskPictureLimit = 4096LL * 4096LL;

struct MaskHeader {
    std::int32_t width = 0;  // upper x bound
    std::int32_t height = 0; // upper y bound
    std::int32_t frames = 0;
};

// The mean of red, green and blue over the whole plane (bounds of r), written into `out`, which
// takes r's bounds if it lacks them. (255, 255, 254) gives 255.
void meanPlane(krl::Plane& out, const krl::Plane& r, const krl::Plane& g, const krl::Plane& b);

// The header's numbers as they stand; a file too short to hold them gives 0 for the missing ones.
// Throws std::runtime_error when the file cannot be opened.
MaskHeader peekMaskHeader(const std::string& path);

// "319 X 239 at 30 Frames": the header's numbers as they stand.
std::string maskDescription(const MaskHeader& h);

class MaskFileReader {
  public:
    // Checks the whole file on opening: negative sizes, no frames, or a length shorter than the
    // header promises give DamagedFile; std::runtime_error when it cannot be opened.
    explicit MaskFileReader(const std::string& path);

    const MaskHeader& header() const { return header_; }
    long long planeBytes() const;
    int framesLeft() const { return header_.frames - read_; }
    // The next frame's plane, in the header's bounds; read over in place when `p` has them.
    void readPlane(krl::Plane& p);

  private:
    QFile file_;
    std::string path_;
    MaskHeader header_;
    int read_ = 0;
};

class MaskFileWriter {
  public:
    // Writes the header at the start of the file; throws std::runtime_error when it can't be opened.
    MaskFileWriter(const std::string& path, const MaskHeader& header);
    void writePlane(const krl::Plane& p);
    // Throws std::runtime_error when the bytes did not all reach the disk.
    void close();

  private:
    void writeBytes(const void* p, long long n);
    QFile file_;
    std::string path_;
};

} // namespace kirrel::masks
