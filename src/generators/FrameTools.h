#pragma once
// Moves of whole frames. No pixels are changed: swapping and copying hand the planes from one frame
// to another, and the ping-pong append lets the host copy frames.

namespace kirrel::generators {

// Frames one and two change places.
void SwapFrames(int frameOne, int frameTwo);
// Frame one is copied over frame two (over itself when they are the same).
void CopyFrames(int frameOne, int frameTwo);
// Appends the animation reversed: 0, 1, 2, 3 becomes 0, 1, 2, 3, 3, 2, 1, 0, and one frame becomes two.
void PingPongAppend();

} // namespace kirrel::generators
