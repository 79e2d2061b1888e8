#pragma once
// How much of a plane an operation may touch. Callers pass sizes in two senses: as upper bounds
// (W, H: the highest indices) or as counts (W+1, H+1). Whatever they pass, an operation never
// reaches past the smallest plane it was given, so hostile or mismatched sizes are harmless.

#include "pixel/Plane.h"

#include <algorithm>
#include <initializer_list>

namespace krl {

struct Extent {
    int cols = 0; // columns 0..cols-1 are processed
    int rows = 0; // rows 0..rows-1 are processed
    bool empty() const { return cols <= 0 || rows <= 0; }
    int maxX() const { return cols - 1; } // highest x processed (the geometry's W)
    int maxY() const { return rows - 1; }
};

namespace detail {
inline Extent clampTo(long long cols, long long rows, std::initializer_list<const Plane*> planes) {
    long long c = std::max(0LL, cols);
    long long r = std::max(0LL, rows);
    for (const Plane* p : planes) {
        c = std::min<long long>(c, p->cols());
        r = std::min<long long>(r, p->rows());
    }
    return {static_cast<int>(c), static_cast<int>(r)};
}
} // namespace detail

// Bound sense: w and h are the highest indices, so w+1 columns and h+1 rows.
template <class... P> Extent boundExtent(int w, int h, const P&... planes) {
    return detail::clampTo(static_cast<long long>(w) + 1, static_cast<long long>(h) + 1, {&planes...});
}

// Count sense: w columns and h rows; a call with W, H leaves the last column and row alone.
template <class... P> Extent countExtent(int w, int h, const P&... planes) {
    return detail::clampTo(w, h, {&planes...});
}

} // namespace krl
