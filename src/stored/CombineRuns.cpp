#include "stored/CombineRuns.h"

#include "panel/Vantry.h"
#include "stored/StoredFrame.h"

namespace kirrel::stored {

namespace {

void sendFrame(Vantry::Vantry_Class& van, const krl::Triple& t) {
    van.Van_SetRbuffer(t.r);
    van.Van_SetGbuffer(t.g);
    van.Van_SetBbuffer(t.b);
}

// The common start of a run: the buffer's size asked again, the slot opened and checked whole.
StoredFrameSource openSlot(Vantry::Vantry_Class& van, const std::string& slotPath) {
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    return StoredFrameSource(slotPath, W, H);
}

} // namespace

void AppendStored(const std::string& slotPath) {
    Vantry::Vantry_Class van;
    StoredFrameSource stored = openSlot(van, slotPath);
    krl::Triple frame;
    for (int n = 1; n <= stored.header().frames; ++n) {
        // Each of the three calls asks the total anew.
        van.Van_GotoFrame(van.Van_GetTotalFrames() - 1);
        van.Van_InsertFrame(van.Van_GetTotalFrames() - 1);
        van.Van_GotoFrame(van.Van_GetTotalFrames() - 1);
        stored.next(frame);
        sendFrame(van, frame);
    }
}

void InsertStoredFirst(const std::string& slotPath) {
    Vantry::Vantry_Class van;
    StoredFrameSource stored = openSlot(van, slotPath);
    const int frames = stored.header().frames;
    for (int n = 1; n <= frames; ++n) {
        van.Van_GotoFrame(0);
        van.Van_InsertFrame(0);
        van.Van_GotoFrame(0);
    }
    krl::Triple frame;
    for (int i = 0; i < frames; ++i) {
        van.Van_GotoFrame(i);
        stored.next(frame);
        sendFrame(van, frame);
    }
}

void InsertStoredAfter(const std::string& slotPath, int after) {
    Vantry::Vantry_Class van;
    StoredFrameSource stored = openSlot(van, slotPath);
    const int frames = stored.header().frames;
    for (int n = 1; n <= frames; ++n) {
        van.Van_GotoFrame(after);
        van.Van_InsertFrame(after);
        van.Van_GotoFrame(after);
    }
    krl::Triple frame;
    for (int n = 1; n <= frames; ++n) {
        van.Van_GotoFrame(after + n);
        stored.next(frame);
        sendFrame(van, frame);
    }
}

} // namespace kirrel::stored
