#include "generators/FrameTools.h"

#include "panel/Vantry.h"
#include "pixel/Triple.h"

namespace kirrel::generators {

namespace {

krl::Triple readFrame(Vantry::Vantry_Class& van, int frame) {
    van.Van_GotoFrame(frame);
    krl::Triple t;
    t.r = van.Van_GetRBuffer();
    t.g = van.Van_GetGBuffer();
    t.b = van.Van_GetBBuffer();
    return t;
}

void writeFrame(Vantry::Vantry_Class& van, int frame, const krl::Triple& t) {
    van.Van_GotoFrame(frame);
    van.Van_SetRbuffer(t.r);
    van.Van_SetGbuffer(t.g);
    van.Van_SetBbuffer(t.b);
}

} // namespace

void SwapFrames(int frameOne, int frameTwo) {
    Vantry::Vantry_Class van;
    const krl::Triple one = readFrame(van, frameOne);
    const krl::Triple two = readFrame(van, frameTwo);
    writeFrame(van, frameOne, two);
    writeFrame(van, frameTwo, one);
}

void CopyFrames(int frameOne, int frameTwo) {
    Vantry::Vantry_Class van;
    writeFrame(van, frameTwo, readFrame(van, frameOne));
}

void PingPongAppend() {
    Vantry::Vantry_Class van;
    // Each insertion after the last frame appends the frame that is current: walking down from the
    // last frame appends the animation in reverse.
    for (int f = van.Van_GetTotalFrames() - 1; f >= 0; --f) {
        van.Van_GotoFrame(f);
        van.Van_InsertFrame(van.Van_GetTotalFrames() - 1);
        van.Van_GotoFrame(f);
    }
}

} // namespace kirrel::generators
