// Resampling a picture to another size.
//
// Separable filter, chosen per axis: shrinking averages the source cells under each target cell
// (area weights, so a fine pattern turns into its mean grey instead of aliasing), enlarging
// interpolates linearly between the two nearest cell centres. An axis of equal size is an exact
// copy. Each target row gathers its source rows into one float row, which is then resampled across.

#include "pixel/CellLoop.h"
#include "pixel/Kernels.h"
#include "pixel/MixRows.h"
#include "pixel/Mixing.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <cmath>
#include <vector>

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__SANITIZE_THREAD__)
#include <immintrin.h>
#define KRL_RESIZE_KERNELS 1
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
    // For blocks of eight cells whose taps all lie within 16 source cells: whether they lie within 8
    // (narrow: all such blocks, none, or some), and where those 8 or 16 start (blockStart, moved back
    // to end at the row's end). blocksNear counts such blocks from the start
    // of the row; the rest go by gathers. Each block sums tapCount taps, those that weigh anything in
    // any of its cells (the others add nothing but zero to a sum that is never negative, which leaves
    // it as it is); their places among the 16 and their weights lie block after block, tap after tap,
    // eight lanes each, so the loop only steps along.
    int blocksNear = 0;
    std::vector<int> blockStart;
    std::vector<unsigned char> narrow;
    enum class Narrow { All, None, Some } narrowness = Narrow::Some;
    int tapCount = 0;
    std::vector<int> place; // in the form the permutes read
    std::vector<float> placeWeight;

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
    t.narrow.clear();
    t.place.clear();
    t.placeWeight.clear();
    if (src < 16) return;
    // The blocks, and the taps that weigh anything: [from, to) of each.
    std::vector<std::pair<int, int>> weighing;
    t.tapCount = 1;
    for (int b = 0; b < dst / 8; ++b) {
        const int lo = t.first[static_cast<std::size_t>(b) * 8];
        const int hi = t.first[static_cast<std::size_t>(b) * 8 + 7] + t.taps - 1;
        if (hi - lo >= 16) break;
        const bool narrow = hi - lo < 8;
        t.blockStart.push_back(std::min(lo, src - (narrow ? 8 : 16)));
        t.narrow.push_back(narrow ? 1 : 0);
        int from = t.taps, to = 0;
        for (int k = 0; k < t.taps; ++k)
            for (std::size_t lane = 0; lane < 8; ++lane)
                if (t.byTap[static_cast<std::size_t>(k) * cells + static_cast<std::size_t>(b) * 8 + lane] !=
                    0.0f) {
                    from = std::min(from, k);
                    to = k + 1;
                }
        weighing.emplace_back(std::min(from, to), to);
        t.tapCount = std::max(t.tapCount, to - std::min(from, to));
        ++t.blocksNear;
    }
    for (int b = 0; b < t.blocksNear; ++b) {
        const int from = std::min(weighing[static_cast<std::size_t>(b)].first, t.taps - t.tapCount);
        for (int k = from; k < from + t.tapCount; ++k)
            for (std::size_t lane = 0; lane < 8; ++lane) {
                const std::size_t i = static_cast<std::size_t>(b) * 8 + lane;
                const int at = t.first[i] + k - t.blockStart[static_cast<std::size_t>(b)];
                // The cell among the 8 in the low three bits (all a permute reads), and the 8 it lies in
                // as the sign (all a blend reads).
                t.place.push_back(
                    static_cast<int>(static_cast<unsigned>(at & 7) | static_cast<unsigned>(at & 8) << 28));
                t.placeWeight.push_back(t.byTap[static_cast<std::size_t>(k) * cells + i]);
            }
    }
    const auto narrowBlocks = std::count(t.narrow.begin(), t.narrow.end(), 1);
    t.narrowness = narrowBlocks == t.blocksNear ? Taps::Narrow::All
                   : narrowBlocks == 0          ? Taps::Narrow::None
                                                : Taps::Narrow::Some;
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

#ifdef KRL_RESIZE_KERNELS
// Sums made bytes as toByte makes them: plus a half, held to 0..255, truncated. The sums are of bytes
// by weights that add up to one, so they stay far inside the integers, and truncating first and then
// saturating while packing gives the same bytes as holding first.
__attribute__((target("avx2"))) __m256i wholeOf(__m256 v) {
    return _mm256_cvttps_epi32(_mm256_add_ps(v, _mm256_set1_ps(0.5f)));
}

__attribute__((target("avx2"))) void storeEight(__m256 v, std::uint8_t* dst) {
    const __m256i whole = wholeOf(v);
    const __m128i words = _mm_packus_epi32(_mm256_castsi256_si128(whole), _mm256_extracti128_si256(whole, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), _mm_packus_epi16(words, words));
}

