#include "host/AnimationExport.h"

#include "host/ExportFrames.h"
#include "host/MediaWriters.h"
#include "host/PendingFile.h"

#include <QFileInfo>

#include <algorithm>
#include <stdexcept>

namespace kirrel::host {

namespace {

struct FormatTraits {
    ExportFormat format;
    const char* name;
    std::array<const char*, 2> suffixes; // lower case; an unused place is null
    bool transparency;
    bool loopCount;
    bool quality;
};

constexpr FormatTraits kFormats[] = {
    {ExportFormat::Gif, "GIF", {"gif", nullptr}, true, true, false},
    {ExportFormat::Apng, "APNG", {"png", "apng"}, true, true, false},
    {ExportFormat::WebP, "WebP", {"webp", nullptr}, true, true, true},
    {ExportFormat::Mp4, "MP4", {"mp4", "m4v"}, false, false, true},
    {ExportFormat::WebM, "WebM", {"webm", nullptr}, false, false, true},
};

const FormatTraits& traits(ExportFormat f) {
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [f](const FormatTraits& t) { return t.format == f; });
    if (found == std::end(kFormats)) throw std::logic_error("unknown export format");
    return *found;
}

} // namespace

std::optional<ExportFormat> exportFormatFor(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const FormatTraits& t : kFormats)
        for (const char* s : t.suffixes)
            if (s && suffix == QLatin1String(s)) return t.format;
    return std::nullopt;
}

QString exportFormatName(ExportFormat f) {
    return QString::fromLatin1(traits(f).name);
}
bool formatHasTransparency(ExportFormat f) {
    return traits(f).transparency;
}
bool formatHasLoopCount(ExportFormat f) {
    return traits(f).loopCount;
}
bool formatHasQuality(ExportFormat f) {
    return traits(f).quality;
}

void exportAnimation(const QString& path, const ExportInput& in, const ExportOptions& options,
                     const ToolProgress& progress) {
    const std::optional<ExportFormat> format = exportFormatFor(path);
    if (!format)
        throw std::runtime_error(
            (QFileInfo(path).fileName() +
             " does not name a format Kirrel writes: end it in .gif, .png, .apng, .webp, .mp4 "
             "or .webm.")
                .toStdString());
    const ExportFrames frames(in, options.transparency, formatHasTransparency(*format));
    PendingFile out(path);
    if (*format == ExportFormat::WebP)
        writeWebp(out.path(), frames, options, progress);
    else
        writeWithFfmpeg(*format, out.path(), frames, options, progress);
    out.commit();
}

} // namespace kirrel::host
