// Resampling a picture to another size.
//
// Separable filter, chosen per axis: shrinking averages the source cells under each target cell
// (area weights, so a fine pattern turns into its mean grey instead of aliasing), enlarging
// interpolates linearly between the two nearest cell centres. An axis of equal size is an exact
// copy. Each target row gathers its source rows into one float row, which is then resampled across.

#include "pixel/MixRows.h"
#include "pixel/Mixing.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <cmath>
#include <vector>

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__SANITIZE_THREAD__)
#include <immintrin.h>
#define KRL_GATHER_ACROSS 1
#endif

namespace krl {

namespace {
using mix::In;
using mix::Out;

// For each of `dst` target cells: the first of `taps` source cells and their weights. Every window
// lies inside the source, so the inner loops need no bounds checks.
struct Taps {
    int taps = 1;
    std::vector<int> first;
    std::vector<float> weight; // dst * taps
    // The same laid out tap by tap for the vector path: tap k of cell i is source cell
    // index[k * dst + i] with weight byTap[k * dst + i].
    std::vector<int> index;
    std::vector<float> byTap;
    // For blocks of eight cells whose taps all lie within 16 source cells: where the 16 start
    // (blockStart, moved back to end at the row's end) and, per tap, each cell's place in them.
    // blocksNear counts such blocks from the start of the row; the rest go by gathers.
    int blocksNear = 0;
    std::vector<int> blockStart;
    std::vector<int> place; // block * taps * 8 + k * 8 + lane

