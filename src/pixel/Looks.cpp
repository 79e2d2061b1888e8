// The filters that each stand behind one dialog look: pencil sketch and chalk (the cartoon and the
// night vision have files of their own).
//
// Sizes: SketchHard and ChalkFilter take counts (W, H leave the last column and row).

#include "pixel/ByteTable.h"
#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel/Kernels.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define KRL_LOOKS_KERNELS 1
#endif

namespace krl {

using filt::PlaneOut;
using filt::PlaneRef;

namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;

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

#ifdef KRL_LOOKS_KERNELS
// Eight bytes as eight floats, widened by one instruction (the compiler's own widening takes three
// shuffles for eight bytes, and the dodge waited on them more than on its division).
__attribute__((target("avx2"))) inline __m256 floatsOf(const u8* p) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}

// dodgeRow eight cells at a time, the same float operations in the same order.
__attribute__((target("avx2"))) __m256i dodgeEight(const u8* a, const u8* b) {
    const __m256 neg = floatsOf(a);
    const __m256 full = _mm256_cvtepi32_ps(
        _mm256_srli_epi32(_mm256_add_epi32(_mm256_cvttps_epi32(neg), _mm256_set1_epi32(1)), 8));
    const __m256 room = _mm256_add_ps(_mm256_sub_ps(_mm256_set1_ps(255.0f), neg), full);
    const __m256 top = _mm256_add_ps(_mm256_mul_ps(floatsOf(b), _mm256_set1_ps(255.0f)),
                                     _mm256_mul_ps(full, _mm256_set1_ps(65025.0f)));
    const __m256 q = _mm256_add_ps(_mm256_div_ps(top, room), _mm256_set1_ps(0.5f));
    return _mm256_cvttps_epi32(_mm256_min_ps(q, _mm256_set1_ps(255.0f)));
}

// Thirty-two cells a time; returns the cells done.
__attribute__((target("avx2"))) int dodgeAvx2(const u8* a, const u8* b, u8* out, int n) {
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7); // undoes the packing's interleave
    int x = 0;
    for (; x + 32 <= n; x += 32) {
        const __m256i words = _mm256_packs_epi32(dodgeEight(a + x, b + x), dodgeEight(a + x + 8, b + x + 8));
        const __m256i words2 =
            _mm256_packs_epi32(dodgeEight(a + x + 16, b + x + 16), dodgeEight(a + x + 24, b + x + 24));
        const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(words, words2), order);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + x), bytes);
    }
    return x;
}
#endif

// The dodge of a row, by the widest kernel the processor runs and then the plain loop.
void dodge(const u8* a, const u8* b, u8* out, int n, [[maybe_unused]] bool avx2) {
    int done = 0;
#ifdef KRL_LOOKS_KERNELS
    if (avx2) done = dodgeAvx2(a, b, out, n);
#endif
    dodgeRow(a + done, b + done, out + done, n - done);
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
    const bool avx2 = kernelSet() >= KernelSet::Avx2;
    const double exponent = 1.0 + 3.0 * (filt::clampInt(strength, 128, 255) - 128) / 127.0;
    std::array<u8, 256> curve{};
    for (int v = 0; v < 256; ++v)
        curve[static_cast<std::size_t>(v)] =
            static_cast<u8>(std::lround(255.0 * std::pow(v / 255.0, exponent)));
    const ByteTable tone(curve);
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        // Locals: byte stores could otherwise alias the captured values.
        const int n = e.cols;
        const bool plain = plainDodge;
        thread_local std::vector<u8> dodged;
        dodged.resize(static_cast<std::size_t>(n));
        u8* __restrict d = dodged.data();
        for (int y = y0; y < y1; ++y) {
            for (int c = 0; c < 3; ++c) {
                u8* p = out[c].row(y);
                dodge(p, in[c].row(y), d, n, avx2);
                if (plain) {
                    std::memcpy(p, d, static_cast<std::size_t>(n));
                    continue;
                }
                tone.apply(d, p, n);
            }
        }
    });
}

