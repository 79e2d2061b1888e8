// The filters that each stand behind one dialog look: cartoon, pencil sketch, chalk, night vision.
//
// Sizes: ToonFilter and ToonFilter2 take upper bounds (a count is clamped to the planes);
// SketchHard, ChalkFilter and NightVision take counts (W, H leave the last column and row).
// Where a pixel depends on neighbours, the processed extent is treated as the whole picture and its
// edge is repeated outward, so nothing outside it is read.

#include "pixel/Extent.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace krl {

namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;

struct PlaneRef {
    const u8* base;
    int stride;
    const u8* row(int y) const { return base + static_cast<std::size_t>(y) * stride; }
};

struct PlaneOut {
    u8* base;
    int stride;
    u8* row(int y) const { return base + static_cast<std::size_t>(y) * stride; }
};

void lumaRow(const u8* r, const u8* g, const u8* b, u8* __restrict out, int n) {
    for (int x = 0; x < n; ++x)
        out[x] = filt::luma(r[x], g[x], b[x]);
}

// ---- cartoon -------------------------------------------------------------------------------------

struct ToonStyle {
    int edgeFrom;   // Sobel magnitude (0..2040) where the line starts to darken
    int edgeGain;   // darkening per unit of magnitude above edgeFrom, out of 256
    int tones;      // flat colour bands per channel
    bool thickLine; // widen lines by one pixel each way
};

// Line darkness (0 none .. 256 black) of one row from three rows of grey, edges repeated.
void edgeRow(const u8* a, const u8* b, const u8* c, u16* __restrict out, int n, const ToonStyle& st) {
    auto edgeAt = [&](int xl, int x, int xr) {
        const int gx = (a[xr] + 2 * b[xr] + c[xr]) - (a[xl] + 2 * b[xl] + c[xl]);
        const int gy = (c[xl] + 2 * c[x] + c[xr]) - (a[xl] + 2 * a[x] + a[xr]);
        const int mag = std::abs(gx) + std::abs(gy);
        return static_cast<u16>(filt::clampInt((mag - st.edgeFrom) * st.edgeGain, 0, 256));
    };
    if (n == 1) {
        out[0] = edgeAt(0, 0, 0);
        return;
    }
    out[0] = edgeAt(0, 0, 1);
    for (int x = 1; x < n - 1; ++x)
        out[x] = edgeAt(x - 1, x, x + 1);
    out[n - 1] = edgeAt(n - 2, n - 1, n - 1);
}

// Flat colour bands of the blurred picture A, with dark lines where the unblurred picture B has edges.
// Lines come from B so that they stay crisp however much A was blurred; the blur only flattens the
// colour. B is never written.
void toon(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
          const ToonStyle& st) {
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const PlaneRef in[3] = {{BR.data(), BR.cols()}, {BG.data(), BG.cols()}, {BB.data(), BB.cols()}};

    std::array<u8, 256> band{};
    for (int v = 0; v < 256; ++v) {
        const int k = v * st.tones / 256;
        band[static_cast<std::size_t>(v)] = static_cast<u8>((k * 255 + (st.tones - 1) / 2) / (st.tones - 1));
    }

    // Grey of B in a ring of five rows (lines of the thick style look two rows ahead), and the line
    // darkness of the last three rows for widening.
    const int n = e.cols;
    const std::size_t sn = static_cast<std::size_t>(n);
    std::vector<u8> greyRing(5 * sn);
    std::vector<u16> edgeRing(3 * sn);
    std::vector<u16> line(sn);
    auto greyOf = [&](int y) { return greyRing.data() + static_cast<std::size_t>(y % 5) * sn; };
    auto edgeOf = [&](int y) { return edgeRing.data() + static_cast<std::size_t>(y % 3) * sn; };
    auto clampY = [&](int y) { return std::clamp(y, 0, e.rows - 1); };
    const int lookAhead = st.thickLine ? 2 : 1;
    int nextGrey = 0;
    int nextEdge = 0;
    for (int y = 0; y < e.rows; ++y) {
        for (; nextGrey <= std::min(y + lookAhead, e.rows - 1); ++nextGrey)
            lumaRow(in[0].row(nextGrey), in[1].row(nextGrey), in[2].row(nextGrey), greyOf(nextGrey), n);
        for (; nextEdge <= std::min(y + lookAhead - 1, e.rows - 1); ++nextEdge)
            edgeRow(greyOf(clampY(nextEdge - 1)), greyOf(nextEdge), greyOf(clampY(nextEdge + 1)),
                    edgeOf(nextEdge), n, st);
        if (st.thickLine) {
            const u16* up = edgeOf(clampY(y - 1));
            const u16* mid = edgeOf(y);
            const u16* down = edgeOf(clampY(y + 1));
            for (int x = 0; x < n; ++x) {
                const int xl = std::max(x - 1, 0);
                const int xr = std::min(x + 1, n - 1);
                const u16 v = std::max({up[x], down[x], mid[xl], mid[x], mid[xr]});
                line[static_cast<std::size_t>(x)] = v;
            }
        } else {
            std::memcpy(line.data(), edgeOf(y), sn * sizeof(u16));
        }
        for (int c = 0; c < 3; ++c) {
            u8* p = out[c].row(y);
            for (int x = 0; x < n; ++x)
                p[x] = static_cast<u8>((band[p[x]] * (256u - line[static_cast<std::size_t>(x)]) + 128u) >> 8);
        }
    }
}

