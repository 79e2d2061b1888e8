// Reading GIFs against ImageMagick's own coalesced frames: every way a GIF builds its frames, the
// file cut short, and the names ImageMagick would read as patterns.

#include "host/AnimationFiles.h"
#include "support/SampleGifs.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kirrel::test {
namespace {

constexpr std::uint32_t kPaper = 0x60A0C0; // red 0xC0, green 0xA0, blue 0x60

class GifRead : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveConvert()) GTEST_SKIP() << "ImageMagick is not installed";
    }
    QTemporaryDir dir;
};

// Every opaque pixel as ImageMagick has it, every clear one the paper; the alpha is the first
// frame's, with the ride-along column and row repeating the edge.
void expectLikeImageMagick(const host::Animation& a, const CoalescedGif& want) {
    const std::vector<host::Picture> frames = a.frames.empty() ? std::vector{a.still} : a.frames;
    EXPECT_EQ(pixelsUnlikeCoalesced(frames, want, kPaper, true), 0);
    bool transparent = false;
    for (const auto& f : want.frames)
        for (std::size_t i = 3; i < f.size(); i += 4)
            transparent |= f[i] == 0;
    ASSERT_EQ(a.alpha.empty(), !transparent);
    if (transparent) {
        int wrongAlpha = 0;
        for (int y = 0; y <= want.height; ++y)
            for (int x = 0; x <= want.width; ++x)
                wrongAlpha += a.alpha.at(x, y) !=
                              want.alphaAt(0, std::min(x, want.width - 1), std::min(y, want.height - 1));
        EXPECT_EQ(wrongAlpha, 0);
    }
    if (frames.size() > 1) {
        std::vector<int> delays;
        for (const int cs : want.delaysCs)
            delays.push_back(cs * 10);
        EXPECT_EQ(a.delays, delays);
    }
}

TEST_F(GifRead, EveryDisposalOffsetPaletteAndInterlaceComesOutAsImageMagickCoalescesIt) {
    for (const QString& gif : makeSampleGifs(dir.path())) {
        SCOPED_TRACE(gif.toStdString());
        const host::Animation a = host::readAnimationFile(gif, {.paper = kPaper});
        expectLikeImageMagick(a, coalescedGif(gif));
        EXPECT_TRUE(a.note.empty());
    }
}

// ImageMagick reads "[1]" as a frame number, "%d" as a numbered series, "*" and "?" as wildcards,
// and a leading "-" as an option; each such name must still give exactly its own file.
TEST_F(GifRead, NamesImageMagickWouldReadAsPatternsGiveExactlyThatFile) {
    const QStringList made = makeSampleGifs(dir.path());
    const QString source = made.filter("dispose-mix").front();
    const CoalescedGif want = coalescedGif(source);
    // Decoys that a pattern would match instead.
    QFile::copy(made.filter("interlaced").front(), dir.filePath("a1.gif"));
    QFile::copy(made.filter("interlaced").front(), dir.filePath("ab.gif"));
    for (const QString name : {"a%d.gif", "a[1].gif", "a*.gif", "a?.gif", "it's a gif.gif", "-a.gif"}) {
        SCOPED_TRACE(name.toStdString());
        const QString path = dir.filePath(name);
        ASSERT_TRUE(QFile::copy(source, path));
        expectLikeImageMagick(host::readAnimationFile(path, {.paper = kPaper}), want);
        QFile::remove(path);
    }
}

TEST_F(GifRead, AFileCutShortGivesItsWholeFramesAndSaysSo) {
    const QString source = makeSampleGifs(dir.path()).filter("local-palettes").front();
    QFile in(source);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    const QByteArray bytes = in.readAll();
    const QString cut = dir.filePath("walk.gif");
    // Cut inside the last frame's data: the two frames before it are whole.
    QFile out(cut);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(bytes.left(bytes.size() - 20));
    out.close();
    const host::Animation a = host::readAnimationFile(cut, {.paper = kPaper});
    EXPECT_EQ(a.frames.size(), 2u);
    EXPECT_EQ(a.note, "walk.gif ends early: 2 frames could be read.");
    const CoalescedGif whole = coalescedGif(source);
    for (int y = 0; y < whole.height; ++y)
        for (int x = 0; x < whole.width; ++x)
            ASSERT_EQ(a.frames[1].g.at(x, y), whole.pixel(1, x, y)[1]);
}

} // namespace
} // namespace kirrel::test
