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

TEST_F(StoredSource, FramesArriveInOrderCopiedAtTheRunsSizeOrResizedToIt) {
    const auto frames = patternFrames(2, 9, 4, 8);
    const std::string path = put(frames);
    stored::StoredFrameSource same(path, 9, 4), other(path, 20, 13);
    EXPECT_EQ(other.header().frames, 2);
    krl::Triple s;
    for (const auto& f : frames) {
        same.next(s);
        EXPECT_EQ(s, f);
        other.next(s);
        krl::Triple expected(20, 13);
        krl::ResizeBuffer(expected.r, expected.g, expected.b, f.r, f.g, f.b, 20, 13, 9, 4);
        EXPECT_EQ(s, expected);
        EXPECT_EQ(other.stored(), f);
    }
    EXPECT_EQ(other.framesLeft(), 0);
    EXPECT_THROW(other.next(s), std::runtime_error);
}

} // namespace
} // namespace kirrel::test
