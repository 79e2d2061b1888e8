// Opening an animated GIF as a user meets it: 100 frames of 320 x 240 made once by ffmpeg's testsrc2,
// read by the host's File > Open (readAnimationFile: ImageMagick coalesces, the frames become
// pictures as they arrive) and by the panel's "Open AnimGif" and "Import AnimGif" (the converter's
// batch runs, then the frame files read into the host).
// Run with the real ImageMagick first on PATH (PATH=/usr/bin:$PATH) so that no stand-in is timed.

#include "exchange/ImportGif.h"
#include "host/AnimationFiles.h"
#include "host/HostState.h"
#include "host/MediaTools.h"
#include "host/ScriptedResponder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// The GIF, made on first use; empty when ffmpeg is missing or fails.
QString sampleGif(int frames, int w, int h) {
    static QTemporaryDir dir;
    QString gif = QDir(dir.path()).filePath(QString("testsrc2-%1x%2x%3.gif").arg(frames).arg(w).arg(h));
    if (QFile::exists(gif)) return gif;
    QProcess p;
    p.start("ffmpeg", {"-v", "error", "-nostdin", "-f", "lavfi", "-i",
                       QString("testsrc2=size=%1x%2:rate=25").arg(w).arg(h), "-frames:v",
                       QString::number(frames), gif});
    return p.waitForFinished(120000) && p.exitCode() == 0 ? gif : QString();
}

void BM_OpenGif(benchmark::State& state) {
    const int frames = static_cast<int>(state.range(0));
    const int w = static_cast<int>(state.range(1));
    const int h = static_cast<int>(state.range(2));
    const QString gif = sampleGif(frames, w, h);
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

// The panel's ways in: 0 is "Open AnimGif" (GIF frames), 1 "Import AnimGif" (PNG frames, then bitmaps).
void BM_PanelGifImport(benchmark::State& state) {
    const QString gif = sampleGif(100, 320, 240);
    if (gif.isEmpty() || kirrel::host::findTool("convert").isEmpty()) {
        state.SkipWithError("ffmpeg and ImageMagick's convert are needed");
        return;
    }
    // The batch runner is built beside the kirrel program, one folder up.
    const QString runner = QCoreApplication::applicationDirPath() + "/../kirrel_batch";
    if (qEnvironmentVariableIsEmpty("KIRREL_BATCH_RUNNER") && QFile::exists(runner))
        qputenv("KIRREL_BATCH_RUNNER", runner.toLocal8Bit());
    kirrel::host::HostState& host = kirrel::host::runningHost();
    if (host.appDir().empty()) host.setAppDir(QCoreApplication::applicationDirPath().toStdString());
    kirrel::host::ScriptedResponder responder;
    host.setResponder(&responder);
    for (auto _ : state) {
        responder.push({kirrel::host::QueuedAnswer::Kind::File, 0, gif.toStdString()});
        Vantry::Vantry_Class van;
        state.range(0) == 0 ? kirrel::exchange::ImportGifDirect(van) : kirrel::exchange::ImportGifViaPNG(van);
        if (host.totalFrames() != 100) state.SkipWithError("the GIF did not come in whole");
    }
    host.setResponder(nullptr);
}

BENCHMARK(BM_PanelGifImport)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

} // namespace
