// The pushes, slides and alpha slides against a picture computed here from the motion each module
// names: which picture moves, by how much (rounded half to even) and which way, on which frames. Every
// module runs with an even and an odd size, over a patterned source so that the source's own offset
// shows as well as the frame's.

#include "pixel/Mixing.h"
#include "transitions/AlphaSlides.h"
#include "transitions/Pushes.h"
#include "transitions/Slides.h"
#include "transitions/TransitionSupport.h"

#include <cmath>
#include <string>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

enum class Op { Push, Slide, AlphaSlide };

struct Module {
    const char* name;
    void (*run)(int, int, const std::string&);
    Op op;
    bool sourceFirst; // the picture the call writes and sends is the source
    bool rising;      // u (rising from 0) rather than v (falling to 0)
    int mode;
    int firstFromStart; // first frame made: Start + this
    int lastFromEnd;    // last frame made: End + this
};

struct Place {
    bool fromB; // else from A (or, for a moved plane, nothing)
    int t;
};

// Where the cell at position t along the moving axis comes from.
Place slidePlace(int mode, int n, int d, int t) {
    if (mode == 1 || mode == 3) return t < n - d ? Place{true, t + d} : Place{false, t};
    return t >= d ? Place{true, t - d} : Place{false, t};
}
Place pushPlace(int mode, int n, int offset, int t) {
    const int k = mode == 2 ? n - cells(offset, n - 1) : cells(offset, n - 1);
    return t < k ? Place{false, n - k + t} : Place{true, t - k};
}

struct Reference {
    Picture picture;
    krl::Plane movedAlpha;
};

Reference reference(const Module& m, const Picture& main, const Picture& src, const krl::Plane& alpha, int i,
                    int S, int E) {
    const int W = main.width(), H = main.height();
    const bool horizontal = m.mode <= 2;
    const int size = horizontal ? W : H;
    const double share = m.rising ? double(i - S) / double(E - S) : double(E - i) / double(E - S);
    const int offset = rne(share * size);
    const Picture& a = m.sourceFirst ? src : main;
    const Picture& b = m.sourceFirst ? main : src;
    Reference out{Picture(W, H), krl::Plane(W, H)};
    const int n = size + 1;
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const int t = horizontal ? x : y;
            const Place p = m.op == Op::Push ? pushPlace(m.mode, n, offset, t)
                                             : slidePlace(m.mode, n, cells(offset, size), t);
            const int sx = horizontal ? p.t : x, sy = horizontal ? y : p.t;
            const Picture& from = p.fromB ? b : a;
            copyPixel(out.picture, x, y, from, sx, sy);
            out.movedAlpha.at(x, y) = p.fromB ? alpha.at(sx, sy) : 0;
        }
    if (m.op == Op::AlphaSlide) // an opaque moved alpha shows the frame, a clear one the slide
        for (int y = 0; y <= H; ++y)
            for (int x = 0; x <= W; ++x)
                if (out.movedAlpha.at(x, y) == 255) copyPixel(out.picture, x, y, main, x, y);
    return out;
}

