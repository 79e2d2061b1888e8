#include "pixel/ByteTable.h"

#include "pixel/Kernels.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define KRL_TABLE_KERNELS 1
#endif

namespace krl {

namespace {

using u8 = std::uint8_t;

#ifdef KRL_TABLE_KERNELS
// Sixteen bytes looked up: the low half of the table for bytes below 128, the high half for the others.
__attribute__((target("ssse3"))) __m128i lookSixteen(__m128i v,
                                                     const std::array<std::array<u8, 16>, 16>& steps) {
    const __m128i sixteen = _mm_set1_epi8(16);
    __m128i low = _mm_setzero_si128(), high = _mm_setzero_si128();
    __m128i i = v, j = _mm_xor_si128(v, _mm_set1_epi8(static_cast<char>(0x80)));
    for (int h = 0; h < 8; ++h) {
        low = _mm_xor_si128(
            low, _mm_shuffle_epi8(_mm_load_si128(reinterpret_cast<const __m128i*>(steps[h].data())), i));
        high = _mm_xor_si128(
            high, _mm_shuffle_epi8(_mm_load_si128(reinterpret_cast<const __m128i*>(steps[h + 8].data())), j));
        i = _mm_sub_epi8(i, sixteen);
        j = _mm_sub_epi8(j, sixteen);
    }
    // The top bit of each byte picks the half (SSSE3 has no byte blend, so mask and merge).
    const __m128i top = _mm_cmplt_epi8(v, _mm_setzero_si128());
    return _mm_or_si128(_mm_andnot_si128(top, low), _mm_and_si128(top, high));
}

__attribute__((target("ssse3"))) int applySsse3(const u8* in, u8* out, int n,
                                                const std::array<std::array<u8, 16>, 16>& steps) {
    int x = 0;
    for (; x + 16 <= n; x += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + x));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), lookSixteen(v, steps));
    }
    return x;
}

__attribute__((target("avx2"))) int applyAvx2(const u8* in, u8* out, int n,
                                              const std::array<std::array<u8, 16>, 16>& steps) {
    __m256i step[16];
    for (int h = 0; h < 16; ++h)
        step[h] =
            _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(steps[h].data())));
    const __m256i sixteen = _mm256_set1_epi8(16), topBit = _mm256_set1_epi8(static_cast<char>(0x80));
    int x = 0;
    for (; x + 32 <= n; x += 32) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + x));
        __m256i low = _mm256_setzero_si256(), high = _mm256_setzero_si256();
        __m256i i = v, j = _mm256_xor_si256(v, topBit);
        for (int h = 0; h < 8; ++h) {
            low = _mm256_xor_si256(low, _mm256_shuffle_epi8(step[h], i));
            high = _mm256_xor_si256(high, _mm256_shuffle_epi8(step[h + 8], j));
            i = _mm256_sub_epi8(i, sixteen);
            j = _mm256_sub_epi8(j, sixteen);
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + x), _mm256_blendv_epi8(low, high, v));
    }
    return x;
}
#endif

} // namespace

ByteTable::ByteTable(const std::array<u8, 256>& table) : table_(table), steps_{} {
    for (std::size_t h = 0; h < 16; ++h)
        for (std::size_t j = 0; j < 16; ++j) {
            const u8 before = h % 8 == 0 ? u8{0} : table[16 * (h - 1) + j];
            steps_[h][j] = static_cast<u8>(table[16 * h + j] ^ before);
        }
}

void ByteTable::apply(const u8* in, u8* out, int n) const {
    int done = 0;
#ifdef KRL_TABLE_KERNELS
    const KernelSet set = kernelSet();
    if (set >= KernelSet::Avx2)
        done = applyAvx2(in, out, n, steps_);
    else if (set >= KernelSet::Ssse3)
        done = applySsse3(in, out, n, steps_);
#endif
    for (int x = done; x < n; ++x)
        out[x] = table_[in[x]];
}

} // namespace krl
