#include "exchange/ConverterFiles.h"

#include "exchange/BatchRunner.h"
#include "exchange/BatchWorkers.h"
#include "exchange/GifBlocks.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cstdio>
#include <vector>

namespace kirrel::exchange {

namespace {

// The working files of every run; the converter's own frame names and the batch files.
constexpr const char* kWorkingPatterns[] = {
    "temp*.bmp",    "temp*.gif",      "gif_frame-*",     "gif_frame.*",     "gif_input.gif",  "png_main.bmp",
    "png_mask.bmp", "GifConvert.bat", "GifImport01.bat", "GifImport02.bat", "PNGConvert.bat", "*.bat.failed",
};

const char* extensionOf(OutputCheck::Kind kind) {
    switch (kind) {
    case OutputCheck::Kind::Gif:
        return ".gif";
    case OutputCheck::Kind::Mng:
        return ".mng";
    case OutputCheck::Kind::Png:
        return ".png";
    }
    return ".gif";
}

std::string folderOf(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).absolutePath().toStdString();
}

// Staged names differ within one program and between programs working in one folder.
std::string uniqueName(const std::string& folder, const char* extension) {
    static std::atomic<int> counter{0};
    return folder + "/.kirrel-" + std::to_string(QCoreApplication::applicationPid()) + "-" +
           std::to_string(++counter) + "-partial" + extension;
}

std::vector<unsigned char> readAll(const std::string& path, qint64 limit) {
    QFile f(QString::fromStdString(path));
    if (!f.open(QIODevice::ReadOnly) || f.size() > limit) return {};
    const QByteArray b = f.readAll();
    return {b.begin(), b.end()};
}

unsigned bigEndian32(const std::vector<unsigned char>& b, std::size_t at) {
    return (unsigned{b[at]} << 24) | (unsigned{b[at + 1]} << 16) | (unsigned{b[at + 2]} << 8) | b[at + 3];
}

// The size in the first chunk of a PNG or MNG (IHDR or MHDR), after its eight-byte signature.
std::optional<std::string> checkChunkedSize(const std::vector<unsigned char>& b,
                                            const unsigned char* signature, const char* chunk,
                                            const OutputCheck& check) {
    if (b.size() < 24 || !std::equal(signature, signature + 8, b.begin()))
        return "it is not the right kind of file";
    if (std::string(b.begin() + 12, b.begin() + 16) != chunk) return "it has no picture header";
    const unsigned w = bigEndian32(b, 16), h = bigEndian32(b, 20);
    if (static_cast<int>(w) != check.width || static_cast<int>(h) != check.height)
        return "it is " + std::to_string(w) + " x " + std::to_string(h) + ", not " +
               std::to_string(check.width) + " x " + std::to_string(check.height);
    return std::nullopt;
}

} // namespace

