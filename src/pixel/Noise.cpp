// Grey noise ("TV snow") and the library's one piece of state, its random source.
//
// The source is a counter hashed through a 64-bit finaliser (8 noise bytes per step), seeded from
// the clock on first use so that two runs differ, and by SeedNoise for reproducible results. Each
// call takes a fresh stretch of the sequence, so every call draws new noise.
//
// The noise is grey: one value per pixel, the same in all three planes. Mixing uses weights out of
// 256 so that pct 0 leaves the picture exactly and pct 100 gives the noise exactly.
//
// Sizes: WhiteNoise takes counts (W, H leave the last column and row); WhiteNoiseAlpha, which reads a
// second plane, takes upper bounds. If one plane object is passed several times in the triple it is
// mixed with the same noise once per appearance, so at pct 100 it ends up pure noise all the same.

#include "pixel/CellLoop.h"
#include "pixel/Extent.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <vector>

namespace krl {

namespace {

using u8 = std::uint8_t;

constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15ull;

std::uint64_t finalise(std::uint64_t z) {
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

std::atomic<std::uint64_t> gCounter{0};
std::atomic<bool> gSeeded{false};

std::uint64_t clockSeed() {
    const auto a = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto b = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    return finalise(a ^ finalise(b) ^ reinterpret_cast<std::uintptr_t>(&gCounter));
}

// Reserves `steps` draws of the sequence for one call and returns the counter to start from.
std::uint64_t reserve(std::uint64_t steps) {
    if (!gSeeded.exchange(true)) gCounter.store(clockSeed());
    return gCounter.fetch_add(steps * kGolden);
}

// Fills n bytes of noise, advancing the counter.
void fillNoise(std::uint64_t& counter, u8* out, int n) {
    int x = 0;
    for (; x + 8 <= n; x += 8) {
        const std::uint64_t z = finalise(counter += kGolden);
        std::memcpy(out + x, &z, 8);
    }
    if (x < n) {
        const std::uint64_t z = finalise(counter += kGolden);
        std::memcpy(out + x, &z, static_cast<std::size_t>(n - x));
    }
}

std::uint64_t drawsPerRow(Extent e) {
    return static_cast<std::uint64_t>((e.cols + 7) / 8);
}

std::uint64_t drawsFor(Extent e) {
    return static_cast<std::uint64_t>(e.rows) * drawsPerRow(e);
}

// The counter at the start of row y: every row draws the same number of times, so a slice of rows
// draws exactly the noise the whole loop would have given those rows.
std::uint64_t counterAtRow(std::uint64_t first, Extent e, int y) {
    return first + static_cast<std::uint64_t>(y) * drawsPerRow(e) * kGolden;
}

// Noise share out of 256 for a percentage: 0 -> 0, 100 -> 256.
unsigned shareOf(int pct) {
    return static_cast<unsigned>((filt::clampInt(pct, 0, 100) * 256 + 50) / 100);
}

// Shares sum to 256, so every step fits 16-bit lanes: 255 * 256 + 128 < 65536.
KRL_CELL_LOOP void mixRow(u8* __restrict p, const u8* __restrict noise, unsigned share, int n) {
    const auto take = static_cast<std::uint16_t>(share), keep = static_cast<std::uint16_t>(256u - share);
    for (int x = 0; x < n; ++x)
        p[x] = static_cast<u8>(static_cast<std::uint16_t>(p[x] * keep + noise[x] * take + 128u) >> 8);
}

// Each pixel's noise share: share scaled by the mask read as 0..256 (255 -> share). In 16-bit lanes:
// the product stays below 65536 unless the share is the whole 256, where it is the mask itself.
KRL_CELL_LOOP void alphaShares(const u8* __restrict m, std::uint16_t* __restrict part, unsigned share,
                               int n) {
    using u16 = std::uint16_t;
    if (share >= 256) {
        for (int x = 0; x < n; ++x)
            part[x] = static_cast<u16>(m[x] + (m[x] >> 7u));
        return;
    }
    const auto s = static_cast<u16>(share);
    for (int x = 0; x < n; ++x)
        part[x] = static_cast<u16>(static_cast<u16>(static_cast<u16>(m[x] + (m[x] >> 7u)) * s) >> 8);
}

KRL_CELL_LOOP void mixRowByShares(u8* __restrict p, const u8* __restrict noise,
                                  const std::uint16_t* __restrict part, int n) {
    for (int x = 0; x < n; ++x)
        p[x] = static_cast<u8>(static_cast<std::uint16_t>(p[x] * static_cast<std::uint16_t>(256u - part[x]) +
                                                          noise[x] * part[x] + 128u) >>
                               8);
}

} // namespace

void SeedNoise(std::uint64_t seed) {
    gCounter.store(finalise(seed));
    gSeeded.store(true);
}

void WhiteNoise(Plane& AR, Plane& AG, Plane& AB, int pct, int w, int h) {
    const Extent e = countExtent(w, h, AR, AG, AB);
    const unsigned share = shareOf(pct);
    if (e.empty() || share == 0) return;
    Plane* planes[3] = {&AR, &AG, &AB};
    u8* base[3];
    for (int c = 0; c < 3; ++c)
        base[c] = planes[c]->data();
    const std::uint64_t first = reserve(drawsFor(e));
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        thread_local std::vector<u8> noise;
        noise.resize(static_cast<std::size_t>(e.cols));
        std::uint64_t counter = counterAtRow(first, e, y0);
        for (int y = y0; y < y1; ++y) {
            fillNoise(counter, noise.data(), e.cols);
            for (int c = 0; c < 3; ++c)
                mixRow(base[c] + static_cast<std::size_t>(y) * planes[c]->cols(), noise.data(), share,
                       e.cols);
        }
    });
}

// The noise share of a pixel is pct scaled by M as AlphaMix reads it: M 0 keeps the pixel,
// M 255 takes the full pct.
void WhiteNoiseAlpha(Plane& AR, Plane& AG, Plane& AB, const Plane& M, int pct, int w, int h) {
    const Extent e = boundExtent(w, h, AR, AG, AB, M);
    const unsigned share = shareOf(pct);
    if (e.empty() || share == 0) return;
    Plane* planes[3] = {&AR, &AG, &AB};
    u8* base[3];
    for (int c = 0; c < 3; ++c)
        base[c] = planes[c]->data();
    const u8* alpha = M.data();
    const std::uint64_t first = reserve(drawsFor(e));
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        thread_local std::vector<u8> noise;
        noise.resize(static_cast<std::size_t>(e.cols));
        thread_local std::vector<std::uint16_t> part;
        part.resize(static_cast<std::size_t>(e.cols));
        std::uint64_t counter = counterAtRow(first, e, y0);
        for (int y = y0; y < y1; ++y) {
            fillNoise(counter, noise.data(), e.cols);
            // Weights first: M may be one of the planes written below.
            alphaShares(alpha + static_cast<std::size_t>(y) * M.cols(), part.data(), share, e.cols);
            for (int c = 0; c < 3; ++c)
                mixRowByShares(base[c] + static_cast<std::size_t>(y) * planes[c]->cols(), noise.data(),
                               part.data(), e.cols);
        }
    });
}

} // namespace krl
