#include "support/MediaCheck.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
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
                            "stream=width,height:frame=pts_time,pkt_duration_time,duration_time", "-of",
                            "csv", "file:" + file});
    Probed p;
    const auto ms = [](const QByteArray& seconds) {
        return static_cast<int>(std::lround(seconds.toDouble() * 1000));
    };
    for (const QByteArray& line : r.out.split('\n')) {
        const QList<QByteArray> v = line.trimmed().split(',');
        if (v.size() >= 2 && v[0] == "frame") { // the duration's name changed with ffmpeg 6
            p.startsMs.push_back(ms(v[1]));
            p.durationsMs.push_back(ms(v.back()));
        } else if (v.size() >= 3 && v[0] == "stream") {
            p.width = v[1].toInt();
            p.height = v[2].toInt();
        }
    }
    return p;
}

RgbaFrames ffmpegFrames(const QString& file, int width, int height) {
    RgbaFrames f{width, height, {}, {}};
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
    // Under a plain name: ffmpeg takes a PNG whose name holds "%d" for a numbered series of pictures.
    QTemporaryDir dir;
    const QString plain = dir.filePath("in.apng");
    QFile::link(QFileInfo(file).absoluteFilePath(), plain);
    const Probed p = probe(plain);
    RgbaFrames out = ffmpegFrames(plain, p.width, p.height);
    out.delaysMs = p.durationsMs;
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
