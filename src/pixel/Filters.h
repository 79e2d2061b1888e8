#pragma once
// Operations that change one picture in place (and the two-picture filters that go with them).
// Sizes: either sense is accepted (see Mixing.h); nothing is touched past the planes given.
// The blurs, the two-picture filters (GreyThreshold, ToonFilter, ToonFilter2, CFXFilter1) and
// WhiteNoiseAlpha read w, h as upper bounds: W, H and W+1, H+1 both cover the planes. All others read
// them as counts: W+1, H+1 cover the planes, W, H leave the last column and row as they were.
// A plane passed several times in one triple gets each channel's work in turn (red, green, blue).

#include "pixel/Plane.h"

#include <cstdint>

namespace krl {

// The declarations keep their original layout.
// clang-format off

// Blur of A; B is the picture before the pass and may be the very same planes as A.
// BoxBlur is a 5x5 box, TriBlur a lighter 3x3 tent; edges are repeated, flat pictures stay flat.
void BoxBlur(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h);
void TriBlur(Plane& AR, Plane& AG, Plane& AB, int w, int h);
void Negative(Plane& AR, Plane& AG, Plane& AB, int w, int h);
void GreyScale(Plane& AR, Plane& AG, Plane& AB, int w, int h);
// level 0..100 (percent), channel 1 R, 2 G, 3 B, tolerance -255..255.
// Pixels whose channel lies between level% of 255 and that plus tolerance (ends included) turn grey;
// the others keep their colour.
void GreyOut(Plane& AR, Plane& AG, Plane& AB, int level, int channel, int tolerance, int w, int h);
// Black and white of B's grey cut at level, into A.
// It is laid half over A: A goes halfway to white where B's grey reaches level and halfway to black
// elsewhere, as the Channel Threshold preview shows it.
void GreyThreshold(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int level,
                   int w, int h);
// Cuts one plane to 0/255 at level (0..256).
// Bytes above level become 255, the others 0: an all-zero plane stays 0 at every level, and level
// 255 or more gives 0 everywhere.
void Threshold(Plane& M, int level, int w, int h);
// level 0..255: every 32 steps halve the tones per channel (level 200: 4 tones).
void Posterize(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h);
void NightVision(Plane& AR, Plane& AG, Plane& AB, int w, int h);
// A blurred, B the unblurred picture (unchanged); the cartoon comes out in A.
void ToonFilter(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h);
void ToonFilter2(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h);
// A the blurred negative, B the unblurred picture; strength 128..255; the drawing comes out in A.
// 255 draws the darkest, widest line.
void SketchHard(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
                int strength);
// level 0..100: strength of the chalk-on-paper finish (0 leaves the picture).
void ChalkFilter(Plane& AR, Plane& AG, Plane& AB, int w, int h, int level);
void IncreaseBrightness(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h);
void IncreaseDarkness(Plane& AR, Plane& AG, Plane& AB, int level, int w, int h);
// pct 0 keeps A, 100 gives pure noise; each call draws new noise.
void WhiteNoise(Plane& AR, Plane& AG, Plane& AB, int pct, int w, int h);
void WhiteNoiseAlpha(Plane& AR, Plane& AG, Plane& AB, const Plane& M, int pct, int w, int h);
// Custom-effect compositing: pixels of the work picture W in the primary key colour show one of the
// two pictures, those in the secondary key colour the other, all others show as they are.
// Primary shows M (the animation's own frame), secondary shows S (the swap picture); the result is
// left in W.
void CFXFilter1(Plane& MR, Plane& MG, Plane& MB, const Plane& SR, const Plane& SG, const Plane& SB, Plane& WR,
                Plane& WG, Plane& WB, int pr, int pg, int pb, int sr, int sg, int sb, int w, int h);

// Seeds the noise source (tests and reproducible batch runs).
void SeedNoise(std::uint64_t seed);

// clang-format on

} // namespace krl
