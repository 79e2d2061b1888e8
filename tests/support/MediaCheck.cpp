#include "support/MediaCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <cmath>
#include <stdexcept>

namespace kirrel::test {
namespace {

// The frames of `bytes`, one after the other, each 4 * width * height bytes.
void appendFrames(RgbaFrames& to, const QByteArray& bytes) {
    const qsizetype size = qsizetype{4} * to.width * to.height;
    for (qsizetype at = 0; size > 0 && at + size <= bytes.size(); at += size)
        to.frames.emplace_back(bytes.begin() + at, bytes.begin() + at + size);
}

} // namespace

ToolOutput runTool(const QString& program, const QStringList& args, const QString& dir) {
    QProcess p;
    p.setWorkingDirectory(dir);
    p.setStandardInputFile(QProcess::nullDevice());
    p.start(program, args);
    if (!p.waitForFinished(180000)) {
        p.kill();
        p.waitForFinished();
        return {};
    }
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
            p.readAllStandardError()};
}

QString missingTool(const QStringList& programs) {
    for (const QString& p : programs)
        if (QStandardPaths::findExecutable(p).isEmpty()) return p;
    return {};
}

Probed probe(const QString& file) {
    const ToolOutput r =
        runTool("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                            "stream=width,height:frame=pts_time", "-of", "csv", "file:" + file});
    Probed p;
    for (const QByteArray& line : r.out.split('\n')) {
        const QList<QByteArray> v = line.trimmed().split(',');
        if (v.size() >= 2 && v[0] == "frame")
            p.startsMs.push_back(static_cast<int>(std::lround(v[1].toDouble() * 1000)));
        if (v.size() >= 3 && v[0] == "stream") p = {v[1].toInt(), v[2].toInt(), p.startsMs};
    }
    return p;
}

RgbaFrames ffmpegFrames(const QString& file, int width, int height) {
    RgbaFrames f{width, height, {}};
    appendFrames(f, runTool("ffmpeg", {"-v", "error", "-nostdin", "-i", "file:" + file, "-fps_mode",
                                       "passthrough", "-f", "rawvideo", "-pix_fmt", "rgba", "pipe:1"})
                        .out);
    return f;
}

RgbaFrames coalescedFrames(const QString& file) {
    // ImageMagick reads patterns and options in a name ("%d", "[1]", "*", a leading '-'): it is
    // given a plain-named link instead.
    QTemporaryDir dir;
    const QString link = dir.filePath("in." + QFileInfo(file).suffix());
    if (!QFile::link(QFileInfo(file).absoluteFilePath(), link))
        throw std::runtime_error("cannot link " + file.toStdString());
    RgbaFrames out;
    const ToolOutput id = runTool("identify", {"-format", "%T %W %H\n", link});
    for (const QString& line : QString::fromUtf8(id.out).split('\n', Qt::SkipEmptyParts)) {
        const QStringList f = line.split(' ');
        out.delaysMs.push_back(10 * f.value(0).toInt());
        out.width = f.value(1).toInt();
        out.height = f.value(2).toInt();
    }
    const ToolOutput raw = runTool("convert", {link, "-coalesce", "-depth", "8", "rgba:-"});
    appendFrames(out, raw.out);
    if (id.code != 0 || raw.code != 0 || out.frames.empty() || out.frames.size() != out.delaysMs.size() ||
        raw.out.size() != qsizetype{4} * out.width * out.height * std::ssize(out.frames))
        throw std::runtime_error("ImageMagick cannot read " + file.toStdString() + ": " +
                                 (id.err + raw.err).toStdString());
    return out;
}

RgbaFrames webpFrames(const QString& file, QString& info) {
    info = QString::fromUtf8(runTool("webpmux", {"-info", file}).out);
    return coalescedFrames(file);
}

RgbaFrames apngFrames(const QString& file) {
    QTemporaryDir dir;
    QFile::copy(file, dir.filePath("in.png"));
    runTool("apngdis", {dir.filePath("in.png"), "f"});
    RgbaFrames out;
    for (int i = 1; QFile::exists(dir.filePath(QString("f%1.png").arg(i))); ++i) {
        const QImage img =
            QImage(dir.filePath(QString("f%1.png").arg(i))).convertToFormat(QImage::Format_RGBA8888);
        out.width = img.width();
        out.height = img.height();
        out.frames.emplace_back(img.constBits(), img.constBits() + img.sizeInBytes());
        QFile txt(dir.filePath(QString("f%1.txt").arg(i)));
        txt.open(QIODevice::ReadOnly);
        const auto m = QRegularExpression("delay=(\\d+)/(\\d+)").match(QString::fromLatin1(txt.readAll()));
        out.delaysMs.push_back(m.hasMatch() ? static_cast<int>(std::lround(1000.0 * m.captured(1).toInt() /
                                                                           m.captured(2).toInt()))
                                            : -1);
    }
    return out;
}

double psnr(const RgbaFrames& got, const std::vector<host::Picture>& want) {
    double squared = 0;
    std::size_t n = 0;
    for (std::size_t f = 0; f < want.size() && f < got.frames.size(); ++f)
        for (int y = 0; y < want[f].height(); ++y)
            for (int x = 0; x < want[f].width(); ++x)
                for (const auto& [plane, c] : {std::pair{&want[f].r, 0}, {&want[f].g, 1}, {&want[f].b, 2}}) {
                    const double d = static_cast<double>(plane->at(x, y)) - got.pixel(f, x, y)[c];
                    squared += d * d;
                    ++n;
                }
    if (n == 0 || got.frames.size() != want.size()) return 0;
    return squared == 0 ? 99 : 10 * std::log10(255.0 * 255.0 / (squared / static_cast<double>(n)));
}

PathWith::PathWith(const QStringList& programs) : saved_(qgetenv("PATH")) {
    for (const QString& p : programs)
        if (const QString found = QStandardPaths::findExecutable(p); !found.isEmpty())
            QFile::link(found, dir_.filePath(p));
    qputenv("PATH", QFile::encodeName(dir_.path()));
}

PathWith::~PathWith() {
    qputenv("PATH", saved_);
}

} // namespace kirrel::test
