#pragma once
// Small arithmetic shared by the filter implementations. Internal to the pixel library.

#include <array>
#include <cstdint>
#include <cstring>

namespace krl::filt {

// A plane's rows by address, for kernels that walk several planes' rows side by side.
struct PlaneRef {
    const std::uint8_t* base;
    int stride;
    const std::uint8_t* row(int y) const { return base + static_cast<std::size_t>(y) * stride; }
};

struct PlaneOut {
    std::uint8_t* base;
    int stride;
    std::uint8_t* row(int y) const { return base + static_cast<std::size_t>(y) * stride; }
};

// Perceptual grey with integer weights that sum to 256, so a grey pixel (v, v, v) stays v. The sum
// stays below 65536, so row loops run it in 16-bit lanes.
inline std::uint8_t luma(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    const auto sum = static_cast<std::uint16_t>(77u * r + 150u * g + 29u * b + 128u);
    return static_cast<std::uint8_t>(sum >> 8);
}

// The grey of each pixel of a row (built for AVX2 as well, like the cell loops).
void lumaRow(const std::uint8_t* r, const std::uint8_t* g, const std::uint8_t* b,
             std::uint8_t* __restrict out, int n);

// v / 2 rounded half to even, the rounding the dialogs use in their own pixel loops.
inline unsigned halfEven(unsigned v) {
    const unsigned q = v >> 1;
    return q + (v & q & 1u);
}

// A fixed, stateless hash of a position. Used for grain that must stay put from frame to frame, like
// the tooth of paper, and must not consume the noise source. The position is mixed in by
// multiplies that row loops can keep as running sums (x * kHashX grows by kHashX a column), then
// stirred.
constexpr std::uint32_t kHashX = 0x9E3779B1u, kHashY = 0x85EBCA77u, kHashSalt = 0xC2B2AE3Du;
constexpr std::uint32_t kHashYBase = 0x7F4A7C15u;

inline std::uint32_t positionMix(std::uint32_t x, std::uint32_t y, std::uint32_t salt) {
    return x * kHashX ^ (y + kHashYBase) * kHashY ^ salt * kHashSalt;
}

// The stirring of a mixed position, up to its last shift, which leaves the top byte as it is.
inline std::uint32_t hashStir(std::uint32_t h) {
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 12;
    h *= 0x297A2D39u;
    return h;
}

inline std::uint32_t positionHash(std::uint32_t x, std::uint32_t y, std::uint32_t salt) {
    const std::uint32_t h = hashStir(positionMix(x, y, salt));
    return h ^ (h >> 15);
}

// Grain value 0..255 of a position.
inline std::uint8_t positionGrain(std::uint32_t x, std::uint32_t y, std::uint32_t salt) {
    return static_cast<std::uint8_t>(positionHash(x, y, salt) >> 24);
}

// The same from a mixed position: the top byte, which the last shift leaves as it is.
inline std::uint8_t mixedGrain(std::uint32_t mixed) {
    return static_cast<std::uint8_t>(hashStir(mixed) >> 24);
}

// One row of fixed grain for row y: a long stretch of positionGrain values, started at a place that
// depends on y. Reads contiguously from a table instead of hashing every pixel.
inline void grainRow(std::uint32_t y, std::uint32_t salt, std::uint8_t* out, int n) {
    constexpr int kLength = 8192;
    using Table = std::array<std::uint8_t, kLength>;
    static const std::array<Table, 4> tables = [] {
        std::array<Table, 4> t{};
        for (std::uint32_t s = 0; s < 4; ++s)
            for (std::uint32_t i = 0; i < kLength; ++i)
                t[s][i] = positionGrain(i, 0, s + 17);
        return t;
    }();
    const std::uint8_t* src = tables[salt & 3].data();
    int pos = static_cast<int>(positionHash(y, 1, salt) % kLength);
    while (n > 0) {
        const int run = n < kLength - pos ? n : kLength - pos;
        std::memcpy(out, src + pos, static_cast<std::size_t>(run));
        out += run;
        n -= run;
        pos = 0;
    }
}

inline int clampInt(int v, int lo, int hi) {
    return v < lo ? lo : (v > hi ? hi : v);
}

} // namespace krl::filt