// The modules as the dialogs name them, with the motion each makes.
const Module kModules[] = {
    {"Push2LeftTo", Push2LeftTo, Op::Push, false, true, 2, 1, 0},
    {"Push2LeftFrom", Push2LeftFrom, Op::Push, true, true, 2, 0, -1},
    {"Push2RightTo", Push2RightTo, Op::Push, true, true, 1, 1, 0},
    {"Push2RightFrom", Push2RightFrom, Op::Push, false, true, 1, 0, -1},
    {"PushUpwardTo", PushUpwardTo, Op::Push, false, false, 3, 0, 0},
    {"PushUpwardFrom", PushUpwardFrom, Op::Push, true, false, 3, 0, 0},
    {"PushDownwardTo", PushDownwardTo, Op::Push, true, true, 4, 1, 0},
    {"PushDownwardFrom", PushDownwardFrom, Op::Push, false, true, 3, 0, 0},
    {"SlideInFromLeftTo", SlideInFromLeftTo, Op::Slide, false, false, 1, 1, 0},
    {"SlideInFromLeftFrom", SlideInFromLeftFrom, Op::Slide, true, false, 1, 0, -1},
    {"SlideOut2LeftTo", SlideOut2LeftTo, Op::Slide, true, true, 1, 1, 0},
    {"SlideOut2LeftFrom", SlideOut2LeftFrom, Op::Slide, false, true, 1, 0, -1},
    {"SlideInFromRightTo", SlideInFromRightTo, Op::Slide, false, false, 2, 1, 0},
    {"SlideInFromRightFrom", SlideInFromRightFrom, Op::Slide, true, false, 2, 0, -1},
    {"SlideOut2RightTo", SlideOut2RightTo, Op::Slide, true, true, 2, 1, 0},
    {"SlideOut2RightFrom", SlideOut2RightFrom, Op::Slide, false, true, 2, 0, -1},
    {"SlideInFromTopTo", SlideInFromTopTo, Op::Slide, false, false, 3, 0, 0},
    {"SlideInFromTopFrom", SlideInFromTopFrom, Op::Slide, true, false, 3, 0, 0},
    {"SlideOut2TopTo", SlideOut2TopTo, Op::Slide, true, true, 3, 1, 0},
    {"SlideOut2TopFrom", SlideOut2TopFrom, Op::Slide, false, true, 3, 0, 0},
    {"SlideInFromBottomTo", SlideInFromBottomTo, Op::Slide, false, false, 4, 0, 0},
    {"SlideInFromBottomFrom", SlideInFromBottomFrom, Op::Slide, true, false, 4, 0, 0},
    {"SlideOut2BottomTo", SlideOut2BottomTo, Op::Slide, true, true, 4, 1, 0},
    {"SlideOut2BottomFrom", SlideOut2BottomFrom, Op::Slide, false, true, 4, 0, 0},
    {"ASlideInFromLeftTo", ASlideInFromLeftTo, Op::AlphaSlide, false, false, 1, 0, 0},
    {"ASlideInFromLeftFrom", ASlideInFromLeftFrom, Op::AlphaSlide, true, false, 1, 0, 0},
    {"ASlideOut2LeftTo", ASlideOut2LeftTo, Op::AlphaSlide, true, true, 1, 0, 0},
    {"ASlideOut2LeftFrom", ASlideOut2LeftFrom, Op::AlphaSlide, false, true, 1, 0, 0},
    {"ASlideInFromRightTo", ASlideInFromRightTo, Op::AlphaSlide, false, false, 2, 0, 0},
    {"ASlideInFromRightFrom", ASlideInFromRightFrom, Op::AlphaSlide, true, false, 2, 0, 0},
    {"ASlideOut2RightTo", ASlideOut2RightTo, Op::AlphaSlide, true, true, 2, 0, 0},
    {"ASlideOut2RightFrom", ASlideOut2RightFrom, Op::AlphaSlide, false, true, 2, 0, 0},
    {"ASlideInFromTopTo", ASlideInFromTopTo, Op::AlphaSlide, false, false, 3, 0, 0},
    {"ASlideInFromTopFrom", ASlideInFromTopFrom, Op::AlphaSlide, true, false, 3, 0, 0},
    {"ASlideOut2TopTo", ASlideOut2TopTo, Op::AlphaSlide, true, true, 3, 0, 0},
    {"ASlideOut2TopFrom", ASlideOut2TopFrom, Op::AlphaSlide, false, true, 3, 0, 0},
    {"ASlideInFromBottomTo", ASlideInFromBottomTo, Op::AlphaSlide, false, false, 4, 0, 0},
    {"ASlideInFromBottomFrom", ASlideInFromBottomFrom, Op::AlphaSlide, true, false, 4, 0, 0},
    {"ASlideOut2BottomTo", ASlideOut2BottomTo, Op::AlphaSlide, true, true, 4, 0, 0},
    {"ASlideOut2BottomFrom", ASlideOut2BottomFrom, Op::AlphaSlide, false, true, 4, 0, 0},
};

