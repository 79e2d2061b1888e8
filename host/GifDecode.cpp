// GIF through ImageMagick: `convert -coalesce` gives every frame whole, with "restore to background"
// areas cleared to transparent as browsers show them (ffmpeg's decoder fills them with the
// background colour instead, and Qt's reader does not dispose at all), and the same frames the
// panel's own GIF imports get. ffmpeg stands in only when ImageMagick is missing or gives up.

#include "exchange/GifBlocks.h"
#include "host/AnimationBuilder.h"
#include "host/MediaReaders.h"
#include "host/ToolRun.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace kirrel::host {

using exchange::GifLayout;
using exchange::scanGif;

namespace {

std::runtime_error gifError(const QString& path, const QString& what) {
    return std::runtime_error((QFileInfo(path).fileName() + " " + what).toStdString());
}

struct CoalescedFrame {
    int delayCs = 0;
    int width = 0;
    int height = 0;
};

// What convert wrote with -format "%T %w %h\n" before the frames themselves.
std::vector<CoalescedFrame> readFrameList(const QString& path) {
    QFile f(path);
    std::vector<CoalescedFrame> frames;
    if (!f.open(QIODevice::ReadOnly)) return frames;
    for (const QByteArray& line : f.readAll().split('\n')) {
        const QList<QByteArray> v = line.simplified().split(' ');
        if (v.size() == 3) frames.push_back({v[0].toInt(), v[1].toInt(), v[2].toInt()});
    }
    return frames;
}

// The file convert reads: the GIF itself through a plain-named link, or, for a file cut short or
// damaged further on, a copy of its whole frames closed with a trailer (ImageMagick refuses a GIF
// whose last frame is cut, and would lose the frames before it).
QString convertInput(const QString& path, const GifLayout& layout, const uchar* data,
                     const PrivateFolder& folder) {
    if (layout.trailer) return folder.linkTo(path, "input.gif");
    QFile copy(folder.path("input.gif"));
    if (!copy.open(QIODevice::WriteOnly) ||
        copy.write(reinterpret_cast<const char*>(data), static_cast<qint64>(layout.wholeUpTo)) !=
            static_cast<qint64>(layout.wholeUpTo) ||
        !copy.putChar(';'))
        throw gifError(path, "could not be copied to a temporary folder.");
    return copy.fileName();
}

Animation readWithConvert(const QString& path, const QString& convert, const GifLayout& layout,
                          const uchar* data, const ReadOptions& options) {
    PrivateFolder folder;
    const QString input = convertInput(path, layout, data, folder);
    const QString list = folder.path("frames.txt");
    ToolRun run(convert,
                {"gif:" + input, "-coalesce", "-format", "%T %w %h\n", "-write", "info:" + list, "-depth",
                 "8", "rgba:-"},
                options.progress);
    AnimationBuilder builder(path, options);
    std::vector<CoalescedFrame> frames;
    std::optional<RgbaFrameStream> stream;
    // The list is written whole before the first frame's bytes arrive.
    auto begin = [&] {
        frames = readFrameList(list);
        if (frames.empty()) throw gifError(path, "could not be read: ImageMagick listed no frames.");
        const int w = frames.front().width;
        const int h = frames.front().height;
        if (std::any_of(frames.begin(), frames.end(),
                        [w, h](const CoalescedFrame& f) { return f.width != w || f.height != h; }))
            throw gifError(path, "could not be read: its frames differ in size.");
        builder.start(w, h, static_cast<std::int64_t>(frames.size()));
        stream.emplace(std::size_t{4} * w * h, [&, w](const std::uint8_t* rgba) {
            const auto i = static_cast<std::size_t>(builder.frameCount());
            if (i >= frames.size())
                throw gifError(path, "could not be read: ImageMagick sent more frames than it listed.");
            builder.addFrame(rgba, std::ptrdiff_t{4} * w, frames[i].delayCs * 10);
            if (options.progress.report) options.progress.report(100.0 * (i + 1) / frames.size());
        });
    };
    const int code = run.finish([&](const char* bytes, qint64 size) {
        if (!stream) begin();
        stream->feed(bytes, size);
    });
    if (builder.frameCount() == 0)
        throw gifError(path,
                       "could not be read: " +
                           (run.complaint().isEmpty() ? "ImageMagick gave no frames." : run.complaint()));
    const bool whole = !layout.damaged && code == 0 && !stream->leftover() &&
                       static_cast<std::size_t>(builder.frameCount()) == frames.size();
    return builder.finish({whole});
}

} // namespace

Animation readGifFile(const QString& path, const ReadOptions& options) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw gifError(path, "cannot be opened.");
    const qint64 size = file.size();
    const uchar* data = size > 0 ? file.map(0, size) : nullptr;
    if (!data) throw gifError(path, size > 0 ? "cannot be read." : "is empty.");
    const GifLayout layout = scanGif(data, static_cast<std::size_t>(size));
    if (!layout.isGif) throw gifError(path, "is not a GIF file.");
    checkAnimationSize(path, layout.width, layout.height, std::max(layout.frames, 1));
    if (layout.frames == 0) throw gifError(path, "is damaged: no frame could be read.");

    const QString convert = findTool("convert");
    const bool haveFfmpeg = !findTool("ffmpeg").isEmpty();
    if (convert.isEmpty()) {
        if (!haveFfmpeg) requireTool("convert", "Opening a GIF file");
        return readWithFfmpeg(path, FfmpegSource::Gif, options);
    }
    try {
        return readWithConvert(path, convert, layout, data, options);
    } catch (const Cancelled&) {
        throw;
    } catch (const std::runtime_error&) {
        // A GIF ImageMagick gives up on may still be read by ffmpeg, frames and all.
        if (!haveFfmpeg) throw;
        try {
            return readWithFfmpeg(path, FfmpegSource::Gif, options);
        } catch (const Cancelled&) {
            throw;
        } catch (const std::runtime_error&) {
        }
        throw;
    }
}

} // namespace kirrel::host