// ---- night vision --------------------------------------------------------------------------------

struct NightTables {
    std::array<u8, 256> gain{}; // lifts the dark the way an image intensifier does
    std::array<u8, 256> r{}, g{}, b{};
};

NightTables makeNightTables() {
    NightTables t;
    for (int v = 0; v < 256; ++v) {
        const double f = v / 255.0;
        t.gain[static_cast<std::size_t>(v)] = static_cast<u8>(std::lround(255.0 * std::pow(f, 0.55)));
        // Phosphor green: never quite black, highlights bleed toward a pale green-white.
        t.g[static_cast<std::size_t>(v)] = static_cast<u8>(std::lround(18.0 + 237.0 * f));
        t.r[static_cast<std::size_t>(v)] = static_cast<u8>(std::lround(255.0 * (0.06 * f + 0.5 * f * f * f)));
        t.b[static_cast<std::size_t>(v)] =
            static_cast<u8>(std::lround(255.0 * (0.10 * f + 0.35 * f * f * f)));
    }
    return t;
}

const NightTables& nightTables() {
    static const NightTables t = makeNightTables();
    return t;
}

// Distance-squared falloff toward the edge of the extent along one axis: 0 in the centre, `depth` at
// the edge, out of 256.
std::vector<u16> falloff(int n, int depth) {
    std::vector<u16> f(static_cast<std::size_t>(n));
    const double half = std::max(1.0, (n - 1) / 2.0);
    for (int i = 0; i < n; ++i) {
        const double d = (i - (n - 1) / 2.0) / half;
        f[static_cast<std::size_t>(i)] = static_cast<u16>(std::lround(depth * d * d));
    }
    return f;
}

// ---- sketch --------------------------------------------------------------------------------------

// Colour dodge of the picture by its blurred negative: flat areas dodge to white, edges stay dark.
void dodgeRow(const u8* a, const u8* b, u8* __restrict out, int n) {
    for (int x = 0; x < n; ++x) {
        const float room = 255.0f - static_cast<float>(a[x]);
        const float q = static_cast<float>(b[x]) * 255.0f / std::max(room, 1.0f) + 0.5f;
        out[x] = room <= 0.0f ? 255 : static_cast<u8>(std::min(q, 255.0f));
    }
}

} // namespace

void ToonFilter(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                int h) {
    toon(AR, AG, AB, BR, BG, BB, w, h, ToonStyle{112, 3, 6, false});
}

// "Edge Boost": lines start at weaker edges, darken faster and are a pixel wider each way.
void ToonFilter2(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                 int h) {
    toon(AR, AG, AB, BR, BG, BB, w, h, ToonStyle{64, 5, 6, true});
}

// A holds the blurred negative, B the picture; the line drawing replaces A, B is only read. The
// dodge gives the pencil line; strength shapes its tone: 128 leaves the plain dodge, higher values
// bend the tone curve (an exponent of strength / 128) so that lines grow darker and wider, 255 the
// strongest. Strengths outside 128..255 are held to that range.
void SketchHard(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                int h, int strength) {
    const Extent e = countExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const PlaneRef in[3] = {{BR.data(), BR.cols()}, {BG.data(), BG.cols()}, {BB.data(), BB.cols()}};
    const double exponent = filt::clampInt(strength, 128, 255) / 128.0;
    std::array<u8, 256> tone{};
    for (int v = 0; v < 256; ++v)
        tone[static_cast<std::size_t>(v)] =
            static_cast<u8>(std::lround(255.0 * std::pow(v / 255.0, exponent)));
    std::vector<u8> dodged(static_cast<std::size_t>(e.cols));
    for (int y = 0; y < e.rows; ++y) {
        for (int c = 0; c < 3; ++c) {
            u8* p = out[c].row(y);
            dodgeRow(p, in[c].row(y), dodged.data(), e.cols);
            for (int x = 0; x < e.cols; ++x)
                p[x] = tone[dodged[static_cast<std::size_t>(x)]];
        }
    }
}

