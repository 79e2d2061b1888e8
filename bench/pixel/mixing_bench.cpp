// One frame's call of each mixing operation at preview and full-HD size, with the level halfway
// through its run. Bytes are those of the result triple; items are frames.

#include "pixel/Mixing.h"
#include "pixel/Slices.h"

#include <benchmark/benchmark.h>

#include <cstring>

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace krl {
namespace {

struct Pic {
    Plane r, g, b;
};

Plane noisePlane(int w, int h, unsigned seed) {
    Plane p(w, h);
    std::mt19937 rng(seed);
    std::uint8_t* d = p.data();
    for (std::size_t i = 0; i < p.size(); ++i)
        d[i] = static_cast<std::uint8_t>(rng());
    return p;
}

Pic noise(int w, int h, unsigned seed) {
    return {noisePlane(w, h, seed), noisePlane(w, h, seed + 1), noisePlane(w, h, seed + 2)};
}

#define TRI(p) p.r, p.g, p.b

// Everything one call needs: the frame A, the source B, a saved copy C, masks M and N.
struct Frame {
    int W, H;
    Pic a, b, c;
    Plane m, n;
    Frame(int w, int h)
        : W(w), H(h), a(noise(w, h, 1)), b(noise(w, h, 10)), c(b), m(noisePlane(w, h, 20)),
          n(noisePlane(w, h, 30)) {}
};

using Call = std::function<void(Frame&)>;

void run(benchmark::State& state, const Call& call, int w, int h) {
    Frame f(w, h);
    for (auto _ : state) {
        call(f);
        benchmark::DoNotOptimize(f.a.r.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * 3 * static_cast<std::int64_t>(f.a.r.size()));
}

const std::vector<std::pair<std::string, Call>>& calls() {
    static const std::vector<std::pair<std::string, Call>> all = {
        // The memory-bandwidth bound: a plain copy of the three planes every operation writes.
        {"CopyBound",
         [](Frame& f) {
             for (auto [to, from] :
                  {std::pair{&f.a.r, &f.b.r}, std::pair{&f.a.g, &f.b.g}, std::pair{&f.a.b, &f.b.b}})
                 std::memcpy(to->data(), from->data(), to->size());
         }},
        {"MixBuffers", [](Frame& f) { MixBuffers(TRI(f.a), TRI(f.b), 50, f.W, f.H); }},
        {"MixBufferColor", [](Frame& f) { MixBufferColor(TRI(f.a), 200, 40, 90, 50, f.W, f.H); }},
        {"MixBufferNegative", [](Frame& f) { MixBufferNegative(TRI(f.a), 50, f.W, f.H); }},
        {"MixBufferChannels", [](Frame& f) { MixBufferChannels(TRI(f.a), 50, 1, f.W + 1, f.H + 1); }},
        {"FiftyMixBuffers", [](Frame& f) { FiftyMixBuffers(TRI(f.a), TRI(f.b), f.W, f.H); }},
        {"AddBuffers", [](Frame& f) { AddBuffers(TRI(f.a), TRI(f.b), f.W, f.H); }},
        {"MultiplyBuffers", [](Frame& f) { MultiplyBuffers(TRI(f.a), TRI(f.b), f.W, f.H); }},
        {"DarkenBuffers", [](Frame& f) { DarkenBuffers(TRI(f.a), TRI(f.b), f.W, f.H); }},
        {"LightenBuffers", [](Frame& f) { LightenBuffers(TRI(f.a), TRI(f.b), f.W, f.H); }},
        {"DiffBuffers", [](Frame& f) { DiffBuffers(TRI(f.a), TRI(f.b), f.W, f.H); }},
        {"AlphaMix", [](Frame& f) { AlphaMix(TRI(f.a), TRI(f.b), f.m, f.W, f.H); }},
        {"AlphaMixThresh", [](Frame& f) { AlphaMixThresh(TRI(f.a), TRI(f.b), f.m, 128, f.W, f.H); }},
        {"FillBufferColor", [](Frame& f) { FillBufferColor(TRI(f.a), 10, 20, 30, f.W + 1, f.H + 1); }},
        {"BoxMix",
         [](Frame& f) {
             BoxMix(TRI(f.a), TRI(f.b), f.W, f.H, f.W / 4, f.H / 4, f.W - f.W / 4, f.H - f.H / 4);
         }},
        {"BlindMix/1", [](Frame& f) { BlindMix(TRI(f.a), TRI(f.b), f.W, f.H, 128, 1); }},
        {"BlindMix/2", [](Frame& f) { BlindMix(TRI(f.a), TRI(f.b), f.W, f.H, 128, 2); }},
        {"DoorMix/1", [](Frame& f) { DoorMix(TRI(f.a), TRI(f.b), f.W, f.H, f.W / 4, 1); }},
        {"DoorMix/2", [](Frame& f) { DoorMix(TRI(f.a), TRI(f.b), f.W, f.H, f.H / 4, 2); }},
        {"StripeMix/1", [](Frame& f) { StripeMix(TRI(f.a), TRI(f.b), f.W, f.H, 2, f.W / 2, 1); }},
        {"StripeMix/2", [](Frame& f) { StripeMix(TRI(f.a), TRI(f.b), f.W, f.H, 2, f.H / 2, 2); }},
        {"SlideStripeMix/1", [](Frame& f) { SlideStripeMix(TRI(f.a), TRI(f.b), f.W, f.H, 2, f.W / 2, 1); }},
        {"SlideStripeMix/2", [](Frame& f) { SlideStripeMix(TRI(f.a), TRI(f.b), f.W, f.H, 2, f.H / 2, 2); }},
        {"PushStripeMix/1", [](Frame& f) { PushStripeMix(TRI(f.a), TRI(f.b), f.W, f.H, 2, f.W / 2, 1); }},
        {"PushStripeMix/2", [](Frame& f) { PushStripeMix(TRI(f.a), TRI(f.b), f.W, f.H, 2, f.H / 2, 2); }},
        {"SlideOverlay/1", [](Frame& f) { SlideOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.W / 3, 1); }},
        {"SlideOverlay/3", [](Frame& f) { SlideOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.H / 3, 3); }},
        {"ASlideOverlay/1",
         [](Frame& f) {
             Plane x(f.W, f.H);
             ASlideOverlay(TRI(f.a), TRI(f.b), x, f.n, f.W, f.H, f.W / 3, 1);
         }},
        {"ASlideOverlay/3",
         [](Frame& f) {
             Plane x(f.W, f.H);
             ASlideOverlay(TRI(f.a), TRI(f.b), x, f.n, f.W, f.H, f.H / 3, 3);
         }},
        {"PushOverlay/1", [](Frame& f) { PushOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.W / 3, 1); }},
        {"PushOverlay/3", [](Frame& f) { PushOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.H / 3, 3); }},
        {"PushOverlay/roll", [](Frame& f) { PushOverlay(TRI(f.a), TRI(f.a), f.W, f.H, f.H / 3, 3); }},
        {"StretchOverlay/1",
         [](Frame& f) { StretchOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.W / 2, f.H, 0, 0, 1); }},
        {"StretchOverlay/3",
         [](Frame& f) { StretchOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.W, f.H / 2, 0, 0, 3); }},
        {"StretchOverlay/5",
         [](Frame& f) { StretchOverlay(TRI(f.a), TRI(f.b), f.W, f.H, f.W - f.W / 4, f.H, f.W / 4, 0, 5); }},
        {"SqueezeOverlay/1",
         [](Frame& f) { SqueezeOverlay(TRI(f.a), TRI(f.b), TRI(f.c), f.W, f.H, f.W / 2, f.H, 0, 0, 1); }},
        {"SqueezeOverlay/2",
         [](Frame& f) { SqueezeOverlay(TRI(f.a), TRI(f.b), TRI(f.c), f.W, f.H, f.W, f.H / 2, 0, 0, 2); }},
    };
    return all;
}

