#include "transitions/ThresholdMask.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/RunSupport.h"
#include "transitions/StoredRun.h"

#include <utility>

namespace kirrel::transitions {

namespace {

int level(double share) {
    return toInt16(share * 255.0);
}

// The source once before the loop: the swap planes, with the colour painted over all but their last
// row and column for "Primary Color".
krl::Triple thresholdSource(Vantry::Vantry_Class& van, const std::string& source, int W, int H) {
    krl::Triple s;
    s.r = van.Van_GetSwapRBuffer();
    s.g = van.Van_GetSwapGBuffer();
    s.b = van.Van_GetSwapBBuffer();
    if (source == "Primary Color") {
        const int c = van.Van_getPrimaryColor();
        krl::FillBufferColor(s.r, s.g, s.b, c & 255, (c & 65280) / 256, (c & 16711680) / 65536, W, H);
    }
    return s;
}

void runThreshold(bool to, int start, int end, const std::string& source) {
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    const krl::Triple src = thresholdSource(van, source, W, H);
    const double span = static_cast<double>(end - start);
    van.Van_Lock();
    van.Van_ChangePointer(11);
    krl::Triple main;
    for (int f = start; f <= end; ++f) {
        van.Van_GotoFrame(f);
        const int L = to ? thresholdLevelTo(f, start, end) : thresholdLevelFrom(f, start, end);
        fetchFrame(van, main);
        krl::Plane a = van.Van_GetABuffer();
        // One plane as all three of the triple: each channel's pass inverts it, an odd number of times.
        if (to) krl::Negative(a, a, a, W, H);
        krl::Threshold(a, L, W, H);
        krl::AlphaMix(main.r, main.g, main.b, src.r, src.g, src.b, a, W, H);
        sendFrame(van, main);
        van.Van_SetProgress(100.0 * divide(static_cast<double>(f - start), span));
    }
    van.Van_GotoFrame(start);
    van.Van_SetProgress(0);
    van.Van_RestorePointer();
    van.Van_Unlock();
}

// The splice: A is the stored frame. Toward the slot the frame comes back where the inverted alpha
// does not pass the level, which is the plain run's picture in one call; from the slot the alpha is
// cut and mixed as in the plain run. The result goes to M.
void storedToStep(RunFrame& f) {
    krl::Plane a = f.van.Van_GetABuffer();
    krl::Negative(a, a, a, f.W, f.H);
    krl::Triple work = f.A;
    krl::AlphaMixThresh(work.r, work.g, work.b, f.M.r, f.M.g, f.M.b, a,
                        thresholdLevelTo(f.i, f.start, f.end) + 1, f.W, f.H);
    f.M = std::move(work);
}

void storedFromStep(RunFrame& f) {
    krl::Plane a = f.van.Van_GetABuffer();
    krl::Threshold(a, thresholdLevelFrom(f.i, f.start, f.end), f.W, f.H);
    krl::AlphaMix(f.M.r, f.M.g, f.M.b, f.A.r, f.A.g, f.A.b, a, f.W, f.H);
}

StoredShape storedShape() {
    StoredShape s;
    s.callAtStart = true; // the level already stands at its end value on the overlap's first frame
    s.fromWritesFrame = true;
    return s;
}

} // namespace

int thresholdLevelTo(int i, int start, int end) {
    if (i >= end) return 0;
    return level(divide(static_cast<double>(end - i), static_cast<double>(end - start)));
}

int thresholdLevelFrom(int i, int start, int end) {
    if (i <= start) return 0;
    return level(divide(static_cast<double>(i - start), static_cast<double>(end - start)));
}

void runThresholdTo(int start, int end, const std::string& source) {
    runThreshold(true, start, end, source);
}

void runThresholdFrom(int start, int end, const std::string& source) {
    runThreshold(false, start, end, source);
}

void Threshold2Stored(int start, int slot) {
    runToStored(start, slot, storedShape(), storedToStep);
}

void ThresholdFromStored(int end, int slot) {
    runFromStored(end, slot, storedShape(), storedFromStep);
}

} // namespace kirrel::transitions
