#include "host/MediaReaders.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstring>

namespace kirrel::host {

namespace {

// A PNG is animated when its animation control chunk comes before the image data.
bool isAnimatedPng(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return false;
    static constexpr char kSignature[] = "\x89PNG\r\n\x1a\n";
    char head[8];
    if (f.read(head, 8) != 8 || std::memcmp(head, kSignature, 8) != 0) return false;
    std::array<unsigned char, 8> chunk{};
    while (f.read(reinterpret_cast<char*>(chunk.data()), 8) == 8) {
        const quint32 length =
            (quint32{chunk[0]} << 24) | (quint32{chunk[1]} << 16) | (quint32{chunk[2]} << 8) | chunk[3];
        if (std::memcmp(chunk.data() + 4, "acTL", 4) == 0) return true;
        if (std::memcmp(chunk.data() + 4, "IDAT", 4) == 0) return false;
        if (!f.seek(f.pos() + qint64{length} + 4)) return false; // the data and its CRC
    }
    return false;
}

Animation readPng(const QString& path, const ReadOptions& options) {
    return readWithFfmpeg(path, FfmpegSource::Apng, options);
}
Animation readVideo(const QString& path, const ReadOptions& options) {
    return readWithFfmpeg(path, FfmpegSource::Video, options);
}

struct MediaKind {
    std::array<const char*, 6> suffixes; // lower case; unused places are null
    MediaReader read;
    bool (*claims)(const QString& path); // null: every file of these suffixes
};

const MediaKind kKinds[] = {
    {{"gif"}, readGifFile, nullptr},
    {{"png", "apng"}, readPng, isAnimatedPng},
    {{"webp"}, readWebpFile, nullptr},
    {{"mp4", "m4v", "mov", "webm", "mkv", "avi"}, readVideo, nullptr},
};

} // namespace

MediaReader mediaReaderFor(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const MediaKind& k : kKinds)
        for (const char* s : k.suffixes)
            if (s && suffix == QLatin1String(s)) return !k.claims || k.claims(path) ? k.read : nullptr;
    return nullptr;
}

} // namespace kirrel::host
