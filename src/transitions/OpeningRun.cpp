#include "transitions/OpeningRun.h"

#include "pixel/Mixing.h"
#include "transitions/Sources.h"

namespace kirrel::transitions {

namespace {

// round(share * size / 2.0): the division by two comes after the multiplication, and only then the
// rounding, so an odd size can round either way about its centre.
int halfPart(double share, int size) {
    return toInt16(share * static_cast<double>(size) / 2.0);
}

bool madeByModule(const OpeningModule& m, const RunFrame& f) {
    // The plain runs never visit the frames a module leaves out; a stored run visits the whole
    // overlap, and such a frame goes back as the animation has it.
    if (m.frames == Frames::AfterStart && f.i == f.start) return false;
    if (m.frames == Frames::BeforeEnd && f.i == f.end) return false;
    return true;
}

bool guardPasses(Guard g, const RunFrame& f) {
    switch (g) {
    case Guard::None:
        return true;
    case Guard::AfterStart:
        return f.i > f.start;
    case Guard::BeforeEnd:
        return f.i < f.end;
    }
    return true;
}

// A source branch exists for each text of the source lists; the stored twins always have their slot.
bool hasSourceBranch(const std::string& source) {
    return source == "Swap" || source == "Primary Color" || isPerFrameSource(source) ||
           isStoredSource(source);
}

void mix(Opening shape, krl::Triple& a, const krl::Triple& b, int x, int y, const RunFrame& f) {
    const int W = f.W, H = f.H;
    switch (shape) {
    case Opening::Rows:
        krl::BoxMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, 0, y, W, H - y);
        break;
    case Opening::Columns:
        krl::BoxMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, x, 0, W - x, H);
        break;
    case Opening::Box:
        krl::BoxMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, x, y, W - x, H - y);
        break;
    case Opening::Cross:
        krl::BoxMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, x, 0, W - x, H);
        krl::BoxMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, 0, y, W, H - y);
        break;
    case Opening::HDoor:
        krl::DoorMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, x, 1);
        break;
    case Opening::VDoor:
        krl::DoorMix(a.r, a.g, a.b, b.r, b.g, b.b, W, H, y, 2);
        break;
    }
}

} // namespace

void openingFrame(Opening shape, const OpeningModule& m, RunFrame& f) {
    if (!madeByModule(m, f)) return;
    if ((m.ends == EndPicture::SourceAtStart && f.i == f.start) ||
        (m.ends == EndPicture::SourceAtEnd && f.i == f.end)) {
        f.M = f.A;
        return;
    }
    if (m.ends == EndPicture::FrameAtEnd && f.i == f.end) return;

    const double share = m.reach == Reach::Opening ? f.remaining() : f.done();
    const int x = halfPart(share, f.W);
    const int y = halfPart(share, f.H);
    const bool call = guardPasses(m.guard, f) && (m.code == MixCode::Guarded || hasSourceBranch(f.source));
    if (m.sourceFirst) {
        // A source read once before the loop must not carry this frame's result into the next: the
        // operation writes a copy, so that a To run ends on the source and a From run starts on it.
        krl::Triple work = f.A;
        if (call) mix(shape, work, f.M, x, y, f);
        f.M = std::move(work);
    } else if (call) {
        mix(shape, f.M, f.A, x, y, f);
    }
}

} // namespace kirrel::transitions
