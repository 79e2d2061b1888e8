// A stored animation as a run's second source: read in sequence, copied at the run's size or
// resized to it.

#include "stored/StoredFrame.h"
#include "pixel/Mixing.h"
#include "stored/StoredSupport.h"

#include <QDir>
#include <QTemporaryDir>

namespace kirrel::test {
namespace {

class StoredSource : public testing::Test {
  protected:
    std::string put(const std::vector<host::Picture>& frames) {
        const QString path = QDir(dir.path()).filePath("AnimSlot 0.dat");
        writeFile(path, slotBytes(static_cast<int>(frames.size()), frames));
        return path.toStdString();
    }
    QTemporaryDir dir;
};

TEST_F(StoredSource, FramesOfTheRunsSizeArriveUnchangedInOrder) {
    const auto frames = patternFrames(3, 7, 5, 4);
    stored::StoredFrameSource source(put(frames), 7, 5);
    EXPECT_EQ(source.header().frames, 3);
    krl::Triple s;
    for (const auto& f : frames) {
        source.next(s);
        EXPECT_EQ(s, f);
    }
    EXPECT_EQ(source.framesLeft(), 0);
    EXPECT_THROW(source.next(s), std::runtime_error);
}

TEST_F(StoredSource, FramesOfAnotherSizeAreResizedToTheRunAndTheStoredCopyIsKept) {
    const auto frames = patternFrames(2, 9, 4, 8);
    stored::StoredFrameSource source(put(frames), 20, 13);
    krl::Triple s;
    for (const auto& f : frames) {
        source.next(s);
        krl::Triple expected(20, 13);
        krl::ResizeBuffer(expected.r, expected.g, expected.b, f.r, f.g, f.b, 20, 13, 9, 4);
        EXPECT_EQ(s, expected);
        EXPECT_EQ(source.stored(), f);
    }
}

TEST(FitStoredFrame, ReplacesAnOutputOfTheWrongShape) {
    const host::Picture stored = patternPicture(3, 3, 1);
    krl::Triple out(1, 1);
    stored::fitStoredFrame(out, stored, 6, 2);
    EXPECT_EQ(out.width(), 6);
    EXPECT_EQ(out.b.height(), 2);
    stored::fitStoredFrame(out, stored, 3, 3);
    EXPECT_EQ(out, stored);
}

} // namespace
} // namespace kirrel::test
