#pragma once
// Small arithmetic shared by the filter implementations. Internal to the pixel library.

#include <cstdint>

namespace krl::filt {

// Perceptual grey with integer weights that sum to 256, so a grey pixel (v, v, v) stays v.
inline std::uint8_t luma(unsigned r, unsigned g, unsigned b) {
    return static_cast<std::uint8_t>((77u * r + 150u * g + 29u * b + 128u) >> 8);
}

// v / 2 rounded half to even, the rounding the dialogs use in their own pixel loops.
inline unsigned halfEven(unsigned v) {
    const unsigned q = v >> 1;
    return q + (v & q & 1u);
}

// A fixed, stateless texture value per position (0..255). Used for grain that must stay put from
// frame to frame, like the tooth of paper, and must not consume the noise source.
inline std::uint8_t positionGrain(std::uint32_t x, std::uint32_t y, std::uint32_t salt) {
    std::uint32_t h = x * 0x9E3779B1u ^ (y + 0x7F4A7C15u) * 0x85EBCA77u ^ salt * 0xC2B2AE3Du;
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 12;
    h *= 0x297A2D39u;
    h ^= h >> 15;
    return static_cast<std::uint8_t>(h >> 24);
}

inline int clampInt(int v, int lo, int hi) {
    return v < lo ? lo : (v > hi ? hi : v);
}

} // namespace krl::filt
