// Per-pixel tone operations: negative, grey, desaturation by channel, the two thresholds,
// posterizing, and brightness steps.
//
// Sizes: all but GreyThreshold take w, h as counts (W+1, H+1 cover the planes; W, H leave the last
// column and row as they were). GreyThreshold, a two-picture filter, takes upper bounds.
//
// Aliasing: where one plane object is passed several times in a triple, each channel's work is
// applied to it in turn, in the order red, green, blue. So Negative(P, P, P) inverts P three times,
// which leaves it inverted, and GreyScale(P, P, P) leaves it as it was.

#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel/Kernels.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace krl {

namespace {

using u8 = std::uint8_t;

struct Triple {
    u8* p[3];
    int stride[3];
    u8* row(int c, int y) const { return p[c] + static_cast<std::size_t>(y) * stride[c]; }
};

Triple writable(Plane& r, Plane& g, Plane& b) {
    return {{r.data(), g.data(), b.data()}, {r.cols(), g.cols(), b.cols()}};
}

// Applies fn(row pointer, count) to every row of the three planes over the extent, in row slices.
template <class Fn> void eachPlane(Plane& r, Plane& g, Plane& b, Extent e, Fn fn) {
    const Triple t = writable(r, g, b);
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        for (int c = 0; c < 3; ++c)
            for (int y = y0; y < y1; ++y)
                fn(t.row(c, y), e.cols);
    });
}

// 255 where the sum of a pixel's three channels reaches sumFrom, else 0; sums fit 16-bit lanes.
KRL_CELL_LOOP void whiteRow(const u8* __restrict r, const u8* __restrict g, const u8* __restrict b,
                            u8* __restrict white, int n, int sumFrom) {
    const auto from = static_cast<std::uint16_t>(sumFrom);
    for (int x = 0; x < n; ++x) {
        const auto sum = static_cast<std::uint16_t>(r[x] + g[x] + b[x]);
        white[x] = sum >= from ? 255 : 0;
    }
}

// Each byte halfway to the white-or-black of its pixel, rounded half to even, in 16-bit lanes.
KRL_CELL_LOOP void halfwayRow(u8* __restrict p, const u8* __restrict white, int n) {
    for (int x = 0; x < n; ++x) {
        const auto v = static_cast<std::uint16_t>(p[x] + white[x]);
        const auto q = static_cast<std::uint16_t>(v >> 1);
        p[x] = static_cast<u8>(q + (v & q & 1u));
    }
}

KRL_CELL_LOOP void posterizeRow(u8* __restrict p, int n, int halvings, int d) {
    const int halfD = d / 2; // the whole half of the integer formula
    const auto half = static_cast<float>(halfD), divisor = static_cast<float>(d);
    for (int x = 0; x < n; ++x) {
        const auto band = static_cast<float>(p[x] >> halvings);
        p[x] = static_cast<u8>(static_cast<int>((band * 255.0f + half) / divisor));
    }
}

// The grey of each pixel of a row, and 0xFF where its key channel lies in [low, high].
KRL_CELL_LOOP void greyMaskRow(const u8* __restrict r, const u8* __restrict g, const u8* __restrict b,
                               const u8* __restrict key, u8 low, u8 high, u8* __restrict grey,
                               u8* __restrict mask, int n) {
    for (int x = 0; x < n; ++x) {
        grey[x] = filt::luma(r[x], g[x], b[x]);
        mask[x] = (key[x] >= low && key[x] <= high) ? 0xFF : 0x00;
    }
}

// p takes from where the mask is 0xFF.
KRL_CELL_LOOP void takeMasked(u8* __restrict p, const u8* __restrict from, const u8* __restrict mask, int n) {
    for (int x = 0; x < n; ++x)
        p[x] = static_cast<u8>((p[x] & ~mask[x]) | (from[x] & mask[x]));
}

#if defined(__x86_64__) || defined(__i386__)
bool shufflesAvailable() {
    return kernelSet() >= KernelSet::Ssse3;
}

