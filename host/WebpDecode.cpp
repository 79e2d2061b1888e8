// Still and animated WebP through libwebp's animation decoder, which gives every frame composited
// on the canvas, and each frame's end time.

#include "host/AnimationBuilder.h"
#include "host/MediaReaders.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <webp/demux.h>

#include <memory>
#include <stdexcept>

namespace kirrel::host {

namespace {

std::runtime_error webpError(const QString& path, const QString& what) {
    return std::runtime_error((QFileInfo(path).fileName() + " " + what).toStdString());
}

struct DemuxDeleter {
    void operator()(WebPDemuxer* d) const { WebPDemuxDelete(d); }
};
struct DecoderDeleter {
    void operator()(WebPAnimDecoder* d) const { WebPAnimDecoderDelete(d); }
};
using Decoder = std::unique_ptr<WebPAnimDecoder, DecoderDeleter>;

Decoder openDecoder(const QByteArray& bytes) {
    const WebPData data{reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                        static_cast<std::size_t>(bytes.size())};
    WebPAnimDecoderOptions options;
    if (!WebPAnimDecoderOptionsInit(&options)) return nullptr;
    options.color_mode = MODE_RGBA;
    options.use_threads = 1;
    return Decoder(WebPAnimDecoderNew(&data, &options));
}

// A file cut short: its frames that are all there, as a file of their own. The file is cut where its
// last whole frame ends and the container's length is set to match; the frames are left as they are.
QByteArray wholeFramesOf(const QByteArray& bytes) {
    const WebPData data{reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                        static_cast<std::size_t>(bytes.size())};
    WebPDemuxState state = WEBP_DEMUX_PARSE_ERROR;
    const std::unique_ptr<WebPDemuxer, DemuxDeleter> demux(WebPDemuxPartial(&data, &state));
    if (!demux || state < WEBP_DEMUX_PARSED_HEADER) return {};
    std::size_t end = 0;
    WebPIterator it;
    if (WebPDemuxGetFrame(demux.get(), 1, &it)) {
        do {
            if (!it.complete) break;
            end = static_cast<std::size_t>(it.fragment.bytes + it.fragment.size - data.bytes);
        } while (WebPDemuxNextFrame(&it));
        WebPDemuxReleaseIterator(&it);
    }
    end += end & 1; // chunks are padded to an even length
    if (end <= 8 || end > data.size) return {};
    QByteArray cut = bytes.left(static_cast<qsizetype>(end));
    const auto riffSize = static_cast<std::uint32_t>(end - 8);
    for (int i = 0; i < 4; ++i)
        cut[4 + i] = static_cast<char>((riffSize >> (8 * i)) & 255);
    return cut;
}

} // namespace

Animation readWebpFile(const QString& path, const ReadOptions& options) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw webpError(path, "cannot be opened.");
    // WebP's container counts its length in 32 bits.
    if (file.size() > (qint64{1} << 32)) throw webpError(path, "is larger than a WebP file can be.");
    QByteArray bytes = file.readAll();
    Decoder decoder = openDecoder(bytes);
    bool whole = true;
    if (!decoder) {
        bytes = wholeFramesOf(bytes);
        decoder = bytes.isEmpty() ? nullptr : openDecoder(bytes);
        if (!decoder) throw webpError(path, "is not a WebP file Kirrel can read, or is damaged.");
        whole = false;
    }
    WebPAnimInfo info;
    if (!WebPAnimDecoderGetInfo(decoder.get(), &info)) throw webpError(path, "could not be read.");
    AnimationBuilder builder(path, options);
    builder.start(static_cast<int>(info.canvas_width), static_cast<int>(info.canvas_height),
                  std::max<std::int64_t>(1, info.frame_count));
    const auto stride = std::ptrdiff_t{4} * info.canvas_width;
    int before = 0;
    while (WebPAnimDecoderHasMoreFrames(decoder.get())) {
        if (options.progress.cancelled && options.progress.cancelled()) throw Cancelled();
        std::uint8_t* rgba = nullptr;
        int endsAt = 0;
        if (!WebPAnimDecoderGetNext(decoder.get(), &rgba, &endsAt)) {
            whole = false;
            break;
        }
        builder.addFrame(rgba, stride, endsAt - before);
        before = endsAt;
        if (options.progress.report && info.frame_count > 0)
            options.progress.report(100.0 * builder.frameCount() / info.frame_count);
    }
    return builder.finish({whole});
}

} // namespace kirrel::host
