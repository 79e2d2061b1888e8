// Boxes, blinds, doors and stripes: patterns in which parts of one picture replace parts of another,
// standing still (boxes, blinds, plain stripes) or moving (doors, sliding and pushed stripes).

#include "pixel/MixRows.h"
#include "pixel/Mixing.h"

#include <algorithm>
#include <vector>

namespace krl {

namespace {
using mix::In;
using mix::Out;

// Blinds have a fixed number of slats whatever the picture's size, so a small preview and the full
// frame look alike. Ten slats stay clearly visible as bands on any frame the host can show.
constexpr int kBlindSlats = 10;

// Slat s covers cells [s*n/10, (s+1)*n/10): the slats differ by at most one cell and fill the frame.
int slatStart(int s, int n) {
    return static_cast<int>(static_cast<long long>(s) * n / kBlindSlats);
}

// Cells of an open slat of `size` cells at `level` (1..254), rounded.
int slatOpen(int level, int size) {
    return (level * size + 127) / 255;
}

// Stripes are bands that alternate in pairs. The stripe value is the period of a pair; anything
// below 2 (the value box accepts 0) is taken as the finest pattern, one-cell stripes. The first
// stripe of a period is the "leading" one: it is the top stripe (or leftmost) and moves or fills
// from the start of the axis; the other one from the end, so the two interleave.
struct Stripes {
    int period;
    int lead; // cells of the leading stripe in a period
    explicit Stripes(int stripe) : period(std::max(2, stripe)), lead(period - period / 2) {}
    bool leading(int pos) const { return pos % period < lead; }
    // 0xFF on cells of leading stripes, for masked row work on vertical stripes.
    void mask(int n, std::vector<std::uint8_t>& m) const {
        m.resize(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            m[static_cast<std::size_t>(i)] = leading(i) ? 0xFF : 0x00;
    }
};

void invert(const std::vector<std::uint8_t>& m, std::vector<std::uint8_t>& r) {
    r.resize(m.size());
    for (std::size_t i = 0; i < m.size(); ++i)
        r[i] = static_cast<std::uint8_t>(~m[i]);
}

// The stripe masks and the row scratch are kept per thread and reused from call to call, so a run
// of frames allocates nothing after its first.
struct StripeScratch {
    std::vector<std::uint8_t> lead, trail, row;
};
StripeScratch& stripeScratch() {
    thread_local StripeScratch s;
    return s;
}

} // namespace

void BoxMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
            int x1, int y1, int x2, int y2) {
    // Corners are inclusive, so (0,0)-(W,H) is the whole plane and x1 == x2 a single column. A box
    // whose corners have crossed (x1 > x2, as a closing box can give with odd sizes) is empty.
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    const int left = std::max(x1, 0), right = std::min(x2, e.maxX());
    const int top = std::max(y1, 0), bottom = std::min(y2, e.maxY());
    if (e.empty() || left > right || top > bottom) return;
    if (!mix::distinct({&AR, &AG, &AB}, {&BR, &BG, &BB})) {
        const mix::Outs a = mix::outs(AR, AG, AB);
        const mix::Ins b = mix::ins(BR, BG, BB);
        for (int c = 0; c < 3; ++c)
            for (int y = top; y <= bottom; ++y)
                mix::copySpan(a.c[c][y], b.c[c][y], left, right + 1);
        return;
    }
    // A shared result is not copied in full first: the box comes from B alone.
    Plane* A[3] = {&AR, &AG, &AB};
    const Plane* B[3] = {&BR, &BG, &BB};
    for (int c = 0; c < 3; ++c) {
        const mix::Rewritten r = mix::rewrite(*A[c], left, top, right + 1, bottom + 1);
        const In b = mix::in(*B[c]);
        for (int y = top; y <= bottom; ++y)
            mix::copySpan(r.to[y], b[y], left, right + 1);
    }
}

void BlindMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
              int h, int level, int mode) {
    // Each slat opens from its top edge (horizontal slats) or left edge (vertical slats) by the share
    // level/255 of its own size, all slats together.
    if ((mode != 1 && mode != 2) || level <= 0) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const int lv = std::min(level, 255);
    const int n = mode == 1 ? e.rows : e.cols;
    int from[kBlindSlats], to[kBlindSlats];
    for (int s = 0; s < kBlindSlats; ++s) {
        from[s] = slatStart(s, n);
        const int size = slatStart(s + 1, n) - from[s];
        to[s] = from[s] + (lv >= 255 ? size : slatOpen(lv, size));
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c) {
        if (mode == 1) {
            for (int s = 0; s < kBlindSlats; ++s)
                for (int y = from[s]; y < to[s]; ++y)
                    mix::copySpan(a.c[c][y], b.c[c][y], 0, e.cols);
        } else {
            for (int y = 0; y < e.rows; ++y)
                for (int s = 0; s < kBlindSlats; ++s)
                    mix::copySpan(a.c[c][y], b.c[c][y], from[s], to[s]);
        }
    }
}

void DoorMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
             int leaf, int mode) {
    // B is a pair of doors: its left half and its right half (top and bottom in mode 2) are the two
    // leaves. They slide in from the edges carrying their picture, inner edge first, so a leaf that
    // has come `leaf` pixels in shows the inner strip of its half, and the leaves meet at the centre
    // as the whole of B. The leaf width counts against half the size (W / 2, rounded down); callers
    // round their leaf to the nearest pixel, so reaching that half closes the doors completely.
    if ((mode != 1 && mode != 2) || leaf <= 0) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const int n = mode == 1 ? e.cols : e.rows;
    const int half = (n - 1) / 2;
    const int nl = (n + 1) / 2, nr = n / 2; // cells of the left (top) and right (bottom) halves
    const int cl = mix::share(leaf, half, nl), cr = mix::share(leaf, half, nr);
    if (mix::distinct({&AR, &AG, &AB}, {&BR, &BG, &BB})) {
        // A shared result is not copied first: the leaves come from B and the rest from A as it was.
        Plane* A[3] = {&AR, &AG, &AB};
        const Plane* B[3] = {&BR, &BG, &BB};
        for (int c = 0; c < 3; ++c) {
            const mix::Rewritten r = mix::rewrite(*A[c], 0, 0, e.cols, e.rows);
            const In pb = mix::in(*B[c]);
            if (mode == 1) {
                for (int y = 0; y < e.rows; ++y) {
                    mix::moveCells(r.to[y], pb[y] + (nl - cl), cl);
                    mix::copySpan(r.to[y], r.from[y], cl, n - cr);
                    mix::moveCells(r.to[y] + (n - cr), pb[y] + nl, cr);
                }
            } else {
                for (int y = 0; y < n; ++y) {
                    const std::uint8_t* src = y < cl        ? pb[nl - cl + y]
                                              : y >= n - cr ? pb[nl + y - (n - cr)]
                                                            : r.from[y];
                    mix::moveCells(r.to[y], src, e.cols);
                }
            }
        }
        return;
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c) {
        const Out pa = a.c[c];
        const In pb = b.c[c];
        if (mode == 1) {
            // The two leaves read and write disjoint halves of a row, so one row is safe in place.
            for (int y = 0; y < e.rows; ++y) {
                mix::moveCells(pa[y], pb[y] + (nl - cl), cl);
                mix::moveCells(pa[y] + (n - cr), pb[y] + nl, cr);
            }
        } else {
            auto copyRow = [&](int y, int src) { mix::moveCells(pa[y], pb[src], e.cols); };
            mix::shiftRows(0, cl, nl - cl, copyRow);
            mix::shiftRows(n - cr, n, nl - (n - cr), copyRow);
        }
    }
}

void StripeMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
               int h, int stripe, int reveal, int mode) {
    // Leading stripes fill with B from the start of the axis, the others from its end, so the
    // stripes interleave like a weave; reveal 0 leaves A and the full size gives B.
    if (mode != 1 && mode != 2) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const Stripes st(stripe);
    const int n = mode == 1 ? e.cols : e.rows; // the axis along which the stripes fill
    const int k = mix::edge(reveal, n - 1);
    if (k == 0) return;
    std::vector<std::uint8_t>& lead = stripeScratch().lead;
    std::vector<std::uint8_t>& trail = stripeScratch().trail;
    if (mode == 2) {
        st.mask(e.cols, lead);
        invert(lead, trail);
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c) {
        for (int y = 0; y < e.rows; ++y) {
            std::uint8_t* pa = a.c[c][y];
            const std::uint8_t* pb = b.c[c][y];
            if (mode == 1) {
                if (st.leading(y))
                    mix::copySpan(pa, pb, 0, k);
                else
                    mix::copySpan(pa, pb, n - k, n);
            } else {
                const bool fromTop = y < k, fromBottom = y >= n - k;
                if (fromTop && fromBottom)
                    mix::copySpan(pa, pb, 0, e.cols);
                else if (fromTop)
                    mix::maskedCopy(pa, pb, lead.data(), e.cols);
                else if (fromBottom)
                    mix::maskedCopy(pa, pb, trail.data(), e.cols);
            }
        }
    }
}

void SlideStripeMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                    int h, int stripe, int reveal, int mode) {
    // A stands still and B's stripes move: leading stripes slide towards the end of the axis, the
    // others towards its start. The callers pass the picture the run arrives at as A, so reveal 0
    // is all of B and the full size leaves A: B's stripes slide away and uncover A.
    if (mode != 1 && mode != 2) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const Stripes st(stripe);
    const int n = mode == 1 ? e.cols : e.rows;
    const int k = mix::edge(reveal, n - 1);
    if (k == n) return;
    std::vector<std::uint8_t>& lead = stripeScratch().lead;
    std::vector<std::uint8_t>& trail = stripeScratch().trail;
    if (mode == 2) {
        st.mask(e.cols, lead);
        invert(lead, trail);
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c) {
        const Out pa = a.c[c];
        const In pb = b.c[c];
        if (mode == 1) {
            for (int y = 0; y < e.rows; ++y) {
                if (st.leading(y))
                    mix::moveCells(pa[y] + k, pb[y], n - k);
                else
                    mix::moveCells(pa[y], pb[y] + k, n - k);
            }
        } else {
            mix::shiftRows(k, n, -k,
                           [&](int y, int src) { mix::maskedCopy(pa[y], pb[src], lead.data(), e.cols); });
            mix::shiftRows(0, n - k, k,
                           [&](int y, int src) { mix::maskedCopy(pa[y], pb[src], trail.data(), e.cols); });
        }
    }
}

void PushStripeMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                   int h, int stripe, int reveal, int mode) {
    // Each stripe is a strip of A followed by B that moves as one: A's stripe pushes in and B's is
    // pushed out ahead of it, leading stripes towards the end of the axis, the others towards its
    // start. As with SlideStripeMix, reveal 0 is all of B and the full size all of A.
    if (mode != 1 && mode != 2) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const Stripes st(stripe);
    const int n = mode == 1 ? e.cols : e.rows;
    const int k = mix::edge(reveal, n - 1);
    if (k == n) return;
    std::vector<std::uint8_t>& lead = stripeScratch().lead;
    std::vector<std::uint8_t>& trail = stripeScratch().trail;
    std::vector<std::uint8_t>& scratch = stripeScratch().row;
    if (mode == 2) {
        st.mask(e.cols, lead);
        invert(lead, trail);
    } else {
        scratch.resize(static_cast<std::size_t>(e.cols));
    }
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    for (int c = 0; c < 3; ++c) {
        const Out pa = a.c[c];
        const In pb = b.c[c];
        const bool alias = pb.aliases(pa);
        if (mode == 1) {
            std::uint8_t* old = scratch.data();
            for (int y = 0; y < e.rows; ++y) {
                std::memcpy(old, pa[y], static_cast<std::size_t>(n));
                const std::uint8_t* src = alias ? old : pb[y];
                if (st.leading(y)) { // A's end comes in at the start, B moves towards the end
                    std::memcpy(pa[y], old + (n - k), static_cast<std::size_t>(k));
                    std::memcpy(pa[y] + k, src, static_cast<std::size_t>(n - k));
                } else { // B moves towards the start, A's beginning comes in at the end
                    std::memcpy(pa[y], src + k, static_cast<std::size_t>(n - k));
                    std::memcpy(pa[y] + (n - k), old, static_cast<std::size_t>(k));
                }
            }
        } else if (alias) {
            // Pushing a picture against itself rolls each stripe round.
            mix::rollRows(pa, e, k, lead.data(), scratch);
            mix::rollRows(pa, e, n - k, trail.data(), scratch);
        } else {
            auto putLead = [&](int y, const std::uint8_t* src) {
                mix::maskedCopy(pa[y], src, lead.data(), e.cols);
            };
            auto putTrail = [&](int y, const std::uint8_t* src) {
                mix::maskedCopy(pa[y], src, trail.data(), e.cols);
            };
            // A's own rows move first, in an order that reads each before it is overwritten; B's follow.
            mix::shiftRows(0, k, n - k, [&](int y, int s) { putLead(y, pa[s]); });
            for (int y = k; y < n; ++y)
                putLead(y, pb[y - k]);
            mix::shiftRows(n - k, n, -(n - k), [&](int y, int s) { putTrail(y, pa[s]); });
            for (int y = 0; y < n - k; ++y)
                putTrail(y, pb[y + k]);
        }
    }
}

} // namespace krl
