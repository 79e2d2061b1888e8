// APNG, video, and GIF when ImageMagick is missing: ffmpeg decodes to raw RGBA on its standard
// output, one frame per frame of the file, while ffprobe tells the frames' size and timestamps. The
// two run at once; the frames are turned into pictures as they arrive.

#include "host/AnimationBuilder.h"
#include "host/MediaReaders.h"
#include "host/ToolRun.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace kirrel::host {

namespace {

struct SourceKind {
    const char* task;    // for the message when a tool is missing
    const char* demuxer; // forced where the file's name or content could mislead ffmpeg
};

SourceKind kindOf(FfmpegSource s) {
    switch (s) {
    case FfmpegSource::Gif:
        return {"Opening a GIF file", "gif"};
    case FfmpegSource::Apng:
        return {"Opening an APNG file", "apng"};
    case FfmpegSource::Video:
        break;
    }
    return {"Opening a video", nullptr};
}

struct ProbedStream {
    int width = 0;
    int height = 0;
    int rotation = 0;
    std::vector<double> pts; // seconds, in presentation order
    double lastDuration = 0;
    double duration = 0; // the container's own, when it says
};

// ffprobe's CSV: "packet,PTS,DURATION" lines, then "stream,W,H[,side_data,ROTATION]" and
// "format,DURATION".
ProbedStream parseProbe(const QByteArray& csv) {
    ProbedStream s;
    std::vector<std::pair<double, double>> packets;
    for (const QByteArray& line : csv.split('\n')) {
        const QList<QByteArray> v = line.trimmed().split(',');
        if (v.size() >= 3 && v[0] == "packet") {
            bool ok = false;
            const double pts = v[1].toDouble(&ok);
            if (ok) packets.emplace_back(pts, v[2].toDouble());
        } else if (v.size() >= 2 && v[0] == "format") {
            s.duration = v[1].toDouble();
        } else if (v.size() >= 3 && v[0] == "stream") {
            s.width = v[1].toInt();
            s.height = v[2].toInt();
            const qsizetype side = v.indexOf("side_data");
            if (side >= 0 && side + 1 < v.size()) s.rotation = v[side + 1].toInt();
        }
    }
    std::sort(packets.begin(), packets.end());
    for (const auto& p : packets)
        s.pts.push_back(p.first);
    if (!packets.empty()) s.lastDuration = packets.back().second;
    return s;
}

// Milliseconds from one timestamp to the next; the last frame keeps its packet's duration, or else
// the delay before it.
std::vector<int> delaysOf(const ProbedStream& s) {
    std::vector<int> d;
    for (std::size_t i = 0; i + 1 < s.pts.size(); ++i)
        d.push_back(std::max(0, static_cast<int>(std::lround((s.pts[i + 1] - s.pts[i]) * 1000))));
    if (!s.pts.empty())
        d.push_back(s.lastDuration > 0 ? static_cast<int>(std::lround(s.lastDuration * 1000))
                                       : (d.empty() ? 0 : d.back()));
    return d;
}

// A file cut short may still list only whole packets (a WebM has no index to miss); its container
// then says it lasts longer than the frames that came. More than the longest delay counts as short.
bool endsBeforeItsDuration(const ProbedStream& s, const std::vector<int>& delays) {
    if (s.duration <= 0 || s.pts.empty() || delays.empty()) return false;
    const double longest = *std::max_element(delays.begin(), delays.end()) / 1000.0;
    const double end = s.pts.back() - s.pts.front() + delays.back() / 1000.0;
    return s.duration - end > longest + 0.001;
}

std::runtime_error unreadable(const QString& path, const QString& why) {
    return std::runtime_error(
        (QFileInfo(path).fileName() + " could not be read" + (why.isEmpty() ? "." : ": " + why))
            .toStdString());
}

} // namespace

Animation readWithFfmpeg(const QString& path, FfmpegSource source, const ReadOptions& options) {
    const SourceKind kind = kindOf(source);
    const QString ffmpeg = requireTool("ffmpeg", kind.task);
    const QString ffprobe = requireTool("ffprobe", kind.task);
    PrivateFolder folder;
    QString suffix = QFileInfo(path).suffix().toLower();
    suffix.removeIf([](QChar c) { return !c.isLetterOrNumber() || c.unicode() > 127; });
    // file: keeps ffmpeg from reading a protocol or an option into the name.
    const QString input = "file:" + folder.linkTo(path, "input." + suffix);
    const QStringList format = kind.demuxer ? QStringList{"-f", kind.demuxer} : QStringList{};

    ToolRun probe(
        ffprobe,
        QStringList{
            "-v", "error", "-select_streams", "v:0", "-show_entries",
            "stream=width,height:stream_side_data=rotation:packet=pts_time,duration_time:format=duration",
            "-of", "csv"} +
            format + QStringList{input},
        options.progress);
    ToolRun decode(ffmpeg,
                   QStringList{"-nostdin", "-v", "error"} + format +
                       QStringList{"-i", input, "-map", "0:v:0", "-fps_mode", "passthrough", "-f", "rawvideo",
                                   "-pix_fmt", "rgba", "pipe:1"},
                   options.progress);
    // ffmpeg waits on its full pipe meanwhile: the size must be known before its frames are cut.
    QByteArray csv;
    probe.finish(csv);
    ProbedStream s = parseProbe(csv);
    if (s.width <= 0 || s.height <= 0) throw unreadable(path, probe.complaint());
    // ffmpeg turns the frames upright as the file asks; ffprobe's size is before that.
    if (std::abs(s.rotation) % 180 == 90) std::swap(s.width, s.height);

    AnimationBuilder builder(path, options);
    builder.start(s.width, s.height, std::max<std::int64_t>(1, static_cast<std::int64_t>(s.pts.size())));
    const std::vector<int> delays = delaysOf(s);
    const int w = s.width;
    RgbaFrameStream stream(std::size_t{4} * w * s.height, [&](const std::uint8_t* rgba) {
        const auto i = static_cast<std::size_t>(builder.frameCount());
        builder.addFrame(rgba, std::ptrdiff_t{4} * w, i < delays.size() ? delays[i] : 0);
        if (options.progress.report && !s.pts.empty())
            options.progress.report(
                std::min(100.0, 100.0 * static_cast<double>(i + 1) / static_cast<double>(s.pts.size())));
    });
    const int code = decode.finish([&](const char* bytes, qint64 size) { stream.feed(bytes, size); });
    if (builder.frameCount() == 0) throw unreadable(path, decode.complaint());
    const bool whole = code == 0 && !stream.leftover() &&
                       static_cast<std::size_t>(builder.frameCount()) >= s.pts.size() &&
                       !endsBeforeItsDuration(s, delays);
    return builder.finish({whole});
}

} // namespace kirrel::host