void clearWorkingFiles(const std::string& temp) {
    const QDir dir(QString::fromStdString(temp));
    for (const QFileInfo& e : dir.entryInfoList(QDir::Files | QDir::System | QDir::Hidden)) {
        for (const char* pattern : kWorkingPatterns)
            if (wildcardMatch(QString::fromLatin1(pattern), e.fileName())) {
                QFile::remove(e.absoluteFilePath());
                break;
            }
    }
    // A runner that was ended leaves the folder its lines ran ahead in.
    for (const QFileInfo& e : dir.entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
        if (!e.isSymLink() && wildcardMatch(QString::fromLatin1(kAheadFolderPattern), e.fileName()))
            QDir(e.absoluteFilePath()).removeRecursively();
}

WorkingFiles::WorkingFiles(std::string temp) : temp_(std::move(temp)) {
    clearWorkingFiles(temp_);
}

WorkingFiles::~WorkingFiles() {
    clearWorkingFiles(temp_);
}

bool plainForConverter(const std::string& path) {
    if (path.empty()) return false;
    bool startOfName = true;
    for (const char c : path) {
        const auto u = static_cast<unsigned char>(c);
        // Non-ASCII names are plain on one platform and not on the next: they go by a link too.
        if (u < 0x20 || u >= 0x7f) return false;
        if (startOfName && c == '-') return false; // an option, to the converter
        startOfName = c == '/';
        const bool ordinary = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                              std::string_view(" ._-+,=~/()'!#&").find(c) != std::string_view::npos;
        if (!ordinary) return false;
    }
    return true;
}

std::optional<std::string> checkOutput(const std::string& path, const OutputCheck& check) {
    // A GIF of the largest animation a host holds is far below this; anything bigger is not ours.
    const std::vector<unsigned char> b = readAll(path, qint64{16} << 30);
    if (b.empty()) return "it is empty or missing";
    switch (check.kind) {
    case OutputCheck::Kind::Gif: {
        const GifLayout gif = scanGif(b.data(), b.size());
        if (!gif.isGif) return "it is not a GIF";
        if (gif.damaged || !gif.trailer) return "it ends early";
        if (gif.width != check.width || gif.height != check.height)
            return "it is " + std::to_string(gif.width) + " x " + std::to_string(gif.height) + ", not " +
                   std::to_string(check.width) + " x " + std::to_string(check.height);
        if (check.frames >= 0 && gif.frames != check.frames)
            return "it holds " + std::to_string(gif.frames) + " frames, not " + std::to_string(check.frames);
        return std::nullopt;
    }
    case OutputCheck::Kind::Mng: {
        static const unsigned char mng[8] = {0x8a, 'M', 'N', 'G', 0x0d, 0x0a, 0x1a, 0x0a};
        return checkChunkedSize(b, mng, "MHDR", check);
    }
    case OutputCheck::Kind::Png: {
        static const unsigned char png[8] = {0x89, 'P', 'N', 'G', 0x0d, 0x0a, 0x1a, 0x0a};
        return checkChunkedSize(b, png, "IHDR", check);
    }
    }
    return std::nullopt;
}

OutputStage::OutputStage(std::string finalPath, OutputCheck::Kind kind) : final_(std::move(finalPath)) {
    const std::string folder = folderOf(final_);
    // The staged name carries the format's extension: the converter writes the format it names.
    staged_ = uniqueName(folder, extensionOf(kind));
    inBatch_ = plainForConverter(final_) ? final_ : folder + "/.kirrel-output" + extensionOf(kind);
}

OutputStage::~OutputStage() {
    if (!committed_) std::remove(staged_.c_str());
}

std::optional<std::string> OutputStage::commit(const OutputCheck& check) {
    if (auto why = checkOutput(staged_, check)) return why;
    // rename() puts the new file in place in one step, over a file that stood there.
    if (std::rename(staged_.c_str(), final_.c_str()) != 0) return "it could not be put in place";
    committed_ = true;
    return std::nullopt;
}

ConverterInput inputForConverter(const std::string& file, const std::string& temp) {
    ConverterInput in;
    in.path = file;
    const std::vector<unsigned char> bytes = readAll(file, qint64{4} << 30);
    if (!bytes.empty()) {
        const GifLayout gif = scanGif(bytes.data(), bytes.size());
        if (gif.isGif) {
            in.wholeFrames = gif.frames;
            in.cutShort = gif.damaged || !gif.trailer;
        }
    }
    const bool plain = plainForConverter(file);
    if (plain && !in.cutShort) return in;
    in.path = temp + "/gif_input.gif";
    std::remove(in.path.c_str());
    if (in.cutShort) {
        // The whole frames, closed with a trailer: what could be read.
        const GifLayout gif = scanGif(bytes.data(), bytes.size());
        QFile copy(QString::fromStdString(in.path));
        if (copy.open(QIODevice::WriteOnly)) {
            copy.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(gif.wholeUpTo));
            copy.putChar(';');
        }
    } else if (!QFile::link(QString::fromStdString(file), QString::fromStdString(in.path))) {
        QFile::copy(QString::fromStdString(file), QString::fromStdString(in.path));
    }
    return in;
}

} // namespace kirrel::exchange
