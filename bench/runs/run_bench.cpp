// Whole runs through the in-memory host, as a user meets them: a transition over every frame of a
// 60-frame animation at 640x480 and 1920x1080, Toonify over the same range, and the slot and undo
// saves of the whole animation. Items are frames; bytes are those of the frames' three planes.
//
// Each iteration starts from the same animation (restored outside the timing), so every run does the
// full work; the host's plane exchange is part of what is measured.

#include "NoisePictures.h"
#include "filters/ToonFilterMod.h"
#include "filters/frmToon.h"
#include "host/HostState.h"
#include "panel/FormBase.h"
#include "panel/Registry.h"
#include "stored/AnimUndo.h"
#include "stored/SlotStore.h"
#include "transitions/Dissolves.h"
#include "transitions/Fades.h"
#include "transitions/Patterns.h"
#include "transitions/Pushes.h"
#include "transitions/Stretches.h"
#include "transitions/Wipes.h"

#include <QApplication>
#include <QComboBox>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

using kirrel::host::Picture;
using kirrel::host::runningHost;

constexpr int kFrames = 60;

using kirrel::bench::noisePicture;

// One animation per size, made once: frames share their planes until a run writes them.
const std::vector<Picture>& animation(int w, int h) {
    static std::map<std::pair<int, int>, std::vector<Picture>> made;
    auto& frames = made[{w, h}];
    if (frames.empty())
        for (int f = 0; f < kFrames; ++f)
            frames.push_back(noisePicture(w, h, 7 + f));
    return frames;
}

void prepareHost(int w, int h) {
    runningHost().loadAnimation(animation(w, h));
    runningHost().loadSwap(noisePicture(w, h, 1));
}

void countFrames(benchmark::State& state, int w, int h, int frames) {
    state.SetItemsProcessed(state.iterations() * frames);
    state.SetBytesProcessed(state.iterations() * frames * 3LL * (w + 1) * (h + 1));
}

// A run over frames 0..59, the host reset before each iteration without being timed.
void wholeRun(benchmark::State& state, const std::function<void()>& run) {
    const int w = static_cast<int>(state.range(0)) - 1;
    const int h = static_cast<int>(state.range(1)) - 1;
    for (auto _ : state) {
        state.PauseTiming();
        prepareHost(w, h);
        state.ResumeTiming();
        run();
    }
    countFrames(state, w, h, kFrames);
}

constexpr int kLast = kFrames - 1;

void BM_WipeToLeft(benchmark::State& s) {
    wholeRun(s, [] {
        kirrel::transitions::runWipeTo(kirrel::transitions::WipeFamily::Plain, 1, 0, kLast, "Swap");
    });
}
void BM_Fade(benchmark::State& s) {
    wholeRun(
        s, [] { kirrel::transitions::runFadeTo(kirrel::transitions::FadeFamily::Plain, 0, kLast, "Swap"); });
}
void BM_Dissolve(benchmark::State& s) {
    wholeRun(s, [] { kirrel::transitions::DissolveTo(0, kLast, "Swap"); });
}
void BM_PushLeft(benchmark::State& s) {
    wholeRun(s, [] { kirrel::transitions::runPushTo(1, 0, kLast, "Swap"); });
}

void BM_IrisOpen(benchmark::State& s) {
    wholeRun(s, [] {
        kirrel::transitions::runPatternTo(kirrel::transitions::PatternFamily::Iris, 0, 0, kLast, "Swap");
    });
}
void BM_CircleOpen(benchmark::State& s) {
    wholeRun(s, [] {
        kirrel::transitions::runPatternTo(kirrel::transitions::PatternFamily::Circles, 0, 0, kLast, "Swap");
    });
}
// "Squeeze Horizontally To Center".
void BM_SqueezeHorizontal(benchmark::State& s) {
    wholeRun(s,
             [] { kirrel::transitions::Squeeze(0, kLast, "Swap", 5, kirrel::transitions::Direction::To); });
}

// "Stretch Over From Left": the source grows from the left edge, scaled into its band.
void BM_StretchOverLeft(benchmark::State& s) {
    wholeRun(
        s, [] { kirrel::transitions::StretchOver(0, kLast, "Swap", 1, kirrel::transitions::Direction::To); });
}

// Toonify at strength 5 over the whole range, as its dialog's range run does it.
void BM_ToonRange(benchmark::State& s) {
    // The dialog fills its frame lists from the animation when it is shown.
    prepareHost(static_cast<int>(s.range(0)) - 1, static_cast<int>(s.range(1)) - 1);
    auto* form = static_cast<kirrel::filters::frmToon*>(kirrel::panel::loadFormByName("frmToon"));
    form->showForm();
    wholeRun(s, [form] {
        form->Strength = 5;
        static_cast<QComboBox*>(form->control("cboFrameStart"))->setCurrentIndex(0);
        static_cast<QComboBox*>(form->control("cboFrameEnd"))->setCurrentIndex(kLast);
        kirrel::filters::ToonFrameRange(*form);
    });
    form->unloadForm();
}

void saveLoad(benchmark::State& state, bool slot, bool save) {
    const int w = static_cast<int>(state.range(0)) - 1;
    const int h = static_cast<int>(state.range(1)) - 1;
    prepareHost(w, h);
    if (!save) slot ? kirrel::stored::SaveAnimToSlot(0) : kirrel::stored::QuickSave();
    for (auto _ : state) {
        if (save)
            slot ? kirrel::stored::SaveAnimToSlot(0) : kirrel::stored::QuickSave();
        else
            slot ? kirrel::stored::LoadAnimFromSlot(0) : kirrel::stored::QuickRestore();
    }
    countFrames(state, w, h, kFrames);
}
void BM_SlotSave(benchmark::State& s) {
    saveLoad(s, true, true);
}
void BM_SlotLoad(benchmark::State& s) {
    saveLoad(s, true, false);
}
void BM_QuickSave(benchmark::State& s) {
    saveLoad(s, false, true);
}
void BM_QuickRestore(benchmark::State& s) {
    saveLoad(s, false, false);
}

#define KIRREL_RUN_BENCH(name)                                                                               \
    BENCHMARK(name)->Args({640, 480})->Args({1920, 1080})->Unit(benchmark::kMillisecond)->UseRealTime()

KIRREL_RUN_BENCH(BM_WipeToLeft);
KIRREL_RUN_BENCH(BM_Fade);
KIRREL_RUN_BENCH(BM_Dissolve);
KIRREL_RUN_BENCH(BM_PushLeft);
KIRREL_RUN_BENCH(BM_IrisOpen);
KIRREL_RUN_BENCH(BM_CircleOpen);
KIRREL_RUN_BENCH(BM_SqueezeHorizontal);
KIRREL_RUN_BENCH(BM_StretchOverLeft);
KIRREL_RUN_BENCH(BM_ToonRange);
KIRREL_RUN_BENCH(BM_SlotSave);
KIRREL_RUN_BENCH(BM_SlotLoad);
KIRREL_RUN_BENCH(BM_QuickSave);
KIRREL_RUN_BENCH(BM_QuickRestore);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Slot and undo files go to a scratch folder; KIRREL_BENCH_TEMP points them at another disk.
    QTemporaryDir scratch(qEnvironmentVariable("KIRREL_BENCH_TEMP", QDir::tempPath()) +
                          "/kirrel-bench-XXXXXX");
    runningHost().setTempDir(scratch.path().toStdString() + "/");
    kirrel::panel::registerEverything();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
