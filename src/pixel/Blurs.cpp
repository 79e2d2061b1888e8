// The two blurs. Callers repeat them up to a hundred times per frame and on every slider
// notification, so both are separable passes over 16-bit row sums with a ring of a few rows as the
// only scratch: a row is written only after every source row it depends on has been read, which
// also makes the blurs safe in place (source and result the very same plane).
//
// Both treat the processed extent as the whole picture and repeat its edge pixels outward, so a flat
// picture stays exactly flat and nothing outside the extent is read. Both take w, h as upper bounds;
// a count (W+1, H+1) is clamped to the planes and covers them just the same.
//
// BoxBlur: 5x5 box (radius 2), rounded to nearest. TriBlur: 3x3 [1 2 1] tent, a lighter step.

#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace krl {

namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;

// Rounded division of a 5x5 sum (0..6375) by 25 as a 16-bit multiply-high and a shift, which the
// compiler turns into one vector instruction per eight pixels; checked exhaustively below.
constexpr std::uint32_t kDiv25Mul = 20972;
constexpr unsigned kDiv25Shift = 3;
constexpr u16 div25(u16 t) {
    return static_cast<u16>(static_cast<u16>((std::uint32_t{t} * kDiv25Mul) >> 16) >> kDiv25Shift);
}
constexpr bool div25IsExact() {
    for (std::uint32_t s = 0; s <= 25u * 255u; ++s)
        if (div25(static_cast<u16>(s + 12u)) != (s + 12u) / 25u) return false;
    return true;
}
static_assert(div25IsExact());

// The box goes down the columns first: five source rows summed per column (kept running from row to
// row, one row in and one out), then five column sums across, each row of sums carrying two repeated
// edge cells at either end. Sums of whole bytes come out the same in either order.
KRL_CELL_LOOP void boxColumnStart(const u8* __restrict a, const u8* __restrict b, const u8* __restrict c,
                                  const u8* __restrict d, const u8* __restrict e, u16* __restrict column,
                                  int n) {
    for (int x = 0; x < n; ++x)
        column[x] = static_cast<u16>(a[x] + b[x] + c[x] + d[x] + e[x]);
}

KRL_CELL_LOOP void boxColumnStep(const u8* __restrict enter, const u8* __restrict leave,
                                 u16* __restrict column, int n) {
    for (int x = 0; x < n; ++x)
        column[x] = static_cast<u16>(column[x] + enter[x] - leave[x]);
}

KRL_CELL_LOOP void boxAcross(u16* __restrict column, u8* __restrict dst, int n) {
    column[-2] = column[-1] = column[0];
    column[n] = column[n + 1] = column[n - 1];
    for (int x = 0; x < n; ++x) {
        const auto sum =
            static_cast<u16>(column[x - 2] + column[x - 1] + column[x] + column[x + 1] + column[x + 2]);
        dst[x] = static_cast<u8>(div25(static_cast<u16>(sum + 12u)));
    }
}

// Horizontal [1 2 1] sums of one row, edges repeated.
KRL_CELL_LOOP void tentRow(const u8* __restrict src, u16* __restrict dst, int n) {
    if (n == 1) {
        dst[0] = static_cast<u16>(4 * src[0]);
        return;
    }
    dst[0] = static_cast<u16>(3 * src[0] + src[1]);
    for (int x = 1; x < n - 1; ++x)
        dst[x] = static_cast<u16>(src[x - 1] + 2 * src[x] + src[x + 1]);
    dst[n - 1] = static_cast<u16>(src[n - 2] + 3 * src[n - 1]);
}

KRL_CELL_LOOP void tentColumn(const u16* __restrict a, const u16* __restrict b, const u16* __restrict c,
                              u8* __restrict dst, int n) {
    for (int x = 0; x < n; ++x)
        dst[x] = static_cast<u8>(static_cast<u16>(a[x] + 2u * b[x] + c[x] + 8u) >> 4);
}

// Rows [y0, y1) of one plane through the 5x5 box. The window's source rows are clamped to the extent,
// so at the edges the same row may come in or go out several times; they are copied into a ring as
// they are read, since in place a row that goes out has long been overwritten. Source rows are read
// strictly ahead of the rows written. srcAt(y) gives source row y.
template <class SrcAt> void boxRows(SrcAt srcAt, u8* dst, int dstStride, Extent e, int y0, int y1) {
    constexpr int kRing = 6; // the window's five rows and the one coming in
    const int n = e.cols, last = e.rows - 1;
    const std::size_t sn = static_cast<std::size_t>(n);
    thread_local std::vector<u8> ring;
    ring.resize(kRing * sn);
    thread_local std::vector<u16> sums;
    sums.resize(sn + 4);
    auto slot = [&](int y) {
        return ring.data() + static_cast<std::size_t>(std::clamp(y, 0, last) % kRing) * sn;
    };
    auto take = [&](int y) { std::memcpy(slot(y), srcAt(y), sn); };
    u16* const column = sums.data() + 2;
    for (int y = std::max(0, y0 - 2); y <= std::min(last, y0 + 2); ++y)
        take(y);
    boxColumnStart(slot(y0 - 2), slot(y0 - 1), slot(y0), slot(y0 + 1), slot(y0 + 2), column, n);
    for (int y = y0; y < y1; ++y) {
        if (y > y0) {
            if (y + 2 <= last) take(y + 2);
            boxColumnStep(slot(y + 2), slot(y - 3), column, n);
        }
        boxAcross(column, dst + static_cast<std::size_t>(y) * dstStride, n);
    }
}

