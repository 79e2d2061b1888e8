#pragma once
// The CFX file's three users. A CFX file scales to the resolution of the animation it is played on,
// but not in time: its frame i is applied to the host's frame i, from frame 0 until either runs out.
// None of them takes the host's lock, so their callers keep their dialogs disabled meanwhile.

#include <string>

namespace kirrel::customfx {

// Asks for a file name and writes the current animation into it, with the host's key colours.
// Refuses an animation of fewer than 2 frames.
void ExportCFX(const std::string& title);

// Asks for a file name and replaces the host's animation by the file's frames; the file's key
// colours become the host's primary and secondary colours.
void ImportCFX();

// Composites the animation's frames with the swap picture through the file's frames: where a file
// frame shows the primary key colour the animation's own frame shows, where it shows the secondary
// key colour the swap picture shows, and every other colour of the file shows as it is. The key
// colours are the file's, not the host's.
void PlayCFX(const std::string& path);

} // namespace kirrel::customfx
