// Night-vision goggles: the picture's grey, lifted in the dark, darkened toward the rim of the view
// like an eyepiece, with a fine fixed grain, shown in phosphor green.
//
// Sizes: counts (W, H leave the last column and row).
//
// Each pixel's grey passes through four curves held as tables: the lift, and the red, green and blue of
// the phosphor. Tables do not vectorise, so the AVX2 kernel works the three phosphor curves out in
// fixed point instead; the tables stay their definition, and the kernel runs only when its fixed-point
// forms give every entry of them (checked once).

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
#include <vector>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define KRL_NIGHT_KERNEL 1
#endif

namespace krl {

namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;

// The phosphor curves in fixed point. Red is 0.06 v + v^3 / 130050 in 15 fractional bits with the
// cube taken 9 bits down, blue 0.10 v + 0.35 v^3 / 65025 in 16 bits with the cube 10 bits down (sums
// of two 16-bit products, one instruction for eight pixels); green is 18 + 237 v / 255 rounded, the
// division by 255 a multiply and a shift.
constexpr int redOf(int v) {
    return (1967 * v + 129 * ((v * v * v) >> 9) + 16338) >> 15;
}
constexpr int greenOf(int v) {
    return 18 + (((237 * v + 127) * 32897) >> 23);
}
constexpr int blueOf(int v) {
    return (6557 * v + 361 * ((v * v * v) >> 10) + 33000) >> 16;
}

struct NightTables {
    std::array<u8, 256> gain{}; // lifts the dark the way an image intensifier does
    ByteTable lift{gain};       // the same, looked up a row at a time (made once gain is filled in)
    std::array<u8, 256> r{}, g{}, b{};
    bool fixedPointMatches = false; // the curves above give r, g and b exactly
};

NightTables makeNightTables() {
    NightTables t;
    t.fixedPointMatches = true;
    for (int v = 0; v < 256; ++v) {
        const double f = v / 255.0;
        const auto i = static_cast<std::size_t>(v);
        t.gain[i] = static_cast<u8>(std::lround(255.0 * std::pow(f, 0.7)));
        // Phosphor green: never quite black, highlights bleed toward a pale green-white.
        t.g[i] = static_cast<u8>(std::lround(18.0 + 237.0 * f));
        t.r[i] = static_cast<u8>(std::lround(255.0 * (0.06 * f + 0.5 * f * f * f)));
        t.b[i] = static_cast<u8>(std::lround(255.0 * (0.10 * f + 0.35 * f * f * f)));
        t.fixedPointMatches =
            t.fixedPointMatches && t.r[i] == redOf(v) && t.g[i] == greenOf(v) && t.b[i] == blueOf(v);
    }
    t.lift = ByteTable(t.gain);
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

// The lifted grey of a row darkened toward the rim (`across` per column, `down` for the row) and
// given its grain; the table lookups stay outside so that this vectorises.
KRL_CELL_LOOP void nightRow(u8* __restrict grey, const u8* __restrict grain, const u16* __restrict across,
                            int down, int n) {
    for (int x = 0; x < n; ++x) {
        const int keep = 256 - across[x] - down;
        grey[x] = static_cast<u8>(filt::clampInt(((grey[x] * keep) >> 8) + (grain[x] - 128) / 20, 0, 255));
    }
}

#ifdef KRL_NIGHT_KERNEL
// a * b + c * d for the pairs (v, cube) of sixteen pixels, plus a rounding constant, shifted down.
__attribute__((target("avx2"))) __m256i curve(__m256i v, __m256i cube, int a, int c, int add, int shift) {
    const __m256i weights =
        _mm256_set1_epi32(static_cast<int>(static_cast<unsigned>(c) << 16 | static_cast<unsigned>(a)));
    const __m256i low = _mm256_madd_epi16(_mm256_unpacklo_epi16(v, cube), weights);
    const __m256i high = _mm256_madd_epi16(_mm256_unpackhi_epi16(v, cube), weights);
    const __m256i round = _mm256_set1_epi32(add);
    return _mm256_packs_epi32(_mm256_srai_epi32(_mm256_add_epi32(low, round), shift),
                              _mm256_srai_epi32(_mm256_add_epi32(high, round), shift));
}

__attribute__((target("avx2"))) void storeBytes(u8* to, __m256i words) {
    const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(words, words), 0xD8);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(bytes));
}

