#include "stored/StoredFrame.h"

#include "pixel/Mixing.h"

namespace kirrel::stored {

void fitStoredFrame(krl::Triple& out, const krl::Triple& stored, int w, int h) {
    if (stored.width() == w && stored.height() == h) {
        out = stored; // planes are copy-on-write: the copy costs nothing until one side writes
        return;
    }
    if (out.width() != w || out.height() != h || !out.g.sameBounds(out.r) || !out.b.sameBounds(out.r))
        out = krl::Triple(w, h);
    krl::ResizeBuffer(out.r, out.g, out.b, stored.r, stored.g, stored.b, w, h, stored.width(),
                      stored.height());
}

StoredFrameSource::StoredFrameSource(const std::string& slotPath, int w, int h)
    : reader_(slotPath, FrameFileReader::Kind::Slot), w_(w), h_(h) {}

void StoredFrameSource::next(krl::Triple& out) {
    reader_.readPicture(stored_);
    fitStoredFrame(out, stored_, w_, h_);
}

} // namespace kirrel::stored
