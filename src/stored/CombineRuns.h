#pragma once
// Joining a stored animation to the host's in time. Stored frames of another size are scaled to
// the host's, whose size never changes; the host's frame count grows by the slot's Frames.
//
// Frames are made with the host's InsertFrame, which leaves a copy of frame n at n + 1: the copies
// are then overwritten by the stored frames, so the frames around them keep their content.

#include <string>

namespace kirrel::stored {

// The three placements, by the caption the dialog shows for each.
void AppendStored(const std::string& slotPath);
void InsertStoredFirst(const std::string& slotPath);
// The stored frames go in after frame `after`, which keeps its content.
void InsertStoredAfter(const std::string& slotPath, int after);

} // namespace kirrel::stored
