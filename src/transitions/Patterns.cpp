#include "transitions/Patterns.h"

#include "panel/FormBase.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/PatternMasks.h"
#include "transitions/PlainRun.h"
#include "transitions/StoredRun.h"

#include <QImage>
#include <QLabel>
#include <QPixmap>

#include <array>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <utility>

namespace kirrel::transitions {

namespace {

enum class Mask { None, Iris, Diamond, X, LinesToLeft, LinesToRight, LinesUp, LinesDown, Circle };

// The frame call.
enum class Call {
    Blind,     // BlindMix at the level, the slats opening together
    Thresh,    // AlphaMixThresh: the second picture where the mask lies below the level
    Threshold, // the mask cut at the level on a work plane, then AlphaMix through it
};

enum class Level {
    Up,             // L_up
    Down,           // L_down
    Inverse,        // L_inv
    DownComplement, // 255 - L_down
};

struct PatternModule {
    Call call;
    // The call writes the source picture: it works on a fresh copy of the source every frame, so a
    // source read once before the loop (Swap, Primary Color) is whole again on the next frame.
    bool sourceFirst;
    Level level;
    // At frame End the picture the run ends on is copied whole, over whatever the level left.
    bool finalCopy;
    // The loop makes frame Start as well; otherwise it starts after it.
    bool fromStart;
    // The level is held in a byte rather than a 32-bit integer.
    bool byteLevel = false;
};

struct PatternVariant {
    Mask mask;
    int blindMode; // BlindMix: 1 horizontal slats, 2 vertical
    PatternModule to, from, toStored, fromStored;
};

// Open: the mask's low values turn first, rising with L_up; the From runs write the source.
constexpr PatternModule kOpenTo{Call::Thresh, false, Level::Up, true, true};
constexpr PatternModule kOpenFrom{Call::Thresh, true, Level::Up, true, true};
// Close: the To run mixes into the source at the falling level and goes without the final copy (at End
// its level is 0 and the source stands whole); the From run falls from 255 on the frame. The circles
// keep the copy in every run, since their cut leaves the last column and row to the mix.
constexpr PatternModule kCloseTo{Call::Thresh, true, Level::Down, false, true};
constexpr PatternModule kCloseFrom{Call::Thresh, false, Level::Inverse, true, true};

constexpr PatternModule inByte(PatternModule m) {
    m.byteLevel = true;
    return m;
}

constexpr PatternVariant sameTwins(Mask mask, PatternModule to, PatternModule from) {
    return {mask, 0, to, from, to, from};
}

// The blinds: the library draws the slats; the To run starts after frame Start and puts the source on
// frame End instead of the call, the From run puts the frame there.
constexpr PatternVariant blinds(int mode) {
    const PatternModule to{Call::Blind, false, Level::Up, true, false};
    const PatternModule from{Call::Blind, true, Level::Up, true, true};
    return {Mask::None, mode, to, from, to, from};
}

constexpr std::array<PatternVariant, 2> kBlinds = {{blinds(1), blinds(2)}};
constexpr std::array<PatternVariant, 2> kDiamonds = {
    {sameTwins(Mask::Diamond, kOpenTo, kOpenFrom), sameTwins(Mask::Diamond, kCloseTo, kCloseFrom)}};
// The stored iris twins hold their level in a byte.
constexpr std::array<PatternVariant, 2> kIris = {{
    {Mask::Iris, 0, kOpenTo, kOpenFrom, inByte(kOpenTo), inByte(kOpenFrom)},
    {Mask::Iris, 0, kCloseTo, kCloseFrom, inByte(kCloseTo), inByte(kCloseFrom)},
}};
constexpr std::array<PatternVariant, 2> kX = {
    {sameTwins(Mask::X, kOpenTo, kOpenFrom), sameTwins(Mask::X, kCloseTo, kCloseFrom)}};
// Lines to Left, to Right, Up, Down: every one opens along its sawtooth.
constexpr std::array<PatternVariant, 4> kLines = {{
    sameTwins(Mask::LinesToLeft, kOpenTo, kOpenFrom),
    sameTwins(Mask::LinesToRight, kOpenTo, kOpenFrom),
    sameTwins(Mask::LinesUp, kOpenTo, kOpenFrom),
    sameTwins(Mask::LinesDown, kOpenTo, kOpenFrom),
}};
// The circle mask is bright at the centre. The plain runs cut it to black and white on a work plane
// (a byte above the level turns) and mix through that: Open at L_down, so the centre turns first,
// Close at 255 - L_down, so the rim does. The stored twins make the same pictures with one hard mix:
// where the mask lies below the level the other picture stays, so the triples change places.
constexpr std::array<PatternVariant, 2> kCircles = {{
    {Mask::Circle,
     0,
     {Call::Threshold, false, Level::Down, true, true},
     {Call::Threshold, true, Level::Down, true, true},
     {Call::Thresh, true, Level::Down, true, true},
     {Call::Thresh, false, Level::Down, true, true}},
    {Mask::Circle,
     0,
     {Call::Threshold, true, Level::DownComplement, true, true},
     {Call::Threshold, false, Level::DownComplement, true, true},
     {Call::Thresh, false, Level::DownComplement, true, true},
     {Call::Thresh, true, Level::DownComplement, true, true}},
}};

std::span<const PatternVariant> table(PatternFamily family) {
    switch (family) {
    case PatternFamily::Blinds:
        return kBlinds;
    case PatternFamily::Diamonds:
        return kDiamonds;
    case PatternFamily::Iris:
        return kIris;
    case PatternFamily::Lines:
        return kLines;
    case PatternFamily::X:
        return kX;
    case PatternFamily::Circles:
        return kCircles;
    }
    throw std::out_of_range("Invalid transition");
}

const PatternVariant& variantOf(PatternFamily family, int index) {
    const auto rows = table(family);
    if (index < 0 || index >= static_cast<int>(rows.size())) throw std::out_of_range("Invalid transition");
    return rows[static_cast<std::size_t>(index)];
}

int levelOf(const PatternModule& m, const RunFrame& f) {
    double v = 0;
    switch (m.level) {
    case Level::Up:
        v = f.done() * 255.0;
        break;
    case Level::Down:
    case Level::DownComplement:
        v = f.remaining() * 255.0;
        break;
    case Level::Inverse:
        v = 255.0 - f.done() * 255.0;
        break;
    }
    const int level = m.byteLevel ? toByte(v) : toInt32(v);
    return m.level == Level::DownComplement ? 255 - level : level;
}

// One frame of a member. The result is left in M, which both run shapes send; `toward` says that the
// run ends on the source (To), else on the frame (From).
void patternFrame(const PatternVariant& v, const PatternModule& m, bool toward, RunFrame& f) {
    if (m.finalCopy && f.i == f.end) {
        if (toward) f.M = f.A;
        return;
    }
    const int level = levelOf(m, f);
    krl::Triple work;
    if (m.sourceFirst) work = f.A;
    krl::Triple& a = m.sourceFirst ? work : f.M;
    const krl::Triple& b = m.sourceFirst ? f.M : f.A;
    switch (m.call) {
    case Call::Blind:
        krl::BlindMix(a.r, a.g, a.b, b.r, b.g, b.b, f.W, f.H, level, v.blindMode);
        break;
    case Call::Thresh:
        krl::AlphaMixThresh(a.r, a.g, a.b, b.r, b.g, b.b, f.noise, level, f.W, f.H);
        break;
    case Call::Threshold: {
        krl::Plane cut = f.noise;
        krl::Threshold(cut, level, f.W, f.H);
        krl::AlphaMix(a.r, a.g, a.b, b.r, b.g, b.b, cut, f.W, f.H);
        break;
    }
    }
    if (m.sourceFirst) f.M = std::move(work);
}

// The circles' drawing surface is left on their dialog, where one is open.
void showOnCircleDialog(const QImage& surface) {
    if (panel::FormBase* form = panel::FormBase::find("frmCircles"))
        if (auto* box = qobject_cast<QLabel*>(form->control("PreviewBox"))) {
            box->resize(surface.size());
            box->setPixmap(QPixmap::fromImage(surface));
        }
}

// The mask, made once per run before the frames; it rides in the run's threshold plane.
void makeMask(Mask mask, RunFrame& f) {
    switch (mask) {
    case Mask::None:
        return;
    case Mask::Iris:
        f.noise = irisMask(f.W, f.H);
        return;
    case Mask::Diamond:
        f.noise = diamondMask(f.W, f.H);
        return;
    case Mask::X:
        f.noise = xMask(f.W, f.H);
        return;
    case Mask::LinesToLeft:
        f.noise = linesMask(LinesDirection::ToLeft, f.W, f.H);
        return;
    case Mask::LinesToRight:
        f.noise = linesMask(LinesDirection::ToRight, f.W, f.H);
        return;
    case Mask::LinesUp:
        f.noise = linesMask(LinesDirection::Up, f.W, f.H);
        return;
    case Mask::LinesDown:
        f.noise = linesMask(LinesDirection::Down, f.W, f.H);
        return;
    case Mask::Circle: {
        QImage surface;
        f.noise = circleMask(f.W, f.H, &surface);
        showOnCircleDialog(surface);
        return;
    }
    }
}

// The run engines take plain functions; one per family, variant and shape is made from the tables.
enum class Shape { To, From, ToStored, FromStored };

const PatternModule& moduleOf(const PatternVariant& v, Shape s) {
    switch (s) {
    case Shape::To:
        return v.to;
    case Shape::From:
        return v.from;
    case Shape::ToStored:
        return v.toStored;
    case Shape::FromStored:
        break;
    }
    return v.fromStored;
}

template <PatternFamily F, std::size_t I, Shape S> void patternStep(RunFrame& f) {
    const PatternVariant& v = variantOf(F, static_cast<int>(I));
    patternFrame(v, moduleOf(v, S), S == Shape::To || S == Shape::ToStored, f);
}

template <PatternFamily F, std::size_t I> void patternPrepare(RunFrame& f) {
    makeMask(variantOf(F, static_cast<int>(I)).mask, f);
}

struct Procedures {
    FrameStep to, from, toStored, fromStored, prepare;
};

template <PatternFamily F, std::size_t I> constexpr Procedures proceduresOf() {
    return {patternStep<F, I, Shape::To>, patternStep<F, I, Shape::From>, patternStep<F, I, Shape::ToStored>,
            patternStep<F, I, Shape::FromStored>, patternPrepare<F, I>};
}

// Every family has two variants but the lines, which have four.
constexpr std::array<std::array<Procedures, 4>, 6> kProcedures = {{
    {proceduresOf<PatternFamily::Blinds, 0>(), proceduresOf<PatternFamily::Blinds, 1>()},
    {proceduresOf<PatternFamily::Diamonds, 0>(), proceduresOf<PatternFamily::Diamonds, 1>()},
    {proceduresOf<PatternFamily::Iris, 0>(), proceduresOf<PatternFamily::Iris, 1>()},
    {proceduresOf<PatternFamily::Lines, 0>(), proceduresOf<PatternFamily::Lines, 1>(),
     proceduresOf<PatternFamily::Lines, 2>(), proceduresOf<PatternFamily::Lines, 3>()},
    {proceduresOf<PatternFamily::X, 0>(), proceduresOf<PatternFamily::X, 1>()},
    {proceduresOf<PatternFamily::Circles, 0>(), proceduresOf<PatternFamily::Circles, 1>()},
}};

const Procedures& proceduresFor(PatternFamily family, int variant) {
    variantOf(family, variant); // refuses an index outside the family's list
    return kProcedures[static_cast<std::size_t>(family)][static_cast<std::size_t>(variant)];
}

PlainShape plainShape(const PatternModule& m, FrameStep prepare) {
    PlainShape s;
    s.toLoopFromStart = m.fromStart;
    s.callAtStart = true; // the step decides what each frame holds
    s.fromWritesFrame = true;
    s.progress = false;
    s.lock = false;
    s.refreshBeforeClose = true;
    s.prepare = prepare;
    return s;
}

StoredShape storedShape(const PatternModule& m, FrameStep prepare) {
    StoredShape s;
    s.callAtStart = m.fromStart;
    s.fromWritesFrame = true;
    s.lock = false;
    s.refreshBeforeClose = true;
    s.prepare = prepare;
    return s;
}

} // namespace

void runPatternTo(PatternFamily family, int variant, int start, int end, const std::string& source) {
    const Procedures& p = proceduresFor(family, variant);
    runPlain(Direction::To, start, end, source, plainShape(variantOf(family, variant).to, p.prepare), p.to);
}

void runPatternFrom(PatternFamily family, int variant, int start, int end, const std::string& source) {
    const Procedures& p = proceduresFor(family, variant);
    runPlain(Direction::From, start, end, source, plainShape(variantOf(family, variant).from, p.prepare),
             p.from);
}

void runPatternToStored(PatternFamily family, int variant, int start, int slot) {
    const Procedures& p = proceduresFor(family, variant);
    runToStored(start, slot, storedShape(variantOf(family, variant).toStored, p.prepare), p.toStored);
}

void runPatternFromStored(PatternFamily family, int variant, int end, int slot) {
    const Procedures& p = proceduresFor(family, variant);
    runFromStored(end, slot, storedShape(variantOf(family, variant).fromStored, p.prepare), p.fromStored);
}

} // namespace kirrel::transitions
