#include "transitions/Stretches.h"

#include "pixel/Mixing.h"
#include "transitions/RunSupport.h"
#include "transitions/Sources.h"
#include "transitions/StoredRun.h"

#include <cstddef>
#include <stdexcept>
#include <utility>

namespace kirrel::transitions {

namespace {

// The four values a frame's call takes for a size Z (W or H): u = (f - S) / N * Z and v = (E - f) /
// N * Z, and the half sizes c and o of the same ratios, halved before they are rounded.
enum class Value { Rising, Falling, HalfRising, HalfFalling };

int valueOf(Value value, const RunFrame& f, int size) {
    switch (value) {
    case Value::Rising:
        return RunFrame::part(f.done(), size);
    case Value::Falling:
        return RunFrame::part(f.remaining(), size);
    case Value::HalfRising:
        return toInt16(f.done() * static_cast<double>(size) / 2.0);
    case Value::HalfFalling:
        return toInt16(f.remaining() * static_cast<double>(size) / 2.0);
    }
    return 0;
}

// A band of the frame, as the stretch operation takes it: the value k becomes the band's moving
// edge, or both edges of a band about the centre; the other edges stand at the frame's bounds.
struct Band {
    int right, bottom, left, top;
};

Band bandOf(int mode, int k, int W, int H) {
    switch (mode) {
    case 1:
    case 2:
        return {k, H, 0, 0};
    case 3:
    case 4:
        return {W, k, 0, 0};
    case 5:
        return {W - k, H, k, 0};
    default:
        return {W, H - k, 0, k};
    }
}

void stretch(krl::Triple& a, const krl::Triple& b, int W, int H, int mode, int k) {
    const Band band = bandOf(mode, k, W, H);
    krl::StretchOverlay(a.r, a.g, a.b, b.r, b.g, b.b, W, H, band.right, band.bottom, band.left, band.top,
                        mode);
}

// Stretch Over, Stretch Away and Stretch Center differ only in the value that drives the band and
// the band's mode. Over grows the band from the named edge with the rising value (or, for the far
// edges, moves its edge in with the falling one); Away shrinks it towards the named edge the other
// way round; Center opens a band about the centre with the falling half value (selectors 1, 2) or
// closes it with the rising one (3, 4), on the same modes.
struct BandCall {
    bool vertical; // the size is H, else W
    Value value;
    int mode;
};

constexpr std::array<BandCall, 4> kOverCalls = {{
    {false, Value::Rising, 1},
    {false, Value::Falling, 2},
    {true, Value::Rising, 3},
    {true, Value::Falling, 4},
}};
constexpr std::array<BandCall, 4> kAwayCalls = {{
    {false, Value::Falling, 1},
    {false, Value::Rising, 2},
    {true, Value::Falling, 3},
    {true, Value::Rising, 4},
}};
constexpr std::array<BandCall, 4> kCenterCalls = {{
    {false, Value::HalfFalling, 5},
    {true, Value::HalfFalling, 6},
    {false, Value::HalfRising, 5},
    {true, Value::HalfRising, 6},
}};

// The squeezes share the frame between the two pictures at a seam (selectors 1..4), or squeeze the
// frame into a band about the centre while the source closes over it as a pair of doors (5, 6).
// The operation puts the frame before the seam and the source after it, and writes that picture to
// the frame and the source triple alike: both directions of a seam squeeze show the same frames,
// the falling seam (To Left, To Top) going from the frame to the source and the rising one (To
// Right, To Bottom) from the source to the frame. The vertical pair hands the source and its saved
// copy over the other way round in the From direction; the result written into the saved copy's
// place is dropped, so every frame squeezes against the source itself.
struct SqueezeCall {
    bool vertical;
    Value value;
    bool sourcesTradeFrom; // From passes (P1, P3, P2) rather than (P1, P2, P3)
    bool door;
};

constexpr std::array<SqueezeCall, 6> kSqueezeCalls = {{
    {false, Value::Falling, false, false},
    {false, Value::Rising, false, false},
    {true, Value::Falling, true, false},
    {true, Value::Rising, true, false},
    {false, Value::HalfRising, false, true},
    {true, Value::HalfRising, false, true},
}};

constexpr int selectorCount(StretchKind kind) {
    return kind == StretchKind::Squeeze ? 6 : 4;
}

void checkSelector(StretchKind kind, int selector) {
    if (selector < 1 || selector > selectorCount(kind))
        throw std::out_of_range("Invalid procedure call or argument");
}

const BandCall& bandCall(StretchKind kind, int selector) {
    const auto i = static_cast<std::size_t>(selector - 1);
    switch (kind) {
    case StretchKind::Over:
        return kOverCalls[i];
    case StretchKind::Away:
        return kAwayCalls[i];
    default:
        return kCenterCalls[i];
    }
}

krl::Triple& squeezeFrame(const SqueezeCall& call, bool to, RunFrame& f, const krl::Triple& saved) {
    krl::Triple& P1 = f.M;
    krl::Triple& P2 = f.A;
    const int W = f.W, H = f.H;
    const int k = valueOf(call.value, f, call.vertical ? H : W);
    if (!call.door) {
        // Where the saved copy takes the source's place it would also take the result, and the next
        // frame would restore the source from it: it works on a copy, so each frame starts from the
        // source read before the loop, as the other runs do.
        krl::Triple savedCopy;
        if (call.sourcesTradeFrom && !to) savedCopy = saved;
        krl::Triple& b = call.sourcesTradeFrom && !to ? savedCopy : P2;
        const krl::Triple& c = call.sourcesTradeFrom && !to ? P2 : saved;
        const int right = call.vertical ? W : k, bottom = call.vertical ? k : H;
        krl::SqueezeOverlay(P1.r, P1.g, P1.b, b.r, b.g, b.b, c.r, c.g, c.b, W, H, right, bottom, 0, 0,
                            call.vertical ? 2 : 1);
        return to ? P2 : P1;
    }
    const int bandMode = call.vertical ? 6 : 5, doorMode = call.vertical ? 2 : 1;
    if (to) {
        // The frame squeezed into the centre band over the source, then the source's doors close
        // over what is left at the edges; the last frame is the source itself.
        P2 = saved;
        stretch(P2, P1, W, H, bandMode, k);
        P1 = P2;
        krl::DoorMix(P1.r, P1.g, P1.b, saved.r, saved.g, saved.b, W, H, k, doorMode);
        if (f.i == f.end) P1 = saved;
    } else {
        // The source squeezed into the centre band over the frame, then that picture's own halves
        // close over it as doors: the first frame is the source, and on the last the band is gone
        // and the closed doors are the whole frame.
        stretch(P1, saved, W, H, bandMode, k);
        P2 = P1;
        krl::DoorMix(P2.r, P2.g, P2.b, P1.r, P1.g, P1.b, W, H, k, doorMode);
        P1 = P2;
    }
    return P1;
}

// One frame's call: P1 is f.M, P2 is f.A and `saved` is P3. Returns the triple that goes to the host.
krl::Triple& stretchFrame(StretchKind kind, int selector, Direction direction, RunFrame& f,
                          krl::Triple& saved) {
    const bool to = direction == Direction::To;
    if (kind == StretchKind::Squeeze)
        return squeezeFrame(kSqueezeCalls[static_cast<std::size_t>(selector - 1)], to, f, saved);
    const BandCall& call = bandCall(kind, selector);
    const int k = valueOf(call.value, f, call.vertical ? f.H : f.W);
    if (to) {
        stretch(f.M, f.A, f.W, f.H, call.mode, k);
        return f.M;
    }
    stretch(f.A, f.M, f.W, f.H, call.mode, k);
    return f.A;
}

void runBase(StretchKind kind, int start, int end, const std::string& source, int selector,
             Direction direction) {
    checkSelector(kind, selector);
    Vantry::Vantry_Class van;
    const int H = van.Van_BufferHeight();
    const int W = van.Van_BufferWidth();
    RunFrame f{van, source};
    f.setRange(W, H, start, end);
    f.total = van.Van_GetTotalFrames();
    van.Van_GetCurrentFrame();
    fillSourceOnce(van, source, f.A, W, H);
    // A source text these procedures don't read leaves the source a fresh, black picture.
    if (f.A.empty()) f.A = krl::Triple(W, H);
    krl::Triple saved = f.A;
    van.Van_Lock();
    van.Van_ChangePointer(11);
    for (int i = start; i <= end; ++i) {
        f.i = i;
        van.Van_GotoFrame(i);
        fetchFrame(van, f.M);
        f.A = saved;
        sendFrame(van, stretchFrame(kind, selector, direction, f, saved));
        van.van_status(100.0 * divide(static_cast<double>(i), static_cast<double>(f.total - 1)));
    }
    van.van_StatusClose();
    van.Van_RestorePointer();
    van.Van_Unlock();
}

// The stored twins make every frame of the overlap, the first one included, and send the result
// through the frame triple in both directions. The stored frame is P2 and, as read, P3.
template <StretchKind Kind, int Selector, bool To> void storedStep(RunFrame& f) {
    krl::Triple saved = f.A;
    krl::Triple& sent = stretchFrame(Kind, Selector, To ? Direction::To : Direction::From, f, saved);
    // A copy, not a move: the stored run reads the next stored frame into the triple left behind.
    if (&sent != &f.M) f.M = sent;
}

template <StretchKind Kind, bool To, std::size_t... I>
constexpr std::array<FrameStep, sizeof...(I)> storedSteps(std::index_sequence<I...>) {
    return {&storedStep<Kind, static_cast<int>(I) + 1, To>...};
}

template <StretchKind Kind, bool To>
constexpr auto kStoredSteps = storedSteps<Kind, To>(std::make_index_sequence<selectorCount(Kind)>{});

template <StretchKind Kind, bool To> FrameStep storedStepFor(int selector) {
    checkSelector(Kind, selector);
    return kStoredSteps<Kind, To>[static_cast<std::size_t>(selector - 1)];
}

StoredShape storedShape() {
    StoredShape s;
    s.callAtStart = true;
    s.fromWritesFrame = true;
    return s;
}

template <StretchKind Kind> void toStored(int start, int slot, int selector) {
    runToStored(start, slot, storedShape(), storedStepFor<Kind, true>(selector));
}
template <StretchKind Kind> void fromStored(int end, int slot, int selector) {
    runFromStored(end, slot, storedShape(), storedStepFor<Kind, false>(selector));
}

const StretchOption& option(int index) {
    if (index < 0 || index >= static_cast<int>(kStretchOptions.size()))
        throw std::out_of_range("Invalid procedure call or argument");
    return kStretchOptions[static_cast<std::size_t>(index)];
}

} // namespace

void StretchOver(int start, int end, const std::string& source, int selector, Direction direction) {
    runBase(StretchKind::Over, start, end, source, selector, direction);
}
void StretchAway(int start, int end, const std::string& source, int selector, Direction direction) {
    runBase(StretchKind::Away, start, end, source, selector, direction);
}
void StretchCenter(int start, int end, const std::string& source, int selector, Direction direction) {
    runBase(StretchKind::Center, start, end, source, selector, direction);
}
void Squeeze(int start, int end, const std::string& source, int selector, Direction direction) {
    runBase(StretchKind::Squeeze, start, end, source, selector, direction);
}

void StretchOverToStored(int start, int slot, int selector) {
    toStored<StretchKind::Over>(start, slot, selector);
}
void StretchOverFromStored(int end, int slot, int selector) {
    fromStored<StretchKind::Over>(end, slot, selector);
}
void StretchAwayToStored(int start, int slot, int selector) {
    toStored<StretchKind::Away>(start, slot, selector);
}
void StretchAwayFromStored(int end, int slot, int selector) {
    fromStored<StretchKind::Away>(end, slot, selector);
}
void StretchCenterToStored(int start, int slot, int selector) {
    toStored<StretchKind::Center>(start, slot, selector);
}
void StretchCenterFromStored(int end, int slot, int selector) {
    fromStored<StretchKind::Center>(end, slot, selector);
}
void SqueezeToStored(int start, int slot, int selector) {
    toStored<StretchKind::Squeeze>(start, slot, selector);
}
void SqueezeFromStored(int end, int slot, int selector) {
    fromStored<StretchKind::Squeeze>(end, slot, selector);
}

namespace {

using BaseProcedure = void (*)(int, int, const std::string&, int, Direction);
using StoredProcedure = void (*)(int, int, int);

struct Procedures {
    BaseProcedure base;
    StoredProcedure to, from;
};

Procedures proceduresOf(StretchKind kind) {
    switch (kind) {
    case StretchKind::Over:
        return {StretchOver, StretchOverToStored, StretchOverFromStored};
    case StretchKind::Away:
        return {StretchAway, StretchAwayToStored, StretchAwayFromStored};
    case StretchKind::Center:
        return {StretchCenter, StretchCenterToStored, StretchCenterFromStored};
    default:
        return {Squeeze, SqueezeToStored, SqueezeFromStored};
    }
}

} // namespace

void runStretchTo(int index, int start, int end, const std::string& source) {
    const StretchOption& o = option(index);
    const Procedures p = proceduresOf(o.kind);
    p.base(start, end, source, o.selector, Direction::To);
}
void runStretchFrom(int index, int start, int end, const std::string& source) {
    const StretchOption& o = option(index);
    const Procedures p = proceduresOf(o.kind);
    p.base(start, end, source, o.selector, Direction::From);
}
void runStretchToStored(int index, int start, int slot) {
    const StretchOption& o = option(index);
    const Procedures p = proceduresOf(o.kind);
    p.to(start, slot, o.selector);
}
void runStretchFromStored(int index, int end, int slot) {
    const StretchOption& o = option(index);
    const Procedures p = proceduresOf(o.kind);
    p.from(end, slot, o.selector);
}

} // namespace kirrel::transitions
