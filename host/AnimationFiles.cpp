#include "host/AnimationFiles.h"

#include "host/AnimationBuilder.h"
#include "host/MediaReaders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#if defined(__unix__)
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kirrel::host {

namespace {

std::runtime_error fileError(const QString& path, const char* what) {
    return std::runtime_error((QFileInfo(path).fileName() + ": " + QString::fromUtf8(what)).toStdString());
}

class Reader {
  public:
    explicit Reader(const QString& path) : file_(path), path_(path) {
        if (!file_.open(QIODevice::ReadOnly)) throw fileError(path, "cannot be opened");
    }
    std::int16_t int16() {
        unsigned char b[2];
        bytes(b, 2);
        return static_cast<std::int16_t>(b[0] | (b[1] << 8));
    }
    void bytes(void* out, qint64 n) {
        if (file_.read(static_cast<char*>(out), n) != n)
            throw fileError(path_, "is shorter than its header says");
    }
    krl::Plane plane(int w, int h) {
        krl::Plane p(w, h);
        if (!p.empty()) bytes(p.data(), static_cast<qint64>(p.size()));
        return p;
    }
    // Refuses sizes that the file cannot hold, before anything is allocated.
    void expect(qint64 bytesNeeded) {
        if (bytesNeeded > file_.size() - file_.pos())
            throw fileError(path_, "is shorter than its header says");
    }

  private:
    QFile file_;
    QString path_;
};

class Writer {
  public:
    explicit Writer(const QString& path) : file_(path), path_(path) {
        if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw fileError(path, "cannot be written");
    }
    void int16(int v) {
        const unsigned char b[2] = {static_cast<unsigned char>(v & 255),
                                    static_cast<unsigned char>((v >> 8) & 255)};
        bytes(b, 2);
    }
    void bytes(const void* p, qint64 n) {
        if (n > 0 && file_.write(static_cast<const char*>(p), n) != n)
            throw fileError(path_, "could not be written");
    }
    void plane(const krl::Plane& p) { bytes(p.data(), static_cast<qint64>(p.size())); }
    void picture(const Picture& p) {
        plane(p.r);
        plane(p.g);
        plane(p.b);
    }

  private:
    QFile file_;
    QString path_;
};

void checkBounds(const QString& path, int w, int h) {
    if (w < 0 || h < 0) throw fileError(path, "has a negative picture size");
}

qint64 planeBytes(int w, int h) {
    return static_cast<qint64>(w + 1) * (h + 1);
}

} // namespace

Animation readAnimationDat(const QString& path) {
    Reader in(path);
    const int frames = in.int16();
    const int w = in.int16();
    const int h = in.int16();
    checkBounds(path, w, h);
    if (frames < 0) throw fileError(path, "has a negative frame count");
    Animation a;
    const int sets = std::max(frames, 1);
    in.expect(static_cast<qint64>(sets) * 3 * planeBytes(w, h));
    auto readPicture = [&] {
        Picture p;
        p.r = in.plane(w, h);
        p.g = in.plane(w, h);
        p.b = in.plane(w, h);
        return p;
    };
    if (frames == 0) {
        a.still = readPicture();
        return a;
    }
    a.frames.reserve(static_cast<std::size_t>(frames));
    for (int i = 0; i < frames; ++i)
        a.frames.push_back(readPicture());
    a.still = a.frames.front();
    return a;
}

void writeAnimationDat(const QString& path, const Animation& a) {
    Writer out(path);
    const Picture& first = a.frames.empty() ? a.still : a.frames.front();
    out.int16(static_cast<int>(a.frames.size()));
    out.int16(first.width());
    out.int16(first.height());
    if (a.frames.empty()) out.picture(a.still);
    for (const auto& f : a.frames)
        out.picture(f);
}

Picture readPictureDat(const QString& path) {
    Reader in(path);
    const int w = in.int16();
    const int h = in.int16();
    checkBounds(path, w, h);
    in.expect(3 * planeBytes(w, h));
    Picture p;
    p.r = in.plane(w, h);
    p.g = in.plane(w, h);
    p.b = in.plane(w, h);
    return p;
}

krl::Plane readPlaneDat(const QString& path) {
    Reader in(path);
    const int w = in.int16();
    const int h = in.int16();
    checkBounds(path, w, h);
    in.expect(planeBytes(w, h));
    return in.plane(w, h);
}

void writePictureDat(const QString& path, const Picture& p) {
    Writer out(path);
    out.int16(p.width());
    out.int16(p.height());
    out.picture(p);
}

void writePlaneDat(const QString& path, const krl::Plane& p) {
    Writer out(path);
    out.int16(p.width());
    out.int16(p.height());
    out.plane(p);
}

// --- images ----------------------------------------------------------------------------------------

namespace {
constexpr int kMaxImageSide = 16384;

QImage checkedImage(const QImage& img, const QString& path) {
    if (img.isNull()) throw fileError(path, "is not a picture Kirrel can read");
    if (img.width() > kMaxImageSide || img.height() > kMaxImageSide) throw fileError(path, "is too large");
    return img;
}

bool isDat(const QString& path) {
    return path.endsWith(".dat", Qt::CaseInsensitive);
}

// Points stderr at /dev/null and returns a copy of the old stderr to put back, or -1.
int silenceStderr() {
#if defined(__unix__)
    std::fflush(stderr);
    const int saved = ::dup(STDERR_FILENO);
    const int sink = ::open("/dev/null", O_WRONLY);
    if (sink >= 0) {
        ::dup2(sink, STDERR_FILENO);
        ::close(sink);
    }
    return saved;
#else
    return -1;
#endif
}

void restoreStderr([[maybe_unused]] int saved) {
#if defined(__unix__)
    if (saved < 0) return;
    std::fflush(stderr);
    ::dup2(saved, STDERR_FILENO);
    ::close(saved);
#endif
}

// Some image decoders write their own complaint about a damaged file straight to stderr; the
// reader's one clear message is what the user gets, so their output is dropped while they run.
class QuietDecoders {
  public:
    QuietDecoders() : saved_(silenceStderr()) {}
    ~QuietDecoders() { restoreStderr(saved_); }
    QuietDecoders(const QuietDecoders&) = delete;
    QuietDecoders& operator=(const QuietDecoders&) = delete;

  private:
    int saved_;
};

QImage decodeImage(const QString& path) {
    QuietDecoders quiet;
    return QImage(path);
}
} // namespace

Picture pictureFromImage(const QImage& image) {
    const QImage img = image.convertToFormat(QImage::Format_RGB888);
    const int w = img.width();
    const int h = img.height();
    Picture p(w, h);
    for (int y = 0; y <= h; ++y) {
        const uchar* line = img.constScanLine(std::min(y, h - 1));
        std::uint8_t* r = p.r.row(y);
        std::uint8_t* g = p.g.row(y);
        std::uint8_t* b = p.b.row(y);
        for (int x = 0; x <= w; ++x) {
            const uchar* px = line + static_cast<std::ptrdiff_t>(3) * std::min(x, w - 1);
            r[x] = px[0];
            g[x] = px[1];
            b[x] = px[2];
        }
    }
    return p;
}

krl::Plane greyPlaneFromImage(const QImage& image) {
    const QImage img = image.convertToFormat(QImage::Format_Grayscale8);
    const int w = img.width();
    const int h = img.height();
    krl::Plane p(w, h);
    for (int y = 0; y <= h; ++y) {
        const uchar* line = img.constScanLine(std::min(y, h - 1));
        std::uint8_t* dst = p.row(y);
        for (int x = 0; x <= w; ++x)
            dst[x] = line[std::min(x, w - 1)];
    }
    return p;
}

QImage imageFromPicture(const Picture& p) {
    const int w = std::max(1, p.width());
    const int h = std::max(1, p.height());
    QImage img(w, h, QImage::Format_RGB888);
    img.fill(Qt::black);
    const int cols = std::min(w, p.r.cols());
    const int rows = std::min(h, p.r.rows());
    for (int y = 0; y < rows; ++y) {
        uchar* line = img.scanLine(y);
        const std::uint8_t* r = p.r.row(y);
        const std::uint8_t* g = p.g.row(y);
        const std::uint8_t* b = p.b.row(y);
        for (int x = 0; x < cols; ++x) {
            uchar* px = line + static_cast<std::ptrdiff_t>(3) * x;
            px[0] = r[x];
            px[1] = g[x];
            px[2] = b[x];
        }
    }
    return img;
}

QImage imageFromPlane(const krl::Plane& p) {
    Picture grey;
    grey.r = grey.g = grey.b = p;
    return imageFromPicture(grey);
}

namespace {

// frame9.png before frame10.png: runs of digits compare by their value.
bool naturalLess(const QString& a, const QString& b) {
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            const qsizetype si = i;
            const qsizetype sj = j;
            while (i < a.size() && a[i].isDigit())
                ++i;
            while (j < b.size() && b[j].isDigit())
                ++j;
            // Longer runs, once their leading zeros are set aside, are larger numbers.
            const QStringView da = QStringView(a).mid(si, i - si);
            const QStringView db = QStringView(b).mid(sj, j - sj);
            auto significant = [](QStringView d) {
                qsizetype k = 0;
                while (k + 1 < d.size() && d[k] == '0')
                    ++k;
                return d.mid(k);
            };
            const QStringView va = significant(da);
            const QStringView vb = significant(db);
            if (va.size() != vb.size()) return va.size() < vb.size();
            if (const int c = va.compare(vb); c != 0) return c < 0;
            if (da.size() != db.size()) return da.size() < db.size();
            continue;
        }
        const QChar ca = a[i].toLower();
        const QChar cb = b[j].toLower();
        if (ca != cb) return ca < cb;
        ++i;
        ++j;
    }
    return a.size() - i < b.size() - j;
}

