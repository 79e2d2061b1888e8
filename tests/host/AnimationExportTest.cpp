// Every export format written and read back with the tools themselves, never with Kirrel: frame
// count, size, each frame's timing, the loop count, transparency where asked, and the pixels (exact
// for the lossless formats, at least 35 dB for MP4 and WebM).

#include "host/AnimationExport.h"
#include "host/AnimationFiles.h"
#include "support/MediaCheck.h"
#include "support/SampleGifs.h"
#include "support/Support.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>

namespace kirrel::test {
namespace {

using host::ExportFormat;

struct Sample {
    std::vector<host::Picture> frames;
    std::vector<int> delays;
    krl::Plane alpha;
    std::uint32_t paper = host::packColor(250, 250, 240);
    host::ExportInput input() const { return {frames, delays, alpha, paper}; }
};

// Few colours, every pixel changing from frame to frame, and an alpha with a clear border and a
// clear diagonal: what the lossless formats must give back exactly. Odd sizes on purpose.
Sample fewColours(int w = 9, int h = 7) {
    Sample s;
    s.delays = {40, 120, 70, 30};
    for (int f = 0; f < 4; ++f) {
        host::Picture p(w, h);
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x) {
                p.r.at(x, y) = static_cast<std::uint8_t>(40 * f + 10 + (x % 3));
                p.g.at(x, y) = static_cast<std::uint8_t>((x * 50 + 7 * f) % 250);
                p.b.at(x, y) = static_cast<std::uint8_t>(y < 2 ? 200 - f : 30 + f);
            }
        s.frames.push_back(p);
    }
    s.alpha = krl::Plane(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x)
            s.alpha.at(x, y) = (x == 0 || y == 0 || x == y) ? 0 : 255;
    return s;
}

// Smooth colours with a light square moving over them: sharp edges in brightness, as drawings have.
// (Sharp edges between saturated colours lose more to 4:2:0's shared colour at any quality.)
Sample smooth(int w = 65, int h = 49) {
    Sample s;
    s.delays = {40, 40, 80, 40, 120};
    for (int f = 0; f < 5; ++f) {
        host::Picture p(w, h);
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x) {
                const bool square = std::abs(x - 10 - 8 * f) < 6 && std::abs(y - 20) < 6;
                p.r.at(x, y) = static_cast<std::uint8_t>(square ? 235 : 2 * x + 20);
                p.g.at(x, y) = static_cast<std::uint8_t>(square ? 235 : 3 * y + 10);
                p.b.at(x, y) = static_cast<std::uint8_t>(square ? 225 : 100 + x + y);
            }
        s.frames.push_back(p);
    }
    return s;
}

std::vector<int> starts(const std::vector<int>& delays) {
    std::vector<int> t{0};
    for (std::size_t i = 0; i + 1 < delays.size(); ++i)
        t.push_back(t.back() + delays[i]);
    return t;
}

// Pixels of the W x H pictures that differ from what came back; clear where the alpha is 0.
int wrongPixels(const RgbaFrames& got, const Sample& s, bool transparent) {
    int wrong = 0;
    if (got.frames.size() != s.frames.size()) return -1;
    for (std::size_t f = 0; f < s.frames.size(); ++f)
        for (int y = 0; y < s.frames[f].height(); ++y)
            for (int x = 0; x < s.frames[f].width(); ++x) {
                const std::uint8_t* p = got.pixel(f, x, y);
                if (transparent && s.alpha.at(x, y) == 0)
                    wrong += p[3] != 0;
                else
                    wrong += p[3] != 255 || p[0] != s.frames[f].r.at(x, y) ||
                             p[1] != s.frames[f].g.at(x, y) || p[2] != s.frames[f].b.at(x, y);
            }
    return wrong;
}

RgbaFrames gifFrames(const QString& gif) {
    CoalescedGif c = coalescedGif(gif);
    return {c.width, c.height, std::move(c.frames)};
}

struct FormatCase {
    const char* suffix;
    QStringList tools; // what reading it back needs
};

