#pragma once
// The slot store's files in the host's temporary directory, and the one reader of animations in
// the slot layout (slot files and the animation undo file).
//
// Layout: int16 Frames, int16 Width, int16 Height (little-endian; Width and Height are the planes'
// upper bounds), then per frame a red, a green and a blue plane of (Width+1) x (Height+1) bytes,
// x fastest. There is no index: a slot is filled exactly when its data file exists.

#include "pixel/Triple.h"
#include "stored/DataFile.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kirrel::stored {

inline constexpr int kSlotCount = 4;

// A number as the panel's language turns it into text: one blank before a non-negative number.
std::string numberWithBlank(long long n);

// tempDir + "/AnimSlot 2.dat" and tempDir + "/AnimThumb 2.bmp": the blank is part of the name.
std::string slotDataPath(const std::string& tempDir, int slot);
std::string slotThumbPath(const std::string& tempDir, int slot);

inline constexpr const char* kAnimUndoName = "/AnimUndo.dat";
inline constexpr const char* kAlphaUndoName = "/AlphaUndo.dat";
inline constexpr const char* kSwapUndoName = "/SwapUndo.dat";

// Whether a file of exactly this name exists (a folder of that name doesn't count).
bool fileExists(const std::string& path);

struct FrameFileHeader {
    std::int16_t frames = 0;
    std::int16_t width = 0;  // upper x bound
    std::int16_t height = 0; // upper y bound
};

// The header alone, as slot labels and the runs' pre-checks read it: the numbers as stored, good or
// bad; a file too short to hold them gives 0 for the missing ones. nullopt when there is no file.
std::optional<FrameFileHeader> peekFrameFileHeader(const std::string& path);

// "30 Frames,  (639  X  479)": the header's numbers as they stand.
std::string slotDescription(const FrameFileHeader& h);

// Reads an animation in the slot layout frame by frame, strictly in sequence. The whole file is
// checked on opening (header and length), so a caller that opens it before changing anything can
// refuse a damaged file cleanly.
class FrameFileReader {
  public:
    enum class Kind {
        Slot, // at least one frame
        Undo, // 0 frames means a still picture: one set of planes follows all the same
    };
    // Throws DamagedFile for a header with negative numbers (or no frames in a slot) or a file
    // shorter than the header says; std::runtime_error when it cannot be opened.
    FrameFileReader(const std::string& path, Kind kind);

    const FrameFileHeader& header() const { return header_; }
    int width() const { return header_.width; }
    int height() const { return header_.height; }
    // Pictures that follow the header: Frames, or 1 for a still picture.
    int pictures() const { return pictures_; }
    int picturesLeft() const { return pictures_ - read_; }

    // The next picture, in the header's bounds. Planes that have them are read over in place;
    // others are replaced. Throws std::runtime_error when every picture has been read.
    void readPicture(krl::Plane& r, krl::Plane& g, krl::Plane& b);
    void readPicture(krl::Triple& into) { readPicture(into.r, into.g, into.b); }

  private:
    PlaneFileReader in_;
    FrameFileHeader header_;
    int pictures_ = 0;
    int read_ = 0;
};

} // namespace kirrel::stored
