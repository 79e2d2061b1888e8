// Custom-effect compositing. The work picture is a recipe drawn in two key colours:
//   - a work pixel exactly equal to the primary key colour shows the main picture, the animation's
//     own frame (what the user knows as the "Source Animation Layer");
//   - one exactly equal to the secondary key colour shows the swap picture (the "Destination
//     Animation Layer");
//   - every other pixel shows as it is, so anything drawn in other colours lies over both layers.
// If both keys are the same colour the primary wins. A key component outside 0..255 matches
// nothing. The result is left in the work planes; main and swap are only read. Sizes are upper
// bounds; a count is clamped to the planes.

#include "pixel/Extent.h"
#include "pixel/Filters.h"
#include "pixel/Slices.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace krl {

namespace {

using u8 = std::uint8_t;

struct Key {
    u8 r, g, b;
    u8 valid; // 1 when every component is a byte value
};

Key keyOf(int r, int g, int b) {
    auto ok = [](int v) { return v >= 0 && v <= 255; };
    if (!ok(r) || !ok(g) || !ok(b)) return {0, 0, 0, 0};
    return {static_cast<u8>(r), static_cast<u8>(g), static_cast<u8>(b), 1};
}

// One row into scratch (out holds three rows of n), so that every read of the row precedes its writes.
void composeRow(const u8* wr, const u8* wg, const u8* wb, const u8* mr, const u8* mg, const u8* mb,
                const u8* sr, const u8* sg, const u8* sb, Key p, Key s, u8* __restrict out, int n) {
    u8* __restrict outR = out;
    u8* __restrict outG = out + n;
    u8* __restrict outB = out + 2 * static_cast<std::ptrdiff_t>(n);
    for (int x = 0; x < n; ++x) {
        // Byte masks (0 or 0xFF) keep this a straight run of vector compares and selects.
        const u8 isP = static_cast<u8>(-((wr[x] == p.r) & (wg[x] == p.g) & (wb[x] == p.b) & p.valid));
        const u8 isS = static_cast<u8>(-((wr[x] == s.r) & (wg[x] == s.g) & (wb[x] == s.b) & s.valid) & ~isP);
        const u8 keep = static_cast<u8>(~(isP | isS));
        outR[x] = static_cast<u8>((mr[x] & isP) | (sr[x] & isS) | (wr[x] & keep));
        outG[x] = static_cast<u8>((mg[x] & isP) | (sg[x] & isS) | (wg[x] & keep));
        outB[x] = static_cast<u8>((mb[x] & isP) | (sb[x] & isS) | (wb[x] & keep));
    }
}

} // namespace

void CFXFilter1(Plane& MR, Plane& MG, Plane& MB, const Plane& SR, const Plane& SG, const Plane& SB, Plane& WR,
                Plane& WG, Plane& WB, int pr, int pg, int pb, int sr, int sg, int sb, int w, int h) {
    const Extent e = boundExtent(w, h, MR, MG, MB, SR, SG, SB, WR, WG, WB);
    if (e.empty()) return;
    Plane* work[3] = {&WR, &WG, &WB};
    u8* wBase[3];
    for (int c = 0; c < 3; ++c)
        wBase[c] = work[c]->data();
    const Plane* mainP[3] = {&MR, &MG, &MB};
    const Plane* swapP[3] = {&SR, &SG, &SB};
    const u8* mBase[3];
    const u8* sBase[3];
    for (int c = 0; c < 3; ++c) {
        mBase[c] = mainP[c]->data();
        sBase[c] = swapP[c]->data();
    }
    const Key primary = keyOf(pr, pg, pb);
    const Key secondary = keyOf(sr, sg, sb);
    const std::size_t n = static_cast<std::size_t>(e.cols);
    auto at = [](auto* base, const Plane* p, int y) {
        return base + static_cast<std::size_t>(y) * p->cols();
    };
    forRowSlices(e.rows, 3LL * e.cols, [&](int y0, int y1) {
        thread_local std::vector<u8> out;
        out.resize(3 * n);
        for (int y = y0; y < y1; ++y) {
            composeRow(at(wBase[0], work[0], y), at(wBase[1], work[1], y), at(wBase[2], work[2], y),
                       at(mBase[0], mainP[0], y), at(mBase[1], mainP[1], y), at(mBase[2], mainP[2], y),
                       at(sBase[0], swapP[0], y), at(sBase[1], swapP[1], y), at(sBase[2], swapP[2], y),
                       primary, secondary, out.data(), e.cols);
            for (int c = 0; c < 3; ++c)
                std::memcpy(at(wBase[c], work[c], y), out.data() + c * n, n);
        }
    });
}

} // namespace krl
