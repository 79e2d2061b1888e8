// The wipes in all four shapes against a reference written from the geometry alone: every frame of the
// result, byte for byte, for every member, for odd and even sizes. The reference paints rectangles
// pixel by pixel and does its own rounding, so it shares nothing with the runs but the formulas.

#include "transitions/TransitionSupport.h"
#include "transitions/Wipes.h"

#include <cmath>
#include <tuple>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

struct Rect {
    int x1, y1, x2, y2;
};

// The rectangle of member m at frame i of the range start..end: the To rows, or the From rows.
Rect wipeRect(int m, bool to, int i, int start, int end, int W, int H) {
    const double span = end - start;
    const double done = (i - start) / span, left = (end - i) / span;
    switch (m) {
    case 0:
        return {0, 0, rne(done * W), H};
    case 1:
        return to ? Rect{rne(W - done * W), 0, W, H} : Rect{rne(left * W), 0, W, H};
    case 2:
        return {0, 0, W, rne(done * H)};
    default:
        return to ? Rect{0, rne(H - done * H), W, H} : Rect{0, rne(left * H), W, H};
    }
}

// `into` with the rectangle (corners included) taken from `from`.
Picture paint(Picture into, const Picture& from, Rect r) {
    for (int y = std::max(0, r.y1); y <= std::min(r.y2, into.height()); ++y)
        for (int x = std::max(0, r.x1); x <= std::min(r.x2, into.width()); ++x)
            copyPixel(into, x, y, from, x, y);
    return into;
}

using Case = std::tuple<int /*member*/, int /*width*/>;

class WipeReference : public TransitionTest, public testing::WithParamInterface<Case> {
  protected:
    void SetUp() override {
        TransitionTest::SetUp();
        std::tie(member, W) = GetParam();
        H = W - 4;
    }
    // A slot of n frames, each its own pattern, in the animation's size.
    std::vector<Picture> patternSlot(int n) {
        const std::vector<Picture> frames = patternFrames(n, W, H, 101);
        writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), 0)), slotBytes(n, frames));
        return frames;
    }
    void expectFrames(const std::vector<Picture>& expected) {
        ASSERT_EQ(host().totalFrames(), static_cast<int>(expected.size()));
        for (std::size_t f = 0; f < expected.size(); ++f)
            EXPECT_EQ(frame(static_cast<int>(f)), expected[f]) << "frame " << f;
    }
    int member = 0, W = 0, H = 0;
};

TEST_P(WipeReference, To) {
    load(7, W, H);
    runWipeTo(WipeFamily::Plain, member, 1, 5, "Swap");
    std::vector<Picture> expected = original;
    // Only the top wipe mixes at Start as well.
    for (int i = member == 3 ? 1 : 2; i <= 5; ++i)
        expected[i] = paint(original[i], host().swapPicture(), wipeRect(member, true, i, 1, 5, W, H));
    expectFrames(expected);
}

TEST_P(WipeReference, From) {
    load(7, W, H);
    runWipeFrom(WipeFamily::Plain, member, 1, 5, "Swap");
    std::vector<Picture> expected = original;
    expected[1] = host().swapPicture();
    if (member == 3) expected[1] = paint(expected[1], original[1], wipeRect(member, false, 1, 1, 5, W, H));
    // The source is changed in place, but each rectangle holds the one before it.
    for (int i = 2; i <= 5; ++i)
        expected[i] = paint(host().swapPicture(), original[i], wipeRect(member, false, i, 1, 5, W, H));
    expectFrames(expected);
}

TEST_P(WipeReference, ToStored) {
    load(7, W, H);
    const auto slot = patternSlot(9);
    runWipeToStored(WipeFamily::Plain, member, 2, 0);
    // Start 2, End 6: stored frame k meets frame 2 + k, and stored frames 5..8 are appended.
    std::vector<Picture> expected(original.begin(), original.begin() + 3);
    for (int i = 3; i <= 6; ++i)
        expected.push_back(paint(original[i], slot[i - 2], wipeRect(member, true, i, 2, 6, W, H)));
    for (int k = 5; k < 9; ++k)
        expected.push_back(slot[k]);
    expectFrames(expected);
}

TEST_P(WipeReference, FromStored) {
    load(7, W, H);
    const auto slot = patternSlot(9);
    runWipeFromStored(WipeFamily::Plain, member, 4, 0);
    // End 4: Extra 4, the overlap is frames 4..8 of the result, animation frames 0..4.
    std::vector<Picture> expected(slot.begin(), slot.begin() + 4);
    expected.push_back(slot[4]);
    for (int i = 5; i <= 8; ++i)
        expected.push_back(paint(slot[i], original[i - 4], wipeRect(member, false, i, 4, 8, W, H)));
    expected.push_back(original[5]);
    expected.push_back(original[6]);
    expectFrames(expected);
}

std::string caseName(const testing::TestParamInfo<Case>& i) {
    static const char* names[] = {"Right", "Left", "Bottom", "Top"};
    return std::string(names[std::get<0>(i.param)]) + std::to_string(std::get<1>(i.param));
}

INSTANTIATE_TEST_SUITE_P(Members, WipeReference,
                         testing::Combine(testing::Range(0, 4), testing::Values(21, 24)), caseName);

} // namespace
} // namespace kirrel::test
