#pragma once
// Block Out: the frame is covered (To) or uncovered (From) in random square blocks. The blocks are
// cells of a grid; at every frame but the last some free cells are taken at random, more at each
// frame (the number grows linearly with the frame's place in the run), and a taken cell stays taken.
// A To run paints the source over the taken cells and is all source at its last frame; a From run
// paints it over the free cells, is all source at its first frame and all animation at its last.
//
// Sources: "Swap" and "Primary Color" (read once), or a stored animation through the splice shapes,
// whose block arithmetic uses the stored frame's own size.

#include "pixel/Triple.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace kirrel::transitions {

struct BlockLayout {
    int size; // the side of a block, in pixels
    int cols; // cells across and down
    int rows;
    int total; // cols * rows
};

// The blocks for bounds w, h over a run of `span` frames (End - Start); none when the blocks would
// be smaller than a pixel, which the run refuses with "Too many frames for this image size!".
std::optional<BlockLayout> blockLayout(int w, int h, int span);

// Cells taken at frame i of Start..End: 2 * ((i - Start) / Span) * total / Span, whole cells only, so
// the draws over a run never outnumber the cells; none at End.
int blocksDrawnAt(int i, int start, int end, int total);

// Whether frame i shows the source over a block whose cell is taken (or free).
bool blockShowsSource(bool to, bool taken, int i, int start, int end);

class BlockGrid {
  public:
    explicit BlockGrid(const BlockLayout& layout);
    // Takes `count` free cells, each drawn at random until a free one comes up; a full grid takes
    // no more.
    void take(int count, std::mt19937& random);
    bool taken(int col, int row) const { return cells_[index(col, row)] != 0; }
    int takenCount() const { return taken_; }
    // The cell of the block whose corner is at pixel x (or y). The strip left over past the last
    // whole block goes with the last column (or row), so every pixel covers with some cell.
    int colOf(int x) const;
    int rowOf(int y) const;
    const BlockLayout& layout() const { return layout_; }

  private:
    std::size_t index(int col, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(layout_.cols) +
               static_cast<std::size_t>(col);
    }
    BlockLayout layout_;
    std::vector<std::int16_t> cells_; // 0 free, -1 taken
    int taken_ = 0;
};

// Paints frame i: the blocks that show the source are copied from src into m, clipped at w, h.
void paintBlocks(krl::Triple& m, const krl::Triple& src, const BlockGrid& grid, bool to, int i, int start,
                 int end, int w, int h);

// Frames Start..End; the source is "Swap" or "Primary Color".
void runBlockOutTo(int start, int end, const std::string& source);
void runBlockOutFrom(int start, int end, const std::string& source);
// The splices with slot 0..3.
void BlockOut2Stored(int start, int slot);
void BlockOutFromStored(int end, int slot);

inline void BlockOut2Swap(int start, int end) {
    runBlockOutTo(start, end, "Swap");
}
inline void BlockOutFromSwap(int start, int end) {
    runBlockOutFrom(start, end, "Swap");
}
inline void BlockOut2Color(int start, int end) {
    runBlockOutTo(start, end, "Primary Color");
}
inline void BlockOutFromColor(int start, int end) {
    runBlockOutFrom(start, end, "Primary Color");
}

} // namespace kirrel::transitions