// Sixteen bytes at a time: each byte's band (v >> halvings, at most 15 here) picks its tone from the
// table with one shuffle. Returns the cells done; the rest are left to posterizeRow.
__attribute__((target("ssse3"))) int posterizeShuffled(u8* p, int n, int halvings, const u8* tone) {
    const __m128i table = _mm_loadu_si128(reinterpret_cast<const __m128i*>(tone));
    const __m128i count = _mm_cvtsi32_si128(halvings);
    const __m128i keep =
        _mm_set1_epi8(static_cast<char>(0xFF >> halvings)); // bits shifted in from the next byte go
    int x = 0;
    for (; x + 16 <= n; x += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + x));
        const __m128i band = _mm_and_si128(_mm_srl_epi16(v, count), keep);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + x), _mm_shuffle_epi8(table, band));
    }
    return x;
}
#else
bool shufflesAvailable() {
    return false;
}
int posterizeShuffled(u8*, int, int, const u8*) {
    return 0;
}
#endif

} // namespace

void Negative(Plane& AR, Plane& AG, Plane& AB, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    eachPlane(AR, AG, AB, e, [](u8* p, int n) {
        for (int x = 0; x < n; ++x)
            p[x] = static_cast<u8>(255 - p[x]);
    });
}

void GreyScale(Plane& AR, Plane& AG, Plane& AB, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const Triple t = writable(AR, AG, AB);
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        const int n = e.cols; // a local: byte stores could otherwise alias the captured extent
        thread_local std::vector<u8> grey;
        grey.resize(static_cast<std::size_t>(n));
        u8* __restrict gr = grey.data();
        for (int y = y0; y < y1; ++y) {
            const u8* r = t.row(0, y);
            const u8* g = t.row(1, y);
            const u8* b = t.row(2, y);
            for (int x = 0; x < n; ++x)
                gr[x] = filt::luma(r[x], g[x], b[x]);
            for (int c = 0; c < 3; ++c)
                std::memcpy(t.row(c, y), gr, static_cast<std::size_t>(n));
        }
    });
}

// The chosen channel's slider sets a level (percent of 255); the tolerance reaches from that level
// toward brighter values when positive and toward darker values when negative. Pixels whose chosen
// channel lies in that band, ends included, lose their colour (they take their grey in all three
// planes); pixels outside it keep their colour. Tolerance 0 greys only the exact level, so the
// dialog opens on a picture that looks untouched, and dragging the tolerance grows the grey area.
void GreyOut(Plane& AR, Plane& AG, Plane& AB, int level, int channel, int tolerance, int w, int h) {
    if (channel < 1 || channel > 3) return;
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const int centre = (filt::clampInt(level, 0, 100) * 255 + 50) / 100;
    const int other = centre + filt::clampInt(tolerance, -255, 255);
    const u8 lo = static_cast<u8>(filt::clampInt(std::min(centre, other), 0, 255));
    const u8 hi = static_cast<u8>(filt::clampInt(std::max(centre, other), 0, 255));
    const Triple t = writable(AR, AG, AB);
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values and stop vectorising.
        const int n = e.cols;
        const u8 low = lo, high = hi;
        thread_local std::vector<u8> scratch;
        scratch.resize(2 * static_cast<std::size_t>(n));
        u8* __restrict grey = scratch.data();
        u8* __restrict mask = grey + n;
        for (int y = y0; y < y1; ++y) {
            greyMaskRow(t.row(0, y), t.row(1, y), t.row(2, y), t.row(channel - 1, y), low, high, grey, mask,
                        n);
            for (int c = 0; c < 3; ++c)
                takeMasked(t.row(c, y), grey, mask, n);
        }
    });
}

// The grey of B (the plain mean of its three channels) is cut at level, and the black-and-white
// result is laid half over A: where the grey reaches the level A goes halfway to white, elsewhere
// halfway to black, rounded half to even. That is the rule the dialog's preview shows, so Apply
// gives what the user saw. level 0 lightens everything, 256 darkens everything.
void GreyThreshold(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                   int level, int w, int h) {
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB);
    if (e.empty()) return;
    const Triple t = writable(AR, AG, AB);
    const u8* src[3] = {BR.data(), BG.data(), BB.data()};
    const int srcStride[3] = {BR.cols(), BG.cols(), BB.cols()};
    // The mean (sum + 1) / 3, rounded down, reaches the level exactly when the sum reaches 3 level - 1.
    const int sumFrom = std::max(0, 3 * filt::clampInt(level, 0, 256) - 1);
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        const int n = e.cols; // a local: byte stores could otherwise alias the captured extent
        const int from = sumFrom;
        thread_local std::vector<u8> scratch;
        scratch.resize(static_cast<std::size_t>(n));
        u8* __restrict white = scratch.data();
        for (int y = y0; y < y1; ++y) {
            whiteRow(src[0] + static_cast<std::size_t>(y) * srcStride[0],
                     src[1] + static_cast<std::size_t>(y) * srcStride[1],
                     src[2] + static_cast<std::size_t>(y) * srcStride[2], white, n, from);
            for (int c = 0; c < 3; ++c)
                halfwayRow(t.row(c, y), white, n);
        }
    });
}

