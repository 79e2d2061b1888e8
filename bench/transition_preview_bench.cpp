// The transition dialogs' live preview on a 300-frame 1920x1080 animation: the time from a change of
// a control to the preview's new frames, which with the preview's debounce must stay within 100 ms;
// and the first run of a dialog, which scales every frame of the range once.

#include "host/HostState.h"
#include "panel/FormBase.h"
#include "panel/LivePreview.h"
#include "panel/Registry.h"

#include <QApplication>
#include <QComboBox>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using kirrel::panel::FormBase;
using kirrel::panel::LivePreview;

constexpr int kW = 1919; // upper bounds: a 1920 x 1080 picture
constexpr int kH = 1079;
constexpr int kFrames = 300;

// Every frame its own planes, as a real animation's are: a cache keyed by plane must not see one.
void loadAnimation() {
    std::vector<kirrel::host::Picture> frames;
    frames.reserve(kFrames);
    for (int f = 0; f < kFrames; ++f) {
        kirrel::host::Picture p(kW, kH);
        for (int y = 0; y <= kH; ++y)
            for (int x = 0; x <= kW; ++x) {
                p.r.at(x, y) = static_cast<std::uint8_t>(x + 3 * y + f);
                p.g.at(x, y) = static_cast<std::uint8_t>((x * y) >> 6);
                p.b.at(x, y) = static_cast<std::uint8_t>(255 - x / 8 - f);
            }
        frames.push_back(std::move(p));
    }
    kirrel::host::runningHost() = kirrel::host::HostState();
    kirrel::host::runningHost().loadAnimation(std::move(frames), 0);
}

struct WipeDialog {
    WipeDialog() {
        kirrel::panel::registerEverything();
        form = kirrel::panel::loadFormByName("frmWipes");
        form->showForm();
        preview = form->findChild<LivePreview*>();
        variants = static_cast<QComboBox*>(form->control("cboTransitions"));
    }
    ~WipeDialog() { delete form; }
    WipeDialog(const WipeDialog&) = delete;
    WipeDialog& operator=(const WipeDialog&) = delete;

    FormBase* form;
    LivePreview* preview;
    QComboBox* variants;
};

// A user picks another wipe: the change, the preview's run over all 300 frames, the frames shown.
void BM_WipePreviewAfterAChange(benchmark::State& state) {
    WipeDialog d;
    d.preview->refreshNow(); // the dialog's first run scales the frames
    int variant = 0;
    for (auto _ : state) {
        variant = (variant + 1) % d.variants->count();
        d.variants->setCurrentIndex(variant);
        d.preview->refreshNow();
        benchmark::DoNotOptimize(d.preview->showing().frames.data());
    }
    state.counters["frames"] = static_cast<double>(d.preview->showing().frames.size());
}

// A dialog opened on the animation for the first time: every frame of the range is scaled.
void BM_WipePreviewFirstRun(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto d = std::make_unique<WipeDialog>();
        state.ResumeTiming();
        d->preview->refreshNow();
        state.PauseTiming();
        d.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(BM_WipePreviewAfterAChange)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_WipePreviewFirstRun)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

} // namespace

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    loadAnimation();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
