#pragma once
// Binary access to the panel's own data files (slots, undo): little-endian 16-bit numbers and whole
// planes, x fastest, no descriptor before a plane.
//
// Reading is strictly sequential, and every size is checked against what the rest of the file holds
// *before* anything is allocated, so a truncated file or a header with negative or absurd numbers
// gives a DamagedFile with a clear text instead of a crash or an unbounded allocation. The check
// uses the file's length only to refuse; what is read is always decided by the header.
//
// Writing opens the file without truncating it: a shorter new content leaves the old tail in place,
// and readers, which go by the header, never see it.

#include "pixel/Plane.h"

#include <QFile>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace kirrel::stored {

// A data file whose header or length doesn't hold up. what() names the file and the fault, e.g.
// "AnimSlot 2.dat is damaged: it is shorter than its header says."
class DamagedFile : public std::runtime_error {
  public:
    DamagedFile(const std::string& path, const std::string& fault);
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Bytes of one plane with upper bounds w and h; the caller has checked that neither is negative.
inline long long planeBytes(int w, int h) {
    return (static_cast<long long>(w) + 1) * (static_cast<long long>(h) + 1);
}

// The last part of a path, as messages show it.
std::string fileNameOf(const std::string& path);

class PlaneFileReader {
  public:
    // Throws std::runtime_error when the file cannot be opened.
    explicit PlaneFileReader(const std::string& path);

    // Throws DamagedFile when the file ends first.
    std::int16_t readInt16();
    // Refuses negative bounds, and a rest of the file that cannot hold `planes` planes of these
    // bounds, before anything is allocated.
    void expectPlanes(long long planes, int w, int h);
    // Reads the next plane with bounds w, h into p. A plane that has these bounds is read over in
    // place (its buffer is detached first if shared); any other is replaced by a fresh one.
    void readPlane(krl::Plane& p, int w, int h);

    const std::string& path() const { return path_; }
    [[noreturn]] void damaged(const std::string& fault) const;

  private:
    void readBytes(void* out, long long n);
    QFile file_;
    std::string path_;
};

// A file written whole or not at all: the bytes go to a file of the same name with ".partial"
// appended, which takes the real name in one step when everything reached the disk. A failed or
// interrupted save leaves the file that stood there before as it was. As the panel's files always
// behaved, a new content shorter than the old one keeps the old one's tail.
class PlaneFileWriter {
  public:
    // Throws std::runtime_error when the file cannot be written.
    explicit PlaneFileWriter(const std::string& path);
    ~PlaneFileWriter(); // without a close(), the partial file goes and the old file stays
    PlaneFileWriter(const PlaneFileWriter&) = delete;
    PlaneFileWriter& operator=(const PlaneFileWriter&) = delete;

    void writeInt16(int v);
    void writePlane(const krl::Plane& p);
    // Puts the file in place; throws std::runtime_error when the bytes did not all reach the disk.
    void close();

  private:
    void writeBytes(const void* p, long long n);
    QFile file_;
    std::string path_;
    bool done_ = false;
};

} // namespace kirrel::stored
