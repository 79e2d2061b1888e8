// Every filter on a whole frame at 640x480 and 1920x1080. Bytes processed count the three planes of
// the picture written, so the figures compare across filters.

#include "pixel/Filters.h"
#include "pixel/Plane.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <random>

namespace {

using krl::Plane;

struct Frame {
    Plane r, g, b;
};

Frame randomFrame(int cols, int rows, unsigned seed) {
    Frame f{Plane(cols - 1, rows - 1), Plane(cols - 1, rows - 1), Plane(cols - 1, rows - 1)};
    std::mt19937 gen(seed);
    for (Plane* p : {&f.r, &f.g, &f.b}) {
        std::uint8_t* d = p->data();
        for (std::size_t i = 0; i < p->size(); ++i)
            d[i] = static_cast<std::uint8_t>(gen() >> 24);
    }
    return f;
}

// Runs op on one frame per iteration; the frame is reused (filters work in place), so repeated
// blurs and thresholds see their own output, as the dialogs' repeated passes do.
void runFilter(benchmark::State& state,
               const std::function<void(Frame&, const Frame&, const Plane&, int, int)>& op) {
    const int cols = static_cast<int>(state.range(0));
    const int rows = static_cast<int>(state.range(1));
    Frame a = randomFrame(cols, rows, 1);
    const Frame b = randomFrame(cols, rows, 2);
    const Plane mask = randomFrame(cols, rows, 3).r;
    const int w = cols - 1;
    const int h = rows - 1;
    for (auto _ : state) {
        op(a, b, mask, w, h);
        benchmark::DoNotOptimize(a.r.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * 3LL * cols * rows);
}

#define KIRREL_FILTER_BENCH(name, body)                                                                      \
    void name(benchmark::State& state) {                                                                     \
        runFilter(state, [](Frame& a, const Frame& b, const Plane& m, int w, int h) {                        \
            (void)b;                                                                                         \
            (void)m;                                                                                         \
            body;                                                                                            \
        });                                                                                                  \
    }                                                                                                        \
    BENCHMARK(name)->Args({640, 480})->Args({1920, 1080})->Unit(benchmark::kMicrosecond)->UseRealTime()

KIRREL_FILTER_BENCH(BM_BoxBlurInPlace, krl::BoxBlur(a.r, a.g, a.b, a.r, a.g, a.b, w, h));
KIRREL_FILTER_BENCH(BM_BoxBlur, krl::BoxBlur(a.r, a.g, a.b, b.r, b.g, b.b, w, h));
KIRREL_FILTER_BENCH(BM_TriBlur, krl::TriBlur(a.r, a.g, a.b, w, h));
KIRREL_FILTER_BENCH(BM_Negative, krl::Negative(a.r, a.g, a.b, w + 1, h + 1));
KIRREL_FILTER_BENCH(BM_GreyScale, krl::GreyScale(a.r, a.g, a.b, w + 1, h + 1));
KIRREL_FILTER_BENCH(BM_GreyOut, krl::GreyOut(a.r, a.g, a.b, 50, 1, 64, w, h));
KIRREL_FILTER_BENCH(BM_GreyThreshold, krl::GreyThreshold(a.r, a.g, a.b, b.r, b.g, b.b, 128, w, h));
KIRREL_FILTER_BENCH(BM_Threshold, krl::Threshold(a.r, 128, w, h));
KIRREL_FILTER_BENCH(BM_Posterize, krl::Posterize(a.r, a.g, a.b, 200, w, h));
KIRREL_FILTER_BENCH(BM_NightVision, krl::NightVision(a.r, a.g, a.b, w, h));
KIRREL_FILTER_BENCH(BM_ToonFilter, krl::ToonFilter(a.r, a.g, a.b, b.r, b.g, b.b, w, h));
KIRREL_FILTER_BENCH(BM_ToonFilter2, krl::ToonFilter2(a.r, a.g, a.b, b.r, b.g, b.b, w, h));
KIRREL_FILTER_BENCH(BM_SketchHard, krl::SketchHard(a.r, a.g, a.b, b.r, b.g, b.b, w + 1, h + 1, 255));
KIRREL_FILTER_BENCH(BM_ChalkFilter, krl::ChalkFilter(a.r, a.g, a.b, w + 1, h + 1, 50));
KIRREL_FILTER_BENCH(BM_IncreaseBrightness, krl::IncreaseBrightness(a.r, a.g, a.b, 1, w, h));
KIRREL_FILTER_BENCH(BM_IncreaseDarkness, krl::IncreaseDarkness(a.r, a.g, a.b, 1, w, h));
KIRREL_FILTER_BENCH(BM_WhiteNoise, krl::WhiteNoise(a.r, a.g, a.b, 50, w, h));
KIRREL_FILTER_BENCH(BM_WhiteNoiseAlpha, krl::WhiteNoiseAlpha(a.r, a.g, a.b, m, 50, w, h));
KIRREL_FILTER_BENCH(BM_CFXFilter1, {
    Frame main = b;
    krl::CFXFilter1(main.r, main.g, main.b, b.r, b.g, b.b, a.r, a.g, a.b, 255, 0, 255, 0, 255, 0, w, h);
});

} // namespace
