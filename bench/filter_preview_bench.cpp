// The filter dialogs' previews on a 1920x1080 frame, each at its largest strength: the time one step
// of a slider drag costs, from the host's planes to the picture shown. A drag stays smooth while this
// stays well under the time between two mouse moves.

#include "filters/NightvisionMod.h"
#include "filters/frmNightVision.h"
#include "host/HostState.h"
#include "panel/FormBase.h"
#include "panel/Registry.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QSlider>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>

namespace {

using kirrel::panel::FormBase;

constexpr int kW = 1919; // upper bounds: a 1920 x 1080 picture
constexpr int kH = 1079;

void loadFrame() {
    kirrel::host::Picture p(kW, kH);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x <= kW; ++x) {
            p.r.at(x, y) = static_cast<std::uint8_t>(x + 3 * y);
            p.g.at(x, y) = static_cast<std::uint8_t>((x * y) >> 6);
            p.b.at(x, y) = static_cast<std::uint8_t>(255 - x / 8);
        }
    kirrel::host::runningHost() = kirrel::host::HostState();
    kirrel::host::runningHost().loadAnimation({p, p}, 0);
}

template <class T> T* ctl(FormBase* f, const char* name) {
    return static_cast<T*>(f->control(name));
}

// Opens the dialog, sets it up, then measures one drag step of the slider named (its sliderMoved,
// as the mouse raises it), or `step` when the dialog has no slider that previews.
void measure(benchmark::State& state, const char* form, const std::function<void(FormBase*)>& setUp,
             const char* slider, const std::function<void(FormBase*)>& step = {}) {
    loadFrame();
    kirrel::panel::registerEverything();
    FormBase* f = kirrel::panel::loadFormByName(form);
    f->showForm();
    setUp(f);
    for (auto _ : state) {
        if (step) {
            step(f);
        } else {
            auto* s = ctl<QSlider>(f, slider);
            emit s->sliderMoved(s->sliderPosition());
        }
    }
    delete f;
}

void BM_ToonifyPreview(benchmark::State& state) {
    measure(
        state, "frmToon", [](FormBase* f) { ctl<QSlider>(f, "slider_toon")->setValue(100); }, "slider_toon");
}

void BM_SketchSoftPreview(benchmark::State& state) {
    measure(
        state, "frmSketchSoft", [](FormBase* f) { ctl<QSlider>(f, "slider_soft")->setValue(100); },
        "slider_soft");
}

void BM_SketchHardPreview(benchmark::State& state) {
    measure(
        state, "frmSketchHard",
        [](FormBase* f) {
            ctl<QSlider>(f, "slider_Passes")->setValue(100);
            ctl<QComboBox>(f, "cboSketchOptions")->setCurrentIndex(3);
        },
        "slider_Passes");
}

void BM_NightVisionPreview(benchmark::State& state) {
    measure(
        state, "frmNightVision", [](FormBase*) {}, nullptr,
        [](FormBase* f) {
            auto* form = static_cast<kirrel::filters::frmNightVision*>(f);
            form->PreviewOn = -1;
            kirrel::filters::NightVisionCurrentFrame(*form);
        });
}

void BM_ChannelThresholdPreview(benchmark::State& state) {
    measure(
        state, "frmChannelThreshold",
        [](FormBase* f) {
            for (const char* c : {"chkRed", "chkGreen", "chkBlue", "chkRGB"})
                ctl<QCheckBox>(f, c)->setChecked(true);
            ctl<QComboBox>(f, "cboMixing")->setCurrentIndex(6);
            ctl<QSlider>(f, "RGBSlider")->setValue(255);
        },
        "RGBSlider");
}

void BM_GreyOutPreview(benchmark::State& state) {
    measure(
        state, "frmGreyOut",
        [](FormBase* f) {
            ctl<QRadioButton>(f, "chkRed")->setChecked(true);
            ctl<QSlider>(f, "ToleranceSlider")->setValue(255);
            ctl<QSlider>(f, "RedSlider")->setValue(255);
        },
        "RedSlider");
}

BENCHMARK(BM_ToonifyPreview)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SketchSoftPreview)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SketchHardPreview)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_NightVisionPreview)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ChannelThresholdPreview)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_GreyOutPreview)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
