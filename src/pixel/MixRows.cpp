#include "pixel/MixRows.h"

#include <numeric>

namespace krl::mix {

namespace {
void putRow(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* mask, int n) {
    if (mask)
        maskedCopy(dst, src, mask, n);
    else
        std::memcpy(dst, src, static_cast<std::size_t>(n));
}
} // namespace

void rollRows(Out a, const Extent& e, int shift, const std::uint8_t* mask,
              std::vector<std::uint8_t>& scratch) {
    const int n = e.rows;
    if (e.empty()) return;
    shift %= n;
    if (shift < 0) shift += n;
    if (shift == 0) return;
    scratch.resize(static_cast<std::size_t>(e.cols));
    // Cycle-following rotation: each cycle saves its first row, pulls every row from the one `shift`
    // above it, and drops the saved row into the last hole. gcd(n, shift) cycles cover every row.
    const int cycles = std::gcd(n, shift);
    for (int start = 0; start < cycles; ++start) {
        std::memcpy(scratch.data(), a[start], static_cast<std::size_t>(e.cols));
        int hole = start;
        for (;;) {
            int from = hole - shift;
            if (from < 0) from += n;
            if (from == start) break;
            putRow(a[hole], a[from], mask, e.cols);
            hole = from;
        }
        putRow(a[hole], scratch.data(), mask, e.cols);
    }
}

In snapshot(In src, const Extent& e, std::vector<std::uint8_t>& store) {
    if (e.empty()) return src;
    store.resize(static_cast<std::size_t>(e.cols) * static_cast<std::size_t>(e.rows));
    for (int y = 0; y < e.rows; ++y)
        std::memcpy(store.data() + static_cast<std::size_t>(y) * e.cols, src[y],
                    static_cast<std::size_t>(e.cols));
    return {store.data(), e.cols};
}

} // namespace krl::mix
