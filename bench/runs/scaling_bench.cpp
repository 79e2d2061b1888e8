// How a run's cost grows: a wipe and Toonify over the whole animation, against the number of frames
// (10 to 1000 at 640x480) and against the frame size (160x120 to 3840x2160 over 30 frames; 640x480 is
// the frame sweep's). Every
// frame is noise of its own, as in a real animation no two frames share their bytes.
//
// faults_per_frame counts the minor page faults a run takes, per frame. bench/scaling runs these and
// plots the time per pixel (flat while the cost grows linearly).

#include "NoisePictures.h"
#include "filters/ToonFilterMod.h"
#include "filters/frmToon.h"
#include "host/HostState.h"
#include "panel/FormBase.h"
#include "panel/Registry.h"
#include "transitions/Wipes.h"

#include <QComboBox>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <vector>

namespace {

using kirrel::host::Picture;
using kirrel::host::runningHost;

long minorFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

// One animation at a time: the largest shapes take gigabytes.
const std::vector<Picture>& animation(int frames, int w, int h) {
    static std::vector<Picture> made;
    static int madeFrames = 0, madeW = 0, madeH = 0;
    if (frames != madeFrames || w != madeW || h != madeH) {
        made.clear();
        made.shrink_to_fit();
        for (int f = 0; f < frames; ++f)
            made.push_back(kirrel::bench::noisePicture(w, h, 11 + f));
        madeFrames = frames, madeW = w, madeH = h;
    }
    return made;
}

// A run over every frame; the host is reset before each iteration without being timed. Arguments:
// frames, width, height (the host's bounds are one less).
template <typename Run> void scaledRun(benchmark::State& state, Run run) {
    const int frames = static_cast<int>(state.range(0));
    const int w = static_cast<int>(state.range(1)) - 1;
    const int h = static_cast<int>(state.range(2)) - 1;
    long faults = 0;
    runningHost().loadAnimation(animation(frames, w, h));
    runningHost().loadSwap(kirrel::bench::noisePicture(w, h, 1));
    for (auto _ : state) {
        state.PauseTiming();
        runningHost().loadAnimation(animation(frames, w, h));
        const long before = minorFaults();
        state.ResumeTiming();
        run(frames - 1);
        state.PauseTiming();
        faults += minorFaults() - before;
        state.ResumeTiming();
    }
    state.counters["faults_per_frame"] = benchmark::Counter(double(faults) / frames / state.iterations());
    // The host's copies go before the next shape is made.
    runningHost().loadAnimation({Picture::filled(1, 1, 0)});
}

void BM_WipeScaling(benchmark::State& state) {
    scaledRun(state, [](int last) {
        kirrel::transitions::runWipeTo(kirrel::transitions::WipeFamily::Plain, 1, 0, last, "Swap");
    });
}

// Toonify at strength 5 over the whole range, as its dialog's range run does it.
void BM_ToonScaling(benchmark::State& state) {
    // The dialog fills its frame lists from the animation when it is shown.
    runningHost().loadAnimation(animation(static_cast<int>(state.range(0)),
                                          static_cast<int>(state.range(1)) - 1,
                                          static_cast<int>(state.range(2)) - 1));
    auto* form = static_cast<kirrel::filters::frmToon*>(kirrel::panel::loadFormByName("frmToon"));
    form->showForm();
    scaledRun(state, [form](int last) {
        form->Strength = 5;
        static_cast<QComboBox*>(form->control("cboFrameStart"))->setCurrentIndex(0);
        static_cast<QComboBox*>(form->control("cboFrameEnd"))->setCurrentIndex(last);
        kirrel::filters::ToonFrameRange(*form);
    });
    form->unloadForm();
}

void scalingArgs(benchmark::internal::Benchmark* b) {
    for (int frames : {10, 30, 100, 300, 500, 1000})
        b->Args({frames, 640, 480});
    for (auto [w, h] :
         {std::pair{160, 120}, {320, 240}, {1280, 720}, {1920, 1080}, {2560, 1440}, {3840, 2160}})
        b->Args({30, w, h});
    b->ArgNames({"frames", "w", "h"})->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(BM_WipeScaling)->Apply(scalingArgs);
BENCHMARK(BM_ToonScaling)->Apply(scalingArgs);

} // namespace
