#include "transitions/Dissolves.h"

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/PlainRun.h"
#include "transitions/StoredRun.h"

#include <chrono>
#include <random>

namespace kirrel::transitions {

namespace {

std::uint64_t timeOfDaySeed() {
    return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

// The noise plane, bounds W and H, made by the library's white noise at full strength (one plane
// given as all three of the triple; its last column and row stay 0).
void libraryNoise(RunFrame& f) {
    krl::SeedNoise(timeOfDaySeed());
    f.noise = krl::Plane(f.W, f.H);
    krl::WhiteNoise(f.noise, f.noise, f.noise, 100, f.W, f.H);
}

// The From run fills every byte of its noise plane itself: a uniform fraction times 255, rounded.
void ownNoise(RunFrame& f) {
    std::mt19937_64 random(timeOfDaySeed());
    std::uniform_real_distribution<double> fraction(0.0, 1.0);
    f.noise = krl::Plane(f.W, f.H);
    for (int y = 0; y <= f.H; ++y)
        for (int x = 0; x <= f.W; ++x)
            f.noise.at(x, y) = toByte(fraction(random) * 255.0);
}

// A pixel takes the source where its noise is below the level; level 256 takes every pixel.
void dissolve(RunFrame& f, int level) {
    krl::AlphaMixThresh(f.M.r, f.M.g, f.M.b, f.A.r, f.A.g, f.A.b, f.noise, level, f.W, f.H);
}
void dissolveTo(RunFrame& f) {
    dissolve(f, toInt32(f.done() * 256.0));
}
void dissolveFrom(RunFrame& f) {
    dissolve(f, toInt32(f.remaining() * 256.0));
}

// Every dissolve refreshes the host's display before it closes. Both plain shapes write M. To starts after frame Start; From mixes at Start with level 256, so the
// frame Start is all source. "Primary Color" is painted over the swap planes.
PlainShape plainShape(Direction d, FrameStep noise) {
    PlainShape s;
    s.callAtStart = d == Direction::From;
    s.fromWritesFrame = true;
    s.colourOnSwapPlanes = true;
    s.prepare = noise;
    s.refreshBeforeClose = true;
    return s;
}

StoredShape storedShape(Direction d) {
    StoredShape s;
    s.callAtStart = d == Direction::From;
    s.fromWritesFrame = true;
    s.prepare = libraryNoise;
    s.refreshBeforeClose = true;
    return s;
}

} // namespace

void DissolveTo(int start, int end, const std::string& source) {
    runPlain(Direction::To, start, end, source, plainShape(Direction::To, libraryNoise), dissolveTo);
}

void DissolveFrom(int start, int end, const std::string& source) {
    runPlain(Direction::From, start, end, source, plainShape(Direction::From, ownNoise), dissolveFrom);
}

void Dissolve2Stored(int start, int slot) {
    runToStored(start, slot, storedShape(Direction::To), dissolveTo);
}

void DissolveFromStored(int end, int slot) {
    runFromStored(end, slot, storedShape(Direction::From), dissolveFrom);
}

} // namespace kirrel::transitions