    const float* of(int i) const { return weight.data() + static_cast<std::size_t>(i) * taps; }
};

void makeTaps(int dst, int src, Taps& t) {
    t.first.resize(static_cast<std::size_t>(dst));
    const double scale = static_cast<double>(src) / dst;
    t.taps = dst == src ? 1 : src > dst ? static_cast<int>(std::ceil(scale)) + 1 : 2;
    t.taps = std::min(t.taps, src);
    t.weight.assign(static_cast<std::size_t>(dst) * t.taps, 0.0f);
    thread_local std::vector<double> w;
    w.assign(static_cast<std::size_t>(std::max(t.taps, 2)), double{});
    for (int i = 0; i < dst; ++i) {
        // Weights by source cell, gathered first and then placed in a window that fits the source.
        int j0 = i, count = 1;
        w[0] = 1.0;
        if (src > dst) {
            // Target cell i covers source span [i*scale, (i+1)*scale); each source cell weighs by overlap.
            const double lo = i * scale, hi = (i + 1) * scale;
            j0 = static_cast<int>(lo);
            count = 0;
            for (int j = j0; j < src && j < hi && count < t.taps; ++j)
                w[static_cast<std::size_t>(count++)] =
                    (std::min<double>(hi, j + 1) - std::max<double>(lo, j)) / scale;
        } else if (src < dst) {
            // Enlarging: target centre (i + 0.5) lands at source position (i + 0.5) * scale - 0.5.
            const double pos = std::clamp((i + 0.5) * scale - 0.5, 0.0, static_cast<double>(src - 1));
            j0 = std::min(static_cast<int>(pos), src - 1);
            const double f = pos - j0;
            count = j0 + 1 < src ? 2 : 1;
            w[0] = count == 2 ? 1.0 - f : 1.0;
            w[1] = f;
        }
        const int start = std::clamp(j0, 0, src - t.taps);
        t.first[static_cast<std::size_t>(i)] = start;
        float* out = t.weight.data() + static_cast<std::size_t>(i) * t.taps;
        for (int k = 0; k < count; ++k)
            out[j0 - start + k] = static_cast<float>(w[static_cast<std::size_t>(k)]);
    }
    const std::size_t cells = static_cast<std::size_t>(dst);
    t.index.resize(cells * static_cast<std::size_t>(t.taps));
    t.byTap.resize(t.index.size());
    for (int k = 0; k < t.taps; ++k)
        for (std::size_t i = 0; i < cells; ++i) {
            t.index[static_cast<std::size_t>(k) * cells + i] = t.first[i] + k;
            t.byTap[static_cast<std::size_t>(k) * cells + i] =
                t.weight[i * static_cast<std::size_t>(t.taps) + k];
        }
    t.blocksNear = 0;
    t.blockStart.clear();
    t.place.clear();
    if (src < 16) return;
    for (int b = 0; b < dst / 8; ++b) {
        const int lo = t.first[static_cast<std::size_t>(b) * 8];
        const int hi = t.first[static_cast<std::size_t>(b) * 8 + 7] + t.taps - 1;
        if (hi - lo >= 16) break;
        const int start = std::min(lo, src - 16);
        t.blockStart.push_back(start);
        for (int k = 0; k < t.taps; ++k)
            for (int lane = 0; lane < 8; ++lane)
                t.place.push_back(t.first[static_cast<std::size_t>(b) * 8 + static_cast<std::size_t>(lane)] +
                                  k - start);
        ++t.blocksNear;
    }
}

std::uint8_t toByte(float v) {
    return static_cast<std::uint8_t>(std::clamp(v + 0.5f, 0.0f, 255.0f));
}

// Resamples one row of accumulated columns across, with the tap count known to the compiler.
template <int T> void acrossFixed(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
    for (int x = 0; x < n; ++x) {
        const float* w = t.of(x);
        const float* s = acc + t.first[static_cast<std::size_t>(x)];
        float v = 0.0f;
        for (int k = 0; k < T; ++k)
            v += w[k] * s[k];
        dst[x] = toByte(v);
    }
}

// One cell of a row resampled across, for any tap count.
std::uint8_t acrossCell(const float* acc, int x, const Taps& t) {
    const float* w = t.of(x);
    const float* s = acc + t.first[static_cast<std::size_t>(x)];
    float v = 0.0f;
    for (int k = 0; k < t.taps; ++k)
        v += w[k] * s[k];
    return toByte(v);
}

#ifdef KRL_GATHER_ACROSS
// Eight sums made bytes as toByte makes them: plus a half, held to 0..255, truncated.
__attribute__((target("avx2"))) void storeEight(__m256 v, std::uint8_t* dst) {
    v = _mm256_min_ps(_mm256_max_ps(_mm256_add_ps(v, _mm256_set1_ps(0.5f)), _mm256_setzero_ps()),
                      _mm256_set1_ps(255.0f));
    const __m256i whole = _mm256_cvttps_epi32(v);
    const __m128i words = _mm_packus_epi32(_mm256_castsi256_si128(whole), _mm256_extracti128_si256(whole, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), _mm_packus_epi16(words, words));
}

// Eight cells at a time, their taps taken from 16 loaded cells where they lie that close together
// and gathered otherwise. The sum is built in the scalar path's order, tap
// after tap from zero, with separate multiplies and adds, and the byte is made the same way, so the
// result is the same to the bit.
__attribute__((target("avx2"))) int acrossEight(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
    const std::size_t cells = t.first.size();
    int x = 0;
    // Blocks whose taps lie within 16 source cells: two loads, and per tap two permutes and a blend
    // chosen by bit 3 of the cell's place.
    const int* place = t.place.data();
    for (int b = 0; b < t.blocksNear && x + 8 <= n; ++b, x += 8) {
        const float* s = acc + t.blockStart[static_cast<std::size_t>(b)];
        const __m256 low = _mm256_loadu_ps(s), high = _mm256_loadu_ps(s + 8);
        __m256 v = _mm256_setzero_ps();
        for (int k = 0; k < t.taps; ++k, place += 8) {
            const __m256i at = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(place));
            const __m256 fromHigh = _mm256_castsi256_ps(_mm256_slli_epi32(at, 28));
            const __m256 cellK = _mm256_blendv_ps(_mm256_permutevar8x32_ps(low, at),
                                                  _mm256_permutevar8x32_ps(high, at), fromHigh);
            const std::size_t i = static_cast<std::size_t>(k) * cells + static_cast<std::size_t>(x);
            v = _mm256_add_ps(v, _mm256_mul_ps(_mm256_loadu_ps(t.byTap.data() + i), cellK));
        }
        storeEight(v, dst + x);
    }
    for (; x + 8 <= n; x += 8) {
        __m256 v = _mm256_setzero_ps();
        for (int k = 0; k < t.taps; ++k) {
            const std::size_t at = static_cast<std::size_t>(k) * cells + static_cast<std::size_t>(x);
            const __m256i idx = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(t.index.data() + at));
            const __m256 s = _mm256_i32gather_ps(acc, idx, 4);
            v = _mm256_add_ps(v, _mm256_mul_ps(_mm256_loadu_ps(t.byTap.data() + at), s));
        }
        storeEight(v, dst + x);
    }
    return x;
}

