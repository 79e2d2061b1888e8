// The mask procedures in process: the .msk bytes the export writes and the grey animation the import
// makes of them, damaged files refused before anything changes, which mask frame each frame of a
// range gets, the scaling of a mask of another size, the copies into the alpha plane, the memory
// refusal, and the sources the dialogs mix.

#include "masks/AlphaMaskMod.h"
#include "masks/AnimMaskMod.h"
#include "masks/MaskSources.h"
#include "masks/MaskSupport.h"
#include "stored/DataFile.h"
#include "stored/WholeAnimationLimit.h"

#include <QDir>

#include <stdexcept>
#include <tuple>

namespace kirrel::test {
namespace {

class MaskRun : public HostTest {
  protected:
    std::string path(const char* name) const { return QDir(scratch.path()).filePath(name).toStdString(); }
    void put(const char* name, const std::string& bytes) const {
        writeFile(QString::fromStdString(path(name)), bytes);
    }
    // Imports the file and expects one message holding the words, and a host as it was.
    void expectImportRefused(const char* name, const std::string& words) {
        const HostSnapshot before = HostSnapshot::of(host());
        answerFile(path(name));
        masks::AMaskImport();
        EXPECT_TRUE(HostSnapshot::of(host()) == before);
        const auto messages = messagesOf(host());
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_NE(messages[0].find(words), std::string::npos) << messages[0];
        EXPECT_NE(messages[0].find("unchanged"), std::string::npos);
    }
};

TEST_F(MaskRun, ExportWritesTheHeaderAndEveryPixelsRoundedMeanAndImportReadsItBackGrey) {
    auto frames = patternFrames(3, 6, 4, 11);
    frames[0].r.at(0, 0) = frames[0].g.at(0, 0) = 255;
    frames[0].b.at(0, 0) = 254; // 254.67 is stored as 255
    frames[1].r.at(6, 4) = frames[1].g.at(6, 4) = 1;
    frames[1].b.at(6, 4) = 0; // 0.67 is stored as 1; the last column and row are written too
    host().loadAnimation(frames, 2);
    // A longer file keeps its tail: the header says where the mask ends.
    const std::string old(4000, 'x');
    put("out.msk", old);
    answerFile(path("out.msk"));
    masks::AMaskExport();
    const std::string expected = expectedMsk(frames);
    EXPECT_EQ(readFile(QString::fromStdString(path("out.msk"))), expected + old.substr(expected.size()));
    EXPECT_EQ(static_cast<unsigned char>(expected[12]), 255);
    EXPECT_EQ(static_cast<unsigned char>(expected[12 + 35 + 34]), 1);
    EXPECT_EQ(host().currentFrame(), 0);

    host().loadAnimation(patternFrames(1, 2, 2, 0));
    answerFile(path("out.msk"));
    masks::AMaskImport();
    ASSERT_EQ(host().totalFrames(), 3);
    for (int f = 0; f < 3; ++f) {
        const auto& p = host().framePicture(f);
        EXPECT_EQ(bytesOf(p.r), expected.substr(12 + 35 * f, 35)) << f;
        EXPECT_EQ(p.g, p.r);
        EXPECT_EQ(p.b, p.r);
    }
    EXPECT_EQ(host().bufferWidth(), 6);
    EXPECT_EQ(host().currentFrame(), 0);
}

TEST_F(MaskRun, AnEmptyAnswerOrAMissingFileDoesNothing) {
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

class DamagedMask : public MaskRun, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedMask, IsRefusedWithAClearMessageBeforeAnythingChanges) {
    put("bad.msk", GetParam().bytes);
    host().loadAnimation(patternFrames(2, 5, 5));
    expectImportRefused("bad.msk", "bad.msk is damaged: ");
    EXPECT_THROW(masks::loadScaledMask(path("bad.msk"), 5, 5), stored::DamagedFile);
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

TEST_F(MaskRun, AMaskWithMoreFramesThanTheHostCountsIsNotImported) {
    // Whole on disk, but one frame more than an animation can count.
    put("long.msk", mskHeader(0, 0, 32768) + std::string(32768, '\x01'));
    host().loadAnimation(patternFrames(2, 5, 5));
    expectImportRefused("long.msk", "larger than an animation can have");
}

constexpr int kW = 5, kH = 3;

// A mask whose frame k is light only in column k, so the column that comes out white names the
// mask frame a host frame was mixed with.
std::string columnMask(int frames) {
    std::string out = mskHeader(kW, kH, frames);
    for (int k = 0; k < frames; ++k)
        for (int y = 0; y <= kH; ++y)
            for (int x = 0; x <= kW; ++x)
                out += static_cast<char>(x == k ? 255 : 0);
    return out;
}

struct Repetition {
    int maskFrames, start, end;
    std::vector<int> used; // the mask frame each frame of the range gets
};

class MaskRepetition : public MaskRun, public testing::WithParamInterface<Repetition> {};

TEST_P(MaskRepetition, TheRangesFirstFrameTakesMaskFrameZeroAndTheMaskRepeats) {
    const Repetition& p = GetParam();
    put("cols.msk", columnMask(p.maskFrames));
    host().loadAnimation(std::vector<host::Picture>(6, host::Picture::filled(kW, kH, 0x000000)));
    host().setPrimaryPacked(0xFFFFFF);

    // Light parts of the mask keep the lighter source (white), dark ones the darker (black frame).
    masks::AnimMask(path("cols.msk"), "Primary Color", "Main Buffer", p.start, p.end);

    for (int f = 0; f < 6; ++f) {
        int used = -1;
        for (int x = 0; x < kW; ++x)
            if (host().framePicture(f).r.at(x, 0) == 255) used = x;
        EXPECT_EQ(used, f < p.start || f > p.end ? -1 : p.used[static_cast<std::size_t>(f - p.start)]) << f;
    }
}

INSTANTIATE_TEST_SUITE_P(Ranges, MaskRepetition,
                         testing::Values(Repetition{2, 0, 4, {0, 1, 0, 1, 0}},
                                         Repetition{1, 0, 4, {0, 0, 0, 0, 0}},
                                         Repetition{3, 0, 5, {0, 1, 2, 0, 1, 2}},
                                         Repetition{2, 2, 5, {0, 1, 0, 1}}, Repetition{5, 1, 3, {0, 1, 2}}));

TEST_F(MaskRun, AMaskOfAnotherSizeIsScaledByNearestNeighbourToTheLastColumnAndRow) {
    // Target 0..4 from source 0..2: 0, 0.5, 1, 1.5, 2 round half to even to 0, 0, 1, 2, 2.
    EXPECT_EQ(masks::nearestIndices(4, 2), (std::vector<int>{0, 0, 1, 2, 2}));
    EXPECT_EQ(masks::nearestIndices(2, 6), (std::vector<int>{0, 3, 6}));

    std::string file = mskHeader(2, 1, 1);
    for (int y = 0; y <= 1; ++y)
        for (int x = 0; x <= 2; ++x)
            file += static_cast<char>(10 * x + 100 * y);
    put("small.msk", file);
    const auto mask = masks::loadScaledMask(path("small.msk"), 4, 3);
    ASSERT_EQ(mask.size(), 1u);
    ASSERT_EQ(mask[0].width(), 4);
    ASSERT_EQ(mask[0].height(), 3);
    // Rows 0..3 from 0..1: 0, 0.33, 0.67, 1 give 0, 0, 1, 1.
    const int xs[] = {0, 0, 1, 2, 2};
    const int ys[] = {0, 0, 1, 1};
    for (int y = 0; y <= 3; ++y)
        for (int x = 0; x <= 4; ++x)
            EXPECT_EQ(mask[0].at(x, y), 10 * xs[x] + 100 * ys[y]) << x << "," << y;
}

TEST_F(MaskRun, AMaskTooLargeToHoldScaledIsRefusedBeforeAllocating) {
    // 300 one-pixel frames are 312 bytes on disk but 1.2 GB at 2000 x 2000.
    put("tiny.msk", mskHeader(0, 0, 300) + std::string(300, '\x80'));
    try {
        (void)masks::loadScaledMask(path("tiny.msk"), 1999, 1999);
        FAIL() << "no refusal";
    } catch (const std::length_error& e) {
        EXPECT_NE(std::string(e.what()).find("It would need 1145 MB, and the limit is 1024 MB."),
                  std::string::npos)
            << e.what();
    }
    EXPECT_EQ(masks::loadScaledMask(path("tiny.msk"), 9, 9).size(), 300u);

    EXPECT_EQ(stored::wholeAnimationBytes(2, 3, 99, 9), 2 * 3 * 100 * 10);
    EXPECT_EQ(stored::wholeAnimationBytes(1LL << 40, 3, 1LL << 20, 1LL << 20), -1)
        << "overflow is not a size";
    EXPECT_FALSE(stored::fitsInMemory(-1));
    EXPECT_TRUE(stored::fitsInMemory(stored::kWholeAnimationLimit));
    EXPECT_FALSE(stored::fitsInMemory(stored::kWholeAnimationLimit + 1));
}

TEST_F(MaskRun, CopiesToAlphaLeaveTheLastRowAndColumnAndReportEveryTwentiethRow) {
    host().loadAnimation({host::Picture::filled(6, 40, 0xFFFFFF)});
    host().fillAlpha(0);
    masks::SendMain2Alpha();
    const krl::Plane& a = host().alphaPlane();
    for (int y = 0; y <= 40; ++y)
        for (int x = 0; x <= 6; ++x)
            ASSERT_EQ(a.at(x, y), x < 6 && y < 40 ? 255 : 0) << x << "," << y;
    EXPECT_EQ(
        calls("Van_SetProgress"),
        (std::vector<std::string>{"Van_SetProgress(2.5)", "Van_SetProgress(52.5)", "Van_SetProgress(0)"}));

    // From the swap buffer, with a mean that rounds up; a picture one row high reports nothing.
    trace.clear();
    host().loadAnimation({host::Picture::filled(3, 1, 0)});
    auto swap = host::Picture::filled(3, 1, 0);
    swap.r.at(0, 0) = swap.g.at(0, 0) = 255;
    swap.b.at(0, 0) = 254;
    host().loadSwap(swap);
    host().fillAlpha(7);
    masks::SendSwap2Alpha();
    EXPECT_EQ(host().alphaPlane().at(0, 0), 255);
    EXPECT_EQ(host().alphaPlane().at(1, 0), 0);
    EXPECT_EQ(host().alphaPlane().at(3, 0), 7);
    EXPECT_EQ(calls("Van_SetProgress"), (std::vector<std::string>{"Van_SetProgress(0)"}));
}

// --- The sources ---------------------------------------------------------------------------------

std::tuple<int, int, int> pixel(const krl::Triple& t, int x, int y) {
    return {t.r.at(x, y), t.g.at(x, y), t.b.at(x, y)};
}

class MaskSource : public HostTest, public testing::WithParamInterface<const char*> {};

// The size a source's colour and filter calls get differs by side: the upper bounds leave the last
// column and row as the frame had them, the whole plane doesn't.
TEST_P(MaskSource, TheBoundsSideLeavesTheLastColumnAndRowTheWholePlaneSideDoesNot) {
    const host::Picture frame = patternPicture(6, 4, 17);
    host().loadAnimation({frame});
    host().setPrimaryPacked(0x0A141E);
    Vantry::Vantry_Class van;
    krl::Triple bounds, whole;
    masks::buildSource(van, GetParam(), masks::SourceSizes::Bounds, bounds, 6, 4);
    masks::buildSource(van, GetParam(), masks::SourceSizes::WholePlane, whole, 6, 4);

    // Inside, both sides agree and the source has changed the frame.
    EXPECT_EQ(pixel(bounds, 2, 1), pixel(whole, 2, 1));
    EXPECT_NE(pixel(bounds, 2, 1), pixel(frame, 2, 1));
    for (const auto& [x, y] : {std::pair{6, 0}, std::pair{0, 4}, std::pair{6, 4}}) {
        EXPECT_EQ(pixel(bounds, x, y), pixel(frame, x, y)) << x << "," << y;
        EXPECT_NE(pixel(whole, x, y), pixel(frame, x, y)) << x << "," << y;
    }
}

INSTANTIATE_TEST_SUITE_P(SizedCalls, MaskSource,
                         testing::Values("Primary Color", "Negative", "GreyScale", "Red Channel",
                                         "Green & Blue Channels"),
                         [](const auto& i) {
                             std::string name = i.param;
                             std::erase_if(
                                 name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
                             return name;
                         });

TEST_F(MaskSource, TheBlurAndTheBuffersIgnoreTheSide) {
    host().loadAnimation({patternPicture(6, 4, 17)});
    host().loadSwap(patternPicture(6, 4, 99));
    Vantry::Vantry_Class van;
    for (const char* source : {"Blur", "Main Buffer", "Swap"}) {
        krl::Triple bounds, whole;
        masks::buildSource(van, source, masks::SourceSizes::Bounds, bounds, 6, 4);
        masks::buildSource(van, source, masks::SourceSizes::WholePlane, whole, 6, 4);
        EXPECT_TRUE(bounds == whole) << source;
        if (std::string(source) == "Swap") {
            EXPECT_TRUE(bounds == host().swapPicture());
        }
    }
}

} // namespace
} // namespace kirrel::test
