#include "transitions/MoveRun.h"

#include "pixel/Mixing.h"
#include "transitions/RunSupport.h"

namespace kirrel::transitions {

namespace {

int offsetOf(const MoveModule& m, const RunFrame& f) {
    const int size = m.mode <= 2 ? f.W : f.H;
    return RunFrame::part(m.offset == Offset::Rising ? f.done() : f.remaining(), size);
}

// The alpha slide: X starts all zero on every frame and receives the alpha as the slide moved it;
// the frame, fetched afresh, then shows through X.
void alphaSlide(krl::Triple& a, const krl::Triple& b, int offset, int mode, RunFrame& f) {
    const krl::Plane alpha = f.van.Van_GetABuffer();
    krl::Plane x(f.W, f.H);
    krl::ASlideOverlay(a.r, a.g, a.b, b.r, b.g, b.b, x, alpha, f.W, f.H, offset, mode);
    krl::Triple fresh;
    fetchFrame(f.van, fresh);
    krl::AlphaMix(a.r, a.g, a.b, fresh.r, fresh.g, fresh.b, x, f.W, f.H);
}

void call(MoveKind kind, krl::Triple& a, const krl::Triple& b, int offset, int mode, RunFrame& f) {
    switch (kind) {
    case MoveKind::Push:
        krl::PushOverlay(a.r, a.g, a.b, b.r, b.g, b.b, f.W, f.H, offset, mode);
        break;
    case MoveKind::Slide:
        krl::SlideOverlay(a.r, a.g, a.b, b.r, b.g, b.b, f.W, f.H, offset, mode);
        break;
    case MoveKind::AlphaSlide:
        alphaSlide(a, b, offset, mode, f);
        break;
    }
}

} // namespace

void moveFrame(MoveKind kind, const MoveModule& m, RunFrame& f) {
    if (m.endState == EndState::SourceAtEnd && f.i == f.end) {
        f.M = f.A;
        return;
    }
    if (m.endState == EndState::WholeAtEnds) {
        if (f.i == f.start) f.M = f.A;
        if (f.i == f.start || f.i == f.end) return;
    }
    const int offset = offsetOf(m, f);
    if (m.sourceFirst) {
        // The source read once before the loop must not carry this frame's result into the next.
        krl::Triple work = f.A;
        call(kind, work, f.M, offset, m.mode, f);
        f.M = std::move(work);
    } else {
        call(kind, f.M, f.A, offset, m.mode, f);
    }
}

PlainShape movePlainShape(Frames frames) {
    PlainShape s;
    s.toLoopFromStart = frames == Frames::Whole;
    s.fromLoopStopsBeforeEnd = frames == Frames::BeforeEnd;
    s.callAtStart = true; // the step itself decides what an end frame holds
    s.fromWritesFrame = true;
    return s;
}

StoredShape moveStoredShape() {
    StoredShape s;
    s.callAtStart = true;
    s.fromWritesFrame = true;
    return s;
}

} // namespace kirrel::transitions