// Rows [y0, y1) of one plane through the 3x3 tent. Row sums of the last three source rows live in a
// ring; source rows are read strictly ahead of the rows written. srcAt(y) gives source row y.
template <class SrcAt> void tentRows(SrcAt srcAt, u8* dst, int dstStride, Extent e, int y0, int y1) {
    constexpr int kTaps = 3;
    const int n = e.cols, last = e.rows - 1;
    thread_local std::vector<u16> ring;
    ring.resize(static_cast<std::size_t>(kTaps) * static_cast<std::size_t>(n));
    auto slot = [&](int y) {
        return ring.data() + static_cast<std::size_t>(std::clamp(y, 0, last) % kTaps) * n;
    };
    int next = std::max(0, y0 - 1); // next source row to sum
    for (int y = y0; y < y1; ++y) {
        for (; next <= std::min(y + 1, last); ++next)
            tentRow(srcAt(next), slot(next), n);
        tentColumn(slot(y - 1), slot(y), slot(y + 1), dst + static_cast<std::size_t>(y) * dstStride, n);
    }
}

// Blurs three planes, each from its source, in row slices. A slice reads `Radius` source rows on
// either side of its own; where a plane is blurred in place those rows belong to the neighbouring
// slices, which may already have written them, so they are copied aside before the slices start
// and read from there.
template <int Radius, class Rows>
void blurPlanes(Plane* const out[3], const Plane* const in[3], Extent e, Rows rowsOfPlane) {
    u8* dst[3];
    for (int c = 0; c < 3; ++c)
        dst[c] = out[c]->data();
    const u8* src[3];
    int srcStride[3];
    for (int c = 0; c < 3; ++c) {
        src[c] = in[c]->data();
        srcStride[c] = in[c]->cols();
    }
    const int parts = sliceCount(e.rows, 3LL * e.cols);
    // Halo rows around each inner slice boundary b: source rows [b - Radius, b + Radius), per plane.
    constexpr int kHalo = 2 * Radius;
    const std::size_t n = static_cast<std::size_t>(e.cols);
    thread_local std::vector<u8> haloStore;
    haloStore.resize(parts > 1 ? 3 * static_cast<std::size_t>(parts - 1) * kHalo * n : 0);
    const std::vector<u8>& halo = haloStore;
    bool inPlace[3];
    for (int c = 0; c < 3; ++c) {
        inPlace[c] = src[c] == dst[c];
        if (!inPlace[c]) continue;
        for (int i = 1; i < parts; ++i) {
            const int b = sliceStart(e.rows, i, parts);
            for (int k = 0; k < kHalo; ++k) {
                const int y = std::clamp(b - Radius + k, 0, e.rows - 1);
                std::memcpy(haloStore.data() +
                                ((static_cast<std::size_t>(c) * (parts - 1) + (i - 1)) * kHalo + k) * n,
                            src[c] + static_cast<std::size_t>(y) * srcStride[c], n);
            }
        }
    }
    auto rows = [&](int y0, int y1) {
        for (int c = 0; c < 3; ++c) {
            auto srcAt = [&](int y) -> const u8* {
                if (inPlace[c] && (y < y0 || y >= y1)) {
                    // A neighbour's row: boundary y0 for rows above, y1 for rows below.
                    const int b = y < y0 ? y0 : y1;
                    int i = 1;
                    while (sliceStart(e.rows, i, parts) != b)
                        ++i;
                    return halo.data() + ((static_cast<std::size_t>(c) * (parts - 1) + (i - 1)) * kHalo +
                                          (y - (b - Radius))) *
                                             n;
                }
                return src[c] + static_cast<std::size_t>(y) * srcStride[c];
            };
            rowsOfPlane(srcAt, dst[c], out[c]->cols(), e, y0, y1);
        }
    };
    // A result plane that is another channel's source (or another channel's result) ties the channels
    // together in order; such a call runs whole, as one slice.
    bool apart = true;
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < 3; ++k)
            if (k != c && (dst[c] == src[k] || dst[c] == dst[k])) apart = false;
    if (apart)
        forRowSlices(e.rows, 3LL * e.cols, rows);
    else
        rows(0, e.rows);
}

} // namespace

// When A and B are different planes B is left alone; when they are the same planes the blur runs in
// place. Each channel is blurred from its own B plane.
void BoxBlur(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
             int h) {
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    Plane* const out[3] = {&AR, &AG, &AB};
    const Plane* const in[3] = {&BR, &BG, &BB};
    blurPlanes<2>(out, in, e, [](auto srcAt, u8* dst, int stride, Extent ex, int y0, int y1) {
        boxRows(srcAt, dst, stride, ex, y0, y1);
    });
}

void TriBlur(Plane& AR, Plane& AG, Plane& AB, int w, int h) {
    const Extent e = boundExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    Plane* const out[3] = {&AR, &AG, &AB};
    const Plane* const in[3] = {&AR, &AG, &AB};
    blurPlanes<1>(out, in, e, [](auto srcAt, u8* dst, int stride, Extent ex, int y0, int y1) {
        tentRows(srcAt, dst, stride, ex, y0, y1);
    });
}

} // namespace krl