bool gathersAvailable() {
    static const bool yes = __builtin_cpu_supports("avx2") != 0;
    return yes;
}
#endif

void across(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
#ifdef KRL_GATHER_ACROSS
    if (gathersAvailable() && t.taps > 1) {
        for (int x = acrossEight(acc, dst, n, t); x < n; ++x)
            dst[x] = acrossCell(acc, x, t);
        return;
    }
#endif
    switch (t.taps) {
    case 1:
        return acrossFixed<1>(acc, dst, n, t);
    case 2:
        return acrossFixed<2>(acc, dst, n, t);
    case 3:
        return acrossFixed<3>(acc, dst, n, t);
    case 4:
        return acrossFixed<4>(acc, dst, n, t);
    default:
        for (int x = 0; x < n; ++x)
            dst[x] = acrossCell(acc, x, t);
    }
}

} // namespace

void ResizeBuffer(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int aw,
                  int ah, int bw, int bh) {
    const Extent ea = boundExtent(aw, ah, AR, AG, AB);
    const Extent eb = boundExtent(bw, bh, BR, BG, BB);
    if (ea.empty() || eb.empty()) return;
    const mix::Outs a = mix::outs(AR, AG, AB);
    const mix::Ins b = mix::ins(BR, BG, BB);
    if (ea.cols == eb.cols && ea.rows == eb.rows) {
        for (int c = 0; c < 3; ++c)
            for (int y = 0; y < ea.rows; ++y)
                mix::moveCells(a.c[c][y], b.c[c][y], ea.cols);
        return;
    }
    // Taps and scratch are kept per thread and reused, so resizing frames allocates nothing after the first.
    thread_local Taps txStore, tyStore;
    makeTaps(ea.cols, eb.cols, txStore);
    makeTaps(ea.rows, eb.rows, tyStore);
    const Taps& tx = txStore; // named through references: slices on other threads read the caller's
    const Taps& ty = tyStore;
    thread_local std::vector<std::uint8_t> store;
    for (int c = 0; c < 3; ++c) {
        const Out pa = a.c[c];
        In pb = b.c[c];
        if (pb.aliases(pa)) pb = mix::snapshot(pb, eb, store); // resizing a plane into itself
        // Target rows are independent: each gathers its own source rows.
        forRowSlices(ea.rows, static_cast<long long>(eb.cols) * ty.taps, [&](int y0, int y1) {
            thread_local std::vector<float> acc;
            acc.resize(static_cast<std::size_t>(eb.cols));
            for (int y = y0; y < y1; ++y) {
                // Down the columns: gather the weighted source rows of this target row, then across.
                const int first = ty.first[static_cast<std::size_t>(y)];
                const float* wy = ty.of(y);
                float* s = acc.data();
                const std::uint8_t* top = pb[first];
                for (int x = 0; x < eb.cols; ++x)
                    s[x] = wy[0] * static_cast<float>(top[x]);
                for (int k = 1; k < ty.taps; ++k) {
                    const float wk = wy[k];
                    if (wk == 0.0f) continue;
                    const std::uint8_t* src = pb[first + k];
                    for (int x = 0; x < eb.cols; ++x)
                        s[x] += wk * static_cast<float>(src[x]);
                }
                across(s, pa[y], ea.cols, tx);
            }
        });
    }
}

} // namespace krl
