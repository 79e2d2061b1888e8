#pragma once
// Putting the host's animation into a slot and taking it back: the two operations of the Stored
// Animations panel. Every other user of a slot only reads it (SlotFiles.h, StoredFrame.h).

#include <QImage>
#include <QSize>

#include <functional>

namespace kirrel::stored {

// Writes every frame of the host's animation into the slot's data file (without truncating it)
// and frame 0's thumbnail beside it. `showThumbnail` receives the plotted thumbnail for the row's
// picture box before it is saved. The host is left on frame 0. With no animation the refusal
// "No Animation in memory!" is shown and no file is touched.
void SaveAnimToSlot(short slot, const std::function<void(const QImage&, QSize picture)>& showThumbnail = {});

// Replaces the host's animation, and its frame size, by the slot's; the host is left on frame 0.
// `resetSlots` runs where the panel brings its rows into step with the disk. A missing slot file
// changes nothing and says nothing; a damaged one is refused with a message before anything changes.
void LoadAnimFromSlot(short slot, const std::function<void()>& resetSlots = {});

} // namespace kirrel::stored
