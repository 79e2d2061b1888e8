// Pictures that move over or against each other: slides, pushes, stretches and squeezes.
//
// Offsets and band edges arrive as positions 0..W (or 0..H) rounded from a frame ratio; mix::edge
// turns them into cell counts so that 0 and the full size give exactly one picture. Moves that read a
// plane they also write order their rows so every row is read before it is overwritten; a roll of a
// picture against itself is a rotation done with a single scratch row.

#include "pixel/MixRows.h"
#include "pixel/Mixing.h"
#include "pixel/RowGather.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <vector>

namespace krl {

namespace {
using mix::In;
using mix::Out;

bool horizontalMode(int mode) {
    return mode == 1 || mode == 2;
}

// Lays b over a displaced by d cells towards the start (mode 1 left, 3 top) or the end (2 right,
// 4 bottom) of the axis. Cells that b no longer covers keep a, or take `fill` if it is 0..255.
void slidePlane(Out a, In b, const Extent& e, int mode, int d, int fill) {
    const bool horizontal = horizontalMode(mode);
    const bool towardStart = mode == 1 || mode == 3;
    const int n = horizontal ? e.cols : e.rows;
    if (horizontal) {
        for (int y = 0; y < e.rows; ++y) {
            std::uint8_t* row = a[y];
            if (towardStart)
                mix::moveCells(row, b[y] + d, n - d);
            else
                mix::moveCells(row + d, b[y], n - d);
            if (fill >= 0) std::memset(towardStart ? row + (n - d) : row, fill, static_cast<std::size_t>(d));
        }
        return;
    }
    auto copyRow = [&](int y, int src) { mix::moveCells(a[y], b[src], e.cols); };
    if (towardStart)
        mix::shiftRows(0, n - d, d, copyRow);
    else
        mix::shiftRows(d, n, -d, copyRow);
    if (fill >= 0) {
        const int from = towardStart ? n - d : 0;
        for (int y = from; y < from + d; ++y)
            std::memset(a[y], fill, static_cast<std::size_t>(e.cols));
    }
}

// One strip of A followed by B, seen through the frame with k cells of A's far end showing:
// result = A[n-k .. n) then B[0 .. n-k), along rows (horizontal) or columns.
// `old` is A as it was: `a` itself when written in place, else the buffer a shared A left behind.
void pushPlane(Out a, In old, In b, const Extent& e, bool horizontal, int k,
               std::vector<std::uint8_t>& scratch) {
    const bool alias = b.aliases(a);
    if (horizontal) {
        const int n = e.cols;
        for (int y = 0; y < e.rows; ++y) {
            std::uint8_t* row = a[y];
            if (alias) { // the same picture pushed against itself: a roll with wrap-around
                std::memcpy(scratch.data(), row, static_cast<std::size_t>(n));
                std::memcpy(row, scratch.data() + (n - k), static_cast<std::size_t>(k));
                std::memcpy(row + k, scratch.data(), static_cast<std::size_t>(n - k));
            } else {
                mix::moveCells(row, old[y] + (n - k), k);
                mix::moveCells(row + k, b[y], n - k);
            }
        }
        return;
    }
    if (alias) {
        mix::rollRows(a, e, k, nullptr, scratch);
        return;
    }
    const int n = e.rows;
    mix::shiftRows(0, k, n - k, [&](int y, int src) { mix::moveCells(a[y], old[src], e.cols); });
    for (int y = k; y < n; ++y)
        mix::moveCells(a[y], b[y - k], e.cols);
}

// Writes cells [b0, b0 + map.size()) along the axis from b's cells map[i]: a band of b scaled.
void bandPlane(Out a, In b, const Extent& e, bool horizontal, int b0, const std::vector<int>& map,
               const mix::RowGather& gather) {
    if (horizontal) {
        const bool alias = b.aliases(a);
        forRowSlices(e.rows, e.cols, [&](int y0, int y1) {
            thread_local std::vector<std::uint8_t> copy;
            if (alias) copy.resize(static_cast<std::size_t>(e.cols));
            for (int y = y0; y < y1; ++y) {
                const std::uint8_t* src = b[y];
                if (alias) {
                    std::memcpy(copy.data(), src, static_cast<std::size_t>(e.cols));
                    src = copy.data();
                }
                gather.apply(a[y] + b0, src);
            }
        });
        return;
    }
    mix::mapRows(b0, map, [&](int y, int src) { mix::moveCells(a[y], b[src], e.cols); });
}

} // namespace

void SlideOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                  int h, int offset, int mode) {
    if (mode < 1 || mode > 4) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const int d = mix::edge(offset, horizontalMode(mode) ? e.maxX() : e.maxY());
    if (d == (horizontalMode(mode) ? e.cols : e.rows)) return; // B has left the frame
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c)
        slidePlane(a.c[c], b.c[c], e, mode, d, -1);
}

void ASlideOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                   Plane& M, const Plane& N, int w, int h, int offset, int mode) {
    // A receives the plain slide of B over A, and M receives N moved exactly as B moved, with 0
    // wherever the moved plane no longer reaches. The following AlphaMix of A with the frame's fresh
    // planes through M then shows the frame wherever the moved alpha is set and the slide elsewhere.
    // This works the same for both ways the runs call it. When the moving picture is the frame with
    // its own alpha, the alpha travels with it. When the moving picture is the source and N is the
    // still frame's alpha, that alpha travels with the source as a stencil through which the frame
    // shows. Either way the ends are clean: at the full offset A is the still picture and M is empty,
    // so the frame is untouched; at offset 0 A is the moving picture and M is the alpha in place.
    if (mode < 1 || mode > 4) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB, M, N);
    if (e.empty()) return;
    const int d = mix::edge(offset, horizontalMode(mode) ? e.maxX() : e.maxY());
    const mix::Outs a = mix::outs(AR, AG, AB);
    const Out m = mix::out(M);
    const mix::Ins b = mix::ins(BR, BG, BB);
    const In alpha = mix::in(N);
    for (int c = 0; c < 3; ++c)
        slidePlane(a.c[c], b.c[c], e, mode, d, -1);
    slidePlane(m, alpha, e, mode, d, 0);
}

void PushOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                 int h, int offset, int mode) {
    // The two pictures form one strip, A before B, and the frame looks at part of it:
    //  mode 1: A left of B, the seam at column `offset`: 0 shows all of B, W all of A.
    //  mode 2: A left of B, the seam at column W - offset: 0 shows all of A, W all of B.
    //  mode 3: A above B, the seam at row `offset`: 0 shows all of B, H all of A.
    //  mode 4: the pictures move down with A entering from the top: 0 shows all of B, H all of A.
    //          That is the geometry of mode 3; it stays a mode of its own because its callers
    //          think of the push downwards while mode 3 serves the upward push and the roll.
    // Passing one picture as both A and B rolls it with wrap-around.
    if (mode < 1 || mode > 4) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const bool horizontal = horizontalMode(mode);
    const int last = horizontal ? e.maxX() : e.maxY();
    int k = 0; // cells of A showing
    if (mode == 2)
        k = last + 1 - mix::edge(offset, last);
    else
        k = mix::edge(offset, last);
    if (k == last + 1) return; // all of A, as it stands
    thread_local std::vector<std::uint8_t> scratch;
    scratch.resize(static_cast<std::size_t>(e.cols));
    if (mix::distinct({&AR, &AG, &AB}, {&BR, &BG, &BB})) {
        // A shared result is not copied first: the part of A still showing is read from its old buffer.
        Plane* A[3] = {&AR, &AG, &AB};
        const Plane* B[3] = {&BR, &BG, &BB};
        for (int c = 0; c < 3; ++c) {
            const mix::Rewritten r = mix::rewrite(*A[c], 0, 0, e.cols, e.rows);
            pushPlane(r.to, r.from, mix::in(*B[c]), e, horizontal, k, scratch);
        }
        return;
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c)
        pushPlane(a.c[c], {a.c[c].base, a.c[c].stride}, b.c[c], e, horizontal, k, scratch);
}

void StretchOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                    int h, int right, int bottom, int left, int top, int mode) {
    // The whole of B is scaled by nearest sample into a band of A; the rest of A stays.
    //  mode 1: columns [0, right)      mode 2: columns [right, W]     mode 5: columns [left, right)
    //  mode 3: rows [0, bottom)        mode 4: rows [bottom, H]       mode 6: rows [top, bottom)
    // An edge at the far end (W or H) takes in the last column or row, so in modes 1 and 3 the band
    // at full size, and in modes 2 and 4 the band from 0, is B itself; a position 0 covers nothing.
    if (mode < 1 || mode > 6) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const bool horizontal = mode == 1 || mode == 2 || mode == 5;
    const int last = horizontal ? e.maxX() : e.maxY();
    const int n = last + 1;
    int b0 = 0, b1 = 0;
    switch (mode) {
    case 1:
        b1 = mix::edge(right, last);
        break;
    case 2:
        b0 = mix::edge(right, last);
        b1 = n;
        break;
    case 3:
        b1 = mix::edge(bottom, last);
        break;
    case 4:
        b0 = mix::edge(bottom, last);
        b1 = n;
        break;
    case 5:
        b0 = mix::edge(left, last);
        b1 = mix::edge(right, last);
        break;
    case 6:
        b0 = mix::edge(top, last);
        b1 = mix::edge(bottom, last);
        break;
    }
    if (b1 <= b0) return;
    thread_local std::vector<int> map;
    mix::nearestMap(b1 - b0, n, map);
    thread_local mix::RowGather gather;
    if (horizontal) gather.plan(map, n);
    if (mix::distinct({&AR, &AG, &AB}, {&BR, &BG, &BB})) {
        // A shared result is not copied first: only the cells outside the band come from A.
        Plane* A[3] = {&AR, &AG, &AB};
        const Plane* B[3] = {&BR, &BG, &BB};
        for (int c = 0; c < 3; ++c) {
            const mix::Rewritten r =
                horizontal ? mix::rewrite(*A[c], b0, 0, b1, e.rows) : mix::rewrite(*A[c], 0, b0, e.cols, b1);
            bandPlane(r.to, mix::in(*B[c]), e, horizontal, b0, map, gather);
        }
        return;
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c)
        bandPlane(a.c[c], b.c[c], e, horizontal, b0, map, gather);
}

