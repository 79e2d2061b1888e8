#include "support/SampleGifs.h"

#include "support/MediaCheck.h"

#include <QDir>
#include <QProcess>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kirrel::test {
namespace {

// Frames of a 12x10 canvas: a full first frame, then smaller ones at offsets, so that what each
// disposal leaves behind shows in the coalesced frames. Delays vary and include 0 ("none").
const QString kPartialFrames =
    "-delay 10 -size 12x10 xc:#204080 -delay 0 -page 12x10+2+1 -size 4x3 xc:yellow "
    "-delay 7 -page +6+7 -size 5x2 xc:#00ff00";

// Each GIF as convert's arguments before the output file.
const std::pair<const char*, QString> kSampleGifs[] = {
    {"dispose-none", "-dispose None " + kPartialFrames},
    // Background disposal clears the frame's area to transparent before the next one.
    {"dispose-background", "-dispose Background " + kPartialFrames},
    {"dispose-previous", "-dispose Previous " + kPartialFrames},
    {"dispose-mix",
     "-delay 10 -dispose None -size 12x10 xc:#204080 -dispose Previous -page 12x10+2+1 -size 4x3 "
     "xc:yellow -dispose Background -page +6+5 -size 5x2 xc:#00ff00 -dispose None -delay 3 "
     "-page +1+1 -size 2x2 xc:red"},
    // Transparent from the first frame on, with a clear frame at the end.
    {"transparent", "-dispose Background -delay 5 -size 12x10 xc:none -fill red -draw \"rectangle 2,2 8,6\" "
                    "-delay 12 -page 12x10+3+3 -size 6x4 xc:#10e0a0 -page +0+0 -size 3x3 xc:none"},
    // Frames of disjoint colours, so every frame carries its own colour table.
    {"local-palettes", "-delay 8 -size 16x12 gradient:red-blue gradient:green-yellow gradient:white-black"},
    {"interlaced", "-delay 4 -size 14x9 gradient:red-blue gradient:#00ff00-#ff00ff -interlace GIF"},
};

} // namespace

QStringList makeSampleGifs(const QString& folder) {
    QDir().mkpath(folder);
    QStringList paths;
    for (const auto& [name, args] : kSampleGifs) {
        paths << QDir(folder).filePath(QString(name) + ".gif");
        const ToolOutput r =
            runTool("convert", QProcess::splitCommand(args) + QStringList{"-loop", "0", paths.back()});
        if (r.code != 0) throw std::runtime_error("convert failed: " + r.err.toStdString());
    }
    return paths;
}

int pixelsUnlikeCoalesced(const std::vector<host::Picture>& frames, const RgbaFrames& want,
                          std::uint32_t paper, bool rideAlong) {
    const int all = static_cast<int>(want.frames.size()) * want.width * want.height;
    if (frames.size() != want.frames.size()) return all;
    const int extra = rideAlong ? 1 : 0;
    int wrong = 0;
    for (std::size_t f = 0; f < frames.size(); ++f) {
        const host::Picture& p = frames[f];
        if (p.width() != want.width || p.height() != want.height) return all;
        for (int y = 0; y < want.height + extra; ++y)
            for (int x = 0; x < want.width + extra; ++x) {
                const std::uint8_t* px =
                    want.pixel(f, std::min(x, want.width - 1), std::min(y, want.height - 1));
                const std::uint32_t expected =
                    px[3] == 0 ? paper : px[0] | (std::uint32_t{px[1]} << 8) | (std::uint32_t{px[2]} << 16);
                wrong += host::packColor(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)) != expected;
            }
    }
    return wrong;
}

} // namespace kirrel::test
