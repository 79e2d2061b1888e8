#pragma once
// A stored animation as a second source of a run (transitions, combine, composite): its frames read
// one after another and brought to the run's size.
//
// Typical use, for a run whose frames have bounds W, H (Van_BufferWidth, Van_BufferHeight):
//
//     StoredFrameSource stored(slotDataPath(van.Van_GetTempDir(), slot), W, H); // checks the file
//     krl::Triple S;                       // kept by the caller in the run's size
//     for (...) { stored.next(S); ... }    // S: the next stored frame, copied or resized
//
// Opening checks the whole file first (DamagedFile otherwise), so a run that opens its source
// before Van_Lock refuses a damaged slot without having changed anything.

#include "pixel/Triple.h"
#include "stored/SlotFiles.h"

#include <string>

namespace kirrel::stored {

// Puts a stored frame into `out` at the run's bounds w, h: a copy when the stored bounds are the
// run's, otherwise the three planes resampled with ResizeBuffer from the stored bounds to w, h.
// `out` gets bounds w, h if it lacks them; `stored` is left as it was.
void fitStoredFrame(krl::Triple& out, const krl::Triple& stored, int w, int h);

class StoredFrameSource {
  public:
    // Throws DamagedFile for a damaged slot file, std::runtime_error when it cannot be opened.
    StoredFrameSource(const std::string& slotPath, int w, int h);

    // The slot's header: Frames, and its own bounds Width and Height.
    const FrameFileHeader& header() const { return reader_.header(); }
    int framesLeft() const { return reader_.picturesLeft(); }

    // Reads the next stored frame (strictly in sequence) and fits it into `out` at the run's size.
    // Throws std::runtime_error past the last frame.
    void next(krl::Triple& out);
    // The last frame read, in the slot's own bounds.
    const krl::Triple& stored() const { return stored_; }

  private:
    FrameFileReader reader_;
    krl::Triple stored_;
    int w_, h_;
};

} // namespace kirrel::stored
