#include "pixel/FilterSupport.h"

#include "pixel/CellLoop.h"

namespace krl::filt {

namespace {
KRL_CELL_LOOP void lumaCells(const std::uint8_t* r, const std::uint8_t* g, const std::uint8_t* b,
                             std::uint8_t* __restrict out, int n) {
    for (int x = 0; x < n; ++x)
        out[x] = luma(r[x], g[x], b[x]);
}
} // namespace

// The clones of a cell loop are local to their file, so the row is handed on to them.
void lumaRow(const std::uint8_t* r, const std::uint8_t* g, const std::uint8_t* b,
             std::uint8_t* __restrict out, int n) {
    lumaCells(r, g, b, out, n);
}

} // namespace krl::filt
