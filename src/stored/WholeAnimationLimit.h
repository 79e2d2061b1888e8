#pragma once
// The tools that hold a whole animation in memory (Attach's result, an animated mask scaled to the
// host) refuse sizes they could never hold, rather than run the machine out of memory half-way.
//
// The limit is 1 GiB of pixel bytes. A user's real work stays far below it (a 640 x 480 RGB
// animation of 1000 frames is under 1 GiB; a grey mask of that size is a third of it), while a
// damaged header or an absurd combination is refused before anything is allocated or changed. The
// refusal names the size, so the user can see why.

#include <string>

namespace kirrel::stored {

inline constexpr long long kWholeAnimationLimit = 1LL << 30;

// Bytes of `planes` planes with upper bounds w, h for each of `frames` frames, or -1 when the
// product doesn't even fit a 64-bit number.
long long wholeAnimationBytes(long long frames, long long planes, long long w, long long h);

// The refusal for an animation of this many bytes, in megabytes, rounded up.
std::string tooLargeMessage(long long bytes);

// True when the bytes (as wholeAnimationBytes gives them) are within the limit.
inline bool fitsInMemory(long long bytes) {
    return bytes >= 0 && bytes <= kWholeAnimationLimit;
}

} // namespace kirrel::stored
