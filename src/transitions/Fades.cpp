#include "transitions/Fades.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/PlainRun.h"
#include "transitions/RunSupport.h"
#include "transitions/Sources.h"
#include "transitions/StoredRun.h"

namespace kirrel::transitions {

namespace {

// Read before the frames: the swap planes, or the primary colour as three numbers (the colour is
// mixed in directly, without planes of its own).
void prepareFade(RunFrame& f) {
    if (f.source == "Swap") {
        f.A.r = f.van.Van_GetSwapRBuffer();
        f.A.g = f.van.Van_GetSwapGBuffer();
        f.A.b = f.van.Van_GetSwapBBuffer();
    } else if (f.source == "Primary Color") {
        const int c = f.van.Van_getPrimaryColor();
        f.red = c & 255;
        f.green = (c & 65280) / 256;
        f.blue = (c & 16711680) / 65536;
    }
}

// pct is the share of the frame that stays. The sources that work on the frame alone (the negative,
// brightness, darkness, snow) are given the share of the effect, 100 - pct.
void fadeFrame(RunFrame& f, int pct) {
    krl::Triple& M = f.M;
    const std::string& src = f.source;
    if (src == "Swap") {
        krl::MixBuffers(M.r, M.g, M.b, f.A.r, f.A.g, f.A.b, pct, f.W, f.H);
    } else if (src == "Primary Color") {
        krl::MixBufferColor(M.r, M.g, M.b, f.red, f.green, f.blue, pct, f.W, f.H);
    } else if (src == "GreyScale") {
        fetchFrame(f.van, f.A);
        krl::GreyScale(f.A.r, f.A.g, f.A.b, f.W + 1, f.H + 1);
        krl::MixBuffers(M.r, M.g, M.b, f.A.r, f.A.g, f.A.b, pct, f.W, f.H);
    } else if (src == "Negative") {
        krl::MixBufferNegative(M.r, M.g, M.b, 100 - pct, f.W, f.H);
    } else if (const int channels = channelsOfSource(src)) {
        krl::MixBufferChannels(M.r, M.g, M.b, pct, channels, f.W, f.H);
    } else if (src == "Brightness") {
        krl::IncreaseBrightness(M.r, M.g, M.b, 100 - pct, f.W, f.H);
    } else if (src == "Darkness") {
        krl::IncreaseDarkness(M.r, M.g, M.b, 100 - pct, f.W, f.H);
    } else if (src == "White Noise (TV Snow)") {
        krl::WhiteNoise(M.r, M.g, M.b, 100 - pct, f.W, f.H);
    }
}

// The stored fades mix the slot's frame whatever the source list said.
void fadeStored(RunFrame& f, int pct) {
    krl::MixBuffers(f.M.r, f.M.g, f.M.b, f.A.r, f.A.g, f.A.b, pct, f.W, f.H);
}

// The alpha family: the faded frame shows only through the alpha read before the frames.
template <void (*Fade)(RunFrame&, int)> void throughAlpha(RunFrame& f, int pct) {
    krl::Triple kept = f.M;
    Fade(f, pct);
    krl::AlphaMix(kept.r, kept.g, kept.b, f.M.r, f.M.g, f.M.b, f.alpha, f.W, f.H);
    f.M = kept;
}

// The levels. To: the share that stays falls from 100 to 0, rounded to 16 bits before the call.
// From: it rises from 0 to 100 and is kept as a double up to the call. Stored: 32 bits.
int toLevel(const RunFrame& f) {
    return toInt16(f.remaining() * 100.0);
}
int fromLevel(const RunFrame& f) {
    return toInt32(f.done() * 100.0);
}
int storedToLevel(const RunFrame& f) {
    return toInt32(f.remaining() * 100.0);
}

void fadeTo(RunFrame& f) {
    fadeFrame(f, toLevel(f));
}
void fadeFrom(RunFrame& f) {
    fadeFrame(f, fromLevel(f));
}
void aFadeTo(RunFrame& f) {
    throughAlpha<fadeFrame>(f, toLevel(f));
}
void aFadeFrom(RunFrame& f) {
    throughAlpha<fadeFrame>(f, fromLevel(f));
}
void fadeToStored(RunFrame& f) {
    fadeStored(f, storedToLevel(f));
}
void fadeFromStored(RunFrame& f) {
    fadeStored(f, fromLevel(f));
}
void aFadeToStored(RunFrame& f) {
    throughAlpha<fadeStored>(f, storedToLevel(f));
}
void aFadeFromStored(RunFrame& f) {
    throughAlpha<fadeStored>(f, fromLevel(f));
}

// Both plain shapes loop from Start and write M; To leaves frame Start as it was (its mix is guarded),
// From mixes there too, at level 0: all source. No progress is shown.
PlainShape plainShape(FadeFamily family, Direction d) {
    PlainShape s;
    s.toLoopFromStart = true;
    s.callAtStart = d == Direction::From;
    s.fromWritesFrame = true;
    s.progress = false;
    s.standardSources = false;
    s.prepare = prepareFade;
    s.alphaOnce = family == FadeFamily::Alpha;
    return s;
}

// The plain stored fades run without the lock and bring the scrubber up to the new length
// themselves; the alpha ones keep the usual bracket. From mixes at the overlap's first frame (level 0:
// all stored frame) and writes M, like the plain fades.
StoredShape storedShape(FadeFamily family, Direction d) {
    StoredShape s;
    s.lock = family == FadeFamily::Alpha;
    s.showScrubAfter = family == FadeFamily::Plain;
    s.alphaOnce = family == FadeFamily::Alpha;
    s.callAtStart = d == Direction::From;
    s.fromWritesFrame = true;
    return s;
}

} // namespace

void runFadeTo(FadeFamily family, int start, int end, const std::string& source) {
    runPlain(Direction::To, start, end, source, plainShape(family, Direction::To),
             family == FadeFamily::Alpha ? aFadeTo : fadeTo);
}

void runFadeFrom(FadeFamily family, int start, int end, const std::string& source) {
    runPlain(Direction::From, start, end, source, plainShape(family, Direction::From),
             family == FadeFamily::Alpha ? aFadeFrom : fadeFrom);
}

void runFadeToStored(FadeFamily family, int start, int slot) {
    runToStored(start, slot, storedShape(family, Direction::To),
                family == FadeFamily::Alpha ? aFadeToStored : fadeToStored);
}

void runFadeFromStored(FadeFamily family, int end, int slot) {
    runFromStored(end, slot, storedShape(family, Direction::From),
                  family == FadeFamily::Alpha ? aFadeFromStored : fadeFromStored);
}

} // namespace kirrel::transitions