void SqueezeOverlay(Plane& AR, Plane& AG, Plane& AB, Plane& BR, Plane& BG, Plane& BB, const Plane& CR,
                    const Plane& CG, const Plane& CB, int w, int h, int right, int bottom, int left, int top,
                    int mode) {
    // The frame (A) is squeezed into the part before the seam and the source, read from its saved
    // copy C, into the part after it: mode 1 side by side with the seam at column `right`, mode 2
    // one above the other with the seam at row `bottom`. A seam at the far end leaves the frame
    // whole; a seam at 0 gives the source whole. The result is written to A and the same picture
    // to B, so the run may send the frame triple or the source triple, as its direction needs; C is
    // only read. `left` and `top` are always 0 and play no part.
    (void)left;
    (void)top;
    if (mode != 1 && mode != 2) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB, CR, CG, CB);
    if (e.empty()) return;
    const bool horizontal = mode == 1;
    const int last = horizontal ? e.maxX() : e.maxY();
    const int n = last + 1;
    const int k = mix::edge(horizontal ? right : bottom, last);
    // Scratch kept per thread and reused, so a run of frames allocates nothing after its first.
    thread_local std::vector<int> mapA, mapC;
    mix::nearestMap(k, n, mapA);
    mix::nearestMap(n - k, n, mapC);
    thread_local mix::RowGather gatherA, gatherC;
    if (horizontal) {
        gatherA.plan(mapA, n);
        gatherC.plan(mapC, n);
    }
    thread_local std::vector<std::uint8_t> store;
    // Where B is as large as the picture written, it simply shares A's result instead of a copy.
    auto covers = [&](const Plane& p) { return p.cols() == e.cols && p.rows() == e.rows; };
    const bool shareB = covers(AR) && covers(AG) && covers(AB) && covers(BR) && covers(BG) && covers(BB);
    Plane* A[3] = {&AR, &AG, &AB};
    Plane* B[3] = {&BR, &BG, &BB};
    const Plane* C[3] = {&CR, &CG, &CB};
    for (int ch = 0; ch < 3; ++ch) {
        Out pa;
        if (horizontal) {
            // Every cell is written, so a shared A is not copied first; its old rows are read where
            // they lie. In place the frame's part still works left to right, as a squeeze reads at or
            // after the cell it writes; only a source that is A itself needs its row saved first.
            const mix::Rewritten r = mix::rewrite(*A[ch], 0, 0, e.cols, e.rows);
            pa = r.to;
            In pc = mix::in(*C[ch]);
            const bool sourceIsA = pc.aliases(pa);
            if (sourceIsA && !r.inPlace()) pc = r.from;
            const mix::RowGather& frameGather = gatherA; // the caller's, for slices on other threads
            const mix::RowGather& sourceGather = gatherC;
            forRowSlices(e.rows, e.cols, [&](int y0, int y1) {
                thread_local std::vector<std::uint8_t> copy;
                if (sourceIsA && r.inPlace()) copy.resize(static_cast<std::size_t>(n));
                for (int y = y0; y < y1; ++y) {
                    std::uint8_t* row = pa[y];
                    const std::uint8_t* source = pc[y];
                    if (sourceIsA && r.inPlace()) {
                        std::memcpy(copy.data(), row, static_cast<std::size_t>(n));
                        source = copy.data();
                    }
                    frameGather.apply(row, r.from[y]);
                    sourceGather.apply(row + k, source);
                }
            });
        } else {
            // Likewise a shared A is not copied first: its rows are read from the buffer it leaves.
            const mix::Rewritten r = mix::rewrite(*A[ch], 0, 0, e.cols, e.rows);
            pa = r.to;
            In pc = mix::in(*C[ch]);
            if (pc.aliases(pa)) pc = r.inPlace() ? mix::snapshot(pc, e, store) : r.from;
            // In place, the frame's part reads rows at or below the row it writes, so top-down order is
            // safe; the source's part follows, since the frame's part may read rows it overwrites.
            mix::mapRows(0, mapA, [&](int y, int s) { mix::moveCells(pa[y], r.from[s], e.cols); });
            for (int y = k; y < n; ++y)
                mix::moveCells(pa[y], pc[mapC[static_cast<std::size_t>(y - k)]], e.cols);
        }
        if (!shareB) {
            const Out pb = mix::out(*B[ch]);
            for (int y = 0; y < e.rows; ++y)
                mix::moveCells(pb[y], pa[y], e.cols);
        }
    }
    if (shareB) {
        BR = AR;
        BG = AG;
        BB = AB;
    }
}

} // namespace krl
