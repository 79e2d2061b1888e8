// The panel's converter runs as a user meets them, before and after the runner's speed-ups: the
// global-delay GIF export (one converter call over every frame), the per-frame GIF export (a
// conversion and an append per frame), and the two GIF imports ("Open AnimGif": GIF frames; "Import
// AnimGif": PNG frames, then one conversion per frame to a bitmap). The frames are those of ffmpeg's
// testsrc2, made once.
//
// The last argument picks the runner's settings: 0 runs the lines one after another with the
// converter's environment as it was (KIRREL_BATCH_WORKERS=1, KIRREL_CONVERTER_TUNING=0); 1 with
// every core and every setting. Both write the same bytes.
// Run with the real ImageMagick first on PATH (PATH=/usr/bin:$PATH) so that no stand-in is timed.

#include "TestsrcGif.h"
#include "exchange/GifExport.h"
#include "exchange/ImportGif.h"
#include "host/AnimationFiles.h"
#include "host/HostState.h"
#include "host/MediaTools.h"
#include "host/ScriptedResponder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <map>
#include <tuple>

namespace {

using kirrel::host::runningHost;

using kirrel::bench::testsrcGif;

// The frames of that GIF as the host holds them, read once.
const std::vector<kirrel::host::Picture>& testsrcFrames(int frames, int w, int h) {
    static std::map<std::tuple<int, int, int>, std::vector<kirrel::host::Picture>> made;
    auto& pictures = made[{frames, w, h}];
    if (pictures.empty()) {
        const QString gif = testsrcGif(frames, w, h);
        if (!gif.isEmpty()) pictures = kirrel::host::readAnimationFile(gif).frames;
    }
    return pictures;
}

// The runner the panel starts, with the settings of the benchmark's last argument.
bool prepareRunner(benchmark::State& state, bool after) {
    if (kirrel::host::findTool("convert").isEmpty()) {
        state.SkipWithError("ImageMagick's convert is needed");
        return false;
    }
    // The batch runner is built beside the kirrel program, one folder up.
    const QString runner = QCoreApplication::applicationDirPath() + "/../kirrel_batch";
    if (qEnvironmentVariableIsEmpty("KIRREL_BATCH_RUNNER") && QFile::exists(runner))
        qputenv("KIRREL_BATCH_RUNNER", runner.toLocal8Bit());
    if (runningHost().appDir().empty())
        runningHost().setAppDir(QCoreApplication::applicationDirPath().toStdString());
    if (after) {
        qunsetenv("KIRREL_BATCH_WORKERS");
        qunsetenv("KIRREL_CONVERTER_TUNING");
    } else {
        qputenv("KIRREL_BATCH_WORKERS", "1");
        qputenv("KIRREL_CONVERTER_TUNING", "0");
    }
    state.SetLabel(after ? "after" : "before");
    return true;
}

// An export of the host's animation into a scratch GIF; perFrame picks the per-frame way.
void exportGif(benchmark::State& state, bool perFrame) {
    const int frames = static_cast<int>(state.range(0));
    const int w = static_cast<int>(state.range(1));
    const int h = static_cast<int>(state.range(2));
    if (!prepareRunner(state, state.range(3) != 0)) return;
    const auto& pictures = testsrcFrames(frames, w, h);
    if (static_cast<int>(pictures.size()) != frames) {
        state.SkipWithError("ffmpeg is needed to make the frames");
        return;
    }
    QTemporaryDir out;
    const std::string gif = QDir(out.path()).filePath("out.gif").toStdString();
    kirrel::host::ScriptedResponder responder;
    runningHost().setResponder(&responder);
    for (auto _ : state) {
        state.PauseTiming();
        runningHost().loadAnimation(pictures);
        QFile::remove(QString::fromStdString(gif));
        responder.push({kirrel::host::QueuedAnswer::Kind::File, 0, gif});
        state.ResumeTiming();
        Vantry::Vantry_Class van;
        if (perFrame) {
            kirrel::exchange::PerFrameSettings settings;
            settings.globalDelay = true;
            settings.delay = 4;
            kirrel::exchange::ExportGifPerFrame(van, settings);
        } else {
            kirrel::exchange::ExportGifGlobal(van, kirrel::exchange::kGifGlobal, 4, 0);
        }
        if (!QFile::exists(QString::fromStdString(gif))) state.SkipWithError("the export wrote nothing");
    }
    runningHost().setResponder(nullptr);
    state.SetItemsProcessed(state.iterations() * frames);
}

void BM_GifExportGlobal(benchmark::State& state) {
    exportGif(state, false);
}
void BM_GifExportPerFrame(benchmark::State& state) {
    exportGif(state, true);
}

// The panel's ways in: "Open AnimGif" (GIF frames) and "Import AnimGif" (PNG frames, then bitmaps),
// of 100 frames of 320 x 240.
void importGif(benchmark::State& state, bool viaPng) {
    if (!prepareRunner(state, state.range(0) != 0)) return;
    const QString gif = testsrcGif(100, 320, 240);
    if (gif.isEmpty()) {
        state.SkipWithError("ffmpeg is needed to make the GIF");
        return;
    }
    kirrel::host::ScriptedResponder responder;
    runningHost().setResponder(&responder);
    for (auto _ : state) {
        responder.push({kirrel::host::QueuedAnswer::Kind::File, 0, gif.toStdString()});
        Vantry::Vantry_Class van;
        viaPng ? kirrel::exchange::ImportGifViaPNG(van) : kirrel::exchange::ImportGifDirect(van);
        if (runningHost().totalFrames() != 100) state.SkipWithError("the GIF did not come in whole");
    }
    runningHost().setResponder(nullptr);
    state.SetItemsProcessed(state.iterations() * 100);
}

void BM_GifImportDirect(benchmark::State& state) {
    importGif(state, false);
}
void BM_GifImportViaPng(benchmark::State& state) {
    importGif(state, true);
}

// Each run once a repetition (a conversion takes seconds), three repetitions, before and after.
void oncePerRepetition(benchmark::internal::Benchmark* b) {
    b->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1)->Repetitions(3);
}
void exportShapes(benchmark::internal::Benchmark* b) {
    b->ArgNames({"frames", "w", "h", "after"})->ArgsProduct({{100}, {320}, {240}, {0, 1}});
    oncePerRepetition(b);
}
void beforeAndAfter(benchmark::internal::Benchmark* b) {
    b->ArgName("after")->Arg(0)->Arg(1);
    oncePerRepetition(b);
}

BENCHMARK(BM_GifExportGlobal)->Apply(exportShapes)->ArgsProduct({{1000}, {160}, {120}, {0, 1}});
BENCHMARK(BM_GifExportPerFrame)->Apply(exportShapes);
BENCHMARK(BM_GifImportDirect)->Apply(beforeAndAfter);
BENCHMARK(BM_GifImportViaPng)->Apply(beforeAndAfter);

} // namespace
