#include "transitions/Wipes.h"

#include "pixel/Mixing.h"
#include "transitions/PlainRun.h"
#include "transitions/StoredRun.h"

#include <array>
#include <stdexcept>

namespace kirrel::transitions {

namespace {

struct Rect {
    int x1, y1, x2, y2;
};

// To: the source goes into the frame inside the rectangle, and M is written.
void intoFrame(RunFrame& f, Rect r) {
    krl::BoxMix(f.M.r, f.M.g, f.M.b, f.A.r, f.A.g, f.A.b, f.W, f.H, r.x1, r.y1, r.x2, r.y2);
}
// From: the frame comes back over the source inside the rectangle, and A is written.
void intoSource(RunFrame& f, Rect r) {
    krl::BoxMix(f.A.r, f.A.g, f.A.b, f.M.r, f.M.g, f.M.b, f.W, f.H, r.x1, r.y1, r.x2, r.y2);
}

// The rectangles. Right and Bottom grow from the same corner in both shapes: the direction of the
// triples decides whether the source or the animation comes in.
void rightTo(RunFrame& f) {
    intoFrame(f, {0, 0, RunFrame::part(f.done(), f.W), f.H});
}
void rightFrom(RunFrame& f) {
    intoSource(f, {0, 0, RunFrame::part(f.done(), f.W), f.H});
}
void leftTo(RunFrame& f) {
    intoFrame(f, {RunFrame::rest(f.done(), f.W), 0, f.W, f.H});
}
void leftFrom(RunFrame& f) {
    intoSource(f, {RunFrame::part(f.remaining(), f.W), 0, f.W, f.H});
}
void bottomTo(RunFrame& f) {
    intoFrame(f, {0, 0, f.W, RunFrame::part(f.done(), f.H)});
}
void bottomFrom(RunFrame& f) {
    intoSource(f, {0, 0, f.W, RunFrame::part(f.done(), f.H)});
}
void topTo(RunFrame& f) {
    intoFrame(f, {0, RunFrame::rest(f.done(), f.H), f.W, f.H});
}
void topFrom(RunFrame& f) {
    intoSource(f, {0, RunFrame::part(f.remaining(), f.H), f.W, f.H});
}

struct WipeMember {
    FrameStep to, from;
    PlainShape plain; // toLoopFromStart, callAtStart
    PlainShape alpha;
    bool fromStoredPositions; // the two positioning calls of the FromStored shape
};

PlainShape shape(bool toLoopFromStart, bool callAtStart, bool alpha) {
    PlainShape s;
    s.toLoopFromStart = toLoopFromStart;
    s.callAtStart = callAtStart;
    s.alphaLimitsSource = alpha;
    return s;
}

// Where the members' runs differ from the common shape: the top wipe (and in the alpha family the
// right wipe as well) starts its To loop at frame Start and mixes there, with a rectangle of one
// edge line; the alpha From runs mix at Start unguarded, so frame Start is the source inside the
// alpha and the frame outside it. The top wipe's FromStored run, in both families, goes without the
// shape's two moves to the overlap's first frame before the frames go in front and before the mixing.
const std::array<WipeMember, 4> kMembers = {{
    {rightTo, rightFrom, shape(false, false, false), shape(true, true, true), true},
    {leftTo, leftFrom, shape(false, false, false), shape(false, true, true), true},
    {bottomTo, bottomFrom, shape(false, false, false), shape(false, true, true), true},
    {topTo, topFrom, shape(true, true, false), shape(true, true, true), false},
}};

StoredShape storedShape(WipeFamily family, bool positions) {
    StoredShape s;
    s.positionCalls = positions;
    s.alphaLimitsSource = family == WipeFamily::Alpha;
    return s;
}

const WipeMember& member(int index) {
    if (index < 0 || index >= static_cast<int>(kMembers.size())) throw std::out_of_range("Invalid wipe");
    return kMembers[static_cast<std::size_t>(index)];
}

} // namespace

void runWipeTo(WipeFamily family, int index, int start, int end, const std::string& source) {
    const WipeMember& m = member(index);
    runPlain(Direction::To, start, end, source, family == WipeFamily::Alpha ? m.alpha : m.plain, m.to);
}

void runWipeFrom(WipeFamily family, int index, int start, int end, const std::string& source) {
    const WipeMember& m = member(index);
    runPlain(Direction::From, start, end, source, family == WipeFamily::Alpha ? m.alpha : m.plain, m.from);
}

void runWipeToStored(WipeFamily family, int index, int start, int slot) {
    const WipeMember& m = member(index);
    runToStored(start, slot, storedShape(family, true), m.to);
}

void runWipeFromStored(WipeFamily family, int index, int end, int slot) {
    const WipeMember& m = member(index);
    runFromStored(end, slot, storedShape(family, m.fromStoredPositions), m.from);
}

} // namespace kirrel::transitions
