#pragma once
// Small copies of the running host's content for a scratch host (see ScratchHost): the frames a run
// needs, the swap picture and the alpha plane brought within a box, the aspect kept; the colours,
// delays, current frame and folders as they are.
//
// Scaling is what costs, so a scaled plane is kept for as long as the host keeps the plane it was
// made from. Planes are copy-on-write and the host replaces a plane rather than writing into it, so
// a plane's buffer names its content: a control change that asks for the same frames again scales
// nothing. A picture that already fits is shared, not copied; the scratch host's writes detach it.

#include "host/HostState.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace kirrel::host {

// The bounds of a picture of w x h pixels (its planes' upper bounds) brought within boxWidth x
// boxHeight pixels, the aspect kept: w, h themselves when it fits already.
struct Bounds {
    int w, h;
};
Bounds fittedBounds(int w, int h, int boxWidth, int boxHeight);

// Nearest-neighbour sampling at the centres of the new pixels.
krl::Plane shrinkPlane(const krl::Plane& p, int w, int h);

class ScaledCopies {
  public:
    ScaledCopies(int boxWidth, int boxHeight) : boxWidth_(boxWidth), boxHeight_(boxHeight) {}

    // Sets `scratch` up as a small copy of `real` whose temporary folder is `tempDir`. Frames
    // first..last are copies of the real ones; the others, which the run is not to read, are one
    // shared black picture. Cached copies of planes `real` no longer holds are dropped.
    void copyInto(HostState& scratch, const HostState& real, int first, int last, const std::string& tempDir);

    // Planes kept scaled now (for tests of the cache).
    std::size_t cached() const { return cache_.size(); }

  private:
    struct Entry {
        krl::Plane source; // keeps the buffer, and so its address, from being reused meanwhile
        krl::Plane scaled;
    };
    krl::Plane scaled(const krl::Plane& p, Bounds to);
    Picture scaled(const Picture& p, Bounds to);
    void dropUnused(const HostState& real);

    int boxWidth_, boxHeight_;
    std::unordered_map<const std::uint8_t*, Entry> cache_;
};

} // namespace kirrel::host
