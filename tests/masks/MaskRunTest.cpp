// The mask runs in process: which mask frame each frame of a range gets, the scaling of a mask of
// another size, the sense of the alpha plane, the copies into it, and the memory refusal.

#include "masks/AlphaMaskMod.h"
#include "masks/AnimMaskMod.h"
#include "masks/MaskSupport.h"
#include "stored/WholeAnimationLimit.h"

#include <QDir>

#include <stdexcept>

namespace kirrel::test {
namespace {

class MaskRun : public HostTest {
  protected:
    std::string path(const char* name) const { return QDir(scratch.path()).filePath(name).toStdString(); }
};

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

// The mask frame used for each host frame, read back from the white column; -1 for none.
std::vector<int> maskFramesUsed(const host::HostState& h, int first, int last) {
    std::vector<int> out;
    for (int f = first; f <= last; ++f) {
        int used = -1;
        for (int x = 0; x < kW; ++x)
            if (h.framePicture(f).r.at(x, 0) == 255) used = x;
        out.push_back(used);
    }
    return out;
}

struct Repetition {
    int maskFrames, start, end;
    std::vector<int> used;
};

class MaskRepetition : public MaskRun, public testing::WithParamInterface<Repetition> {};

TEST_P(MaskRepetition, TheRangesFirstFrameTakesMaskFrameZeroAndTheMaskRepeats) {
    const Repetition& p = GetParam();
    writeFile(QString::fromStdString(path("cols.msk")), columnMask(p.maskFrames));
    host().loadAnimation(std::vector<host::Picture>(6, host::Picture::filled(kW, kH, 0x000000)));
    host().setPrimaryPacked(0xFFFFFF);

    // Light parts of the mask keep the lighter source (white), dark ones the darker (black frame).
    masks::AnimMask(path("cols.msk"), "Primary Color", "Main Buffer", p.start, p.end);

    EXPECT_EQ(maskFramesUsed(host(), p.start, p.end), p.used);
    for (int f = 0; f < 6; ++f)
        if (f < p.start || f > p.end) {
            EXPECT_EQ(maskFramesUsed(host(), f, f), std::vector<int>{-1}) << f;
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
    writeFile(QString::fromStdString(path("small.msk")), file);
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
    std::string file = mskHeader(0, 0, 300) + std::string(300, '\x80');
    writeFile(QString::fromStdString(path("tiny.msk")), file);
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

TEST_F(MaskRun, AlphaZeroKeepsTheLighterSourceAnd255GivesTheDarker) {
    host().loadAnimation({host::Picture::filled(kW, kH, 0x102030)});
    host().loadSwap(host::Picture::filled(kW, kH, 0xA0B0C0));
    krl::Plane alpha(kW, kH);
    for (int y = 0; y <= kH; ++y)
        for (int x = 0; x <= kW; ++x)
            alpha.at(x, y) = x < 2 ? 0 : 255;
    host().setAlpha(alpha);

    masks::AlphaMask("Swap", "Main Buffer");

    const auto& out = host().framePicture(0);
    // Packed colours hold red in the low byte.
    EXPECT_EQ(out.r.at(0, 0), 0xC0) << "0 keeps the swap picture";
    EXPECT_EQ(out.b.at(1, 3), 0xA0);
    EXPECT_EQ(out.r.at(2, 0), 0x30) << "255 gives the main buffer";
    EXPECT_EQ(out.b.at(5, 3), 0x10);
    EXPECT_EQ(calls("Van_SaveUndo").size(), 1u);
    EXPECT_EQ(calls("Van_InitMarquee").size(), 1u);
}

TEST_F(MaskRun, CopiesToAlphaLeaveTheLastRowAndColumnAndReportEveryTwentiethRow) {
    auto white = host::Picture::filled(6, 40, 0xFFFFFF);
    host().loadAnimation({white});
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
    swap.r.at(0, 0) = 255;
    swap.g.at(0, 0) = 255;
    swap.b.at(0, 0) = 254;
    host().loadSwap(swap);
    host().fillAlpha(7);
    masks::SendSwap2Alpha();
    EXPECT_EQ(host().alphaPlane().at(0, 0), 255);
    EXPECT_EQ(host().alphaPlane().at(1, 0), 0);
    EXPECT_EQ(host().alphaPlane().at(3, 0), 7);
    EXPECT_EQ(calls("Van_SetProgress"), (std::vector<std::string>{"Van_SetProgress(0)"}));
}

} // namespace
} // namespace kirrel::test
