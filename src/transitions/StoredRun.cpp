#include "transitions/StoredRun.h"

#include "stored/SlotFiles.h"
#include "stored/StoredFrame.h"
#include "transitions/RunSupport.h"

#include <memory>

namespace kirrel::transitions {

namespace {

constexpr const char* kSlotEmpty = "Slot Empty";

// What both shapes do before their frames: the slot, its header, the run's sizes. The slot is opened
// (and checked as a whole) before the host is locked or anything is written, although the host sees
// the same calls as if the header were peeked first and the frames read later.
struct StoredStart {
    std::unique_ptr<stored::StoredFrameSource> slot;
    int slotFrames = 0;
};

bool openSlot(Vantry::Vantry_Class& van, int slot, int W, int H, StoredStart& s) {
    const std::string path = stored::slotDataPath(van.Van_GetTempDir(), slot);
    if (!stored::fileExists(path)) {
        van.Van_MessageBox(kSlotEmpty);
        return false;
    }
    s.slot = std::make_unique<stored::StoredFrameSource>(path, W, H);
    s.slotFrames = s.slot->header().frames;
    return true;
}

void beginFrames(Vantry::Vantry_Class& van, const StoredShape& shape, RunFrame& f) {
    van.Van_GetCurrentFrame();
    if (shape.lock) {
        van.Van_Lock();
        van.Van_ChangePointer(11);
    }
    van.Van_GotoFrame(0);
    if (shape.alphaLimitsSource) van.Van_GetABuffer(); // read and dropped: each frame reads its own
    if (shape.alphaOnce) f.alpha = van.Van_GetABuffer();
    if (shape.prepare) shape.prepare(f);
}

void endFrames(Vantry::Vantry_Class& van, const StoredShape& shape) {
    if (shape.showScrubAfter) {
        const int total = van.Van_GetTotalFrames();
        van.Van_GotoFrame(total - 1);
        van.Van_ShowScrub(total - 1, van.Van_GetTotalFrames());
        van.Van_Refresh();
    }
    if (shape.refreshBeforeClose) van.Van_Refresh();
    if (shape.lock) {
        van.van_StatusClose();
        van.Van_RestorePointer();
        van.Van_Unlock();
    }
}

void mix(const StoredShape& shape, RunFrame& f, FrameStep step) {
    if (f.i > f.start || shape.callAtStart) {
        if (shape.alphaLimitsSource) limitSourceByAlpha(f);
        step(f);
    }
}

std::string sourceText(int slot) {
    return "Stored Animation #" + std::to_string(slot + 1);
}

} // namespace

void runToStored(int start, int slot, const StoredShape& shape, FrameStep step) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    StoredStart s;
    if (!openSlot(van, slot, W, H, s)) return;

    const int total = van.Van_GetTotalFrames();
    const int end = total - 1;
    const int overlap = total - start;
    const int insert = s.slotFrames - overlap;

    const std::string source = sourceText(slot);
    RunFrame f{van, source};
    f.setRange(W, H, start, end);
    f.total = total;
    beginFrames(van, shape, f);

    van.Van_GotoFrame(start);
    for (int i = start; i <= end; ++i) {
        f.i = i;
        van.Van_GotoFrame(i);
        fetchFrame(van, f.M);
        s.slot->next(f.A);
        mix(shape, f, step);
        sendFrame(van, f.M);
    }
    // The frames the overlap left over go on the end, one new last frame at a time.
    for (int k = 1; k <= insert; ++k) {
        van.Van_GotoFrame(start);
        s.slot->next(f.M);
        van.Van_GotoFrame(van.Van_GetTotalFrames() - 1);
        van.Van_InsertFrame(van.Van_GetTotalFrames() - 1);
        van.Van_GotoFrame(van.Van_GetTotalFrames() - 1);
        sendFrame(van, f.M);
    }
    s.slot.reset();
    endFrames(van, shape);
}

void runFromStored(int end, int slot, const StoredShape& shape, FrameStep step) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    StoredStart s;
    if (!openSlot(van, slot, W, H, s)) return;

    const int total = van.Van_GetTotalFrames();
    const int extra = s.slotFrames - (end + 1);
    // The overlap as it stands once the extra frames are in front of the animation.
    const int startS = extra;
    const int endS = (end + 1) + extra - 1;

    const std::string source = sourceText(slot);
    RunFrame f{van, source};
    f.setRange(W, H, startS, endS);
    f.total = total;
    beginFrames(van, shape, f);

    // The stored frames before the overlap go in front, in order: frame k - 1 is doubled and its
    // first copy becomes stored frame k - 1.
    for (int k = 1; k <= extra; ++k) {
        if (shape.positionCalls) van.Van_GotoFrame(startS);
        s.slot->next(f.M);
        van.Van_GotoFrame(k - 1);
        van.Van_InsertFrame(k - 1);
        van.Van_GotoFrame(k - 1);
        sendFrame(van, f.M);
    }
    if (shape.positionCalls) van.Van_GotoFrame(startS);
    for (int i = startS; i <= endS; ++i) {
        f.i = i;
        van.Van_GotoFrame(i);
        fetchFrame(van, f.M);
        s.slot->next(f.A);
        mix(shape, f, step);
        sendFrame(van, shape.fromWritesFrame ? f.M : f.A);
    }
    s.slot.reset();
    endFrames(van, shape);
}

} // namespace kirrel::transitions
