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

using Case = std::tuple<int /*member*/, int /*width*/, bool /*to*/>;

class WipeReference : public ReferenceTest, public testing::WithParamInterface<Case> {
  protected:
    void SetUp() override {
        ReferenceTest::SetUp();
        std::tie(member, W, to) = GetParam();
        H = W - 4;
        prepare(W, H);
    }
    // Frame i of a run over a..b: the To rows lay the source's rectangle over the frame, the From rows
    // the frame's over the source (changed in place, but each rectangle holds the one before it).
    Picture mixed(const Picture& frame, const Picture& src, int i, int a, int b) const {
        const Rect r = wipeRect(member, to, i, a, b, W, H);
        return to ? paint(frame, src, r) : paint(src, frame, r);
    }
    int member = 0, W = 0, H = 0;
    bool to = true;
};

// Only the top wipe mixes at Start as well; the others' From runs start on the whole source.
TEST_P(WipeReference, Plain) {
    (to ? runWipeTo : runWipeFrom)(WipeFamily::Plain, member, S, E, "Swap");
    expectRun(to && member != 3 ? S + 1 : S, E, [&](int i) {
        return i == S && member != 3 ? source : mixed(original[static_cast<std::size_t>(i)], source, i, S, E);
    });
}

// The splices make no call at the overlap's first frame, the top wipe's neither.
TEST_P(WipeReference, Stored) {
    const std::vector<Picture> slot = patternFrames(9, W, H, 101);
    putSlot(tempDir(), 0, slot);
    (to ? runWipeToStored : runWipeFromStored)(WipeFamily::Plain, member, to ? 2 : 4, 0);
    expectSplice(to, to ? 2 : 4, slot, [&](const Picture& f, const Picture& st, int i, int a, int b) {
        return i == a ? (to ? f : st) : mixed(f, st, i, a, b);
    });
}

std::string caseName(const testing::TestParamInfo<Case>& i) {
    static const char* names[] = {"Right", "Left", "Bottom", "Top"};
    return std::string(names[std::get<0>(i.param)]) + std::to_string(std::get<1>(i.param)) +
           (std::get<2>(i.param) ? "To" : "From");
}

INSTANTIATE_TEST_SUITE_P(Members, WipeReference,
                         testing::Combine(testing::Range(0, 4), testing::Values(21, 24), testing::Bool()),
                         caseName);

} // namespace
} // namespace kirrel::test