class ExportRoundTrip : public ::testing::TestWithParam<FormatCase> {
  protected:
    void SetUp() override {
        if (const QString m = missingTool(QStringList{"ffmpeg", "ffprobe"} + GetParam().tools); !m.isEmpty())
            GTEST_SKIP() << m.toStdString() << " is not installed";
    }
    QString target(const QString& base = "out") const { return dir.filePath(base + "." + GetParam().suffix); }
    QStringList folder() const { return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden); }
    QTemporaryDir dir;
};

TEST_P(ExportRoundTrip, FramesTimingLoopAndTransparencyComeBack) {
    const QString out = target();
    const ExportFormat format = *host::exportFormatFor(out);
    const bool video = !host::formatHasTransparency(format);
    const Sample s = video ? smooth() : fewColours();
    std::vector<double> progress;
    host::exportAnimation(out, s.input(), {.loop = 3}, {.report = [&](double p) { progress.push_back(p); }});
    EXPECT_EQ(folder(), QStringList{QFileInfo(out).fileName()}) << "nothing else is left behind";
    ASSERT_FALSE(progress.empty());
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_LE(progress.back(), 100.0);
    const int w = s.frames[0].width();
    const int h = s.frames[0].height();

    switch (format) {
    case ExportFormat::Gif: {
        const ToolOutput ids = runTool("identify", {"-format", "%T ", out});
        EXPECT_EQ(ids.out.trimmed(), "4 12 7 3");
        EXPECT_TRUE(runTool("identify", {"-verbose", out}).out.contains("Iterations: 3"));
        EXPECT_EQ(wrongPixels(gifFrames(out), s, true), 0);
        break;
    }
    case ExportFormat::Apng: {
        std::vector<int> delays;
        EXPECT_EQ(wrongPixels(apngFrames(out, delays), s, true), 0);
        EXPECT_EQ(delays, s.delays);
        QFile f(out);
        f.open(QIODevice::ReadOnly);
        const QByteArray bytes = f.readAll();
        const qsizetype actl = bytes.indexOf("acTL");
        ASSERT_GE(actl, 0);
        EXPECT_EQ(qFromBigEndian<quint32>(bytes.constData() + actl + 8), 3u) << "plays";
        break;
    }
    case ExportFormat::WebP: {
        QString info;
        EXPECT_EQ(wrongPixels(webpFrames(out, info), s, true), 0);
        EXPECT_TRUE(info.contains("Loop Count : 3")) << info.toStdString();
        EXPECT_TRUE(info.contains("transparency")) << info.toStdString();
        std::vector<int> durations;
        const QRegularExpression row("^\\s*\\d+:\\s+\\d+\\s+\\d+\\s+\\w+\\s+\\d+\\s+\\d+\\s+(\\d+)",
                                     QRegularExpression::MultilineOption);
        for (auto it = row.globalMatch(info); it.hasNext();)
            durations.push_back(it.next().captured(1).toInt());
        EXPECT_EQ(durations, s.delays);
        break;
    }
    case ExportFormat::Mp4:
    case ExportFormat::WebM: {
        const Probed p = probe(out);
        // 4:2:0 wants an even size: the odd one gains a column and a row.
        EXPECT_EQ(p.width, w + 1);
        EXPECT_EQ(p.height, h + 1);
        EXPECT_EQ(p.startsMs, starts(s.delays));
        EXPECT_GE(psnr(ffmpegFrames(out, p.width, p.height), s.frames), 35.0);
        break;
    }
    }
}

