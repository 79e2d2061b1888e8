#pragma once
// The selection outline that the host draws after its marquee is rebuilt: the edges between pixels
// whose alpha marks them selected (at least half opaque) and pixels that are not, the picture's
// border counting as unselected. Collinear edges are merged, so a rectangle is four lines.

#include "pixel/Plane.h"

#include <QLine>

#include <vector>

namespace kirrel::host {

constexpr int kSelectedAlpha = 128;
// A noisy alpha plane could have millions of edges; past this many the outline stops growing, which
// keeps the canvas responsive while still showing where the selection lies.
constexpr std::size_t kMaxOutlineLines = 200000;

// Lines in pixel-corner coordinates of the picture proper (W x H pixels): a line from (x, y) to
// (x + n, y) runs along the top edge of pixels x .. x+n-1 of row y.
std::vector<QLine> selectionOutline(const krl::Plane& alpha);

} // namespace kirrel::host
