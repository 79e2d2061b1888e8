#include "transitions/Blocks.h"

#include "panel/Numeric.h"
#include "pixel/Mixing.h"
#include "stored/SlotFiles.h"
#include "transitions/PlainRun.h"
#include "transitions/StoredRun.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kirrel::transitions {

namespace {

constexpr const char* kTooManyFrames = "Too many frames for this image size!";

// The run in progress. A step is a plain function of the frame; the grid lives from the run's
// preparation to its last frame, on the panel's one thread.
struct BlockRun {
    bool to = true;
    BlockLayout layout{};
    std::optional<BlockGrid> grid;
    std::mt19937 random;
};
BlockRun current;

// A fresh grid and a generator seeded from the clock, so that no two runs lay the same blocks.
void prepare(RunFrame&) {
    current.grid.emplace(current.layout);
    current.random.seed(static_cast<std::mt19937::result_type>(
        std::chrono::high_resolution_clock::now().time_since_epoch().count()));
}

void step(RunFrame& f) {
    if (f.i < f.end)
        current.grid->take(blocksDrawnAt(f.i, f.start, f.end, current.layout.total), current.random);
    paintBlocks(f.M, f.A, *current.grid, current.to, f.i, f.start, f.end, f.W, f.H);
}

// The layout for the run, or the refusal before anything changes.
bool plan(Vantry::Vantry_Class& van, bool to, int w, int h, int span) {
    const std::optional<BlockLayout> layout = blockLayout(w, h, span);
    if (!layout) {
        van.Van_MessageBox(kTooManyFrames);
        return false;
    }
    current.to = to;
    current.layout = *layout;
    return true;
}

void runPlainBlocks(bool to, int start, int end, const std::string& source) {
    {
        Vantry::Vantry_Class van;
        const int H = van.Van_BufferHeight();
        const int W = van.Van_BufferWidth();
        if (!plan(van, to, W, H, end - start)) return;
    }
    PlainShape shape;
    shape.toLoopFromStart = true;
    shape.callAtStart = true;
    shape.fromWritesFrame = true;
    shape.prepare = prepare;
    runPlain(to ? Direction::To : Direction::From, start, end, source, shape, step);
}

StoredShape storedShape() {
    StoredShape s;
    s.callAtStart = true;
    s.fromWritesFrame = true;
    s.prepare = prepare;
    return s;
}

// The stored frame's own bounds size the blocks. Without a slot file the splice itself reports the
// empty slot, so only a slot that exists is planned here.
bool planStored(bool to, int overlapSpan, int slot) {
    Vantry::Vantry_Class van;
    const auto header = stored::peekFrameFileHeader(stored::slotDataPath(van.Van_GetTempDir(), slot));
    if (!header) return true;
    return plan(van, to, header->width, header->height, overlapSpan);
}

} // namespace

std::optional<BlockLayout> blockLayout(int w, int h, int span) {
    const double side = roundHalfEven(std::sqrt(static_cast<double>(w) * static_cast<double>(h)));
    const int size = toInt32(divide(side, static_cast<double>(span)));
    if (size <= 0) return std::nullopt;
    // A picture narrower (or lower) than half a block still gets one column (or row) of cells.
    const int cols = std::max(1, toInt32(static_cast<double>(w) / size));
    const int rows = std::max(1, toInt32(static_cast<double>(h) / size));
    return BlockLayout{size, cols, rows, cols * rows};
}

int blocksDrawnAt(int i, int start, int end, int total) {
    if (i >= end) return 0;
    const double span = static_cast<double>(end - start);
    const double count = 2.0 * divide(static_cast<double>(i - start), span) * total / span;
    return static_cast<int>(std::floor(count));
}

bool blockShowsSource(bool to, bool taken, int i, int start, int end) {
    if (to) return i == end || (taken && i != start);
    return i == start || (!taken && i != end);
}

BlockGrid::BlockGrid(const BlockLayout& layout)
    : layout_(layout), cells_(static_cast<std::size_t>(layout.cols) * static_cast<std::size_t>(layout.rows)) {
}

void BlockGrid::take(int count, std::mt19937& random) {
    std::uniform_int_distribution<int> col(0, layout_.cols - 1), row(0, layout_.rows - 1);
    for (int k = 0; k < count && taken_ < layout_.total; ++k) {
        std::size_t cell = 0;
        do
            cell = index(col(random), row(random));
        while (cells_[cell] != 0);
        cells_[cell] = -1;
        ++taken_;
    }
}

int BlockGrid::colOf(int x) const {
    return std::min(x / layout_.size, layout_.cols - 1);
}

int BlockGrid::rowOf(int y) const {
    return std::min(y / layout_.size, layout_.rows - 1);
}

void paintBlocks(krl::Triple& m, const krl::Triple& src, const BlockGrid& grid, bool to, int i, int start,
                 int end, int w, int h) {
    const int b = grid.layout().size;
    for (int y = 0; y <= h; y += b)
        for (int x = 0; x <= w; x += b)
            if (blockShowsSource(to, grid.taken(grid.colOf(x), grid.rowOf(y)), i, start, end))
                krl::BoxMix(m.r, m.g, m.b, src.r, src.g, src.b, w, h, x, y, std::min(x + b - 1, w),
                            std::min(y + b - 1, h));
}

void runBlockOutTo(int start, int end, const std::string& source) {
    runPlainBlocks(true, start, end, source);
}

void runBlockOutFrom(int start, int end, const std::string& source) {
    runPlainBlocks(false, start, end, source);
}

void BlockOut2Stored(int start, int slot) {
    Vantry::Vantry_Class van;
    const int total = van.Van_GetTotalFrames();
    if (!planStored(true, total - 1 - start, slot)) return;
    runToStored(start, slot, storedShape(), step);
}

void BlockOutFromStored(int end, int slot) {
    // The overlap runs from the first animation frame to End, once the stored frames are in front.
    if (!planStored(false, end, slot)) return;
    runFromStored(end, slot, storedShape(), step);
}

} // namespace kirrel::transitions