struct Size {
    int w, h;
};

class MoveReference : public TransitionTest, public testing::WithParamInterface<std::tuple<Module, Size>> {
  protected:
    static constexpr int S = 1, E = 5;
    // Seven patterned frames, a patterned source and an alpha of opaque and clear blocks.
    void prepare(int w, int h) {
        load(7, w, h);
        source = patternPicture(w, h, 101);
        host().loadSwap(source);
        alpha = krl::Plane(w, h);
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x)
                alpha.at(x, y) = ((x / 3 + y / 2) % 2) ? 255 : 0;
        host().setAlpha(alpha);
        trace.clear();
    }
    Picture source;
    krl::Plane alpha;
};

TEST_P(MoveReference, EveryFrameIsTheNamedMotion) {
    const auto& [m, size] = GetParam();
    prepare(size.w, size.h);
    m.run(S, E, "Swap");
    const int first = S + m.firstFromStart, last = E + m.lastFromEnd;
    for (int i = 0; i < 7; ++i) {
        const bool made = i >= first && i <= last;
        const Picture want =
            made ? reference(m, original[static_cast<std::size_t>(i)], source, alpha, i, S, E).picture
                 : original[static_cast<std::size_t>(i)];
        EXPECT_EQ(frame(i), want) << m.name << " frame " << i << (made ? " (made)" : " (untouched)");
    }
    std::vector<std::string> visits;
    for (int i = first; i <= last; ++i)
        visits.push_back("Van_GotoFrame(" + std::to_string(i) + ")");
    EXPECT_EQ(calls("Van_GotoFrame"), visits) << "the frames the module makes";
    // The ends: a To run arrives on the source; a From run leaves from it and arrives on the frame.
    const bool to = std::string(m.name).ends_with("To");
    if (m.op != Op::AlphaSlide) {
        if (to) {
            EXPECT_EQ(frame(E), source);
        } else {
            EXPECT_EQ(frame(S), source);
            EXPECT_EQ(frame(E), original[E]);
        }
    }
    EXPECT_FALSE(host().locked());
}

INSTANTIATE_TEST_SUITE_P(Moves, MoveReference,
                         testing::Combine(testing::ValuesIn(kModules),
                                          testing::Values(Size{16, 10}, Size{15, 11})),
                         [](const testing::TestParamInfo<std::tuple<Module, Size>>& i) {
                             const Size s = std::get<1>(i.param);
                             return std::string(std::get<0>(i.param).name) + "_" + std::to_string(s.w) + "x" +
                                    std::to_string(s.h);
                         });

class MoveRuns : public MoveReference {};

TEST_F(MoveRuns, OffsetsRoundHalfToEven) {
    // Bounds 16 x 10 over a span of 4: the rising vertical offset goes 0, 2 (2.5), 5, 8 (7.5), 10, and
    // the horizontal one 0, 4, 8, 12, 16.
    prepare(16, 10);
    SlideOut2TopTo(S, E, "Swap");
    for (const auto& [i, rows] : {std::pair{2, 2}, {3, 5}, {4, 8}}) {
        // Rows 0..H - rows of the moving frame lie `rows` rows higher; the source shows below.
        EXPECT_EQ(frame(i).r.at(3, 0), original[static_cast<std::size_t>(i)].r.at(3, rows)) << i;
        EXPECT_EQ(frame(i).r.at(3, 10 - rows + 1), source.r.at(3, 10 - rows + 1)) << i;
    }
}

