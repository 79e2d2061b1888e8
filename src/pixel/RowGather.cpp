#include "pixel/RowGather.h"

#include "pixel/Kernels.h"

#include <algorithm>
#include <cstddef>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define KRL_SHUFFLE_GATHER 1
#endif

namespace krl::mix {

namespace {
constexpr int kBlock = 16;
constexpr std::uint8_t kNone = 0x80; // a shuffle index that yields 0

#ifdef KRL_SHUFFLE_GATHER
bool shufflesAvailable() {
    return kernelSet() >= KernelSet::Ssse3;
}
#endif
} // namespace

void RowGather::plan(const int* map, int k, int srcLen) {
    k_ = k > 0 ? k : 0;
    map_.assign(map, map + k_);
    blocks_ = 0;
    perBlock_ = 0;
    windowStart_.clear();
    windowPick_.clear();
#ifdef KRL_SHUFFLE_GATHER
    if (srcLen < kBlock || !shufflesAvailable()) return;
    blocks_ = k_ / kBlock;
    // Every block gets the same number of windows, so the shuffle loop runs a fixed count that the
    // processor predicts; a block that needs fewer repeats its last window with nothing picked.
    for (int b = 0; b < blocks_; ++b) {
        const int* m = map_.data() + static_cast<std::ptrdiff_t>(b) * kBlock;
        perBlock_ = std::max(perBlock_, (m[kBlock - 1] - m[0]) / kBlock + 1);
    }
    for (int b = 0; b < blocks_; ++b) {
        const int* m = map_.data() + static_cast<std::ptrdiff_t>(b) * kBlock;
        // Windows follow one another from the block's first source cell; the last one that would run
        // past the row is moved back to end at it, and its picks are counted from where it now starts.
        int from = m[0];
        for (int t = 0; t < perBlock_; ++t, from += kBlock) {
            const int start = std::min(from, srcLen - kBlock);
            windowStart_.push_back(start);
            for (int i = 0; i < kBlock; ++i)
                windowPick_.push_back(
                    m[i] >= from && m[i] < from + kBlock ? static_cast<std::uint8_t>(m[i] - start) : kNone);
        }
    }
#else
    (void)srcLen;
#endif
}

#ifdef KRL_SHUFFLE_GATHER
namespace {
template <int Fixed>
__attribute__((target("ssse3"))) void shuffleBlocks(std::uint8_t* dst, const std::uint8_t* src, int blocks,
                                                    int perBlock, const int* start,
                                                    const std::uint8_t* pick) {
    const int n = Fixed > 0 ? Fixed : perBlock;
    for (int b = 0; b < blocks; ++b, start += n, pick += static_cast<std::ptrdiff_t>(n) * kBlock) {
        __m128i acc = _mm_setzero_si128();
        for (int i = 0; i < n; ++i) {
            const __m128i picks = _mm_loadu_si128(
                reinterpret_cast<const __m128i*>(pick + static_cast<std::ptrdiff_t>(i) * kBlock));
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + start[i]));
            acc = _mm_or_si128(acc, _mm_shuffle_epi8(bytes, picks));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + static_cast<std::ptrdiff_t>(b) * kBlock), acc);
    }
}
} // namespace
#endif

void RowGather::apply(std::uint8_t* dst, const std::uint8_t* src) const {
    int done = 0;
#ifdef KRL_SHUFFLE_GATHER
    if (blocks_ > 0) {
        const int* s = windowStart_.data();
        const std::uint8_t* p = windowPick_.data();
        switch (perBlock_) {
        case 1:
            shuffleBlocks<1>(dst, src, blocks_, 1, s, p);
            break;
        case 2:
            shuffleBlocks<2>(dst, src, blocks_, 2, s, p);
            break;
        case 3:
            shuffleBlocks<3>(dst, src, blocks_, 3, s, p);
            break;
        default:
            shuffleBlocks<0>(dst, src, blocks_, perBlock_, s, p);
        }
        done = blocks_ * kBlock;
    }
#endif
    std::uint8_t* __restrict out = dst;
    const int* __restrict m = map_.data();
    for (int i = done; i < k_; ++i)
        out[i] = src[m[i]];
}

} // namespace krl::mix
