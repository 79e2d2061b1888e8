#include "transitions/PlainRun.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/Sources.h"

namespace kirrel::transitions {

namespace {

void fetch(Vantry::Vantry_Class& van, krl::Triple& t) {
    t.r = van.Van_GetRBuffer();
    t.g = van.Van_GetGBuffer();
    t.b = van.Van_GetBBuffer();
}

void send(Vantry::Vantry_Class& van, const krl::Triple& t) {
    van.Van_SetRbuffer(t.r);
    van.Van_SetGbuffer(t.g);
    van.Van_SetBbuffer(t.b);
}

// The alpha families keep the source to the opaque part of the frame: A becomes the source where the
// alpha is 255 and the frame where it is 0.
void limitSourceByAlpha(RunFrame& f) {
    krl::Plane al = f.van.Van_GetABuffer();
    krl::Negative(al, al, al, f.W + 1, f.H + 1);
    krl::AlphaMix(f.A.r, f.A.g, f.A.b, f.M.r, f.M.g, f.M.b, al, f.W, f.H);
}

} // namespace

void runPlain(Direction direction, int start, int end, const std::string& source, const PlainShape& shape,
              FrameStep step) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    RunFrame f{van, source};
    f.W = W;
    f.H = H;
    f.start = start;
    f.end = end;
    f.span = end - start;
    if (shape.standardSources) fillSourceOnce(van, source, f.A, W, H);
    f.total = van.Van_GetTotalFrames();
    van.Van_GetCurrentFrame();
    if (shape.lock) {
        van.Van_Lock();
        van.Van_ChangePointer(11);
    }
    const bool to = direction == Direction::To;
    const int first = to && !shape.toLoopFromStart ? start + 1 : start;
    for (int i = first; i <= end; ++i) {
        f.i = i;
        van.Van_GotoFrame(i);
        fetch(van, f.M);
        if (shape.standardSources) fillSourcePerFrame(van, source, f.A, W, H);
        if (i > start || shape.callAtStart) {
            if (shape.alphaLimitsSource) limitSourceByAlpha(f);
            step(f);
        }
        send(van, to || shape.fromWritesFrame ? f.M : f.A);
        if (shape.progress)
            van.van_status(100.0 * divide(static_cast<double>(i), static_cast<double>(f.total - 1)));
    }
    van.van_StatusClose();
    if (shape.lock) {
        van.Van_RestorePointer();
        van.Van_Unlock();
    }
}

} // namespace kirrel::transitions
