// The moving modules against pictures computed here from what each names. Pushes, slides and alpha
// slides: which picture moves, by how much (rounded half to even) and which way. Rows, columns, boxes,
// crosses and doors: the rectangle painted pixel by pixel from its size (rounded half to even after the
// halving), the doors' leaf width and mode. Every module runs on an even and an odd size over a
// patterned swap (the openings also over the primary colour and a source filtered from each frame),
// and its stored twin splices with a slot.

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/AlphaSlides.h"
#include "transitions/Boxes.h"
#include "transitions/Crosses.h"
#include "transitions/Doors.h"
#include "transitions/Pushes.h"
#include "transitions/RowsColumns.h"
#include "transitions/Slides.h"
#include "transitions/TransitionSupport.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

// --- Pushes, slides and alpha slides ---------------------------------------------------------------

enum class Op { Push, Slide, AlphaSlide };

struct Motion {
    std::string name;
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

Reference reference(const Motion& m, const Picture& main, const Picture& src, const krl::Plane& alpha, int i,
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
const Motion kPushes[] = {
    {"Push2LeftTo", Push2LeftTo, Op::Push, false, true, 2, 1, 0},
    {"Push2LeftFrom", Push2LeftFrom, Op::Push, true, true, 2, 0, -1},
    {"Push2RightTo", Push2RightTo, Op::Push, true, true, 1, 1, 0},
    {"Push2RightFrom", Push2RightFrom, Op::Push, false, true, 1, 0, -1},
    {"PushUpwardTo", PushUpwardTo, Op::Push, false, false, 3, 0, 0},
    {"PushUpwardFrom", PushUpwardFrom, Op::Push, true, false, 3, 0, 0},
    {"PushDownwardTo", PushDownwardTo, Op::Push, true, true, 4, 1, 0},
    {"PushDownwardFrom", PushDownwardFrom, Op::Push, false, true, 3, 0, 0},
};
// Each alpha slide moves as its plain fellow does, but makes every frame of the run.
const std::pair<Motion, void (*)(int, int, const std::string&)> kSlides[] = {
    {{"SlideInFromLeftTo", SlideInFromLeftTo, Op::Slide, false, false, 1, 1, 0}, ASlideInFromLeftTo},
    {{"SlideInFromLeftFrom", SlideInFromLeftFrom, Op::Slide, true, false, 1, 0, -1}, ASlideInFromLeftFrom},
    {{"SlideOut2LeftTo", SlideOut2LeftTo, Op::Slide, true, true, 1, 1, 0}, ASlideOut2LeftTo},
    {{"SlideOut2LeftFrom", SlideOut2LeftFrom, Op::Slide, false, true, 1, 0, -1}, ASlideOut2LeftFrom},
    {{"SlideInFromRightTo", SlideInFromRightTo, Op::Slide, false, false, 2, 1, 0}, ASlideInFromRightTo},
    {{"SlideInFromRightFrom", SlideInFromRightFrom, Op::Slide, true, false, 2, 0, -1}, ASlideInFromRightFrom},
    {{"SlideOut2RightTo", SlideOut2RightTo, Op::Slide, true, true, 2, 1, 0}, ASlideOut2RightTo},
    {{"SlideOut2RightFrom", SlideOut2RightFrom, Op::Slide, false, true, 2, 0, -1}, ASlideOut2RightFrom},
    {{"SlideInFromTopTo", SlideInFromTopTo, Op::Slide, false, false, 3, 0, 0}, ASlideInFromTopTo},
    {{"SlideInFromTopFrom", SlideInFromTopFrom, Op::Slide, true, false, 3, 0, 0}, ASlideInFromTopFrom},
    {{"SlideOut2TopTo", SlideOut2TopTo, Op::Slide, true, true, 3, 1, 0}, ASlideOut2TopTo},
    {{"SlideOut2TopFrom", SlideOut2TopFrom, Op::Slide, false, true, 3, 0, 0}, ASlideOut2TopFrom},
    {{"SlideInFromBottomTo", SlideInFromBottomTo, Op::Slide, false, false, 4, 0, 0}, ASlideInFromBottomTo},
    {{"SlideInFromBottomFrom", SlideInFromBottomFrom, Op::Slide, true, false, 4, 0, 0},
     ASlideInFromBottomFrom},
    {{"SlideOut2BottomTo", SlideOut2BottomTo, Op::Slide, true, true, 4, 1, 0}, ASlideOut2BottomTo},
    {{"SlideOut2BottomFrom", SlideOut2BottomFrom, Op::Slide, false, true, 4, 0, 0}, ASlideOut2BottomFrom},
};
const std::vector<Motion> kMotions = [] {
    std::vector<Motion> out(std::begin(kPushes), std::end(kPushes));
    for (const auto& [m, alpha] : kSlides) {
        out.push_back(m);
        out.push_back({"A" + m.name, alpha, Op::AlphaSlide, m.sourceFirst, m.rising, m.mode, 0, 0});
    }
    return out;
}();

// --- Rows, columns, boxes, crosses and doors ----------------------------------------------------------

enum class Geo { Rows, Columns, Box, Cross, HDoor, VDoor };

// What an end frame holds when the module does not call the operation there.
enum class Held { Call, Source, Frame };

struct Opening {
    const char* name;
    void (*run)(int, int, const std::string&);
    void (*stored)(int, int); // the stored twin: (Start, slot) for To, (End, slot) for From
    Geo geo;
    bool sourceFirst; // the operation lays the frame over the source, rather than the other way
    bool opening;     // the size falls to 0 at End, rather than rising from 0 at Start
    int first;        // first frame made: Start + first
    int last;         // last frame made: End + last
    Held atStart, atEnd;
    bool to() const { return std::string(name).ends_with("To"); }
};

int halfOf(double share, int size) {
    return rne(share * size / 2.0);
}

bool inside(Geo g, int x, int y, int a, int b, int W, int H) {
    const bool inColumns = x >= a && x <= W - a;
    const bool inRows = y >= b && y <= H - b;
    switch (g) {
    case Geo::Rows:
        return inRows;
    case Geo::Columns:
        return inColumns;
    case Geo::Box:
        return inColumns && inRows;
    default:
        return inColumns || inRows;
    }
}

// Frame i of a module run over S..E, with the frame `main` and the source `src` that meet there.
Picture expected(const Opening& m, const Picture& main, const Picture& src, int i, int S, int E) {
    if (i < S + m.first || i > E + m.last) return main;
    if (i == S && m.atStart != Held::Call) return m.atStart == Held::Source ? src : main;
    if (i == E && m.atEnd != Held::Call) return m.atEnd == Held::Source ? src : main;
    const int W = main.width(), H = main.height();
    const double share = m.opening ? double(E - i) / double(E - S) : double(i - S) / double(E - S);
    const int a = halfOf(share, W), b = halfOf(share, H);
    const Picture& base = m.sourceFirst ? src : main;
    const Picture& over = m.sourceFirst ? main : src;
    Picture out = base;
    if (m.geo == Geo::HDoor || m.geo == Geo::VDoor) {
        // The leaves' own picture is the operation's business; the module gives it the pictures,
        // the leaf and the mode.
        const bool h = m.geo == Geo::HDoor;
        krl::DoorMix(out.r, out.g, out.b, over.r, over.g, over.b, W, H, h ? a : b, h ? 1 : 2);
        return out;
    }
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x)
            if (inside(m.geo, x, y, a, b, W, H)) copyPixel(out, x, y, over, x, y);
    return out;
}

constexpr Held C = Held::Call, Src = Held::Source, Frm = Held::Frame;

const Opening kOpenings[] = {
    {"RowOpenTo", RowOpenTo, RowOpen2Stored, Geo::Rows, false, true, 1, 0, C, C},
    {"RowOpenFrom", RowOpenFrom, RowOpenFromStored, Geo::Rows, true, true, 0, 0, Src, C},
    {"RowCloseTo", RowCloseTo, RowClose2Stored, Geo::Rows, true, false, 1, 0, C, Src},
    {"RowCloseFrom", RowCloseFrom, RowCloseFromStored, Geo::Rows, false, false, 0, 0, C, Frm},
    {"ColumnOpenTo", ColumnOpenTo, ColumnOpen2Stored, Geo::Columns, false, true, 0, 0, C, C},
    {"ColumnOpenFrom", ColumnOpenFrom, ColumnOpenFromStored, Geo::Columns, true, true, 0, 0, C, C},
    {"ColumnCloseTo", ColumnCloseTo, ColumnClose2Stored, Geo::Columns, true, false, 0, 0, C, C},
    {"ColumnCloseFrom", ColumnCloseFrom, ColumnCloseFromStored, Geo::Columns, false, false, 0, 0, C, C},
    {"BoxOpenTo", BoxOpenTo, BoxOpen2Stored, Geo::Box, false, true, 1, 0, C, C},
    {"BoxOpenFrom", BoxOpenFrom, BoxOpenFromStored, Geo::Box, true, true, 0, 0, Src, C},
    {"BoxCloseTo", BoxCloseTo, BoxClose2Stored, Geo::Box, true, false, 0, 0, C, C},
    {"BoxCloseFrom", BoxCloseFrom, BoxCloseFromStored, Geo::Box, false, false, 0, 0, C, C},
    {"CrossOpenTo", CrossOpenTo, CrossOpen2Stored, Geo::Cross, false, true, 1, 0, C, C},
    {"CrossOpenFrom", CrossOpenFrom, CrossOpenFromStored, Geo::Cross, true, true, 0, -1, Src, C},
    {"CrossCloseTo", CrossCloseTo, CrossClose2Stored, Geo::Cross, true, false, 1, 0, C, Src},
    {"CrossCloseFrom", CrossCloseFrom, CrossCloseFromStored, Geo::Cross, false, false, 0, 0, C, Frm},
    {"HDoorOpenTo", HDoorOpenTo, HDoorOpen2Stored, Geo::HDoor, true, true, 1, 0, C, C},
    {"HDoorOpenFrom", HDoorOpenFrom, HDoorOpenFromStored, Geo::HDoor, false, true, 0, 0, Src, C},
    {"HDoorCloseTo", HDoorCloseTo, HDoorClose2Stored, Geo::HDoor, false, false, 0, 0, Frm, Src},
    {"HDoorCloseFrom", HDoorCloseFrom, HDoorCloseFromStored, Geo::HDoor, true, false, 0, 0, Src, Frm},
    {"VDoorOpenTo", VDoorOpenTo, VDoorOpen2Stored, Geo::VDoor, true, true, 1, 0, C, C},
    {"VDoorOpenFrom", VDoorOpenFrom, VDoorOpenFromStored, Geo::VDoor, false, true, 0, 0, Src, C},
    {"VDoorCloseTo", VDoorCloseTo, VDoorClose2Stored, Geo::VDoor, false, false, 0, 0, Frm, Src},
    {"VDoorCloseFrom", VDoorCloseFrom, VDoorCloseFromStored, Geo::VDoor, true, false, 0, 0, Src, Frm},
};

bool isDoor(const Opening& m) {
    return m.geo == Geo::HDoor || m.geo == Geo::VDoor;
}

// Every module's frames: those it makes are the reference, the others stay, and it visits only the
// frames it makes, from a source that is the run's own copy.
class MovingFixture : public ReferenceTest {
  protected:
    // Also an alpha of opaque and clear blocks, and a primary colour.
    void prepare(int w, int h) {
        ReferenceTest::prepare(w, h);
        alpha = krl::Plane(w, h);
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x)
                alpha.at(x, y) = ((x / 3 + y / 2) % 2) ? 255 : 0;
        host().setAlpha(alpha);
        host().setPrimaryColor(200, 30, 60);
        colour = Picture::filled(w, h, host::packColor(200, 30, 60));
        trace.clear();
    }
    krl::Plane alpha;
    Picture colour;
};

