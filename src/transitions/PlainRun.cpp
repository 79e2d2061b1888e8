#include "transitions/PlainRun.h"

#include "transitions/RunSupport.h"
#include "transitions/Sources.h"

namespace kirrel::transitions {

void runPlain(Direction direction, int start, int end, const std::string& source, const PlainShape& shape,
              FrameStep step) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    RunFrame f{van, source};
    f.setRange(W, H, start, end);
    if (shape.standardSources) fillSourceOnce(van, source, f.A, W, H, shape.colourOnSwapPlanes);
    if (shape.prepare) shape.prepare(f);
    f.total = van.Van_GetTotalFrames();
    van.Van_GetCurrentFrame();
    if (shape.lock) {
        van.Van_Lock();
        van.Van_ChangePointer(11);
    }
    if (shape.alphaOnce) f.alpha = van.Van_GetABuffer();
    const bool to = direction == Direction::To;
    const int first = to && !shape.toLoopFromStart ? start + 1 : start;
    const int last = !to && shape.fromLoopStopsBeforeEnd ? end - 1 : end;
    for (int i = first; i <= last; ++i) {
        f.i = i;
        van.Van_GotoFrame(i);
        fetchFrame(van, f.M);
        if (shape.standardSources) fillSourcePerFrame(van, source, f.A, W, H);
        if (i > start || shape.callAtStart) {
            if (shape.alphaLimitsSource) limitSourceByAlpha(f);
            step(f);
        }
        sendFrame(van, to || shape.fromWritesFrame ? f.M : f.A);
        if (shape.progress)
            van.van_status(100.0 * divide(static_cast<double>(i), static_cast<double>(f.total - 1)));
    }
    if (shape.refreshBeforeClose) van.Van_Refresh();
    van.van_StatusClose();
    if (shape.lock) {
        van.Van_RestorePointer();
        van.Van_Unlock();
    }
}

} // namespace kirrel::transitions
