#pragma once
// Row machinery shared by the mixing and moving operations. Internal to the pixel library.
//
// Every operation here works row by row: it clamps its sizes to an Extent, takes plane pointers in
// the order that keeps aliasing sane (results first, then inputs; see Plane.h), and hands the work on
// one row to a small line function. The loops, the in-place orderings and the few pieces of geometry
// that several operations share live in this header so that each operation only says what happens
// to a row.

#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/Plane.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <vector>

namespace krl::mix {

// Writable rows of one plane: its base pointer and its own stride.
struct Out {
    std::uint8_t* base = nullptr;
    std::ptrdiff_t stride = 0;
    std::uint8_t* operator[](int y) const { return base + y * stride; }
};

// Read-only rows of one plane.
struct In {
    const std::uint8_t* base = nullptr;
    std::ptrdiff_t stride = 0;
    const std::uint8_t* operator[](int y) const { return base + y * stride; }
    // True when the input is the very buffer being written, so reads must come before writes.
    bool aliases(const Out& o) const { return base == o.base; }
};

inline Out out(Plane& p) {
    return {p.data(), p.cols()};
}
inline In in(const Plane& p) {
    return {p.data(), p.cols()};
}

// The three result planes of an operation, taken writable in channel order.
struct Outs {
    Out c[3];
};
inline Outs outs(Plane& R, Plane& G, Plane& B) {
    return {{out(R), out(G), out(B)}};
}

// The three input planes; take them only after the result planes.
struct Ins {
    In c[3];
};
inline Ins ins(const Plane& R, const Plane& G, const Plane& B) {
    return {{in(R), in(G), in(B)}};
}

// Runs line(a, n) over every row of one plane.
template <class Line> void eachRow(Out a, const Extent& e, Line&& line) {
    for (int y = 0; y < e.rows; ++y)
        line(a[y], e.cols);
}

// Runs line(a, b, n) over every row of one result plane and its input plane.
template <class Line> void eachRow(Out a, In b, const Extent& e, Line&& line) {
    for (int y = 0; y < e.rows; ++y)
        line(a[y], b[y], e.cols);
}

// Two-picture pixel operations: line(a, b, n) on every row of the three channel pairs.
template <class Line>
void eachPair(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
              const Extent& e, Line&& line) {
    if (e.empty()) return;
    const Outs a = outs(AR, AG, AB);
    const Ins b = ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c)
        eachRow(a.c[c], b.c[c], e, line);
}

// True when no result plane is also passed as an input. Then the result is a function of the
// inputs' contents before the call alone, and a result whose buffer is shared can be written into a
// fresh buffer while the operation reads the old one: the fast path of the operations below. A plane
// passed in both places keeps the in-place path, whose order of reads and writes callers rely on.
inline bool distinct(std::initializer_list<const Plane*> results,
                     std::initializer_list<const Plane*> inputs) {
    return std::none_of(results.begin(), results.end(), [inputs](const Plane* r) {
        return std::find(inputs.begin(), inputs.end(), r) != inputs.end();
    });
}

// One result plane taken for a rewrite of a rectangle (see Plane::rewrite), as rows.
struct Rewritten {
    Out to;
    In from;
    std::shared_ptr<std::uint8_t[]> kept;
    bool inPlace() const { return to.base == from.base; }
};
inline Rewritten rewrite(Plane& p, int x0, int y0, int x1, int y1) {
    Plane::Rewrite r = p.rewrite(x0, y0, x1, y1);
    return {{r.to, p.cols()}, {r.from, p.cols()}, std::move(r.kept)};
}

// d[i] = op(a[i]) over n cells, and the same in place.
template <class Op>
KRL_CELL_LOOP void cellsApart(std::uint8_t* __restrict d, const std::uint8_t* __restrict a, int n, Op op) {
    for (int i = 0; i < n; ++i)
        d[i] = op(a[i]);
}
template <class Op> KRL_CELL_LOOP void cellsInPlace(std::uint8_t* __restrict d, int n, Op op) {
    for (int i = 0; i < n; ++i)
        d[i] = op(d[i]);
}

// One-plane cell operations, P := op(P) over the extent; a shared buffer is read, not copied.
template <class Op> void eachCell(Plane& p, const Extent& e, Op op) {
    if (e.empty()) return;
    const Rewritten r = rewrite(p, 0, 0, e.cols, e.rows);
    forRowSlices(e.rows, e.cols, [&](int y0, int y1) {
        for (int y = y0; y < y1; ++y) {
            if (r.inPlace())
                cellsInPlace(r.to[y], e.cols, op);
            else
                cellsApart(r.to[y], r.from[y], e.cols, op);
        }
    });
}

// Three-picture cell operations, A := op(A, B, M) over the extent of the three channel pairs with one
// mask plane. d is either a itself or a buffer of its own, and b and m never overlap d, so the two
// cases get loops the compiler vectorises without alias checks. Cells are independent, so rows go out
// in slices; within a row the channels keep their order, which is all a plane passed both as a
// result and as another channel's input relies on.
template <class Op>
KRL_CELL_LOOP void maskCellsApart(std::uint8_t* __restrict d, const std::uint8_t* __restrict a,
                                  const std::uint8_t* __restrict b, const std::uint8_t* __restrict m, int n,
                                  Op op) {
    for (int i = 0; i < n; ++i)
        d[i] = op(a[i], b[i], m[i]);
}
template <class Op>
KRL_CELL_LOOP void maskCellsInPlace(std::uint8_t* __restrict d, const std::uint8_t* __restrict b,
                                    const std::uint8_t* __restrict m, int n, Op op) {
    for (int i = 0; i < n; ++i)
        d[i] = op(d[i], b[i], m[i]);
}

