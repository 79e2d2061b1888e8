#include "transitions/Stripes.h"

#include "pixel/Mixing.h"

#include <stdexcept>
#include <utility>

namespace kirrel::transitions {

namespace {

// The module and sizes of the run in progress. A step is a plain function of the frame, and a run
// reads the dialog's sizes once, at its start; runs never overlap on the panel's one thread.
struct CurrentRun {
    const StripeModule* module = nullptr;
    StripeSizes sizes;
};
CurrentRun current;

void currentStep(RunFrame& f) {
    stripeFrame(*current.module, current.sizes, f);
}

int revealOf(const RunFrame& f, int mode) {
    return RunFrame::part(f.done(), mode == 1 ? f.W : f.H);
}

void call(StripeOp op, krl::Triple& a, const krl::Triple& b, int stripe, int reveal, int mode,
          const RunFrame& f) {
    switch (op) {
    case StripeOp::Push:
        krl::PushStripeMix(a.r, a.g, a.b, b.r, b.g, b.b, f.W, f.H, stripe, reveal, mode);
        break;
    case StripeOp::Slide:
        krl::SlideStripeMix(a.r, a.g, a.b, b.r, b.g, b.b, f.W, f.H, stripe, reveal, mode);
        break;
    case StripeOp::Stripe:
    case StripeOp::Weave:
        krl::StripeMix(a.r, a.g, a.b, b.r, b.g, b.b, f.W, f.H, stripe, reveal, mode);
        break;
    }
}

// The weave lays the vertical stripes first and the horizontal ones over them, each set with the
// size of its own button.
void apply(const StripeModule& m, const StripeSizes& sizes, krl::Triple& a, const krl::Triple& b,
           const RunFrame& f) {
    if (m.op == StripeOp::Weave) {
        call(m.op, a, b, sizes.vertical, revealOf(f, 2), 2, f);
        call(m.op, a, b, sizes.horizontal, revealOf(f, 1), 1, f);
        return;
    }
    call(m.op, a, b, m.mode == 1 ? sizes.horizontal : sizes.vertical, revealOf(f, m.mode), m.mode, f);
}

PlainShape plainShape(const StripeModule& m) {
    PlainShape s;
    s.toLoopFromStart = m.frames == Frames::Whole;
    s.fromLoopStopsBeforeEnd = m.frames == Frames::BeforeEnd;
    s.callAtStart = true; // the reveal is 0 at frame Start, so the step decides what it holds
    s.fromWritesFrame = true;
    return s;
}

StoredShape storedShape() {
    StoredShape s;
    s.callAtStart = true;
    s.fromWritesFrame = true;
    return s;
}

const StripeModule& startRun(StripeFamily family, int member, bool to, const StripeSizes& sizes) {
    const StripeMember& m = stripeMember(family, member);
    current.module = to ? &m.to : &m.from;
    current.sizes = sizes;
    return *current.module;
}

} // namespace

const StripeMember& stripeMember(StripeFamily family, int member) {
    auto pick = [member](const auto& table) -> const StripeMember& {
        if (member < 0 || member >= static_cast<int>(table.size()))
            throw std::out_of_range("Invalid transition");
        return table[static_cast<std::size_t>(member)];
    };
    switch (family) {
    case StripeFamily::Stripes:
        return pick(kStripeMembers);
    case StripeFamily::PushStripes:
        return pick(kPushStripeMembers);
    case StripeFamily::SlideStripes:
        break;
    }
    return pick(kSlideStripeMembers);
}

void stripeFrame(const StripeModule& m, const StripeSizes& sizes, RunFrame& f) {
    if (m.sourceAtEnd && f.i == f.end) {
        f.M = f.A;
        return;
    }
    if (m.sourceFirst) {
        // The source read once before the loop must not carry this frame's result into the next.
        krl::Triple work = f.A;
        apply(m, sizes, work, f.M, f);
        f.M = std::move(work);
    } else {
        apply(m, sizes, f.M, f.A, f);
    }
}

void runStripesTo(StripeFamily family, int member, const StripeSizes& sizes, int start, int end,
                  const std::string& source) {
    runPlain(Direction::To, start, end, source, plainShape(startRun(family, member, true, sizes)),
             currentStep);
}

void runStripesFrom(StripeFamily family, int member, const StripeSizes& sizes, int start, int end,
                    const std::string& source) {
    runPlain(Direction::From, start, end, source, plainShape(startRun(family, member, false, sizes)),
             currentStep);
}

void runStripesToStored(StripeFamily family, int member, const StripeSizes& sizes, int start, int slot) {
    startRun(family, member, true, sizes);
    runToStored(start, slot, storedShape(), currentStep);
}

void runStripesFromStored(StripeFamily family, int member, const StripeSizes& sizes, int end, int slot) {
    startRun(family, member, false, sizes);
    runFromStored(end, slot, storedShape(), currentStep);
}

} // namespace kirrel::transitions
