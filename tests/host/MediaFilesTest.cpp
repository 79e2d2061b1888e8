// Animation files in and out, checked with other programs' readers and writers. Every export format
// read back by the tools: frame count, size, each frame's timing, the loop count, transparency where
// asked, and the pixels (exact for the lossless formats, at least 35 dB for MP4 and WebM). GIFs read
// against ImageMagick's own coalesced frames; animations that other programs made (apngasm,
// img2webp, ffmpeg) with their delays, transparency over the paper and rotation; missing tools named
// with their package; and damaged files of every format, which open in part, the frames they give as
// the whole file gives them, with a note saying how many, or give a clear error.

#include "host/AnimationBuilder.h"
#include "host/AnimationExport.h"
#include "host/AnimationFiles.h"
#include "host/SampleAnimation.h"
#include "support/MediaCheck.h"
#include "support/SampleGifs.h"
#include "support/Support.h"

#include <QDir>
#include <QImage>
#include <QtEndian>

#include <array>
#include <cmath>
#include <functional>
#include <numeric>

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

// One frame per delay, of w x h pixels; pixel (x, y) of frame f is colour(f, x, y).
Sample sample(int w, int h, std::vector<int> delays,
              const std::function<std::array<int, 3>(int, int, int)>& colour) {
    Sample s{{}, std::move(delays), {}};
    for (int f = 0; f < static_cast<int>(s.delays.size()); ++f) {
        host::Picture p(w, h);
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x) {
                const auto [r, g, b] = colour(f, x, y);
                p.r.at(x, y) = static_cast<std::uint8_t>(r);
                p.g.at(x, y) = static_cast<std::uint8_t>(g);
                p.b.at(x, y) = static_cast<std::uint8_t>(b);
            }
        s.frames.push_back(p);
    }
    return s;
}

// Few colours, every pixel changing from frame to frame, and an alpha with a clear border and a
// clear diagonal: what the lossless formats must give back exactly. Odd sizes on purpose.
Sample fewColours(int w = 9, int h = 7) {
    Sample s = sample(w, h, {40, 120, 70, 30}, [](int f, int x, int y) {
        return std::array{40 * f + 10 + (x % 3), (x * 50 + 7 * f) % 250, y < 2 ? 200 - f : 30 + f};
    });
    s.alpha = krl::Plane(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x)
            s.alpha.at(x, y) = (x == 0 || y == 0 || x == y) ? 0 : 255;
    return s;
}

// Smooth colours with a light square moving over them: sharp edges in brightness, as drawings have.
// (Sharp edges between saturated colours lose more to 4:2:0's shared colour at any quality.)
Sample smooth() {
    return sample(65, 49, {40, 40, 80, 40, 120}, [](int f, int x, int y) {
        const bool square = std::abs(x - 10 - 8 * f) < 6 && std::abs(y - 20) < 6;
        return square ? std::array{235, 235, 225} : std::array{2 * x + 20, 3 * y + 10, 100 + x + y};
    });
}

