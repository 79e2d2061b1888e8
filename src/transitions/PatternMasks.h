#pragma once
// The grey masks of the pattern transitions, computed by the panel once per run. A mask has the
// bounds of the frame (0..W, 0..H); at level L the mixing takes the second picture where the mask lies
// below L, so small values change first. Every value goes through the checked byte conversion: a
// value that rounds above 255 is an overflow, and a zero centre or size a division by zero, both
// reported as errors that end the run before any frame changes.
//
// cx = round(W / 2) and cy = round(H / 2), half to even, so for an odd bound the centre may lie one
// past the middle.

#include "pixel/Plane.h"

#include <functional>

class QImage;

namespace kirrel::transitions {

// sqrt(|y - cy| / cy * |x - cx| / cx) * 255: zero along both centre lines, so the opening runs out
// along the axes as a four-pointed star. Unguarded: where a centre was rounded down, the far edge
// lies more than cx from it and the corner overflows.
krl::Plane irisMask(int W, int H);

// |cx - x| / cx * 127 and |cy - y| / cy * 127, each rounded to a byte, summed (at most 254). The
// quarter scan runs one step past the centre and mirrors every value to four cells; its last writes
// stand.
krl::Plane diamondMask(int W, int H);

// Twice the distance between the two normalised offsets from the centre, rounded, 255 at most:
// two low diagonal bands from corner to corner. Every value is mirrored to four cells, so the values
// of the lower right quarter stand and the mask is symmetric about both centre lines.
krl::Plane xMask(int W, int H);

// A uniform number in [0, 1), the process's random source unless a caller gives its own.
using Uniform = std::function<float()>;
// The process's generator: not reseeded by the masks, so a process repeats its sequence from start.
float processUniform();

enum class LinesDirection { ToLeft, ToRight, Up, Down };
// Sawtooths with 8-bit wrap along rows (ToLeft falling from 255, ToRight rising from 0) or columns (Up
// rising from the bottom, Down rising from the top); every row or column after the first starts at a
// random value, round(r * 255). Up begins at column 1: column 0 stays 0 and turns at the first step.
krl::Plane linesMask(LinesDirection direction, int W, int H, const Uniform& random = processUniform);

// Grey discs drawn on a drawing surface of W by H pixels, from radius R = 0.24 * ((W + H) / 2 + W + H)
// down to 0 in steps of 1, each smaller disc brighter (255 - round(255 * r / R)), centred at
// (W / 2 - 1, H / 2 - 1), and read back. Rows 0 and H and columns 0 and W repeat their neighbours.
// The surface's background is black, so the corners outside R of a long picture stay 0 and turn last,
// as the outermost ring does. A bound below 1 leaves no neighbour to repeat: "Subscript out of range".
// The drawn surface is handed back in `surface` when asked for, to be shown on the dialog.
krl::Plane circleMask(int W, int H, QImage* surface = nullptr);

} // namespace kirrel::transitions
