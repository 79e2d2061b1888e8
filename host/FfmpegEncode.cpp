// GIF, APNG, MP4 and WebM through ffmpeg. Each frame goes to a PAM file in a private folder and an
// ffconcat list gives each its own duration: with "option framerate" the frames are read in a time
// base of whole milliseconds (image2's default of 1/25 s would round them), so every timestamp is
// exact.

#include "host/MediaWriters.h"
#include "host/ToolRun.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

namespace kirrel::host {

namespace {

QString taskOf(ExportFormat f) {
    switch (f) {
    case ExportFormat::Gif:
        return "Saving a GIF file";
    case ExportFormat::Apng:
        return "Saving an APNG file";
    case ExportFormat::Mp4:
        return "Saving an MP4 video";
    case ExportFormat::WebM:
        return "Saving a WebM video";
    case ExportFormat::WebP:
        break;
    }
    return "Saving an animation";
}

// GIF delays are centiseconds; browsers show 0 and 1 as 10, so 2 is the shortest that keeps its meaning.
int gifCentiseconds(int ms) {
    return std::clamp((ms + 5) / 10, 2, 65535);
}

// Quality 100 is the encoder's best CRF (0) and quality 0 its worst (x264: 51, VP9: 63), in even
// steps between. The default, 18 for x264 and 24 for VP9, looks like the frames themselves and keeps
// them above 35 dB PSNR.
int crfFor(ExportFormat f, int quality) {
    const int worst = f == ExportFormat::Mp4 ? 51 : 63;
    if (quality < 0) return f == ExportFormat::Mp4 ? 18 : 24;
    return static_cast<int>(std::lround((100 - std::min(quality, 100)) * worst / 100.0));
}

// How many times the animation plays (0 for ever) in each muxer's terms.
int gifLoop(int plays) {
    if (plays <= 0) return 0;          // NETSCAPE loop 0: for ever
    if (plays == 1) return -1;         // no loop extension: once
    return std::min(plays - 1, 65535); // the count is of repeats after the first
}

void writePam(const QString& path, const ExportFrames& frames, const std::vector<std::uint8_t>& pixels) {
    QFile f(path);
    const QByteArray header = QString("P7\nWIDTH %1\nHEIGHT %2\nDEPTH %3\nMAXVAL 255\nTUPLTYPE %4\nENDHDR\n")
                                  .arg(frames.width())
                                  .arg(frames.height())
                                  .arg(frames.channels())
                                  .arg(frames.channels() == 4 ? "RGB_ALPHA" : "RGB")
                                  .toLatin1();
    const auto size = static_cast<qint64>(pixels.size());
    if (!f.open(QIODevice::WriteOnly) || f.write(header) != header.size() ||
        f.write(reinterpret_cast<const char*>(pixels.data()), size) != size)
        throw std::runtime_error("The frames could not be written to a temporary folder (" +
                                 f.errorString().toStdString() + ").");
}

// yuv420p shares one colour among each 2 x 2 pixels. x264 refuses an odd size, and at an odd edge
// the conversion mixes black into the last column's colour; so an odd size gets one more column or
// row, a copy of the edge. It is made in planar RGB, before any colour is shared, so the copy is
// whole.
QStringList evenSize(const ExportFrames& frames) {
    const int right = frames.width() % 2;
    const int bottom = frames.height() % 2;
    if (!right && !bottom) return {};
    return {"-vf", QString("format=gbrp,pad=%1:%2:0:0,fillborders=right=%3:bottom=%4:mode=smear")
                       .arg(frames.width() + right)
                       .arg(frames.height() + bottom)
                       .arg(right)
                       .arg(bottom)};
}

QStringList formatArgs(ExportFormat f, const ExportFrames& frames, const ExportOptions& o, int lastDelayMs) {
    switch (f) {
    case ExportFormat::Gif: {
        // One palette for the whole animation, from every pixel of every frame. The palette is made
        // from the colours alone: a clear pixel counted apart from the same colour opaque would take a
        // palette entry of its own, so an animation of 255 colours would no longer come back exact.
        const QString graph =
            QString("split[a][b];[a]format=rgb24,palettegen=stats_mode=full:reserve_transparent=%1[p];"
                    "[b][p]paletteuse=alpha_threshold=128")
                .arg(frames.transparent() ? 1 : 0);
        return {"-filter_complex",
                graph,
                "-loop",
                QString::number(gifLoop(o.loop)),
                "-final_delay",
                QString::number(gifCentiseconds(lastDelayMs)),
                "-f",
                "gif"};
    }
    case ExportFormat::Apng:
        return {"-c:v",         "apng",
                "-pix_fmt",     frames.transparent() ? "rgba" : "rgb24",
                "-plays",       QString::number(std::clamp(o.loop, 0, 65535)),
                "-final_delay", QString("%1/1000").arg(lastDelayMs),
                "-f",           "apng"};
    case ExportFormat::Mp4:
        return evenSize(frames) + QStringList{"-c:v",       "libx264", "-pix_fmt",
                                              "yuv420p",    "-crf",    QString::number(crfFor(f, o.quality)),
                                              "-preset",    "medium",  "-movflags",
                                              "+faststart", "-f",      "mp4"};
    case ExportFormat::WebM:
        return evenSize(frames) +
               QStringList{"-c:v",      "libvpx-vp9", "-pix_fmt",
                           "yuv420p",   "-crf",       QString::number(crfFor(f, o.quality)),
                           "-b:v",      "0",          "-row-mt",
                           "1",         "-deadline",  "good",
                           "-cpu-used", "2",          "-f",
                           "webm"};
    case ExportFormat::WebP:
        break;
    }
    throw std::logic_error("WebP is not written through ffmpeg");
}

} // namespace

void writeWithFfmpeg(ExportFormat format, const QString& out, const ExportFrames& frames,
                     const ExportOptions& options, const ToolProgress& progress) {
    const QString ffmpeg = requireTool("ffmpeg", taskOf(format));
    auto report = [&](double percent) {
        if (progress.report) progress.report(percent);
    };
    std::vector<int> delays;
    delays.reserve(static_cast<std::size_t>(frames.count()));
    for (int i = 0; i < frames.count(); ++i)
        delays.push_back(format == ExportFormat::Gif ? 10 * gifCentiseconds(frames.delayMs(i))
                                                     : frames.delayMs(i));
    // MP4 and WebM have no way to say how long the last frame lasts on this route: it lasts one tick of
    // the time base. A tick of the delays' greatest common divisor keeps every timestamp exact and
    // gives the last frame its own delay whenever that is the divisor, as when all delays are equal.
    int tick = 1;
    if (format == ExportFormat::Mp4 || format == ExportFormat::WebM)
        tick = std::accumulate(delays.begin(), delays.end(), 0, [](int a, int b) { return std::gcd(a, b); });

    PrivateFolder work;
    QByteArray list = "ffconcat version 1.0\n";
    std::vector<std::uint8_t> pixels;
    const auto clearAs = format == ExportFormat::Gif && frames.transparent()
                             ? std::optional(frames.anOpaqueColour())
                             : std::nullopt;
    for (int i = 0; i < frames.count(); ++i) {
        if (progress.cancelled && progress.cancelled()) throw Cancelled();
        const QString name = QString("frame%1.pam").arg(i, 5, 10, QChar('0'));
        frames.pixels(i, pixels, clearAs);
        writePam(work.path(name), frames, pixels);
        list += QString("file '%1'\noption framerate 1000/%2\nduration %3\n")
                    .arg(name)
                    .arg(tick)
                    .arg(delays[static_cast<std::size_t>(i)] / 1000.0, 0, 'f', 3)
                    .toLatin1();
        report(50.0 * (i + 1) / frames.count());
    }
    QFile listFile(work.path("frames.ffconcat"));
    if (!listFile.open(QIODevice::WriteOnly) || listFile.write(list) != list.size())
        throw std::runtime_error("The frame list could not be written to a temporary folder.");
    listFile.close();

    // "option" lines in the list need the concat reader's unsafe mode; the list and its plain file
    // names are our own.
    const QStringList args =
        QStringList{
            "-nostdin", "-v", "error",  "-nostats", "-progress",         "pipe:1",    "-y",         "-safe",
            "0",        "-f", "concat", "-i",       listFile.fileName(), "-fps_mode", "passthrough"} +
        formatArgs(format, frames, options, delays.back()) + QStringList{"file:" + out};
    ToolRun run(ffmpeg, args, progress);
    QByteArray pending;
    const int code = run.finish([&](const char* data, qint64 size) {
        pending.append(data, static_cast<qsizetype>(size));
        for (qsizetype end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            const QByteArray line = pending.left(end).trimmed();
            pending.remove(0, end + 1);
            if (line.startsWith("frame="))
                report(50.0 + 50.0 * std::min(line.mid(6).toInt(), frames.count()) / frames.count());
        }
    });
    if (code != 0)
        throw std::runtime_error(
            ("ffmpeg could not write the " + exportFormatName(format) + " file: " + run.complaint())
                .toStdString());
}

} // namespace kirrel::host
