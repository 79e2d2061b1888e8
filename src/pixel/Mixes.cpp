// Cross-fades, per-channel arithmetic of two pictures, mixes through a mask, and flat fills.
// All of them touch each pixel once and in place, so they are plain row loops the compiler vectorises.

#include "pixel/MixRows.h"
#include "pixel/Mixing.h"

#include <algorithm>

namespace krl {

namespace {
using mix::In;
using mix::Out;

// Share of the first picture in 256ths for a percentage: 100 maps to 256 and 0 to 0 exactly, so the
// ends of a fade give one picture untouched; between them the error is below half a step of 256.
unsigned weight256(int pct) {
    pct = std::clamp(pct, 0, 100);
    return (static_cast<unsigned>(pct) * 256u + 50u) / 100u;
}

// a * wa/256 + b * (256-wa)/256, rounded. Fits 16-bit lanes: 255 * 256 + 128 < 65536, and the
// arithmetic is written in them so that the loops run eight or sixteen cells at a time.
inline std::uint8_t blend(unsigned a, unsigned b, unsigned wa) {
    const auto x = static_cast<std::uint16_t>(a * wa + b * (256u - wa) + 128u);
    return static_cast<std::uint8_t>(x >> 8);
}

// x / 255 rounded to nearest, exact for 0 <= x <= 255 * 255.
inline unsigned div255(unsigned x) {
    x += 128u;
    return (x + (x >> 8)) >> 8;
}

std::uint8_t toByte(int v) {
    return static_cast<std::uint8_t>(std::clamp(v, 0, 255));
}

} // namespace

void MixBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int pct,
                int w, int h) {
    if (pct >= 100) return;
    const unsigned wa = weight256(pct);
    const auto wa16 = static_cast<std::uint16_t>(wa), wb16 = static_cast<std::uint16_t>(256u - wa);
    mix::eachPairCell(AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
                      [wa16, wb16](std::uint8_t a, std::uint8_t b) {
                          const auto x = static_cast<std::uint16_t>(a * wa16 + b * wb16 + 128);
                          return static_cast<std::uint8_t>(x >> 8);
                      });
}

void MixBufferColor(Plane& AR, Plane& AG, Plane& AB, int red, int green, int blue, int pct, int w, int h) {
    if (pct >= 100) return;
    const Extent e = boundExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const unsigned wa = weight256(pct);
    const unsigned colour[3] = {toByte(red), toByte(green), toByte(blue)};
    Plane* planes[3] = {&AR, &AG, &AB};
    for (int c = 0; c < 3; ++c) {
        const unsigned k = colour[c];
        mix::eachCell(*planes[c], e, [wa, k](std::uint8_t p) { return blend(p, k, wa); });
    }
}

void MixBufferNegative(Plane& AR, Plane& AG, Plane& AB, int pct, int w, int h) {
    if (pct <= 0) return;
    const Extent e = boundExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const unsigned wn = weight256(pct); // share of the negative
    Plane* planes[3] = {&AR, &AG, &AB};
    for (int c = 0; c < 3; ++c)
        mix::eachCell(*planes[c], e, [wn](std::uint8_t p) { return blend(255u - p, p, wn); });
}

void MixBufferChannels(Plane& AR, Plane& AG, Plane& AB, int pct, int channels, int w, int h) {
    // Which of red, green, blue stay; the others fade towards 0.
    static constexpr bool kStays[7][3] = {{},        {1, 0, 0}, {0, 1, 0}, {0, 0, 1},
                                          {1, 1, 0}, {1, 0, 1}, {0, 1, 1}};
    if (channels < 1 || channels > 6 || pct >= 100) return;
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const unsigned wa = weight256(pct);
    Plane* planes[3] = {&AR, &AG, &AB};
    for (int c = 0; c < 3; ++c) {
        if (kStays[channels][c]) continue; // a plane that stays is not even detached
        mix::eachCell(*planes[c], e, [wa](std::uint8_t p) { return blend(p, 0u, wa); });
    }
}

void FiftyMixBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                     int w, int h) {
    mix::eachPairCell(
        AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
        [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>((a + b + 1u) >> 1); });
}

void AddBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                int h) {
    mix::eachPairCell(AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
                      [](std::uint8_t a, std::uint8_t b) {
                          // a + min(b, 255 - a) is the clamped sum in byte lanes.
                          return static_cast<std::uint8_t>(a +
                                                           std::min(b, static_cast<std::uint8_t>(255 - a)));
                      });
}

void MultiplyBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                     int w, int h) {
    // Scaled so that white is neutral: a * 255 / 255 = a, and black gives black.
    mix::eachPairCell(AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
                      [](std::uint8_t a, std::uint8_t b) {
                          // div255 in 16-bit lanes: 255 * 255 + 128 + 254 < 65536.
                          auto x = static_cast<std::uint16_t>(a * b + 128);
                          x = static_cast<std::uint16_t>(x + (x >> 8));
                          return static_cast<std::uint8_t>(x >> 8);
                      });
}

void DarkenBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                   int h) {
    mix::eachPairCell(AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
                      [](std::uint8_t a, std::uint8_t b) { return std::min(a, b); });
}

void LightenBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                    int h) {
    mix::eachPairCell(AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
                      [](std::uint8_t a, std::uint8_t b) { return std::max(a, b); });
}

void DiffBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                 int h) {
    mix::eachPairCell(AR, AG, AB, BR, BG, BB, boundExtent(w, h, AR, AG, AB, BR, BG, BB),
                      [](std::uint8_t a, std::uint8_t b) {
                          return static_cast<std::uint8_t>(std::max(a, b) - std::min(a, b));
                      });
}

void AlphaMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
              const Plane& M, int w, int h) {
    // (a * (255 - m) + b * m) / 255: m = 0 is exactly a, m = 255 exactly b. Every step fits 16 bits,
    // which lets the loop run on 16-bit lanes.
    mix::eachMaskedCell(AR, AG, AB, BR, BG, BB, M, boundExtent(w, h, AR, AG, AB, BR, BG, BB, M),
                        [](std::uint8_t a, std::uint8_t b, std::uint8_t m) {
                            const std::uint16_t k = m;
                            auto x = static_cast<std::uint16_t>(a * (255 - k) + b * k + 128);
                            x = static_cast<std::uint16_t>(x + (x >> 8));
                            return static_cast<std::uint8_t>(x >> 8);
                        });
}

void AlphaMixThresh(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                    const Plane& M, int level, int w, int h) {
    if (level <= 0) return;
    const Extent e = boundExtent(w, h, AR, AG, AB, BR, BG, BB, M);
    if (level > 255) { // every mask value lies below: all of B
        mix::eachPairCell(AR, AG, AB, BR, BG, BB, e, [](std::uint8_t, std::uint8_t b) { return b; });
        return;
    }
    const auto lv = static_cast<std::uint8_t>(level);
    // A select through a byte mask rather than a branch: masks are often noise.
    mix::eachMaskedCell(AR, AG, AB, BR, BG, BB, M, e, [lv](std::uint8_t a, std::uint8_t b, std::uint8_t m) {
        const auto take = static_cast<std::uint8_t>(-static_cast<int>(m < lv));
        return static_cast<std::uint8_t>((b & take) | (a & ~take));
    });
}

void FillBufferColor(Plane& AR, Plane& AG, Plane& AB, int red, int green, int blue, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    if (e.empty()) return;
    const mix::Outs a = mix::outs(AR, AG, AB);
    const std::uint8_t colour[3] = {toByte(red), toByte(green), toByte(blue)};
    for (int c = 0; c < 3; ++c) {
        const std::uint8_t k = colour[c];
        mix::eachRow(a.c[c], e,
                     [k](std::uint8_t* p, int n) { std::memset(p, k, static_cast<std::size_t>(n)); });
    }
}

} // namespace krl