void addImage(AnimationBuilder& builder, const QImage& image, const QString& path, int delayMs) {
    const QImage rgba = checkedImage(image, path).convertToFormat(QImage::Format_RGBA8888);
    if (!builder.started()) builder.start(rgba.width(), rgba.height());
    if (rgba.width() != builder.width() || rgba.height() != builder.height())
        throw fileError(path, "differs in size from the frames before it");
    builder.addFrame(rgba.constBits(), rgba.bytesPerLine(), delayMs);
}

Animation readFrameFolder(const QString& path, const ReadOptions& options) {
    QStringList names = QDir(path).entryList({"*.png", "*.PNG"}, QDir::Files);
    if (names.isEmpty()) throw fileError(path, "holds no PNG frames");
    std::sort(names.begin(), names.end(), naturalLess);
    AnimationBuilder builder(path, options);
    for (const QString& n : names) {
        if (options.progress.cancelled && options.progress.cancelled()) throw Cancelled();
        const QString f = QDir(path).filePath(n);
        addImage(builder, decodeImage(f), f, 0);
    }
    return builder.finish({.whole = true, .timed = false, .stillWhenSingle = false});
}

// Pictures and the animated formats Qt reads itself.
Animation readWithQt(const QString& path, const ReadOptions& options) {
    QuietDecoders quiet;
    QImageReader reader(path);
    if (!reader.canRead()) throw fileError(path, "is not a picture Kirrel can read");
    AnimationBuilder builder(path, options);
    QImage frame;
    const bool timed = reader.supportsAnimation();
    while (reader.read(&frame)) {
        addImage(builder, frame, path, std::max(0, reader.nextImageDelay()));
        if (!timed) break;
    }
    if (!builder.started()) throw fileError(path, "is not a picture Kirrel can read");
    return builder.finish({.whole = true, .timed = timed});
}

} // namespace

Animation readAnimationFile(const QString& path, const ReadOptions& options) {
    QFileInfo info(path);
    if (!info.exists()) throw fileError(path, "does not exist");
    if (isDat(path)) return readAnimationDat(path);
    if (info.isDir()) return readFrameFolder(path, options);
    if (const MediaReader read = mediaReaderFor(path)) return read(path, options);
    return readWithQt(path, options);
}

Picture readPictureFile(const QString& path) {
    if (!QFileInfo::exists(path)) throw fileError(path, "does not exist");
    if (isDat(path)) return readPictureDat(path);
    return pictureFromImage(checkedImage(decodeImage(path), path));
}

krl::Plane readAlphaFile(const QString& path) {
    if (!QFileInfo::exists(path)) throw fileError(path, "does not exist");
    if (isDat(path)) return readPlaneDat(path);
    return greyPlaneFromImage(checkedImage(decodeImage(path), path));
}

} // namespace kirrel::host