template <class Row> std::string rowName(const testing::TestParamInfo<std::tuple<Row, Size>>& i) {
    return std::string(std::get<0>(i.param).name) + "_" + sizeName(std::get<1>(i.param));
}
// 13 wide tells rounding half to even from half up (6.5 gives 6), 11 high tells it from truncation.
const auto kSizes = testing::Values(Size{16, 10}, Size{13, 11});

enum class Source { Swap, Colour, Negative };
const char* sourceName(Source s) {
    return s == Source::Swap ? "Swap" : s == Source::Colour ? "Primary Color" : "Negative";
}

class MoveReference : public MovingFixture,
                      public testing::WithParamInterface<std::tuple<Motion, Size, Source>> {};

// Over the colour too: it is made once before the loop and a slide out writes over it, so a run that
// did not restore it would carry the frame's pixels into later frames.
TEST_P(MoveReference, EveryFrameIsTheNamedMotion) {
    const auto& [m, size, src] = GetParam();
    prepare(size.w, size.h);
    const Picture& from = src == Source::Swap ? source : colour;
    m.run(S, E, sourceName(src));
    expectRun(S + m.firstFromStart, E + m.lastFromEnd, [&](int i) {
        return reference(m, original[static_cast<std::size_t>(i)], from, alpha, i, S, E).picture;
    });
    if (m.op != Op::AlphaSlide) {
        expectEnds(m.name.ends_with("To"), from);
    } else {
        // The alpha slide makes its own clear alpha and fetches the frame again for the mix.
        const std::size_t made = E - S + 1;
        EXPECT_EQ(calls("Van_GetABuffer").size(), made);
        EXPECT_EQ(calls("Van_GetRBuffer").size(), 2 * made);
    }
    EXPECT_LE(calls("Van_GetSwapRBuffer").size(), 1u) << "the source is read once and kept";
}

