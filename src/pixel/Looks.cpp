// The filters that each stand behind one dialog look: pencil sketch, chalk, night vision (the
// cartoon has a file of its own).
//
// Sizes: SketchHard, ChalkFilter and NightVision take counts (W, H leave the last column and row).
// Where a pixel depends on neighbours, the processed extent is treated as the whole picture and its
// edge is repeated outward, so nothing outside it is read.

#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

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

// ---- night vision --------------------------------------------------------------------------------

struct NightTables {
    std::array<u8, 256> gain{}; // lifts the dark the way an image intensifier does
    std::array<u8, 256> r{}, g{}, b{};
};

NightTables makeNightTables() {
    NightTables t;
    for (int v = 0; v < 256; ++v) {
        const double f = v / 255.0;
        t.gain[static_cast<std::size_t>(v)] = static_cast<u8>(std::lround(255.0 * std::pow(f, 0.7)));
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
void falloff(int n, int depth, std::vector<u16>& f) {
    f.assign(static_cast<std::size_t>(n), u16{});
    const double half = std::max(1.0, (n - 1) / 2.0);
    for (int i = 0; i < n; ++i) {
        const double d = (i - (n - 1) / 2.0) / half;
        f[static_cast<std::size_t>(i)] = static_cast<u16>(std::lround(depth * d * d));
    }
}

// ---- sketch --------------------------------------------------------------------------------------

// Colour dodge of the picture by its blurred negative: flat areas dodge to white, edges stay dark.
// Where the negative is white there is no room left and the dodge gives white.
KRL_CELL_LOOP void dodgeRow(const u8* a, const u8* b, u8* __restrict out, int n) {
    for (int x = 0; x < n; ++x) {
        const float full = static_cast<float>((a[x] + 1) >> 8); // 1 exactly when a is 255
        const float room = 255.0f - static_cast<float>(a[x]) + full;
        const float q = (static_cast<float>(b[x]) * 255.0f + full * 65025.0f) / room + 0.5f;
        out[x] = static_cast<u8>(static_cast<int>(q < 255.0f ? q : 255.0f));
    }
}

} // namespace

// A holds the blurred negative, B the picture; the line drawing replaces A, B is only read. The
// dodge gives the pencil line; strength shapes its tone: 128 leaves the plain dodge, higher values
// bend the tone curve (exponent 1 at 128 up to 4 at 255) so that the soft shoulders of each line
// darken too and lines grow darker and wider, 255 the strongest. Strengths outside 128..255 are held to that
// range.
void SketchHard(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                int h, int strength) {
    const Extent e = countExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const PlaneRef in[3] = {{BR.data(), BR.cols()}, {BG.data(), BG.cols()}, {BB.data(), BB.cols()}};
    const bool plainDodge = strength <= 128;
    const double exponent = 1.0 + 3.0 * (filt::clampInt(strength, 128, 255) - 128) / 127.0;
    std::array<u8, 256> tone{};
    for (int v = 0; v < 256; ++v)
        tone[static_cast<std::size_t>(v)] =
            static_cast<u8>(std::lround(255.0 * std::pow(v / 255.0, exponent)));
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values.
        const int n = e.cols;
        const bool plain = plainDodge;
        const u8* const toneOf = tone.data();
        thread_local std::vector<u8> dodged;
        dodged.resize(static_cast<std::size_t>(n));
        u8* __restrict d = dodged.data();
        for (int y = y0; y < y1; ++y) {
            for (int c = 0; c < 3; ++c) {
                u8* p = out[c].row(y);
                dodgeRow(p, in[c].row(y), d, n);
                if (plain) {
                    std::memcpy(p, d, static_cast<std::size_t>(n));
                    continue;
                }
                for (int x = 0; x < n; ++x)
                    p[x] = toneOf[d[x]];
            }
        }
    });
}

namespace {
// How far each pixel of row y goes to white: the lift everywhere, and more where the paper's tooth
// stands above `skipAbove` and the chalk skipped. Strokes are grain cells eight pixels long along the
// diagonal and one pixel across it, roughened by a fine grain of their own.
KRL_CELL_LOOP void chalkRow(int y, int cols, int liftBy, int skipAbove, u16* __restrict whiten) {
    for (int x = 0; x < cols; ++x) {
        const auto along = static_cast<std::uint32_t>((x + y) >> 3);
        const auto across = static_cast<std::uint32_t>(x - y + 4096);
        const int stroke = filt::positionGrain(along, across, 1);
        const int fine = filt::positionGrain(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 2);
        const int tooth = (3 * stroke + fine) >> 2;
        const int skip = tooth > skipAbove ? (tooth - skipAbove) * 3 : 0;
        whiten[x] = static_cast<u16>(std::min(256, liftBy + skip));
    }
}

// One channel of a row: softened toward its grey by `soften` / 256, then taken toward white by the
// row's whitening. Every step fits 16-bit lanes (255 * 256 + 128 < 65536).
KRL_CELL_LOOP void chalkTone(const u8* __restrict p, const u8* __restrict grey, const u16* __restrict whiten,
                             u8* __restrict out, int n, unsigned soften) {
    const auto s = static_cast<u16>(soften), keep = static_cast<u16>(256u - soften);
    for (int x = 0; x < n; ++x) {
        const auto soft = static_cast<u16>(static_cast<u16>(p[x] * keep + grey[x] * s + 128u) >> 8);
        out[x] = static_cast<u8>(soft + (static_cast<u16>((255u - soft) * whiten[x] + 128u) >> 8));
    }
}
} // namespace