// Pixels of the W x H pictures that differ from what came back; clear where the alpha is 0.
int wrongPixels(const RgbaFrames& got, const Sample& s, bool transparent) {
    if (got.frames.size() != s.frames.size()) return -1;
    int wrong = 0;
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

// A GIF, APNG or WebP as its own tools read it.
RgbaFrames readBack(const QString& file) {
    return file.endsWith(".png") ? apngFrames(file) : coalescedFrames(file);
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
    const Sample s = host::formatHasTransparency(format) ? fewColours() : smooth();
    std::vector<double> progress;
    host::exportAnimation(out, s.input(), {.loop = 3}, {.report = [&](double p) { progress.push_back(p); }});
    EXPECT_EQ(folder(), QStringList{QFileInfo(out).fileName()}) << "nothing else is left behind";
    ASSERT_FALSE(progress.empty());
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_LE(progress.back(), 100.0);

    if (!host::formatHasTransparency(format)) {
        const Probed p = probe(out);
        // 4:2:0 wants an even size: the odd one gains a column and a row.
        EXPECT_EQ(p.width, s.frames[0].width() + 1);
        EXPECT_EQ(p.height, s.frames[0].height() + 1);
        std::vector<int> starts(s.delays.size());
        std::exclusive_scan(s.delays.begin(), s.delays.end(), starts.begin(), 0);
        EXPECT_EQ(p.startsMs, starts);
        EXPECT_GE(psnr(ffmpegFrames(out, p.width, p.height), s.frames), 35.0);
        return;
    }
    const RgbaFrames got = readBack(out);
    EXPECT_EQ(wrongPixels(got, s, true), 0);
    EXPECT_EQ(got.delaysMs, s.delays);
    // The loop count, as each format's own tools tell it.
    const QByteArray bytes = QByteArray::fromStdString(readFile(out));
    const qsizetype actl = bytes.indexOf("acTL");
    if (format == ExportFormat::Gif)
        EXPECT_TRUE(runTool("identify", {"-verbose", out}).out.contains("Iterations: 3"));
    else if (format == ExportFormat::WebP)
        EXPECT_TRUE(runTool("webpmux", {"-info", out}).out.contains("Loop Count : 3"));
    else
        EXPECT_EQ(actl < 0 ? 0u : qFromBigEndian<quint32>(bytes.constData() + actl + 8), 3u);
}

// A name every tool could misread: a leading '-', ffmpeg's and ImageMagick's patterns, a quote and
// spaces. A cancel, or a missing ffmpeg, leaves the file there before and nothing else; then the
// export replaces it exactly there, the paper colour clear, and the file opens by that name as well.
TEST_P(ExportRoundTrip, AnAwkwardNameKeepsTheFileBeforeUntilAnExportReplacesIt) {
    const QString out = target("-it's %d [1] * ?");
    writeFile(out, "the file before");
    Sample s = fewColours(12, 10);
    for (auto& f : s.frames) {
        f.r.at(3, 4) = f.g.at(3, 4) = 250;
        f.b.at(3, 4) = 240;
    }
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

    host::exportAnimation(out, s.input(), {.transparency = host::ExportTransparency::Paper});
    EXPECT_EQ(folder(), QStringList{QFileInfo(out).fileName()});
    EXPECT_EQ(host::readAnimationFile(out).frames.size(), s.frames.size()) << "and it opens by that name too";
    if (!host::formatHasTransparency(*host::exportFormatFor(out))) {
        EXPECT_EQ(probe(out).startsMs.size(), s.frames.size());
        return;
    }
    const RgbaFrames got = readBack(out);
    ASSERT_EQ(got.frames.size(), s.frames.size());
    for (std::size_t f = 0; f < got.frames.size(); ++f) {
        EXPECT_EQ(got.pixel(f, 3, 4)[3], 0);
        EXPECT_EQ(got.pixel(f, 4, 4)[3], 255);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportRoundTrip,
                         ::testing::Values(FormatCase{"gif", {"identify", "convert"}}, FormatCase{"png", {}},
                                           FormatCase{"webp", {"webpmux", "convert"}}, FormatCase{"mp4", {}},
                                           FormatCase{"webm", {}}),
                         [](const auto& info) { return std::string(info.param.suffix); });

// A GIF holds centiseconds: each delay rounds to the nearest, never below 2 (which browsers would show
// as 10); an APNG keeps the milliseconds, down to 1.
TEST(ExportTiming, GifRoundsToTheNearestCentisecondAndApngKeepsMilliseconds) {
    if (const QString m = missingTool({"ffmpeg", "convert", "apngdis"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString() << " is not installed";
    QTemporaryDir dir;
    const Sample s = sample(8, 6, {1, 34, 35}, [](int f, int x, int y) {
        return std::array{80 * f, 20 * x, 30 * y};
    });
    for (const char* name : {"t.gif", "t.png"})
        host::exportAnimation(dir.filePath(name), s.input(), {}, {});
    EXPECT_EQ(readBack(dir.filePath("t.gif")).delaysMs, (std::vector<int>{20, 30, 40}));
    EXPECT_EQ(readBack(dir.filePath("t.png")).delaysMs, s.delays);
}

// A GIF of 256 colours and no transparency uses every palette entry and still comes back exact; a
// WebP is lossless by default and lossy, yet close to the frames, below quality 100.
TEST(ExportColours, A256ColourGifIsExactAndWebpIsLossyOnlyBelowQuality100) {
    if (const QString m = missingTool({"ffmpeg", "convert", "identify", "webpmux"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString();
    QTemporaryDir dir;
    const Sample all = sample(16, 16, {100, 100}, [](int, int x, int y) {
        const int i = std::min(y, 15) * 16 + std::min(x, 15);
        return std::array{i, i * 7, i * 13};
    });
    host::exportAnimation(dir.filePath("all.gif"), all.input(), {});
    EXPECT_EQ(wrongPixels(coalescedFrames(dir.filePath("all.gif")), all, false), 0);

    const Sample video = smooth();
    host::exportAnimation(dir.filePath("lossless.webp"), video.input(), {});
    host::exportAnimation(dir.filePath("lossy.webp"), video.input(), {.quality = 60});
    QString info;
    EXPECT_EQ(wrongPixels(webpFrames(dir.filePath("lossless.webp"), info), video, false), 0);
    EXPECT_FALSE(info.contains(" lossy")) << info.toStdString();
    EXPECT_GE(psnr(webpFrames(dir.filePath("lossy.webp"), info), video.frames), 30.0);
    EXPECT_TRUE(info.contains(" lossy")) << info.toStdString();
}

constexpr std::uint32_t kPaper = 0x60A0C0; // red 0xC0, green 0xA0, blue 0x60
const std::vector<int> kMadeDelays{100, 250, 40};

// Frame f: flat colour (20 + 60 f, 100, 200 - 30 f), with one half-clear pixel at (1, 1) and a
// clear one at (2, 1); beside it its delay, as apngasm reads it.
QStringList writePngFrames(const QString& folder, int n) {
    QStringList names;
    for (int f = 0; f < n; ++f) {
        QImage img(6, 4, QImage::Format_RGBA8888);
        img.fill(QColor(20 + 60 * f, 100, 200 - 30 * f));
        img.setPixelColor(1, 1, QColor(200, 0, 0, 128));
        img.setPixelColor(2, 1, QColor(0, 0, 0, 0));
        names << QDir(folder).filePath(QString("frame%1.png").arg(f + 1, 3, 10, QChar('0')));
        img.save(names.back());
        writeFile(QString(names.back()).replace(".png", ".txt"),
                  QString("delay=%1/1000\n").arg(kMadeDelays[f]).toStdString());
    }
    return names;
}

// ffmpeg making a test video of n frames.
bool makeVideo(const QString& folder, const QString& source, int n, const QStringList& encoding,
               const QString& file) {
    return runTool("ffmpeg",
                   QStringList{"-v", "error", "-f", "lavfi", "-i", source, "-frames:v", QString::number(n)} +
                       encoding + QStringList{QDir(folder).filePath(file)})
               .code == 0;
}

class MediaRead : public ::testing::Test {
  protected:
    QString at(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

// Every opaque pixel as ImageMagick has it, every clear one the paper; the alpha is the first
// frame's, with the ride-along column and row repeating the edge.
void expectLikeImageMagick(const host::Animation& a, const RgbaFrames& want) {
    const std::vector<host::Picture> frames = a.frames.empty() ? std::vector{a.still} : a.frames;
    EXPECT_EQ(pixelsUnlikeCoalesced(frames, want, kPaper, true), 0);
    bool transparent = false;
    for (const auto& f : want.frames)
        for (std::size_t i = 3; i < f.size(); i += 4)
            transparent |= f[i] == 0;
    ASSERT_EQ(a.alpha.empty(), !transparent);
    int wrongAlpha = 0;
    for (int y = 0; transparent && y <= want.height; ++y)
        for (int x = 0; x <= want.width; ++x)
            wrongAlpha += a.alpha.at(x, y) !=
                          want.pixel(0, std::min(x, want.width - 1), std::min(y, want.height - 1))[3];
    EXPECT_EQ(wrongAlpha, 0);
    EXPECT_EQ(frames.size() > 1 ? a.delays : want.delaysMs, want.delaysMs);
}

// Every disposal, offset, palette and interlace comes out as ImageMagick coalesces it. ImageMagick
// itself reads "[1]" as a frame number, "%d" as a numbered series, "*" and "?" as wildcards, and a
// leading "-" as an option; each such name must still give exactly its own file.
TEST_F(MediaRead, GifsComeOutAsImageMagickCoalescesThemUnderAnyName) {
    if (!missingTool({"convert"}).isEmpty()) GTEST_SKIP() << "ImageMagick is not installed";
    const QStringList made = makeSampleGifs(dir.path());
    for (const QString& gif : made) {
        SCOPED_TRACE(gif.toStdString());
        const host::Animation a = host::readAnimationFile(gif, {.paper = kPaper});
        expectLikeImageMagick(a, coalescedFrames(gif));
        EXPECT_TRUE(a.note.empty());
    }
    const QString source = made.filter("dispose-mix").front();
    const RgbaFrames want = coalescedFrames(source);
    // Decoys that a pattern would match instead.
    QFile::copy(made.filter("interlaced").front(), at("a1.gif"));
    QFile::copy(made.filter("interlaced").front(), at("ab.gif"));
    for (const QString name : {"a%d.gif", "a[1].gif", "a*.gif", "a?.gif", "it's a gif.gif", "-a.gif"}) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_TRUE(QFile::copy(source, at(name)));
        expectLikeImageMagick(host::readAnimationFile(at(name), {.paper = kPaper}), want);
        QFile::remove(at(name));
    }
}

// Frames and delays as made, transparency over the paper, c' = (c a + paper (255 - a) + 127) / 255;
// videos as ffmpeg itself decodes them: in presentation order, and turned as their rotation says. A
// plain PNG is a still picture.
TEST_F(MediaRead, FilesOtherProgramsMadeOpenWithTheirFramesDelaysAndTransparency) {
    if (const QString m = missingTool({"apngasm", "img2webp", "ffmpeg", "ffprobe"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString();
    const QStringList frames = writePngFrames(dir.path(), 3);
    QStringList webpArgs{"-lossless"};
    for (int f = 0; f < 3; ++f)
        webpArgs << "-d" << QString::number(kMadeDelays[f]) << frames[f];
    const QStringList h264{"-c:v", "libx264", "-pix_fmt", "yuv420p", "-bf", "2"};
    ASSERT_EQ(runTool("apngasm", QStringList{at("made.png")} + frames).code, 0);
    ASSERT_EQ(runTool("img2webp", webpArgs + QStringList{"-o", at("made.webp")}).code, 0);
    ASSERT_TRUE(makeVideo(dir.path(), "testsrc2=size=48x32:rate=10", 6, h264, "made.mp4"));
    ASSERT_TRUE(makeVideo(dir.path(), "testsrc2=size=48x32:rate=25", 5, {"-c:v", "libvpx-vp9"}, "made.webm"));
    ASSERT_EQ(runTool("ffmpeg", {"-v", "error", "-i", at("made.mp4"), "-c", "copy", "-metadata:s:v",
                                 "rotate=90", at("turned.mov")})
                  .code,
              0);
    for (const auto& [file, delays, size] : {std::tuple{"made.png", kMadeDelays, QSize(6, 4)},
                                             {"made.webp", kMadeDelays, QSize(6, 4)},
                                             {"frame001.png", std::vector<int>{}, QSize(6, 4)},
                                             {"made.mp4", std::vector(6, 100), QSize(48, 32)},
                                             {"made.webm", std::vector(5, 40), QSize(48, 32)},
                                             {"turned.mov", std::vector(6, 100), QSize(32, 48)}}) {
        SCOPED_TRACE(file);
        const host::Animation a = host::readAnimationFile(at(file), {.paper = kPaper});
        ASSERT_EQ(a.frames.size(), delays.size());
        EXPECT_EQ(a.delays, delays);
        EXPECT_TRUE(a.note.empty());
        const std::vector<host::Picture> got = a.frames.empty() ? std::vector{a.still} : a.frames;
        EXPECT_EQ(QSize(got[0].width(), got[0].height()), size);
        if (size != QSize(6, 4)) {
            EXPECT_TRUE(a.alpha.empty());
            EXPECT_EQ(psnr(ffmpegFrames(at(file), size.width(), size.height()), got), 99);
            continue;
        }
        EXPECT_EQ(a.alpha.at(1, 1), 128);
        EXPECT_EQ(a.alpha.at(2, 1), 0);
        EXPECT_EQ(a.alpha.at(6, 4), 255) << "the ride-along corner repeats the edge";
        for (int f = 0; f < std::ssize(got); ++f) {
            const host::Picture& p = got[static_cast<std::size_t>(f)];
            EXPECT_EQ(p.r.at(0, 0), 20 + 60 * f);
            EXPECT_EQ(p.b.at(6, 4), 200 - 30 * f);
            EXPECT_EQ(p.r.at(1, 1), (200 * 128 + 0xC0 * 127 + 127) / 255);
            EXPECT_EQ(p.g.at(1, 1), (0xA0 * 127 + 127) / 255);
            EXPECT_EQ(host::packColor(p.r.at(2, 1), p.g.at(2, 1), p.b.at(2, 1)), kPaper);
        }
    }
}

// A cancel ends the tools at once and leaves no private folder behind.
TEST_F(MediaRead, ACancelledReadThrowsCancelledAndLeavesNothing) {
    if (const QString m = missingTool({"ffmpeg", "ffprobe"}); !m.isEmpty()) GTEST_SKIP() << m.toStdString();
    ASSERT_TRUE(makeVideo(dir.path(), "testsrc2=size=320x240:rate=25", 50, {}, "long.webm"));
    // A temporary folder of the test's own: other tests running at the same time make and remove
    // private folders of their own in the system's.
    const QString ownTemp = at("tmp");
    QDir().mkpath(ownTemp);
    const QByteArray oldTemp = qgetenv("TMPDIR");
    qputenv("TMPDIR", ownTemp.toLocal8Bit());
    auto privateFolders = [&] { return QDir(ownTemp).entryList({"kirrel-media-*"}, QDir::Dirs).size(); };
    int reports = 0;
    host::ReadOptions options;
    options.progress.report = [&](double) { ++reports; };
    options.progress.cancelled = [&] { return reports >= 3; };
    EXPECT_THROW(host::readAnimationFile(at("long.webm"), options), host::Cancelled);
    oldTemp.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", oldTemp);
    EXPECT_EQ(reports, 3);
    EXPECT_EQ(privateFolders(), 0);
}

TEST_F(MediaRead, AMissingToolIsNamedWithItsPackage) {
    if (const QString m = missingTool({"ffmpeg", "ffprobe", "apngasm"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString();
    ASSERT_EQ(runTool("apngasm", QStringList{at("made.png")} + writePngFrames(dir.path(), 2)).code, 0);
    host::exportAnimation(at("made.gif"), fewColours().input(), {});
    auto message = [&](const QString& file) -> std::string {
        try {
            host::readAnimationFile(at(file));
        } catch (const host::MissingTool& e) {
            return e.what();
        }
        return "no MissingTool";
    };
    {
        const PathWith none({});
        EXPECT_EQ(message("made.png"),
                  "Opening an APNG file needs ffmpeg, which is not installed. Install Debian's "
                  "ffmpeg package (sudo apt install ffmpeg) and try again.");
        EXPECT_NE(message("made.gif").find("sudo apt install imagemagick"), std::string::npos);
    }
    // Without ImageMagick a GIF still opens, through ffmpeg.
    const PathWith ffmpegOnly({"ffmpeg", "ffprobe"});
    EXPECT_EQ(host::readAnimationFile(at("made.gif")).frames.size(), fewColours().frames.size());
}

class DamagedMedia : public ::testing::TestWithParam<const char*> {};

// Cut to half, cut to its first bytes, or garbage with the right name: never a crash or a hang; a
// file that gave frames says how many, each of them whole, and one that gave none is named in a
// clear error.
TEST_P(DamagedMedia, OpensInPartWithANoteOrGivesAClearError) {
    if (const QString m = missingTool({"ffmpeg", "ffprobe", "convert"}); !m.isEmpty())
        GTEST_SKIP() << m.toStdString();
    QTemporaryDir dir;
    const QString wholeFile = dir.filePath(QString("whole.") + GetParam());
    const std::vector<host::Picture> frames = host::sampleAnimation(12, 40, 30);
    const std::vector<int> delays(frames.size(), 50);
    host::exportAnimation(wholeFile, {frames, delays, krl::Plane(), 0}, {});
    const std::string bytes = readFile(wholeFile);
    const host::Animation whole = host::readAnimationFile(wholeFile);
    for (const auto& [name, content] :
         {std::pair{"half", bytes.substr(0, bytes.size() / 2)}, std::pair{"start", bytes.substr(0, 40)},
          std::pair{"garbage", std::string(3000, '\x5a') + bytes.substr(bytes.size() / 3, 200)}}) {
        const QString file = dir.filePath(QString("walk-%1.").arg(name) + GetParam());
        writeFile(file, content);
        SCOPED_TRACE(file.toStdString());
        const std::string shortName = QFileInfo(file).fileName().toStdString();
        try {
            const host::Animation a = host::readAnimationFile(file);
            const std::vector<host::Picture> got = a.frames.empty() ? std::vector{a.still} : a.frames;
            EXPECT_LT(got.size(), frames.size());
            const std::string count = got.size() == 1 ? "1 frame" : std::to_string(got.size()) + " frames";
            EXPECT_EQ(a.note, shortName + " ends early: " + count + " could be read.");
            for (std::size_t f = 0; f < got.size(); ++f)
                EXPECT_TRUE(got[f] == whole.frames[f]) << "frame " << f << " is whole";
        } catch (const std::runtime_error& e) {
            EXPECT_NE(std::string(e.what()).find(shortName), std::string::npos) << e.what();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, DamagedMedia, ::testing::Values("gif", "png", "webp", "mp4", "webm"));

// A decoder's pipe hands its bytes over in pieces of any size, down to one byte: every frame still
// comes out whole, in order, and a frame cut short is kept as a leftover, never passed on.
TEST(RgbaFrameStreamTest, PiecesOfAnySizeGiveWholeFrames) {
    std::string bytes(3 * 8 + 5, '\0');
    std::iota(bytes.begin(), bytes.end(), char{1});
    for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, std::size_t{7}, bytes.size()}) {
        std::vector<std::string> frames;
        host::RgbaFrameStream stream(8, [&](const std::uint8_t* f) { frames.emplace_back(f, f + 8); });
        for (std::size_t at = 0; at < bytes.size(); at += piece)
            stream.feed(bytes.data() + at, static_cast<std::int64_t>(std::min(piece, bytes.size() - at)));
        ASSERT_EQ(frames.size(), 3u) << "pieces of " << piece;
        for (std::size_t f = 0; f < 3; ++f)
            EXPECT_EQ(frames[f], bytes.substr(8 * f, 8)) << "pieces of " << piece << ", frame " << f;
        EXPECT_TRUE(stream.leftover());
    }
}

} // namespace
} // namespace kirrel::test
