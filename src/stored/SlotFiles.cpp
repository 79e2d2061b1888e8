#include "stored/SlotFiles.h"

#include <QFile>
#include <QFileInfo>

namespace kirrel::stored {

std::string numberWithBlank(long long n) {
    return (n >= 0 ? " " : "") + std::to_string(n);
}

std::string slotDataPath(const std::string& tempDir, int slot) {
    return tempDir + "/AnimSlot" + numberWithBlank(slot) + ".dat";
}

std::string slotThumbPath(const std::string& tempDir, int slot) {
    return tempDir + "/AnimThumb" + numberWithBlank(slot) + ".bmp";
}

bool fileExists(const std::string& path) {
    const QFileInfo info(QString::fromStdString(path));
    return info.exists() && info.isFile();
}

std::optional<FrameFileHeader> peekFrameFileHeader(const std::string& path) {
    if (!fileExists(path)) return std::nullopt;
    QFile f(QString::fromStdString(path));
    if (!f.open(QIODevice::ReadOnly)) throw std::runtime_error(fileNameOf(path) + " cannot be opened.");
    const QByteArray head = f.read(6);
    auto field = [&](int i) -> std::int16_t {
        if (head.size() < 2 * i + 2) return 0;
        const auto lo = static_cast<unsigned char>(head[2 * i]);
        const auto hi = static_cast<unsigned char>(head[2 * i + 1]);
        return static_cast<std::int16_t>(lo | (hi << 8));
    };
    return FrameFileHeader{field(0), field(1), field(2)};
}

std::string slotDescription(const FrameFileHeader& h) {
    return std::to_string(h.frames) + " Frames,  (" + std::to_string(h.width) + "  X  " +
           std::to_string(h.height) + ")";
}

FrameFileReader::FrameFileReader(const std::string& path, Kind kind) : in_(path) {
    header_.frames = in_.readInt16();
    header_.width = in_.readInt16();
    header_.height = in_.readInt16();
    if (header_.frames < 0) in_.damaged("its header gives a negative frame count");
    if (kind == Kind::Slot && header_.frames == 0) in_.damaged("its header gives no frames");
    pictures_ = header_.frames == 0 ? 1 : header_.frames;
    in_.expectPlanes(3LL * pictures_, header_.width, header_.height);
}

void FrameFileReader::readPicture(krl::Plane& r, krl::Plane& g, krl::Plane& b) {
    if (read_ >= pictures_) throw std::runtime_error(fileNameOf(in_.path()) + " holds no more frames.");
    in_.readPlane(r, header_.width, header_.height);
    in_.readPlane(g, header_.width, header_.height);
    in_.readPlane(b, header_.width, header_.height);
    ++read_;
}

} // namespace kirrel::stored
