#include "stored/DataFile.h"

#include <cstdio>

namespace kirrel::stored {

namespace {
QString qpath(const std::string& p) {
    return QString::fromStdString(p);
}
} // namespace

DamagedFile::DamagedFile(const std::string& path, const std::string& fault)
    : std::runtime_error(fileNameOf(path) + " is damaged: " + fault + "."), path_(path) {}

std::string fileNameOf(const std::string& path) {
    const auto cut = path.find_last_of("/\\");
    return cut == std::string::npos ? path : path.substr(cut + 1);
}

// --- reading ---------------------------------------------------------------------------------------

PlaneFileReader::PlaneFileReader(const std::string& path) : file_(qpath(path)), path_(path) {
    if (!file_.open(QIODevice::ReadOnly)) throw std::runtime_error(fileNameOf(path) + " cannot be opened.");
}

void PlaneFileReader::damaged(const std::string& fault) const {
    throw DamagedFile(path_, fault);
}

void PlaneFileReader::readBytes(void* out, long long n) {
    if (n <= 0) return;
    if (file_.read(static_cast<char*>(out), n) != n) damaged("it is shorter than its header says");
}

std::int16_t PlaneFileReader::readInt16() {
    unsigned char b[2];
    if (file_.read(reinterpret_cast<char*>(b), 2) != 2) damaged("it is too short to hold its header");
    return static_cast<std::int16_t>(b[0] | (b[1] << 8));
}

void PlaneFileReader::expectPlanes(long long planes, int w, int h) {
    if (w < 0 || h < 0) damaged("its header gives a negative picture size");
    if (planes < 0) damaged("its header gives a negative frame count");
    const long long rest = file_.size() - file_.pos();
    const long long each = planeBytes(w, h);
    // Bounds are 16-bit, so each plane is below 2^31 bytes and the division cannot overflow.
    if (planes > 0 && rest / each < planes) damaged("it is shorter than its header says");
}

void PlaneFileReader::readPlane(krl::Plane& p, int w, int h) {
    if (w < 0 || h < 0) damaged("its header gives a negative picture size");
    if (planeBytes(w, h) > file_.size() - file_.pos()) damaged("it is shorter than its header says");
    if (p.width() != w || p.height() != h) p = krl::Plane(w, h);
    readBytes(p.data(), static_cast<long long>(p.size()));
}

// --- writing ---------------------------------------------------------------------------------------

PlaneFileWriter::PlaneFileWriter(const std::string& path) : file_(qpath(path + ".partial")), path_(path) {
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw std::runtime_error(fileNameOf(path) + " cannot be written.");
}

PlaneFileWriter::~PlaneFileWriter() {
    if (done_) return;
    file_.close();
    QFile::remove(file_.fileName());
}

void PlaneFileWriter::writeBytes(const void* p, long long n) {
    if (n <= 0) return;
    if (file_.write(static_cast<const char*>(p), n) != n)
        throw std::runtime_error(fileNameOf(path_) + " could not be written (is the disk full?).");
}

void PlaneFileWriter::writeInt16(int v) {
    const unsigned char b[2] = {static_cast<unsigned char>(v & 255),
                                static_cast<unsigned char>((v >> 8) & 255)};
    writeBytes(b, 2);
}

void PlaneFileWriter::writePlane(const krl::Plane& p) {
    writeBytes(p.data(), static_cast<long long>(p.size()));
}

void PlaneFileWriter::close() {
    if (done_) return;
    const auto fail = [&] {
        file_.close();
        QFile::remove(file_.fileName());
        done_ = true;
        throw std::runtime_error(fileNameOf(path_) + " could not be written (is the disk full?).");
    };
    // The old file's tail beyond the new content stays, as it did when files were written in place.
    QFile old(qpath(path_));
    if (old.size() > file_.pos() && old.open(QIODevice::ReadOnly) && old.seek(file_.pos())) {
        while (!old.atEnd()) {
            const QByteArray chunk = old.read(qint64{1} << 20);
            if (chunk.isEmpty() || file_.write(chunk) != chunk.size()) fail();
        }
    }
    if (!file_.flush()) fail();
    file_.close();
    if (std::rename(file_.fileName().toLocal8Bit().constData(), path_.c_str()) != 0) fail();
    done_ = true;
}

} // namespace kirrel::stored
