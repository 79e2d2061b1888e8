#include "customfx/CfxFile.h"

#include "stored/DataFile.h"

#include <QString>

namespace kirrel::customfx {

KeyBytes splitColour(int packed) {
    return {static_cast<std::uint8_t>(packed & 255), static_cast<std::uint8_t>((packed & 65280) / 256),
            static_cast<std::uint8_t>((packed & 16711680) / 65536)};
}

std::string titleField(const std::string& utf8Title) {
    const QString cut = QString::fromStdString(utf8Title).left(kTitleLength);
    std::string field = cut.toLatin1().toStdString();
    field.resize(kTitleLength, ' ');
    return field;
}

std::string trimTitle(const std::string& field) {
    // The scan keeps the longest head after which only blanks follow; a field with no blank at its
    // end, or with nothing but blanks, is kept whole.
    const int n = static_cast<int>(field.size());
    std::string result;
    for (int j = 1; j <= n; ++j) {
        if (field.find_first_not_of(' ', static_cast<std::size_t>(n - j)) == std::string::npos)
            result = field.substr(0, static_cast<std::size_t>(n - j));
    }
    if (result.empty()) result = field;
    return QString::fromLatin1(result.data(), static_cast<qsizetype>(result.size())).toStdString();
}

// --- reading ---------------------------------------------------------------------------------------

CfxReader::CfxReader(const std::string& path) : file_(QString::fromStdString(path)), path_(path) {
    if (!file_.open(QIODevice::ReadOnly))
        throw std::runtime_error(stored::fileNameOf(path) + " cannot be opened.");
    header_.type = readInt16();
    header_.title.resize(kTitleLength);
    readBytes(header_.title.data(), kTitleLength, "it is too short to hold its header");
}

void CfxReader::damaged(const std::string& fault) const {
    throw stored::DamagedFile(path_, fault);
}

void CfxReader::readBytes(void* out, long long n, const char* fault) {
    if (n <= 0) return;
    if (file_.read(static_cast<char*>(out), n) != n) damaged(fault);
}

std::int16_t CfxReader::readInt16() {
    unsigned char b[2];
    readBytes(b, 2, "it is too short to hold its header");
    return static_cast<std::int16_t>(b[0] | (b[1] << 8));
}

void CfxReader::readRest() {
    header_.frames = readInt16();
    header_.width = readInt16();
    header_.height = readInt16();
    unsigned char keys[6];
    readBytes(keys, 6, "it is too short to hold its header");
    header_.primary = {keys[0], keys[1], keys[2]};
    header_.secondary = {keys[3], keys[4], keys[5]};
    if (header_.frames < 0) damaged("its header gives a negative frame count");
    if (header_.frames == 0) damaged("its header gives no frames");
    if (header_.width < 0 || header_.height < 0) damaged("its header gives a negative picture size");
    // Bounds are 16-bit, so a frame is below 2^33 bytes and the division cannot overflow.
    const long long frameBytes = 3 * stored::planeBytes(header_.width, header_.height);
    const long long rest = file_.size() - file_.pos();
    if (rest / frameBytes < header_.frames) damaged("it is shorter than its header says");
}

void CfxReader::readFrame(krl::Triple& t) {
    for (krl::Plane* p : {&t.r, &t.g, &t.b}) {
        if (p->width() != header_.width || p->height() != header_.height)
            *p = krl::Plane(header_.width, header_.height);
        readBytes(p->data(), static_cast<long long>(p->size()), "it is shorter than its header says");
    }
}

// --- writing ---------------------------------------------------------------------------------------

CfxWriter::CfxWriter(const std::string& path) : file_(QString::fromStdString(path)), path_(path) {
    // ReadWrite is the one mode in which Qt neither truncates nor appends.
    if (!file_.open(QIODevice::ReadWrite))
        throw std::runtime_error(stored::fileNameOf(path) + " cannot be written.");
}

void CfxWriter::writeBytes(const void* p, long long n) {
    if (n <= 0) return;
    if (file_.write(static_cast<const char*>(p), n) != n)
        throw std::runtime_error(stored::fileNameOf(path_) + " could not be written (is the disk full?).");
}

void CfxWriter::writeInt16(int v) {
    const unsigned char b[2] = {static_cast<unsigned char>(v & 255),
                                static_cast<unsigned char>((v >> 8) & 255)};
    writeBytes(b, 2);
}

void CfxWriter::writeHeader(const CfxHeader& h) {
    writeInt16(h.type);
    std::string title = h.title;
    title.resize(kTitleLength, ' ');
    writeBytes(title.data(), kTitleLength);
    writeInt16(h.frames);
    writeInt16(h.width);
    writeInt16(h.height);
    const unsigned char keys[6] = {h.primary.r,   h.primary.g,   h.primary.b,
                                   h.secondary.r, h.secondary.g, h.secondary.b};
    writeBytes(keys, 6);
}

void CfxWriter::writePlane(const krl::Plane& p) {
    writeBytes(p.data(), static_cast<long long>(p.size()));
}

void CfxWriter::close() {
    if (!file_.isOpen()) return;
    const bool flushed = file_.flush();
    file_.close();
    if (!flushed)
        throw std::runtime_error(stored::fileNameOf(path_) + " could not be written (is the disk full?).");
}

} // namespace kirrel::customfx