INSTANTIATE_TEST_SUITE_P(Moves, MoveReference,
                         testing::Combine(testing::ValuesIn(kMotions), kSizes,
                                          testing::Values(Source::Swap, Source::Colour)),
                         [](const auto& i) {
                             return std::string(std::get<0>(i.param).name) + "_" +
                                    sizeName(std::get<1>(i.param)) +
                                    (std::get<2>(i.param) == Source::Swap ? "_Swap" : "_Colour");
                         });

using OpeningParam = std::tuple<Opening, Size, Source>;

class OpeningReference : public MovingFixture, public testing::WithParamInterface<OpeningParam> {
  protected:
    Picture sourceFor(Source s, int i) const {
        if (s == Source::Swap) return source;
        if (s == Source::Colour) return colour;
        Picture n = original[static_cast<std::size_t>(i)];
        krl::Negative(n.r, n.g, n.b, n.width() + 1, n.height() + 1);
        return n;
    }
};

TEST_P(OpeningReference, EveryFrameIsTheNamedShape) {
    const auto& [m, size, src] = GetParam();
    prepare(size.w, size.h);
    m.run(S, E, sourceName(src));
    expectRun(S + m.first, E + m.last, [&](int i) {
        return expected(m, original[static_cast<std::size_t>(i)], sourceFor(src, i), i, S, E);
    });
    // Whatever the leaves give, a door's ends are whole pictures; an odd size does not leave a seam.
    if (isDoor(m) && src == Source::Swap) expectEnds(m.to(), source);
}