// The paper colour as transparency, and a name every tool could misread: a leading '-', ffmpeg's and
// ImageMagick's patterns, a quote and spaces; the file is opened by that name as well.
TEST_P(ExportRoundTrip, AnAwkwardNameIsWrittenExactlyAndReplacesTheFileBefore) {
    const QString out = target("-it's %d [1] * ?");
    writeFile(out, "the file before");
    Sample s = fewColours(12, 10);
    for (auto& f : s.frames) {
        f.r.at(3, 4) = f.g.at(3, 4) = 250;
        f.b.at(3, 4) = 240;
    }
    host::exportAnimation(out, s.input(), {.transparency = host::ExportTransparency::Paper});
    EXPECT_EQ(folder(), QStringList{QFileInfo(out).fileName()});
    EXPECT_EQ(host::readAnimationFile(out).frames.size(), s.frames.size()) << "and it opens by that name too";
    const ExportFormat format = *host::exportFormatFor(out);
    if (format == ExportFormat::Mp4 || format == ExportFormat::WebM) {
        EXPECT_EQ(probe(out).startsMs.size(), s.frames.size());
        return;
    }
    const RgbaFrames got = [&] {
        std::vector<int> delays;
        QString info;
        return format == ExportFormat::Gif    ? gifFrames(out)
               : format == ExportFormat::Apng ? apngFrames(out, delays)
                                              : webpFrames(out, info);
    }();
    ASSERT_EQ(got.frames.size(), s.frames.size());
    for (std::size_t f = 0; f < got.frames.size(); ++f) {
        EXPECT_EQ(got.pixel(f, 3, 4)[3], 0);
        EXPECT_EQ(got.pixel(f, 4, 4)[3], 255);
    }
}

TEST_P(ExportRoundTrip, ACancelOrAMissingFfmpegLeavesTheFileBeforeAndNothingElse) {
    const QString out = target();
    writeFile(out, "the file before");
    const Sample s = fewColours();
    int asked = 0;
    EXPECT_THROW(host::exportAnimation(out, s.input(), {}, {.cancelled = [&] { return ++asked > 2; }}),
                 host::Cancelled);
    if (*host::exportFormatFor(out) != ExportFormat::WebP) {
        const PathWith noFfmpeg({});
        try {
            host::exportAnimation(out, s.input(), {});
            ADD_FAILURE() << "exported without ffmpeg";
        } catch (const host::MissingTool& e) {
            EXPECT_NE(std::string(e.what()).find("sudo apt install ffmpeg"), std::string::npos) << e.what();
        }
    }
    EXPECT_EQ(readFile(out), "the file before");
    EXPECT_EQ(folder(), QStringList{QFileInfo(out).fileName()});
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportRoundTrip,
                         ::testing::Values(FormatCase{"gif", {"identify", "convert"}},
                                           FormatCase{"png", {"apngdis"}},
                                           FormatCase{"webp", {"webpmux", "dwebp"}}, FormatCase{"mp4", {}},
                                           FormatCase{"webm", {}}),
                         [](const auto& info) { return std::string(info.param.suffix); });

// A GIF of 256 colours and no transparency uses every palette entry and still comes back exact; a
// WebP below quality 100 is lossy and close to the frames.
TEST(ExportColours, A256ColourGifIsExactAndWebpIsLossyOnlyBelowQuality100) {
    if (const QString m = missingTool({"ffmpeg", "convert", "identify"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString();
    QTemporaryDir dir;
    Sample s;
    host::Picture p(16, 16);
    for (int y = 0; y <= 16; ++y)
        for (int x = 0; x <= 16; ++x) {
            const int i = std::min(y, 15) * 16 + std::min(x, 15);
            p.r.at(x, y) = static_cast<std::uint8_t>(i);
            p.g.at(x, y) = static_cast<std::uint8_t>(i * 7);
            p.b.at(x, y) = static_cast<std::uint8_t>(i * 13);
        }
    s.frames = {p, p};
    s.delays = {100, 100};
    const QString gif = dir.filePath("all.gif");
    host::exportAnimation(gif, s.input(), {});
    EXPECT_EQ(wrongPixels(gifFrames(gif), s, false), 0);

    const Sample video = smooth();
    const QString lossless = dir.filePath("lossless.webp");
    const QString lossy = dir.filePath("lossy.webp");
    host::exportAnimation(lossless, video.input(), {});
    host::exportAnimation(lossy, video.input(), {.quality = 60});
    QString info;
    EXPECT_EQ(wrongPixels(webpFrames(lossless, info), video, false), 0);
    EXPECT_FALSE(info.contains(" lossy")) << info.toStdString();
    EXPECT_GE(psnr(webpFrames(lossy, info), video.frames), 30.0);
    EXPECT_TRUE(info.contains(" lossy")) << info.toStdString();
}

} // namespace
} // namespace kirrel::test
