#pragma once
// Joining a stored animation to the host's in space: side by side or one above the other. Nothing
// is scaled; the frame grows to hold both.
//
// The new bound is the sum of the two bounds as they stand (W + Width, or H + Height), with nothing
// added for the extra index: the second picture begins at the first one's last column (or row) and
// overwrites it. The result is built whole in memory before the host's animation is replaced.

#include "pixel/Triple.h"

#include <array>
#include <string>
#include <vector>

namespace kirrel::stored {

struct AttachSide {
    const char* caption; // the option's caption
    bool sideBySide;     // left/right join columns; top/bottom join rows
    bool storedFirst;    // the stored picture at offset 0, the host's after it
};

// optAttachAnim(0) to (3): left, right, top, bottom.
inline constexpr std::array<AttachSide, 4> kAttachSides = {{
    {"Attach Stored to the Left Side of Animation", true, true},
    {"Attach Stored to the Right Side of Animation", true, false},
    {"Attach Stored to the Top of Animation", false, true},
    {"Attach Stored to the Bottom of Animation", false, false},
}};

// The joined picture's bounds for a host picture of bounds w, h and a stored one of sw, sh.
struct AttachSize {
    int width, height;
};
AttachSize attachedSize(const AttachSide& side, int w, int h, int sw, int sh);

// Copies `first` at offset 0 and `second` after it into `out` (which has the joined bounds).
void joinPictures(krl::Triple& out, const krl::Triple& first, const krl::Triple& second, bool sideBySide);

// The whole run: every frame joined in memory, then the host's animation replaced by the result at
// the new size; ends on frame 0. The caller has checked frame count, size and memory.
void AttachStored(const AttachSide& side, const std::string& slotPath);

} // namespace kirrel::stored