// The finishing touch of the graphic-novel look: the picture as if laid down in chalk on toothed
// paper. Blacks are lifted and colours softened toward pastel, and the paper shows through in short
// diagonal strokes where the chalk skipped over its tooth. level 0..100 is the strength (callers use
// about 50; 0 leaves the picture). The texture is a fixed function of the position, so it stays put
// from frame to frame like real paper.
void ChalkFilter(Plane& AR, Plane& AG, Plane& AB, int w, int h, int level) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    const int t = filt::clampInt(level, 0, 100);
    if (e.empty() || t == 0) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const int lift = t * 64 / 100;           // share of the way to white everywhere, out of 256
    const unsigned soften = t * 80 / 100;    // share of the way to grey, out of 256
    const int skipFrom = 255 - t * 90 / 100; // tooth above this lets the paper through
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values and stop vectorising.
        const int cols = e.cols;
        const std::size_t n = static_cast<std::size_t>(cols);
        const int liftBy = lift, skipAbove = skipFrom;
        const unsigned softBy = soften;
        thread_local std::vector<u16> whiten;
        whiten.resize(n);
        thread_local std::vector<u8> grey;
        grey.resize(n);
        thread_local std::vector<u8> result;
        result.resize(3 * n);
        u16* __restrict wh = whiten.data();
        u8* __restrict gr = grey.data();
        for (int y = y0; y < y1; ++y) {
            chalkRow(y, cols, liftBy, skipAbove, wh);
            filt::lumaRow(out[0].row(y), out[1].row(y), out[2].row(y), gr, cols);
            for (int c = 0; c < 3; ++c)
                chalkTone(out[c].row(y), gr, wh, result.data() + static_cast<std::size_t>(c) * n, cols,
                          softBy);
            for (int c = 0; c < 3; ++c)
                std::memcpy(out[c].row(y), result.data() + static_cast<std::size_t>(c) * n, n);
        }
    });
}

namespace {
// The lifted grey of a row darkened toward the rim (`across` per column, `down` for the row) and
// given its grain; the table lookups stay outside so that this vectorises.
KRL_CELL_LOOP void nightRow(u8* __restrict grey, const u8* __restrict grain, const u16* __restrict across,
                            int down, int n) {
    for (int x = 0; x < n; ++x) {
        const int keep = 256 - across[x] - down;
        grey[x] = static_cast<u8>(filt::clampInt(((grey[x] * keep) >> 8) + (grain[x] - 128) / 20, 0, 255));
    }
}
} // namespace

// Night-vision goggles: the picture's grey, lifted in the dark, darkened toward the rim of the view
// like an eyepiece, with a fine fixed grain, shown in phosphor green.
void NightVision(Plane& AR, Plane& AG, Plane& AB, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const PlaneOut out[3] = {{AR.data(), AR.cols()}, {AG.data(), AG.cols()}, {AB.data(), AB.cols()}};
    const NightTables& t = nightTables();
    thread_local std::vector<u16> fxStore, fyStore;
    falloff(e.cols, 60, fxStore);
    falloff(e.rows, 60, fyStore);
    // Named through plain references: a slice on another thread would see its own thread_local.
    const std::vector<u16>& fx = fxStore;
    const std::vector<u16>& fy = fyStore;
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values and stop vectorising.
        const int cols = e.cols;
        const std::size_t n = static_cast<std::size_t>(cols);
        const u16* const across = fx.data();
        const u8* const gain = t.gain.data();
        thread_local std::vector<u8> grey;
        grey.resize(n);
        thread_local std::vector<u8> grainLine;
        grainLine.resize(n);
        u8* __restrict gr = grey.data();
        u8* __restrict grain = grainLine.data();
        const u8* const toR = t.r.data();
        const u8* const toG = t.g.data();
        const u8* const toB = t.b.data();
        for (int y = y0; y < y1; ++y) {
            filt::lumaRow(out[0].row(y), out[1].row(y), out[2].row(y), gr, cols);
            filt::grainRow(static_cast<std::uint32_t>(y), 3, grain, cols);
            const int down = fy[static_cast<std::size_t>(y)];
            for (std::size_t x = 0; x < n; ++x)
                gr[x] = gain[gr[x]];
            nightRow(gr, grain, across, down, cols);
            u8* __restrict r = out[0].row(y);
            u8* __restrict g = out[1].row(y);
            u8* __restrict b = out[2].row(y);
            for (std::size_t x = 0; x < n; ++x) {
                const u8 v = gr[x];
                r[x] = toR[v];
                g[x] = toG[v];
                b[x] = toB[v];
            }
        }
    });
}

} // namespace krl
