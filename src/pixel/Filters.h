#pragma once
// Operations that change one picture in place (and the two-picture filters that go with them).
// Sizes: either sense is accepted (see Mixing.h); nothing is touched past the planes given.

#include "pixel/Plane.h"

#include <cstdint>

namespace krl {

// Blur of A; B is the picture before the pass and may be the very same planes as A.
void BoxBlur(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h);
void TriBlur(Plane& AR, Plane& AG, Plane& AB, int w, int h);
void Negative(Plane& AR, Plane& AG, Plane& AB, int w, int h);
void GreyScale(Plane& AR, Plane& AG, Plane& AB, int w, int h);
// level 0..100 (percent), channel 1 R, 2 G, 3 B, tolerance -255..255.
void GreyOut(Plane& AR, Plane& AG, Plane& AB, int level, int channel, int tolerance, int w, int h);
// Black and white of B's grey cut at level, into A.
void GreyThreshold(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int level,
                   int w, int h);
// Cuts one plane to 0/255 at level (0..256).
void Threshold(Plane& M, int level, int w, int h);
void Posterize(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h);
void NightVision(Plane& AR, Plane& AG, Plane& AB, int w, int h);
// A blurred, B the unblurred picture (unchanged); the cartoon comes out in A.
void ToonFilter(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h);
void ToonFilter2(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h);
// A the blurred negative, B the unblurred picture; strength 128..255; the drawing comes out in A.
void SketchHard(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
                int strength);
void ChalkFilter(Plane& AR, Plane& AG, Plane& AB, int w, int h, int level);
void IncreaseBrightness(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h);
void IncreaseDarkness(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h);
// pct 0 keeps A, 100 gives pure noise; each call draws new noise.
void WhiteNoise(Plane& AR, Plane& AG, Plane& AB, int pct, int w, int h);
void WhiteNoiseAlpha(Plane& AR, Plane& AG, Plane& AB, const Plane& M, int pct, int w, int h);
// Custom-effect compositing: pixels of the work picture W in the primary key colour show one of the
// two pictures, those in the secondary key colour the other, all others show as they are.
void CFXFilter1(Plane& MR, Plane& MG, Plane& MB, const Plane& SR, const Plane& SG, const Plane& SB, Plane& WR,
                Plane& WG, Plane& WB, int pr, int pg, int pb, int sr, int sg, int sb, int w, int h);

// Seeds the noise source (tests and reproducible batch runs).
void SeedNoise(std::uint64_t seed);

} // namespace krl
