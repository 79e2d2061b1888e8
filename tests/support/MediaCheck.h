#pragma once
// Reading animation files back with the tools themselves (ffprobe, ffmpeg, ImageMagick, webpmux),
// never with Kirrel, to check what Kirrel wrote; and a PATH without some tools.

#include "host/Picture.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <vector>

namespace kirrel::test {

struct ToolOutput {
    int code = -1;
    QByteArray out;
    QByteArray err;
};
// Runs the program to its end (from the folder `dir` when given), its input empty.
ToolOutput runTool(const QString& program, const QStringList& args, const QString& dir = {});
// The first of `programs` that is not on PATH, or empty when all are.
QString missingTool(const QStringList& programs);

// RGBA frames of one size, x fastest, and each frame's delay in milliseconds where the reader says.
struct RgbaFrames {
    int width = 0;
    int height = 0;
    std::vector<std::vector<std::uint8_t>> frames;
    std::vector<int> delaysMs;
    const std::uint8_t* pixel(std::size_t f, int x, int y) const {
        return frames[f].data() + 4 * (static_cast<std::size_t>(y) * width + x);
    }
};
// An animation (GIF or WebP) as `convert FILE -coalesce` shows it: every frame whole, delays from identify's
// %T. Throws std::runtime_error when ImageMagick fails.
RgbaFrames coalescedFrames(const QString& file);
// ffprobe: the video stream's size and each frame's start and duration in milliseconds, in order.
struct Probed {
    int width = 0;
    int height = 0;
    std::vector<int> startsMs;
    std::vector<int> durationsMs;
};
Probed probe(const QString& file);
// Every frame as ffmpeg decodes it.
RgbaFrames ffmpegFrames(const QString& file, int width, int height);
// An animated WebP as ImageMagick coalesces it; `info` is what webpmux says of it (lossy or not).
RgbaFrames webpFrames(const QString& file, QString& info);
// An APNG as ffmpeg decodes it, with the delays ffprobe gives.
RgbaFrames apngFrames(const QString& file);

// The peak signal-to-noise ratio of the W x H pixels of `got` against the pictures, in dB.
double psnr(const RgbaFrames& got, const std::vector<host::Picture>& want);

// Runs with only the named programs on PATH (linked into a folder of their own); restores PATH after.
class PathWith {
  public:
    explicit PathWith(const QStringList& programs);
    ~PathWith();
    PathWith(const PathWith&) = delete;
    PathWith& operator=(const PathWith&) = delete;

  private:
    QTemporaryDir dir_;
    QByteArray saved_;
};

} // namespace kirrel::test