// Every module on both sizes with each source its dialog offers: the doors take no filtered one.
std::vector<OpeningParam> openingCases() {
    std::vector<OpeningParam> out;
    for (const Opening& m : kOpenings)
        for (const Size s : {Size{16, 10}, Size{13, 11}})
            for (const Source src : {Source::Swap, Source::Colour, Source::Negative})
                if (!isDoor(m) || src != Source::Negative) out.emplace_back(m, s, src);
    return out;
}

INSTANTIATE_TEST_SUITE_P(Openings, OpeningReference, testing::ValuesIn(openingCases()),
                         [](const testing::TestParamInfo<OpeningParam>& info) {
                             std::string name = std::string(std::get<0>(info.param).name) + "_" +
                                                sizeName(std::get<1>(info.param)) + "_" +
                                                sourceName(std::get<2>(info.param));
                             std::erase(name, ' ');
                             return name;
                         });

class OpeningStored : public MovingFixture, public testing::WithParamInterface<std::tuple<Opening, Size>> {};

// To from frame 2 meets frames 2..6 with stored 0..4 and appends 5, 6; From up to frame 4 puts
// stored 0, 1 in front.
TEST_P(OpeningStored, TwinsKeepTheGeometryOverTheOverlap) {
    const auto& [m, size] = GetParam();
    prepare(size.w, size.h);
    const auto slot = writeSlot(2, kFrames, size.w, size.h);
    m.stored(m.to() ? 2 : 4, 2);
    expectSplice(m.to(), m.to() ? 2 : 4, slot, [&](const Picture& f, const Picture& st, int i, int a, int b) {
        return expected(m, f, st, i, a, b);
    });
}

INSTANTIATE_TEST_SUITE_P(Openings, OpeningStored, testing::Combine(testing::ValuesIn(kOpenings), kSizes),
                         rowName<Opening>);

} // namespace
} // namespace kirrel::test