// Thirty-two sums made bytes, packed four blocks at once: the packing's shuffles, not
// the arithmetic, are what the processor has fewest of.
__attribute__((target("avx2"))) void storeThirtyTwo(__m256 a, __m256 b, __m256 c, __m256 d,
                                                    std::uint8_t* dst) {
    // Packing works within each 128-bit half: the bytes come out as a0-3 b0-3 c0-3 d0-3 a4-7 b4-7 ...
    const __m256i words = _mm256_packs_epi32(wholeOf(a), wholeOf(b));
    const __m256i words2 = _mm256_packs_epi32(wholeOf(c), wholeOf(d));
    const __m256i bytes = _mm256_packus_epi16(words, words2);
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), _mm256_permutevar8x32_epi32(bytes, order));
}

// Tap k's source cells of a block, by their places among the 16 source cells low and high: one permute
// where they all lie among the first 8, else two and a blend chosen by the place's sign.
__attribute__((target("avx2"))) inline __m256 tapCells(__m256 low, __m256 high, bool narrow, const int* place,
                                                       int k) {
    const __m256i at =
        _mm256_loadu_si256(reinterpret_cast<const __m256i*>(place + static_cast<std::size_t>(k) * 8));
    if (narrow) return _mm256_permutevar8x32_ps(low, at);
    return _mm256_blendv_ps(_mm256_permutevar8x32_ps(low, at), _mm256_permutevar8x32_ps(high, at),
                            _mm256_castsi256_ps(at));
}

// The sum of one block of eight cells whose taps lie within 16 source cells s (within 8 where narrow,
// enlarging mostly), its places and weights eight lanes a tap. T is the count of taps where the
// compiler knows it, 0 where it does not. The sum starts from the first product itself rather than
// adding it to zero: the products are never negative, so that is the same float.
template <int T>
__attribute__((target("avx2"))) inline __m256 blockSum(const float* s, bool narrow, const int* place,
                                                       const float* weight, int count) {
    const int taps = T > 0 ? T : count;
    const __m256 low = _mm256_loadu_ps(s);
    const __m256 high = narrow ? low : _mm256_loadu_ps(s + 8);
    __m256 v = _mm256_mul_ps(_mm256_loadu_ps(weight), tapCells(low, high, narrow, place, 0));
    for (int k = 1; k < taps; ++k) {
        const __m256 w = _mm256_loadu_ps(weight + static_cast<std::size_t>(k) * 8);
        v = _mm256_add_ps(v, _mm256_mul_ps(w, tapCells(low, high, narrow, place, k)));
    }
    return v;
}

// The blocks whose taps lie within 16 source cells, from the start of the row, four at a time; N says
// whether all of them are narrow, none, or some (then each block says). Everything the loop reads is
// taken into locals first: its byte stores could otherwise alias the tables. Returns the cells done.
template <int T, Taps::Narrow N>
__attribute__((target("avx2"))) int nearBlocks(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
    const int blocks = std::min(t.blocksNear, n / 8);
    const int count = t.tapCount;
    const std::size_t step = static_cast<std::size_t>(count) * 8;
    const int* start = t.blockStart.data();
    const unsigned char* narrow = t.narrow.data();
    const int* place = t.place.data();
    const float* weight = t.placeWeight.data();
    auto isNarrow = [narrow](int b) {
        return N == Taps::Narrow::All || (N == Taps::Narrow::Some && narrow[b]);
    };
    int b = 0;
    for (; b + 4 <= blocks; b += 4, place += 4 * step, weight += 4 * step) {
        const __m256 v0 = blockSum<T>(acc + start[b], isNarrow(b), place, weight, count);
        const __m256 v1 =
            blockSum<T>(acc + start[b + 1], isNarrow(b + 1), place + step, weight + step, count);
        const __m256 v2 =
            blockSum<T>(acc + start[b + 2], isNarrow(b + 2), place + 2 * step, weight + 2 * step, count);
        const __m256 v3 =
            blockSum<T>(acc + start[b + 3], isNarrow(b + 3), place + 3 * step, weight + 3 * step, count);
        storeThirtyTwo(v0, v1, v2, v3, dst + static_cast<std::size_t>(b) * 8);
    }
    for (; b < blocks; ++b, place += step, weight += step)
        storeEight(blockSum<T>(acc + start[b], isNarrow(b), place, weight, count),
                   dst + static_cast<std::size_t>(b) * 8);
    return blocks * 8;
}

// The near blocks with the tap count and the narrowness made known to the compiler where they are
// the usual ones.
__attribute__((target("avx2"))) int nearBlocks(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
    using N = Taps::Narrow;
    if (t.tapCount == 2 && t.narrowness == N::All) return nearBlocks<2, N::All>(acc, dst, n, t);
    if (t.tapCount == 3 && t.narrowness == N::None) return nearBlocks<3, N::None>(acc, dst, n, t);
    if (t.tapCount == 2 && t.narrowness == N::None) return nearBlocks<2, N::None>(acc, dst, n, t);
    return nearBlocks<0, N::Some>(acc, dst, n, t);
}