// The finishing touch of the graphic-novel look: the picture as if laid down in chalk on toothed
// paper. Blacks are lifted and colours softened toward pastel, and the paper's tooth shows through
// as pale specks where the chalk skipped. level 0..100 is the strength (callers use about 50). The
// tooth is a fixed texture of the position, so it stays put from frame to frame like real paper.
void ChalkFilter(Plane& AR, Plane& AG, Plane& AB, int w, int h, int level) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    const int t = filt::clampInt(level, 0, 100);
    if (e.empty() || t == 0) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const unsigned lift = static_cast<unsigned>(t * 80 / 100);   // share of the way to white, /256
    const unsigned soften = static_cast<unsigned>(t * 90 / 100); // share of the way to grey, /256
    const int speckFrom = 255 - t * 150 / 100;                   // tooth above this shows paper
    const std::size_t n = static_cast<std::size_t>(e.cols);
    std::vector<u16> whiten(n);
    std::vector<u8> grey(n);
    std::vector<u8> result(3 * n);
    for (int y = 0; y < e.rows; ++y) {
        for (int x = 0; x < e.cols; ++x) {
            // Tooth: fine grain on a coarser, slightly slanted grain, like pressed paper fibres.
            const int fine =
                filt::positionGrain(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 1);
            const int coarse = filt::positionGrain(static_cast<std::uint32_t>((x + y / 2) >> 1),
                                                   static_cast<std::uint32_t>(y >> 1), 2);
            const int tooth = (fine + 3 * coarse) >> 2;
            const int speck = tooth > speckFrom ? (tooth - speckFrom) * 4 : 0;
            whiten[static_cast<std::size_t>(x)] =
                static_cast<u16>(std::min(256, static_cast<int>(lift) + speck));
        }
        lumaRow(out[0].row(y), out[1].row(y), out[2].row(y), grey.data(), e.cols);
        for (int c = 0; c < 3; ++c) {
            const u8* p = out[c].row(y);
            u8* r = result.data() + static_cast<std::size_t>(c) * n;
            for (std::size_t x = 0; x < n; ++x) {
                const unsigned soft = (p[x] * (256u - soften) + grey[x] * soften + 128u) >> 8;
                r[x] = static_cast<u8>(soft + (((255u - soft) * whiten[x] + 128u) >> 8));
            }
        }
        for (int c = 0; c < 3; ++c)
            std::memcpy(out[c].row(y), result.data() + static_cast<std::size_t>(c) * n, n);
    }
}

// Night-vision goggles: the picture's grey, lifted in the dark, darkened toward the rim of the view
// like an eyepiece, with a fine fixed grain, shown in phosphor green.
void NightVision(Plane& AR, Plane& AG, Plane& AB, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const NightTables& t = nightTables();
    const std::vector<u16> fx = falloff(e.cols, 72);
    const std::vector<u16> fy = falloff(e.rows, 72);
    const std::size_t n = static_cast<std::size_t>(e.cols);
    std::vector<u8> grey(n);
    for (int y = 0; y < e.rows; ++y) {
        lumaRow(out[0].row(y), out[1].row(y), out[2].row(y), grey.data(), e.cols);
        for (std::size_t x = 0; x < n; ++x) {
            const int keep = 256 - fx[x] - fy[static_cast<std::size_t>(y)];
            const int grain =
                (filt::positionGrain(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 3) - 128) /
                12;
            grey[x] = static_cast<u8>(filt::clampInt(((t.gain[grey[x]] * keep) >> 8) + grain, 0, 255));
        }
        u8* r = out[0].row(y);
        u8* g = out[1].row(y);
        u8* b = out[2].row(y);
        for (std::size_t x = 0; x < n; ++x) {
            const u8 v = grey[x];
            r[x] = t.r[v];
            g[x] = t.g[v];
            b[x] = t.b[v];
        }
    }
}

} // namespace krl