template <class Op>
void eachMaskedCell(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                    const Plane& M, const Extent& e, Op op) {
    if (e.empty()) return;
    if (!distinct({&AR, &AG, &AB}, {&BR, &BG, &BB, &M})) {
        const Outs a = outs(AR, AG, AB);
        const Ins b = ins(BR, BG, BB);
        const In m = in(M);
        forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
            const int n = e.cols; // a local: byte stores could otherwise alias the captured extent
            for (int y = y0; y < y1; ++y)
                for (int c = 0; c < 3; ++c) {
                    std::uint8_t* pa = a.c[c][y];
                    const std::uint8_t* pb = b.c[c][y];
                    const std::uint8_t* pm = m[y];
                    for (int i = 0; i < n; ++i)
                        pa[i] = op(pa[i], pb[i], pm[i]);
                }
        });
        return;
    }
    const Rewritten r[3] = {rewrite(AR, 0, 0, e.cols, e.rows), rewrite(AG, 0, 0, e.cols, e.rows),
                            rewrite(AB, 0, 0, e.cols, e.rows)};
    const Ins b = ins(BR, BG, BB);
    const In m = in(M);
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        for (int c = 0; c < 3; ++c)
            for (int y = y0; y < y1; ++y) {
                if (r[c].inPlace())
                    maskCellsInPlace(r[c].to[y], b.c[c][y], m[y], e.cols, op);
                else
                    maskCellsApart(r[c].to[y], r[c].from[y], b.c[c][y], m[y], e.cols, op);
            }
    });
}

// Two-picture cell operations, A := op(A, B): the masked walk with B's red plane standing in for a
// mask that op never reads, so the compiler drops its loads.
template <class Op>
void eachPairCell(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                  const Extent& e, Op op) {
    eachMaskedCell(AR, AG, AB, BR, BG, BB, BR, e,
                   [op](std::uint8_t a, std::uint8_t b, std::uint8_t) { return op(a, b); });
}

// Copies cells [from, to) of one row; memmove because a row may be copied onto itself.
inline void copySpan(std::uint8_t* dst, const std::uint8_t* src, int from, int to) {
    if (to > from && dst + from != src + from)
        std::memmove(dst + from, src + from, static_cast<std::size_t>(to - from));
}

inline void moveCells(std::uint8_t* dst, const std::uint8_t* src, int n) {
    if (n > 0 && dst != src) std::memmove(dst, src, static_cast<std::size_t>(n));
}

// A position given by a caller (0..last, rounded from a ratio) as a count of cells 0..last+1.
// Zero or less covers nothing and last or more covers everything, so the two ends of a run are
// exact; between them the position is the count itself, and the final step takes in the last cell.
inline int edge(long long p, int last) {
    if (p <= 0) return 0;
    if (p >= last) return last + 1;
    return static_cast<int>(p);
}

// The share v/full of n cells, rounded down; v <= 0 gives none and v >= full gives all n.
inline int share(long long v, long long full, int n) {
    if (v <= 0) return 0;
    if (v >= full) return n;
    return static_cast<int>(v * n / full);
}

// Nearest-sample map that squeezes or stretches n source cells into k cells, sampling at the centre
// of each target cell. k == n is the identity. Every step advances the source by at least one cell
// when k <= n, which mapRows relies on for in-place work.
inline void nearestMap(int k, int n, std::vector<int>& map) {
    map.resize(static_cast<std::size_t>(k > 0 ? k : 0));
    for (int i = 0; i < k; ++i) {
        const long long s = (2LL * i + 1) * n / (2LL * k);
        map[static_cast<std::size_t>(i)] = static_cast<int>(s < n ? s : n - 1);
    }
}

// Writes rows [y0, y1) from source rows y + delta, in an order that stays correct when source and
// result are one buffer: top-down when reading from below, bottom-up when reading from above.
template <class Line> void shiftRows(int y0, int y1, int delta, Line&& line) {
    if (delta >= 0) {
        for (int y = y0; y < y1; ++y)
            line(y, y + delta);
    } else {
        for (int y = y1 - 1; y >= y0; --y)
            line(y, y + delta);
    }
}

// Writes rows y0 .. y0 + map.size() - 1 from source rows map[y - y0], a nearestMap band. In such a
// band the source runs ahead of the result by a growing amount, so the rows that read from above
// come first, bottom-up, and the rest top-down: correct in place as well.
template <class Line> void mapRows(int y0, const std::vector<int>& map, Line&& line) {
    const int y1 = y0 + static_cast<int>(map.size());
    auto src = [&](int y) { return map[static_cast<std::size_t>(y - y0)]; };
    int split = y0;
    while (split < y1 && src(split) < split)
        ++split;
    for (int y = split - 1; y >= y0; --y)
        line(y, src(y));
    for (int y = split; y < y1; ++y)
        line(y, src(y));
}

// Rotates rows 0..e.rows-1 of a plane downwards by `shift` with wrap-around (row y goes to row
// y + shift), in place with one scratch row. With a mask only cells whose mask byte is 0xFF move.
void rollRows(Out a, const Extent& e, int shift, const std::uint8_t* mask,
              std::vector<std::uint8_t>& scratch);

// a[i] = mask[i] ? b[i] : a[i] over n cells, for masks of 0x00 / 0xFF bytes.
inline void maskedCopy(std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* mask, int n) {
    for (int i = 0; i < n; ++i)
        a[i] = static_cast<std::uint8_t>((b[i] & mask[i]) | (a[i] & ~mask[i]));
}

// Copies the extent of a plane into `store` and returns rows reading from the copy. For the rare
// call that passes one plane both as a result and as an input the operation cannot order around.
In snapshot(In src, const Extent& e, std::vector<std::uint8_t>& store);

} // namespace krl::mix
