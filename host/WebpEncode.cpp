// Animated WebP through libwebp's animation encoder: lossless unless a quality below 100 is asked
// for, transparency kept, each frame's own duration, and the loop count.

#include "host/MediaWriters.h"

#include <QFile>

#include <webp/encode.h>
#include <webp/mux.h>

#include <memory>
#include <stdexcept>

namespace kirrel::host {

namespace {

struct EncoderDeleter {
    void operator()(WebPAnimEncoder* e) const { WebPAnimEncoderDelete(e); }
};

class Frame {
  public:
    Frame() { WebPPictureInit(&pic_); }
    ~Frame() { WebPPictureFree(&pic_); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
    WebPPicture* get() { return &pic_; }

  private:
    WebPPicture pic_{};
};

class Assembled {
  public:
    Assembled() { WebPDataInit(&data_); }
    ~Assembled() { WebPDataClear(&data_); }
    Assembled(const Assembled&) = delete;
    Assembled& operator=(const Assembled&) = delete;
    WebPData* get() { return &data_; }

  private:
    WebPData data_{};
};

std::runtime_error encoderError(WebPAnimEncoder* e) {
    const char* why = e ? WebPAnimEncoderGetError(e) : nullptr;
    return std::runtime_error(std::string("The WebP file could not be made") +
                              (why && *why ? std::string(": ") + why : "."));
}

} // namespace

void writeWebp(const QString& out, const ExportFrames& frames, const ExportOptions& options,
               const ToolProgress& progress) {
    WebPAnimEncoderOptions eo;
    WebPConfig config;
    if (!WebPAnimEncoderOptionsInit(&eo) || !WebPConfigInit(&config))
        throw std::runtime_error("The WebP library does not match the one Kirrel was built with.");
    eo.anim_params.loop_count = std::max(0, options.loop); // WebP counts plays, 0 for ever, as we do
    eo.anim_params.bgcolor = 0x00FFFFFF;                   // clear white
    const bool lossless = options.quality < 0 || options.quality >= 100;
    config.lossless = lossless ? 1 : 0;
    // For lossless frames the quality is the effort spent making them small.
    config.quality = lossless ? 75.0F : static_cast<float>(std::max(0, options.quality));
    config.method = 4;
    if (!WebPValidateConfig(&config)) throw std::runtime_error("The WebP settings were refused.");

    const std::unique_ptr<WebPAnimEncoder, EncoderDeleter> encoder(
        WebPAnimEncoderNew(frames.width(), frames.height(), &eo));
    if (!encoder)
        throw std::runtime_error("The WebP file could not be made: the frames are too large for WebP.");
    std::vector<std::uint8_t> pixels;
    int at = 0;
    for (int i = 0; i < frames.count(); ++i) {
        if (progress.cancelled && progress.cancelled()) throw Cancelled();
        frames.pixels(i, pixels);
        Frame frame;
        frame.get()->width = frames.width();
        frame.get()->height = frames.height();
        frame.get()->use_argb = 1;
        const int stride = frames.width() * frames.channels();
        const int imported = frames.channels() == 4
                                 ? WebPPictureImportRGBA(frame.get(), pixels.data(), stride)
                                 : WebPPictureImportRGB(frame.get(), pixels.data(), stride);
        if (!imported || !WebPAnimEncoderAdd(encoder.get(), frame.get(), at, &config))
            throw encoderError(encoder.get());
        at += frames.delayMs(i);
        if (progress.report) progress.report(90.0 * (i + 1) / frames.count());
    }
    // A last call without a frame gives the last frame its duration.
    Assembled webp;
    if (!WebPAnimEncoderAdd(encoder.get(), nullptr, at, nullptr) ||
        !WebPAnimEncoderAssemble(encoder.get(), webp.get()))
        throw encoderError(encoder.get());
    QFile file(out);
    const auto size = static_cast<qint64>(webp.get()->size);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char*>(webp.get()->bytes), size) != size)
        throw std::runtime_error("The WebP file could not be written: " + file.errorString().toStdString());
    if (progress.report) progress.report(100.0);
}

} // namespace kirrel::host