// A slot of another size brought to the frame's size: enlarged from 3/4 and shrunk from 3/2.
void resize(benchmark::State& state, int w, int h, int sw, int sh) {
    Pic a = noise(w, h, 1);
    const Pic s = noise(sw, sh, 2);
    for (auto _ : state) {
        ResizeBuffer(TRI(a), TRI(s), w, h, sw, sh);
        benchmark::DoNotOptimize(a.r.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * 3 * static_cast<std::int64_t>(a.r.size()));
}

// Operations share rows among the cores (KIRREL_THREADS=1 keeps them on one), so time is wall time.
const bool registered = [] {
    benchmark::AddCustomContext("slice_threads", std::to_string(sliceThreads()));
    for (auto [w, h] : {std::pair{640, 480}, std::pair{1920, 1080}}) {
        const std::string size = "/" + std::to_string(w) + "x" + std::to_string(h);
        for (const auto& [name, call] : calls())
            benchmark::RegisterBenchmark((name + size).c_str(), [call, w, h](benchmark::State& s) {
                run(s, call, w, h);
            })->UseRealTime();
        benchmark::RegisterBenchmark(("ResizeBuffer/up" + size).c_str(), [w, h](benchmark::State& s) {
            resize(s, w, h, w * 3 / 4, h * 3 / 4);
        })->UseRealTime();
        benchmark::RegisterBenchmark(("ResizeBuffer/down" + size).c_str(), [w, h](benchmark::State& s) {
            resize(s, w, h, w * 3 / 2, h * 3 / 2);
        })->UseRealTime();
    }
    return true;
}();

} // namespace
} // namespace krl