// Eight cells at a time, their taps taken from 16 loaded cells where they lie that close together
// and gathered otherwise. The sum is built in the scalar path's order, tap after tap from zero, with
// separate multiplies and adds, and the byte is made the same way, so the result is the same to the
// bit.
__attribute__((target("avx2"))) int acrossEight(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
    const std::size_t cells = t.first.size();
    int x = nearBlocks(acc, dst, n, t);
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

#endif

void across(const float* acc, std::uint8_t* dst, int n, const Taps& t) {
#ifdef KRL_RESIZE_KERNELS
    if (t.taps > 1 && kernelSet() >= KernelSet::Avx2) {
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

// Down the columns: the weighted source rows summed in order, the first two in one pass.
KRL_CELL_LOOP void firstRow(const std::uint8_t* __restrict a, float wa, float* __restrict s, int n) {
    for (int x = 0; x < n; ++x)
        s[x] = wa * static_cast<float>(a[x]);
}

KRL_CELL_LOOP void firstRows(const std::uint8_t* __restrict a, float wa, const std::uint8_t* __restrict b,
                             float wb, float* __restrict s, int n) {
    for (int x = 0; x < n; ++x)
        s[x] = wa * static_cast<float>(a[x]) + wb * static_cast<float>(b[x]);
}

KRL_CELL_LOOP void addRow(const std::uint8_t* __restrict a, float wa, float* __restrict s, int n) {
    for (int x = 0; x < n; ++x)
        s[x] += wa * static_cast<float>(a[x]);
}

#ifdef KRL_RESIZE_KERNELS
// Eight bytes as eight floats, widened by one instruction (the compiler's own widening of a row takes
// three shuffles for eight bytes, and the shuffles were what this pass waited on).
__attribute__((target("avx2"))) inline __m256 floatsOf(const std::uint8_t* p) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}

// firstRow, firstRows and addRow eight cells at a time, the same multiplies and adds in the same order.
// Each returns the cells done.
__attribute__((target("avx2"))) int firstRowAvx2(const std::uint8_t* a, float wa, float* s, int n) {
    const __m256 va = _mm256_set1_ps(wa);
    int x = 0;
    for (; x + 8 <= n; x += 8)
        _mm256_storeu_ps(s + x, _mm256_mul_ps(va, floatsOf(a + x)));
    return x;
}

__attribute__((target("avx2"))) int firstRowsAvx2(const std::uint8_t* a, float wa, const std::uint8_t* b,
                                                  float wb, float* s, int n) {
    const __m256 va = _mm256_set1_ps(wa), vb = _mm256_set1_ps(wb);
    int x = 0;
    for (; x + 8 <= n; x += 8)
        _mm256_storeu_ps(
            s + x, _mm256_add_ps(_mm256_mul_ps(va, floatsOf(a + x)), _mm256_mul_ps(vb, floatsOf(b + x))));
    return x;
}

__attribute__((target("avx2"))) int addRowAvx2(const std::uint8_t* a, float wa, float* s, int n) {
    const __m256 va = _mm256_set1_ps(wa);
    int x = 0;
    for (; x + 8 <= n; x += 8)
        _mm256_storeu_ps(s + x, _mm256_add_ps(_mm256_loadu_ps(s + x), _mm256_mul_ps(va, floatsOf(a + x))));
    return x;
}
#endif

// One target row's sum down the columns: the first tap always (the sum starts from it), the others
// where they weigh anything.
void down(const In& pb, const Taps& ty, int y, float* s, int n) {
    const int first = ty.first[static_cast<std::size_t>(y)];
    const float* wy = ty.of(y);
    [[maybe_unused]] const bool avx2 = kernelSet() >= KernelSet::Avx2;
    int k = 1;
    while (k < ty.taps && wy[k] == 0.0f)
        ++k;
    int done = 0;
    if (k == ty.taps) {
#ifdef KRL_RESIZE_KERNELS
        if (avx2) done = firstRowAvx2(pb[first], wy[0], s, n);
#endif
        return firstRow(pb[first] + done, wy[0], s + done, n - done);
    }
#ifdef KRL_RESIZE_KERNELS
    if (avx2) done = firstRowsAvx2(pb[first], wy[0], pb[first + k], wy[k], s, n);
#endif
    firstRows(pb[first] + done, wy[0], pb[first + k] + done, wy[k], s + done, n - done);
    for (++k; k < ty.taps; ++k) {
        if (wy[k] == 0.0f) continue;
        done = 0;
#ifdef KRL_RESIZE_KERNELS
        if (avx2) done = addRowAvx2(pb[first + k], wy[k], s, n);
#endif
        addRow(pb[first + k] + done, wy[k], s + done, n - done);
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
                down(pb, ty, y, acc.data(), eb.cols);
                across(acc.data(), pa[y], ea.cols, tx);
            }
        });
    }
}

} // namespace krl