namespace {
// The paper's tooth: strokes that are grain cells eight pixels long along the diagonal and one pixel
// across it (positionGrain of the cell), roughened by a fine grain of their own (positionGrain of the
// pixel). The positions are mixed in as running sums along the row.
using u32 = std::uint32_t;

// The stroke grain of the pixels x = first + 8 m and the one after each, for m from 0 while x stays
// below cols: where (x + y) is a multiple of 8, so both lie at the start of a cell. The cell and the
// diagonal go up by one and by eight with m.
KRL_CELL_LOOP void strokeStarts(int y, int first, int cols, u8* __restrict at0, u8* __restrict at1) {
    const int count = (cols - first + 7) / 8;
    u32 alongMix = static_cast<u32>((first + y) >> 3) * filt::kHashX;
    u32 acrossMix = (static_cast<u32>(first - y + 4096) + filt::kHashYBase) * filt::kHashY;
    for (int m = 0; m < count; ++m) {
        const u32 mixed = alongMix ^ acrossMix ^ filt::kHashSalt;
        at0[m] = filt::mixedGrain(mixed);
        at1[m] = filt::mixedGrain(alongMix ^ (acrossMix + filt::kHashY) ^ filt::kHashSalt);
        alongMix += filt::kHashX;
        acrossMix += 8 * filt::kHashY;
    }
}

// The stroke grain of row y. A stroke's cell runs down the diagonal, so a pixel shares the grain of
// the pixel up and to the left unless it starts a cell ((x + y) % 8 of 0 or 1 for them both to lie
// in one cell, that is at least 2 for the pixel itself): `above` is row y - 1's grain, or null for a
// slice's first row, which is worked out in full. `starts` is scratch of (cols + 7) / 4 bytes.
void strokeRow(int y, int cols, const u8* above, u8* __restrict stroke, u8* __restrict starts) {
    if (above == nullptr) {
        for (int x = 0; x < cols; ++x)
            stroke[x] =
                filt::positionGrain(static_cast<u32>((x + y) >> 3), static_cast<u32>(x - y + 4096), 1);
        return;
    }
    std::memcpy(stroke + 1, above, static_cast<std::size_t>(cols - 1));
    stroke[0] = filt::positionGrain(static_cast<u32>(y >> 3), static_cast<u32>(4096 - y), 1);
    const int first = (8 - y % 8) % 8;
    if (first >= cols) return;
    const int count = (cols - first + 7) / 8;
    u8* at1 = starts + count;
    strokeStarts(y, first, cols, starts, at1);
    for (int m = 0, x = first; m < count; ++m, x += 8) {
        stroke[x] = starts[m];
        if (x + 1 < cols) stroke[x + 1] = at1[m];
    }
}

// How far each pixel of row y goes to white: the lift everywhere, and more where the paper's tooth
// stands above `skipAbove` and the chalk skipped.
KRL_CELL_LOOP void chalkRow(int y, int cols, const u8* __restrict stroke, int liftBy, int skipAbove,
                            u16* __restrict whiten) {
    const u32 fineRow = filt::positionMix(0, static_cast<u32>(y), 2);
    u32 fineX = 0;
    for (int x = 0; x < cols; ++x) {
        const int fine = filt::mixedGrain(fineX ^ fineRow);
        fineX += filt::kHashX;
        const int tooth = (3 * stroke[x] + fine) >> 2;
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
        thread_local std::vector<u8> strokes;
        strokes.resize(2 * n + (n + 7) / 4 + 2);
        u8* stroke = strokes.data();
        u8* above = nullptr;
        u8* const starts = strokes.data() + 2 * n;
        thread_local std::vector<u8> grey;
        grey.resize(n);
        thread_local std::vector<u8> result;
        result.resize(3 * n);
        u16* __restrict wh = whiten.data();
        u8* __restrict gr = grey.data();
        for (int y = y0; y < y1; ++y) {
            strokeRow(y, cols, above, stroke, starts);
            chalkRow(y, cols, stroke, liftBy, skipAbove, wh);
            above = stroke;
            stroke = stroke == strokes.data() ? strokes.data() + n : strokes.data();
            filt::lumaRow(out[0].row(y), out[1].row(y), out[2].row(y), gr, cols);
            for (int c = 0; c < 3; ++c)
                chalkTone(out[c].row(y), gr, wh, result.data() + static_cast<std::size_t>(c) * n, cols,
                          softBy);
            for (int c = 0; c < 3; ++c)
                std::memcpy(out[c].row(y), result.data() + static_cast<std::size_t>(c) * n, n);
        }
    });
}

} // namespace krl