TEST_F(MoveRuns, TheDownwardPairMovesBothWaysOnOneGeometry) {
    // The To run takes mode 4 and the From run mode 3: at the same frame of the same range they show
    // the same strip with the pictures' places swapped.
    prepare(12, 9);
    PushDownwardTo(S, E, "Swap");
    const Picture to3 = frame(3);
    prepare(12, 9);
    PushDownwardFrom(S, E, "Swap");
    const Picture from3 = frame(3);
    // Half way (u = 4.5 -> 4 rows): To shows the source's last four rows on top of the frame.
    EXPECT_EQ(to3.r.at(0, 0), source.r.at(0, 9 + 1 - 4));
    EXPECT_EQ(to3.r.at(0, 4), original[3].r.at(0, 0));
    EXPECT_EQ(from3.r.at(0, 0), original[3].r.at(0, 9 + 1 - 4));
    EXPECT_EQ(from3.r.at(0, 4), source.r.at(0, 0));
}

TEST_F(MoveRuns, TheAlphaSlideMakesItsOwnClearAlphaAndFetchesTheFrameTwice) {
    prepare(10, 8);
    ASlideInFromRightTo(S, E, "Swap");
    const std::size_t frames = E - S + 1;
    EXPECT_EQ(calls("Van_GetABuffer").size(), frames);
    EXPECT_EQ(calls("Van_GetRBuffer").size(), 2 * frames) << "the frame, then the frame again for the mix";
    EXPECT_EQ(calls("Van_GetSwapRBuffer").size(), 1u) << "the source is read once and kept";
}

TEST_F(MoveRuns, AClearAlphaLeavesThePlainSlide) {
    prepare(11, 7);
    host().fillAlpha(0);
    ASlideOut2RightTo(S, E, "Swap");
    std::vector<Picture> alphaRun;
    for (int i = 0; i < 7; ++i)
        alphaRun.push_back(frame(i));
    prepare(11, 7);
    SlideOut2RightTo(S, E, "Swap");
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(alphaRun[static_cast<std::size_t>(i)], frame(i)) << i;
}

TEST_F(MoveRuns, ASourceWrittenByTheCallIsFreshOnEveryFrame) {
    // "Primary Color" is made once before the loop; the slide out writes over it, so a run that did
    // not restore it would carry the frame's pixels into later frames.
    prepare(9, 6);
    host().setPrimaryColor(200, 30, 60);
    SlideOut2BottomTo(S, E, "Primary Color");
    const Picture red = Picture::filled(9, 6, host::packColor(200, 30, 60));
    EXPECT_EQ(frame(E), red);
    // Frame 4: u = 4.5 -> 4 rows of colour on top, the frame moved down below them.
    EXPECT_EQ(frame(4).r.at(2, 3), 200);
    EXPECT_EQ(frame(4).r.at(2, 4), original[4].r.at(2, 0));
}

TEST_F(MoveRuns, StoredTwinsSplice) {
    prepare(12, 8);
    const auto slot = writeSlot(1, 6, 12, 8);
    Push2RightToStored(3, 1);
    ASSERT_EQ(host().totalFrames(), 3 + 6);
    EXPECT_EQ(frame(3), original[3]) << "the overlap starts on the animation";
    EXPECT_EQ(frame(6), slot[3]) << "and ends on the stored frame that meets it";
    EXPECT_EQ(frame(8), slot[5]);

    prepare(12, 8);
    writeSlot(2, 6, 12, 8);
    ASlideInFromLeftFromStored(4, 2);
    ASSERT_EQ(host().totalFrames(), 7 + (6 - 5));
    EXPECT_EQ(frame(0), slot[0]);

    prepare(12, 8);
    writeSlot(0, 6, 12, 8);
    SlideInFromLeftFromStored(4, 0);
    ASSERT_EQ(host().totalFrames(), 8);
    EXPECT_EQ(frame(1), slot[1]) << "the overlap starts on the stored frame";
    EXPECT_EQ(frame(5), original[4]) << "and ends on the animation";
}

} // namespace
} // namespace kirrel::test
