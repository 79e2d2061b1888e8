// Opening an animated GIF as a user meets it: 100 frames of 320 x 240 made once by ffmpeg's testsrc2,
// read by the host's File > Open (readAnimationFile: ImageMagick coalesces, the frames become
// pictures as they arrive). The panel's own ways in are in converter_bench.cpp.
// Run with the real ImageMagick first on PATH (PATH=/usr/bin:$PATH) so that no stand-in is timed.

#include "TestsrcGif.h"
#include "host/AnimationFiles.h"
#include "host/MediaTools.h"

#include <benchmark/benchmark.h>

namespace {

void BM_OpenGif(benchmark::State& state) {
    const int frames = static_cast<int>(state.range(0));
    const int w = static_cast<int>(state.range(1));
    const int h = static_cast<int>(state.range(2));
    const QString gif = kirrel::bench::testsrcGif(frames, w, h);
    if (gif.isEmpty() || kirrel::host::findTool("convert").isEmpty()) {
        state.SkipWithError("ffmpeg and ImageMagick's convert are needed");
        return;
    }
    for (auto _ : state) {
        const kirrel::host::Animation a = kirrel::host::readAnimationFile(gif);
        if (static_cast<int>(a.frames.size()) != frames) state.SkipWithError("the GIF did not open whole");
        benchmark::DoNotOptimize(a.frames.data());
    }
    state.SetItemsProcessed(state.iterations() * frames);
}

BENCHMARK(BM_OpenGif)->Args({100, 320, 240})->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
