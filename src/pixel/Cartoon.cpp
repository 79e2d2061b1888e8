// The cartoon look: flat colour bands with dark lines (ToonFilter, and ToonFilter2's "Edge Boost").
//
// Sizes: both take upper bounds (a count is clamped to the planes). Where a pixel depends on
// neighbours, the processed extent is treated as the whole picture and its edge is repeated outward,
// so nothing outside it is read.
//
// Every stage works on whole rows in 16-bit lanes, so the compiler turns each into vector
// instructions; rows that a stage reads a cell to either side of carry one repeated edge cell at
// each end, which keeps the edges out of the loops.

#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <vector>

namespace krl {

using filt::PlaneOut;
using filt::PlaneRef;

namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;
using i16 = std::int16_t;

struct ToonStyle {
    int edgeFrom;   // Sobel magnitude (0..2040) where the line starts to darken
    int edgeGain;   // darkening per unit of magnitude above edgeFrom, out of 256 (at most 16)
    bool thickLine; // widen lines by one pixel each way
};

// Flat colour bands per channel, and the blur change beyond which a pixel counts as a smeared edge
// and keeps B's colour. Both looks share them.
constexpr int kTones = 6;
constexpr int kSmoothing = 40;

// The tones spread evenly from black to white, rounded to nearest: (band * 255 + (kTones - 1) / 2) /
// (kTones - 1), which for six bands is a plain multiple of a band, as the assertion below checks.
constexpr int kToneStep = 255 / (kTones - 1);
constexpr bool tonesAreMultiples() {
    for (int band = 0; band < kTones; ++band)
        if ((band * 255 + (kTones - 1) / 2) / (kTones - 1) != band * kToneStep) return false;
    return true;
}
static_assert(tonesAreMultiples());

// The pull's quotient held * 512 / kSmoothing, for held up to half of kSmoothing (where it reaches
// 256), as a 16-bit multiply and a shift; checked for every held below.
constexpr int kPullHeld = (kSmoothing + 1) / 2;
constexpr unsigned kPullShift = 7;
constexpr unsigned kPullMul = ((512u << kPullShift) + kSmoothing - 1) / kSmoothing;
constexpr bool pullIsExact() {
    for (unsigned held = 0; held <= kPullHeld; ++held)
        if (held * kPullMul > 0xFFFFu || (held * kPullMul) >> kPullShift != held * 512 / kSmoothing)
            return false;
    return true;
}
static_assert(pullIsExact());

// Copies the first and last cell of a row one place outward (the row has room at index -1 and n).
template <class T> void repeatEnds(T* row, int n) {
    row[-1] = row[0];
    row[n] = row[n - 1];
}

// [1 2 1] smoothing of one row of grey from three rows, edges repeated; keeps grain out of the lines.
// `sum` is scratch of n + 2 cells, from index -1.
KRL_CELL_LOOP void smoothRow(const u8* __restrict a, const u8* __restrict b, const u8* __restrict c,
                             u16* __restrict sum, u8* __restrict out, int n) {
    for (int x = 0; x < n; ++x)
        sum[x] = static_cast<u16>(a[x] + 2 * b[x] + c[x]);
    repeatEnds(sum, n);
    for (int x = 0; x < n; ++x)
        out[x] = static_cast<u8>(static_cast<u16>(sum[x - 1] + 2 * sum[x] + sum[x + 1] + 8) >> 4);
}

// Line darkness (0 none .. 256 black) of one row from three rows of smoothed grey, edges repeated: the
// Sobel magnitude |gx| + |gy| taken down the columns first (`across`, for gx, and `down`, for gy, are
// scratch of n + 2 cells from index -1). Magnitudes reach 2040, so every step fits 16 bits.
KRL_CELL_LOOP void edgeRow(const u8* __restrict a, const u8* __restrict b, const u8* __restrict c,
                           i16* __restrict across, i16* __restrict down, u16* __restrict out, int n, int from,
                           int gain) {
    for (int x = 0; x < n; ++x) {
        across[x] = static_cast<i16>(a[x] + 2 * b[x] + c[x]);
        down[x] = static_cast<i16>(c[x] - a[x]);
    }
    repeatEnds(across, n);
    repeatEnds(down, n);
    const auto edgeFrom = static_cast<i16>(from), edgeGain = static_cast<i16>(gain);
    for (int x = 0; x < n; ++x) {
        const auto gx = static_cast<i16>(across[x + 1] - across[x - 1]);
        const auto gy = static_cast<i16>(down[x - 1] + 2 * down[x] + down[x + 1]);
        const auto mag = static_cast<i16>((gx < 0 ? -gx : gx) + (gy < 0 ? -gy : gy));
        const auto dark = static_cast<i16>((mag - edgeFrom) * edgeGain);
        out[x] = static_cast<u16>(std::clamp<i16>(dark, 0, 256));
    }
}

// The line one pixel wider each way: the darkest of a pixel and its four neighbours.
KRL_CELL_LOOP void widenRow(const u16* __restrict up, const u16* __restrict mid, const u16* __restrict down,
                            u16* __restrict out, int n) {
    for (int x = 0; x < n; ++x)
        out[x] = std::max({up[x], down[x], mid[x - 1], mid[x], mid[x + 1]});
}

// How far the blur may pull each pixel, out of 256, by the largest change of its channels between the
// blurred A and B: fully while the change stays within half of kSmoothing, not at all beyond it.
// (kSmoothing - change) * 512 / kSmoothing, held to 0..256: what lies above half of kSmoothing counts
// as half, where the share reaches 256 anyway.
KRL_CELL_LOOP void pullRow(const u8* __restrict p0, const u8* __restrict p1, const u8* __restrict p2,
                           const u8* __restrict q0, const u8* __restrict q1, const u8* __restrict q2,
                           u16* __restrict pulled, int n) {
    auto apart = [](u8 p, u8 q) { return static_cast<u8>(p > q ? p - q : q - p); };
    for (int x = 0; x < n; ++x) {
        const u8 moved = std::max({apart(p0[x], q0[x]), apart(p1[x], q1[x]), apart(p2[x], q2[x])});
        const u8 room = moved < kSmoothing ? static_cast<u8>(kSmoothing - moved) : u8{0};
        const auto held = std::min<u16>(room, kPullHeld);
        pulled[x] = std::min<u16>(static_cast<u16>(held * kPullMul) >> kPullShift, 256);
    }
}

// One channel of one row: the blurred A pulled back toward B, cut to its band's tone, darkened by the
// line. The pull is floored as the plain product's arithmetic shift is (away from B's side when it
// falls short), and every product stays below 65536.
KRL_CELL_LOOP void toonRow(u8* __restrict p, const u8* __restrict q, const u16* __restrict pulled,
                           const u16* __restrict line, int n) {
    for (int x = 0; x < n; ++x) {
        const bool up = p[x] >= q[x];
        const auto apart = static_cast<u16>(up ? p[x] - q[x] : q[x] - p[x]);
        const auto share = static_cast<u16>(apart * pulled[x]);
        const auto flat =
            static_cast<u16>(up ? q[x] + (share >> 8) : q[x] - (static_cast<u16>(share + 255u) >> 8));
        const auto tone =
            static_cast<u16>(static_cast<u16>(static_cast<u16>(flat * kTones) >> 8) * kToneStep);
        p[x] = static_cast<u8>(static_cast<u16>(tone * static_cast<u16>(256 - line[x]) + 128u) >> 8);
    }
}

// Rows of a per-row stage kept in a small ring, produced in order on demand, each with `pad` spare
// cells before and after. The rows live in storage kept per thread and reused from call to call, so
// the filter allocates nothing once it has run at a size.
template <class T> struct RowRing {
    std::vector<T>& data;
    std::size_t stride;
    int size;
    int next = 0;
    RowRing(std::vector<T>& storage, int ringRows, std::size_t cols, std::size_t pad)
        : data(storage), stride(cols + 2 * pad), size(ringRows), padding(pad) {
        data.assign(static_cast<std::size_t>(ringRows) * stride, T{});
    }
    T* row(int y) { return data.data() + static_cast<std::size_t>(y % size) * stride + padding; }

  private:
    std::size_t padding;
};

// Flat colour bands with dark lines where the unblurred picture B has edges. The colour is the blurred
// A where the blur changed the pixel little, B where it changed it much: within an area the blur
// irons out texture and shading, while near a strong edge, where the blur has smeared one colour into
// the next, each side keeps its own colour, so heavy blurring flattens without halos. Lines come from B
// (lightly smoothed against grain) so that they stay crisp however much A was blurred. B is never
// written.
void toon(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
          const ToonStyle& st) {
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const PlaneRef in[3] = {{BR.data(), BR.cols()}, {BG.data(), BG.cols()}, {BB.data(), BB.cols()}};

    // Three stages, each a ring of rows: grey of B, smoothed grey, line darkness. Output row y needs
    // line rows up to y+1 (thick lines), hence smoothed rows up to y+2 and grey rows up to y+3; all
    // of B that row y depends on is read before row y of A is written. A slice of rows starts its
    // rings three rows early, so its first row sees the stages exactly as the whole loop would; the
    // rings hold eight rows, room for that start. Slices need A apart from B: in place, a slice's
    // first rows would read B rows that the slice above has already written.
    auto rows = [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values and stop vectorising.
        const int n = e.cols;
        const std::size_t sn = static_cast<std::size_t>(n);
        const int last = e.rows - 1;
        const bool thick = st.thickLine;
        const int edgeFrom = st.edgeFrom, edgeGain = st.edgeGain;
        auto clampY = [last](int y) { return std::clamp(y, 0, last); };
        thread_local std::vector<u8> greyRows, smoothRows;
        thread_local std::vector<u16> edgeRows;
        RowRing<u8> grey(greyRows, 8, sn, 0), smooth(smoothRows, 8, sn, 0);
        RowRing<u16> edge(edgeRows, 8, sn, 1);
        grey.next = clampY(y0 - 3);
        smooth.next = clampY(y0 - 2);
        edge.next = clampY(y0 - 1);
        // Scratch: two rows of sums with a spare cell at each end, the widened line, the pull.
        thread_local std::vector<u16> scratch;
        scratch.resize(4 * (sn + 2));
        u16* const sums = scratch.data() + 1;
        i16* const across = reinterpret_cast<i16*>(sums);
        i16* const down = reinterpret_cast<i16*>(sums + sn + 2);
        u16* const wide = sums + 2 * (sn + 2);
        u16* const pulled = sums + 3 * (sn + 2);
        for (int y = y0; y < y1; ++y) {
            const int needEdge = std::min(y + (thick ? 1 : 0), last);
            const int needSmooth = std::min(needEdge + 1, last);
            const int needGrey = std::min(needSmooth + 1, last);
            for (; grey.next <= needGrey; ++grey.next)
                filt::lumaRow(in[0].row(grey.next), in[1].row(grey.next), in[2].row(grey.next),
                              grey.row(grey.next), n);
            for (int& k = smooth.next; k <= needSmooth; ++k)
                smoothRow(grey.row(clampY(k - 1)), grey.row(k), grey.row(clampY(k + 1)), sums, smooth.row(k),
                          n);
            for (int& k = edge.next; k <= needEdge; ++k) {
                edgeRow(smooth.row(clampY(k - 1)), smooth.row(k), smooth.row(clampY(k + 1)), across, down,
                        edge.row(k), n, edgeFrom, edgeGain);
                repeatEnds(edge.row(k), n);
            }
            const u16* line = edge.row(y);
            if (thick) {
                widenRow(edge.row(clampY(y - 1)), line, edge.row(clampY(y + 1)), wide, n);
                line = wide;
            }
            pullRow(out[0].row(y), out[1].row(y), out[2].row(y), in[0].row(y), in[1].row(y), in[2].row(y),
                    pulled, n);
            for (int c = 0; c < 3; ++c)
                toonRow(out[c].row(y), in[c].row(y), pulled, line, n);
        }
    };
    bool apart = true;
    for (const PlaneOut& o : out)
        for (const PlaneRef& i : in)
            apart = apart && o.base != i.base;
    if (apart)
        forRowSlices(e.rows, 6LL * e.cols, rows);
    else
        rows(0, e.rows);
}

} // namespace

void ToonFilter(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                int h) {
    toon(AR, AG, AB, BR, BG, BB, w, h, ToonStyle{112, 3, false});
}

// "Edge Boost": lines start at weaker edges, darken faster and are a pixel wider each way.
void ToonFilter2(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                 int h) {
    toon(AR, AG, AB, BR, BG, BB, w, h, ToonStyle{64, 5, true});
}

} // namespace krl
