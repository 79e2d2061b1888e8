// The .msk file: the bytes the export writes, the grey animation the import makes of them, and
// damaged files refused before anything changes.

#include "masks/AnimMaskMod.h"
#include "masks/MaskSupport.h"
#include "stored/DataFile.h"

#include <QDir>

namespace kirrel::test {
namespace {

class MaskFile : public HostTest {
  protected:
    std::string path(const char* name) const { return QDir(scratch.path()).filePath(name).toStdString(); }
};

// The mean rounded to the nearest byte, computed the long way: a sum of three never ends in a half.
std::uint8_t roundedMean(int r, int g, int b) {
    return static_cast<std::uint8_t>((r + g + b + 1) / 3);
}

std::string expectedMsk(const std::vector<host::Picture>& frames) {
    const auto& first = frames.front();
    std::string out = mskHeader(first.width(), first.height(), static_cast<int>(frames.size()));
    for (const auto& f : frames)
        for (int y = 0; y <= f.height(); ++y)
            for (int x = 0; x <= f.width(); ++x)
                out += static_cast<char>(roundedMean(f.r.at(x, y), f.g.at(x, y), f.b.at(x, y)));
    return out;
}

TEST_F(MaskFile, ExportWritesTheHeaderAndEveryPixelsRoundedMean) {
    auto frames = patternFrames(3, 6, 4, 11);
    frames[0].r.at(0, 0) = 255;
    frames[0].g.at(0, 0) = 255;
    frames[0].b.at(0, 0) = 254; // 254.67 is stored as 255
    frames[1].r.at(6, 4) = 1;
    frames[1].g.at(6, 4) = 1;
    frames[1].b.at(6, 4) = 0; // 0.67 is stored as 1; the last column and row are written too
    host().loadAnimation(frames, 2);
    // A longer file keeps its tail: the header says where the mask ends.
    const std::string old(4000, 'x');
    writeFile(QString::fromStdString(path("out.msk")), old);
    answerFile(path("out.msk"));

    masks::AMaskExport();

    const std::string bytes = readFile(QString::fromStdString(path("out.msk")));
    const std::string expected = expectedMsk(frames);
    ASSERT_EQ(bytes.size(), old.size());
    EXPECT_EQ(bytes.substr(0, expected.size()), expected);
    EXPECT_EQ(static_cast<unsigned char>(bytes[12]), 255);
    EXPECT_EQ(static_cast<unsigned char>(bytes[12 + 35 + 34]), 1);
    EXPECT_EQ(host().currentFrame(), 0);

    // Read back it is a grey copy at the same size and frame count.
    host().loadAnimation(patternFrames(1, 2, 2, 0));
    answerFile(path("out.msk"));
    masks::AMaskImport();
    ASSERT_EQ(host().totalFrames(), 3);
    ASSERT_EQ(host().bufferWidth(), 6);
    ASSERT_EQ(host().bufferHeight(), 4);
    for (int f = 0; f < 3; ++f) {
        const auto& p = host().framePicture(f);
        EXPECT_EQ(bytesOf(p.r), expected.substr(12 + 35 * f, 35)) << f;
        EXPECT_EQ(p.g, p.r);
        EXPECT_EQ(p.b, p.r);
    }
    EXPECT_EQ(host().currentFrame(), 0);
}

TEST_F(MaskFile, AnEmptyAnswerOrAMissingFileDoesNothing) {
    host().loadAnimation(patternFrames(2, 5, 5));
    const HostSnapshot before = HostSnapshot::of(host());
    answerFile("");
    masks::AMaskExport();
    answerFile("");
    masks::AMaskImport();
    answerFile(path("absent.msk"));
    masks::AMaskImport();
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    EXPECT_TRUE(messagesOf(host()).empty());
    EXPECT_TRUE(calls("Van_NewBuffer").empty());
}

struct Damage {
    const char* name;
    std::string bytes;
};

class DamagedMask : public MaskFile, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedMask, IsRefusedWithAClearMessageBeforeAnythingChanges) {
    writeFile(QString::fromStdString(path("bad.msk")), GetParam().bytes);
    host().loadAnimation(patternFrames(2, 5, 5));
    const HostSnapshot before = HostSnapshot::of(host());

    answerFile(path("bad.msk"));
    masks::AMaskImport();
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    const auto messages = messagesOf(host());
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].find("bad.msk is damaged: "), std::string::npos) << messages[0];
    EXPECT_NE(messages[0].find("unchanged"), std::string::npos);

    EXPECT_THROW(masks::loadScaledMask(path("bad.msk"), 5, 5), stored::DamagedFile);
}

TEST_F(MaskFile, AMaskWithMoreFramesThanTheHostCountsIsNotImported) {
    // Whole on disk, but more frames than an animation can count.
    writeFile(QString::fromStdString(path("wide.msk")), mskHeader(0, 0, 40000) + std::string(40000, '\x01'));
    host().loadAnimation(patternFrames(2, 5, 5));
    const HostSnapshot before = HostSnapshot::of(host());
    answerFile(path("wide.msk"));
    masks::AMaskImport();
    EXPECT_TRUE(HostSnapshot::of(host()) == before);
    ASSERT_EQ(messagesOf(host()).size(), 1u);
    EXPECT_NE(messagesOf(host())[0].find("larger than an animation can have"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Files, DamagedMask,
    testing::Values(Damage{"Empty", ""}, Damage{"HalfAHeader", le32(3) + le32(3)},
                    Damage{"NegativeWidth", mskHeader(-2, 3, 1) + flatMaskPlane(3, 3, 9)},
                    Damage{"NegativeFrames", mskHeader(3, 3, -1) + flatMaskPlane(3, 3, 9)},
                    Damage{"NoFrames", mskHeader(3, 3, 0)},
                    Damage{"LastFrameShort", mskHeader(3, 3, 2) + flatMaskPlane(3, 3, 9) + "abc"},
                    // Sizes whose product overflows 32 bits, over a file of a few bytes.
                    Damage{"WiderThanAnyFrame", mskHeader(40000, 0, 1) + flatMaskPlane(40000, 0, 1)},
                    Damage{"AbsurdSize", mskHeader(2147483647, 2147483647, 2147483647) + "abcd"}),
    [](const testing::TestParamInfo<Damage>& i) { return std::string(i.param.name); });

} // namespace
} // namespace kirrel::test
