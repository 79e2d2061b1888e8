#include "exchange/GifExport.h"

#include "exchange/BatchText.h"
#include "exchange/ConverterRun.h"
#include "filters/PictureAccess.h"
#include "panel/Numeric.h"

#include <QFileInfo>

#include <optional>
#include <string>

namespace kirrel::exchange {

namespace {

// A failed run's message; otherwise the staged file is checked and put under the user's name.
void finishExport(Vantry::Vantry_Class& van, ConverterRun& run, OutputStage& output, const OutputCheck& check,
                  const std::string& out) {
    if (const auto failure = run.finish()) {
        van.Van_MessageBox(failureText(*failure));
        return;
    }
    if (const auto why = output.commit(check))
        van.Van_MessageBox("The converter's result does not check out: " + *why + ".\n" +
                           QFileInfo(QString::fromStdString(out)).fileName().toStdString() +
                           " was not written.");
}

// Both exports take the picture buffers and the frame count, then ask where the GIF goes; with a
// file chosen they need the temporary and the program folders. No file: nothing more is asked.
struct ExportStart {
    int total = 0, width = 0, height = 0;
    std::string out, temp, app;
};

std::optional<ExportStart> startExport(Vantry::Vantry_Class& van, const SingleCommandExport& kind) {
    van.Van_GetRBuffer();
    van.Van_GetGBuffer();
    van.Van_GetBBuffer();
    ExportStart start;
    start.height = van.Van_BufferHeight();
    start.width = van.Van_BufferWidth();
    start.total = van.Van_GetTotalFrames();
    start.out = van.Van_RequestFile_save(kind.title, "", kind.filter);
    if (start.out.empty()) return std::nullopt;
    start.temp = van.Van_GetTempDir();
    start.app = van.Van_GetAppDir();
    return start;
}

} // namespace

void ExportGifGlobal(Vantry::Vantry_Class& van, const SingleCommandExport& kind, int delay, int loops) {
    const auto start = startExport(van, kind);
    if (!start) return;
    const auto& [total, width, height, out, temp, app] = *start;
    const WorkingFiles working(temp);
    OutputStage output(out, kind.kind);
    const std::string command = gifSingleCommandLine(app, output.inBatch(), delay, loops, total);

    filters::SaveFrameBitmap(van, 0);
    for (int i = 1; i < total; ++i) {
        van.Van_GotoFrame(i);
        filters::SaveFrameBitmap(van, i);
        van.Van_SetProgress(divide(i, total) * 50);
    }
    writeBatchFile(temp + "/" + kGifConvertBat, batchBytes(gifSingleCommandBatch(temp, command)));

    van.Van_SetProgress(60);
    ConverterRun run(temp, app);
    run.redirect(output.inBatch(), output.staged());
    run.start("gifconvert.bat");
    run.waitGone("temp*.bmp");
    van.Van_SetProgress(80);
    run.waitGone("gifconvert.bat");
    finishExport(van, run, output,
                 {kind.kind, width, height, kind.kind == OutputCheck::Kind::Gif ? total : -1}, out);
}

void ExportGifPerFrame(Vantry::Vantry_Class& van, const PerFrameSettings& s) {
    const auto start = startExport(van, kGifGlobal);
    if (!start) return;
    const auto& [total, width, height, out, temp, app] = *start;
    const WorkingFiles working(temp);
    OutputStage output(out, OutputCheck::Kind::Gif);
    const auto primary = static_cast<std::uint32_t>(van.Van_getPrimaryColor());
    const Rgb colour{static_cast<std::uint8_t>(primary & 255),
                     static_cast<std::uint8_t>((primary >> 8) & 255),
                     static_cast<std::uint8_t>((primary >> 16) & 255)};

    std::vector<std::string> conversions, appends;
    for (int i = 0; i < total; ++i) {
        van.Van_SetProgress(divide(i + 1, total) * 50);
        filters::SaveFrameBitmap(van, i);
        conversions.push_back(
            gifConversionLine(app, temp, i, s.transparent ? std::optional<Rgb>(colour) : std::nullopt));
        const long long delay =
            s.globalDelay ? s.delay
                          : (static_cast<std::size_t>(i) < s.frameDelays.size() ? s.frameDelays[i] : 0);
        appends.push_back(gifAppendLine(app, temp, output.inBatch(), i, delay, s.loops));
    }
    writeBatchFile(temp + "/" + kGifConvertBat, batchBytes(gifPerFrameBatch(temp, conversions, appends)));

    ConverterRun run(temp, app);
    run.redirect(output.inBatch(), output.staged());
    run.start("gifconvert.bat");
    const QString qtemp = QString::fromStdString(temp);
    int counter = 0;
    // The second half of the progress follows the frame GIFs the batch makes.
    while (entryExists(qtemp, "gifconvert.bat") && !run.runnerEnded()) {
        while (!QFileInfo::exists(qtemp + "/temp" + QString::number(counter) + ".gif") &&
               counter < total - 1 && !run.runnerEnded())
            run.pause();
        if (counter <= total - 1) {
            ++counter;
            van.Van_SetProgress(divide(counter, total) * 50 + 50);
        }
        run.pause();
    }
    finishExport(van, run, output, {OutputCheck::Kind::Gif, width, height, total}, out);
}

} // namespace kirrel::exchange