// nightRow and the phosphor curves for sixteen pixels at a time. Returns the pixels done; the rest
// are left to the plain loops.
__attribute__((target("avx2"))) int phosphorAvx2(const u8* lifted, const u8* grain, const u16* across,
                                                 int down, u8* r, u8* g, u8* b, int n) {
    const __m256i rim = _mm256_set1_epi16(static_cast<short>(256 - down));
    const __m256i mid = _mm256_set1_epi16(128);
    const __m256i byDiv20 = _mm256_set1_epi16(3277); // floor(d / 20) = d * 3277 >> 16 for d up to 128
    const __m256i top = _mm256_set1_epi16(255);
    const __m256i zero = _mm256_setzero_si256();
    const __m256i times237 = _mm256_set1_epi16(237), plus127 = _mm256_set1_epi16(127),
                  base18 = _mm256_set1_epi16(18);
    const __m256i by255 = _mm256_set1_epi16(static_cast<short>(32897)); // floor(s / 255) = s * 32897 >> 23
    int x = 0;
    for (; x + 16 <= n; x += 16) {
        const __m256i grey =
            _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(lifted + x)));
        const __m256i keep =
            _mm256_sub_epi16(rim, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(across + x)));
        const __m256i dimmed = _mm256_srli_epi16(_mm256_mullo_epi16(grey, keep), 8);
        // (grain - 128) / 20, rounded toward zero: the quotient of the magnitude, given the sign back.
        const __m256i off = _mm256_sub_epi16(
            _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(grain + x))), mid);
        const __m256i noise = _mm256_sign_epi16(_mm256_mulhi_epu16(_mm256_abs_epi16(off), byDiv20), off);
        const __m256i v = _mm256_min_epi16(_mm256_max_epi16(_mm256_add_epi16(dimmed, noise), zero), top);
        // The cube 9 bits down: v^2 times v * 128, high half.
        const __m256i cube = _mm256_mulhi_epu16(_mm256_mullo_epi16(v, v), _mm256_slli_epi16(v, 7));
        storeBytes(r + x, curve(v, cube, 1967, 129, 16338, 15));
        storeBytes(b + x, curve(v, _mm256_srli_epi16(cube, 1), 6557, 361, 33000, 16));
        const __m256i scaled = _mm256_add_epi16(_mm256_mullo_epi16(v, times237), plus127);
        storeBytes(g + x, _mm256_add_epi16(_mm256_srli_epi16(_mm256_mulhi_epu16(scaled, by255), 7), base18));
    }
    return x;
}
#endif

} // namespace

void NightVision(Plane& AR, Plane& AG, Plane& AB, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    u8* const base[3] = {AR.data(), AG.data(), AB.data()};
    const std::size_t stride[3] = {static_cast<std::size_t>(AR.cols()), static_cast<std::size_t>(AG.cols()),
                                   static_cast<std::size_t>(AB.cols())};
    const NightTables& t = nightTables();
    [[maybe_unused]] const bool kernel = t.fixedPointMatches && kernelSet() >= KernelSet::Avx2;
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
            u8* __restrict r = base[0] + static_cast<std::size_t>(y) * stride[0];
            u8* __restrict g = base[1] + static_cast<std::size_t>(y) * stride[1];
            u8* __restrict b = base[2] + static_cast<std::size_t>(y) * stride[2];
            filt::lumaRow(r, g, b, gr, cols);
            filt::grainRow(static_cast<std::uint32_t>(y), 3, grain, cols);
            const int down = fy[static_cast<std::size_t>(y)];
            t.lift.apply(gr, gr, cols);
            int done = 0;
#ifdef KRL_NIGHT_KERNEL
            if (kernel) done = phosphorAvx2(gr, grain, across, down, r, g, b, cols);
#endif
            nightRow(gr + done, grain + done, across + done, down, cols - done);
            for (std::size_t x = static_cast<std::size_t>(done); x < n; ++x) {
                const u8 v = gr[x];
                r[x] = toR[v];
                g[x] = toG[v];
                b[x] = toB[v];
            }
        }
    });
}

} // namespace krl
