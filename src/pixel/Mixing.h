#pragma once
// Operations that mix two pictures or move one over another. A picture is a triple of planes
// (red, green, blue) passed as three arguments; the first triple receives the result and the second
// is left as it was, except where a comment says otherwise. The same plane object may be passed in
// several places where callers do so (see Plane.h for the aliasing rule).
//
// Sizes: "bound" means w, h are the highest indices (W, H); "count" means w, h are column and row
// counts (W+1, H+1 cover the plane, W, H leave the last column and row). Every operation clamps to
// the planes it was given.

#include "pixel/Plane.h"

namespace krl {

// --- mixes ------------------------------------------------------------------------------------
// pct: share of A kept; 100 leaves A, 0 gives B. Bound sense.
void MixBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int pct,
                int w, int h);
void MixBufferColor(Plane& AR, Plane& AG, Plane& AB, int red, int green, int blue, int pct, int w, int h);
// pct: share of the negative; 0 leaves A, 100 gives the negative. Bound sense.
void MixBufferNegative(Plane& AR, Plane& AG, Plane& AB, int pct, int w, int h);
// channels 1 R, 2 G, 3 B, 4 RG, 5 RB, 6 GB stay; pct: share of the untouched picture. Either sense.
void MixBufferChannels(Plane& AR, Plane& AG, Plane& AB, int pct, int channels, int w, int h);
void FiftyMixBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                     int w, int h);
void AddBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                int h);
void MultiplyBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                     int w, int h);
void DarkenBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                   int h);
void LightenBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                    int h);
void DiffBuffers(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                 int h);
// M = 0 keeps A, 255 gives B. Bound sense.
void AlphaMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
              const Plane& M, int w, int h);
// A pixel takes B where M < level: level 0 keeps A, 256 gives B everywhere. Bound sense.
void AlphaMixThresh(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                    const Plane& M, int level, int w, int h);
// Count sense on most paths; W, H leave the last column and row.
void FillBufferColor(Plane& AR, Plane& AG, Plane& AB, int red, int green, int blue, int w, int h);

// --- boxes and patterns (bound sense) ---------------------------------------------------------
// Copies the rectangle (x1,y1)-(x2,y2), corners inclusive, from B into A.
void BoxMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
            int x1, int y1, int x2, int y2);
// level 0 keeps A, 255 gives B; mode 1 horizontal slats, 2 vertical. Ten slats, opening together.
void BlindMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
              int h, int level, int mode);
// leaf: width of each door leaf; 0 keeps A, half the size gives B. mode 1 left/right, 2 top/bottom.
// The leaves carry B's two halves and slide in from the edges (see Patterns.cpp).
void DoorMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w, int h,
             int leaf, int mode);
// stripe: twice the user's stripe size; reveal 0..W (mode 1, horizontal stripes) or 0..H (mode 2).
// StripeMix: reveal 0 keeps A, the full size gives B.
void StripeMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
               int h, int stripe, int reveal, int mode);
// The moving stripes run the other way round, as their callers pass the arriving picture as A:
// reveal 0 gives B, the full size leaves A (see Patterns.cpp).
void SlideStripeMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                    int h, int stripe, int reveal, int mode);
void PushStripeMix(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                   int h, int stripe, int reveal, int mode);

// --- moves (bound sense) ----------------------------------------------------------------------
// B laid over A displaced by offset toward mode 1 left, 2 right, 3 top, 4 bottom; 0 gives B.
void SlideOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                  int h, int offset, int mode);
// SlideOverlay with alpha: N is the frame's alpha, M (fresh, zero) receives it as it lies after the move.
// A receives the plain slide; N travels with B (see Moves.cpp).
void ASlideOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB,
                   Plane& M, const Plane& N, int w, int h, int offset, int mode);
// A and B move as one strip; the same triple may be A and B (a roll). Modes as documented in Moves.cpp.
void PushOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                 int h, int offset, int mode);
void StretchOverlay(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int w,
                    int h, int right, int bottom, int left, int top, int mode);
// A is the frame; B the source and C its saved copy. Writes both A and B (see Moves.cpp).
void SqueezeOverlay(Plane& AR, Plane& AG, Plane& AB, Plane& BR, Plane& BG, Plane& BB, const Plane& CR,
                    const Plane& CG, const Plane& CB, int w, int h, int right, int bottom, int left, int top,
                    int mode);
// Resamples B (bounds bw, bh) into A (bounds aw, ah).
void ResizeBuffer(Plane& AR, Plane& AG, Plane& AB, const Plane& BR, const Plane& BG, const Plane& BB, int aw,
                  int ah, int bw, int bh);

} // namespace krl