// A byte above level becomes 255, the others 0. So level 255 or more (the callers' 256) gives 0
// everywhere, and a plane of zeros stays zeros at every level: a mask that is empty never opens.
void Threshold(Plane& M, int level, int w, int h) {
    const Extent e = countExtent(w, h, M);
    if (e.empty()) return;
    // Every cell of the extent is written, so a shared plane is not copied first: the cells are read
    // from the buffer it leaves to its other holders.
    const Plane::Rewrite r = M.rewrite(0, 0, e.cols, e.rows);
    const std::size_t stride = static_cast<std::size_t>(M.cols());
    if (level < 0 || level > 254) {
        const u8 v = level < 0 ? 255 : 0;
        for (int y = 0; y < e.rows; ++y)
            std::memset(r.to + y * stride, v, static_cast<std::size_t>(e.cols));
        return;
    }
    const u8 cut = static_cast<u8>(level);
    forRowSlices(e.rows, e.cols, [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values and stop vectorising.
        const int n = e.cols;
        const u8 level = cut;
        const bool inPlace = r.inPlace();
        u8* const toBase = r.to;
        const u8* const fromBase = r.from;
        for (int y = y0; y < y1; ++y) {
            u8* p = toBase + y * stride;
            if (inPlace) {
                for (int x = 0; x < n; ++x)
                    p[x] = p[x] > level ? 255 : 0;
            } else {
                const u8* __restrict from = fromBase + y * stride;
                u8* __restrict to = p;
                for (int x = 0; x < n; ++x)
                    to[x] = from[x] > level ? 255 : 0;
            }
        }
    });
}

// level is a strength 0..255: every 32 steps halve the number of tones per channel, from 256 (level
// below 32, no change) down to 2 (level 224 and up). The callers' level 200 gives 4 tones per
// channel, 64 colours: the flat bands of a cel-shaded picture. Tones are spread evenly over 0..255
// so black and white survive.
void Posterize(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const int halvings = filt::clampInt(level, 0, 255) / 32;
    if (halvings == 0) return;
    // A byte v falls in band v >> halvings of `tones`, whose tone is (band * 255 + d / 2) / d with
    // d = tones - 1. That quotient is computed in single precision, eight cells at a time: the
    // numerator is exact, and a quotient just below a whole number misses it by at least 1 / d, far
    // more than the division's rounding, so truncation gives the integer division's result.
    const int d = (256 >> halvings) - 1;
    // Sixteen tones or fewer (the dialogs' strengths) fit one byte shuffle: the band is the index.
    std::array<u8, 16> tone{};
    for (int band = 0; band <= d && band < 16; ++band)
        tone[static_cast<std::size_t>(band)] = static_cast<u8>((band * 255 + d / 2) / d);
    const bool shuffled = d < 16 && shufflesAvailable();
    eachPlane(AR, AG, AB, e, [halvings, d, shuffled, &tone](u8* p, int n) {
        // cppcheck-suppress knownConditionTrueFalse ; false only in builds without the x86 shuffle kernel
        const int done = shuffled ? posterizeShuffled(p, n, halvings, tone.data()) : 0;
        posterizeRow(p + done, n - done, halvings, d);
    });
}

// Adds level to every byte, held at 255; a negative level subtracts, held at 0.
void IncreaseBrightness(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty() || level == 0) return;
    const int step = filt::clampInt(level, -255, 255);
    if (step > 0) {
        const u8 add = static_cast<u8>(step);
        const u8 top = static_cast<u8>(255 - step);
        eachPlane(AR, AG, AB, e, [=](u8* p, int n) {
            for (int x = 0; x < n; ++x)
                p[x] = p[x] > top ? 255 : static_cast<u8>(p[x] + add);
        });
    } else {
        const u8 sub = static_cast<u8>(-step);
        eachPlane(AR, AG, AB, e, [=](u8* p, int n) {
            for (int x = 0; x < n; ++x)
                p[x] = p[x] < sub ? 0 : static_cast<u8>(p[x] - sub);
        });
    }
}

// Subtracts level from every byte, held at 0; a negative level adds, held at 255.
void IncreaseDarkness(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h) {
    IncreaseBrightness(AR, AG, AB, -filt::clampInt(level, -255, 255), w, h);
}

} // namespace krl
