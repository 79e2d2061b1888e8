#include "masks/MaskFile.h"

#include "panel/Numeric.h"
#include "stored/DataFile.h"

#include <algorithm>
#include <stdexcept>

namespace kirrel::masks {

namespace {

QString qpath(const std::string& p) {
    return QString::fromStdString(p);
}

std::int32_t int32At(const QByteArray& bytes, int field) {
    const int at = 4 * field;
    if (bytes.size() < at + 4) return 0;
    std::uint32_t v = 0;
    for (int i = 3; i >= 0; --i)
        v = (v << 8) | static_cast<unsigned char>(bytes[at + i]);
    return static_cast<std::int32_t>(v);
}

MaskHeader headerOf(const QByteArray& bytes) {
    return MaskHeader{int32At(bytes, 0), int32At(bytes, 1), int32At(bytes, 2)};
}

} // namespace

void meanPlane(krl::Plane& out, const krl::Plane& r, const krl::Plane& g, const krl::Plane& b) {
    if (!out.sameBounds(r)) out = krl::Plane(r.width(), r.height());
    std::uint8_t* o = out.data();
    const std::uint8_t* pr = r.data();
    const std::uint8_t* pg = g.data();
    const std::uint8_t* pb = b.data();
    // Planes of another size than red are read only as far as they reach.
    const std::size_t n = std::min({out.size(), g.size(), b.size()});
    for (std::size_t i = 0; i < n; ++i)
        o[i] = toByte((static_cast<double>(pr[i]) + pg[i] + pb[i]) / 3.0);
}

MaskHeader peekMaskHeader(const std::string& path) {
    QFile f(qpath(path));
    if (!f.open(QIODevice::ReadOnly))
        throw std::runtime_error(stored::fileNameOf(path) + " cannot be opened.");
    return headerOf(f.read(kMaskHeaderBytes));
}

std::string maskDescription(const MaskHeader& h) {
    return std::to_string(h.width) + " X " + std::to_string(h.height) + " at " + std::to_string(h.frames) +
           " Frames";
}

MaskFileReader::MaskFileReader(const std::string& path) : file_(qpath(path)), path_(path) {
    if (!file_.open(QIODevice::ReadOnly))
        throw std::runtime_error(stored::fileNameOf(path) + " cannot be opened.");
    const QByteArray head = file_.read(kMaskHeaderBytes);
    if (head.size() != kMaskHeaderBytes)
        throw stored::DamagedFile(path_, "it is too short to hold its header");
    header_ = headerOf(head);
    if (header_.width < 0 || header_.height < 0)
        throw stored::DamagedFile(path_, "its header gives a negative picture size");
    // The host's sizes are 16-bit numbers, so no export ever wrote a larger picture; refusing one
    // also keeps every index of a plane within an int.
    if (header_.width > kLargestMaskBound || header_.height > kLargestMaskBound)
        throw stored::DamagedFile(path_, "its header gives a size larger than an animation can have");
    if (header_.frames < 0) throw stored::DamagedFile(path_, "its header gives a negative frame count");
    if (header_.frames == 0) throw stored::DamagedFile(path_, "its header gives no frames");
    // Both bounds are below 2^31, so one plane's byte count fits in 64 bits and the division can't
    // overflow.
    const long long rest = file_.size() - file_.pos();
    if (rest / planeBytes() < header_.frames)
        throw stored::DamagedFile(path_, "it is shorter than its header says");
}

long long MaskFileReader::planeBytes() const {
    return (static_cast<long long>(header_.width) + 1) * (static_cast<long long>(header_.height) + 1);
}

void MaskFileReader::readPlane(krl::Plane& p) {
    if (read_ >= header_.frames)
        throw std::runtime_error(stored::fileNameOf(path_) + " holds no more frames.");
    // The file may have shrunk since it was opened and checked.
    if (planeBytes() > file_.size() - file_.pos())
        throw stored::DamagedFile(path_, "it is shorter than its header says");
    if (p.width() != header_.width || p.height() != header_.height)
        p = krl::Plane(header_.width, header_.height);
    const auto n = static_cast<long long>(p.size());
    if (file_.read(reinterpret_cast<char*>(p.data()), n) != n)
        throw stored::DamagedFile(path_, "it is shorter than its header says");
    ++read_;
}

MaskFileWriter::MaskFileWriter(const std::string& path, const MaskHeader& header)
    : file_(qpath(path)), path_(path) {
    // ReadWrite is the one mode in which Qt neither truncates nor appends.
    if (!file_.open(QIODevice::ReadWrite))
        throw std::runtime_error(stored::fileNameOf(path) + " cannot be written.");
    unsigned char bytes[kMaskHeaderBytes];
    const std::int32_t fields[3] = {header.width, header.height, header.frames};
    for (int f = 0; f < 3; ++f)
        for (int i = 0; i < 4; ++i)
            bytes[4 * f + i] =
                static_cast<unsigned char>((static_cast<std::uint32_t>(fields[f]) >> (8 * i)) & 255);
    writeBytes(bytes, kMaskHeaderBytes);
}

void MaskFileWriter::writeBytes(const void* p, long long n) {
    if (n <= 0) return;
    if (file_.write(static_cast<const char*>(p), n) != n)
        throw std::runtime_error(stored::fileNameOf(path_) + " could not be written (is the disk full?).");
}

void MaskFileWriter::writePlane(const krl::Plane& p) {
    writeBytes(p.data(), static_cast<long long>(p.size()));
}

void MaskFileWriter::close() {
    if (!file_.isOpen()) return;
    const bool flushed = file_.flush();
    file_.close();
    if (!flushed)
        throw std::runtime_error(stored::fileNameOf(path_) + " could not be written (is the disk full?).");
}

} // namespace kirrel::masks
