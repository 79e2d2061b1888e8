// Rows, columns, boxes, crosses and doors against pictures computed here: the rectangle each module
// names is painted pixel by pixel from its size (rounded half to even after the halving), the doors
// take the leaf width and mode the module names. Every module runs on an even and an odd size, over a
// patterned swap, the primary colour and, where offered, a source filtered from each frame, and its
// stored twin splices with a slot of the same geometry.

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/Boxes.h"
#include "transitions/Crosses.h"
#include "transitions/Doors.h"
#include "transitions/RowsColumns.h"
#include "transitions/TransitionSupport.h"

#include <cmath>
#include <string>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

enum class Geo { Rows, Columns, Box, Cross, HDoor, VDoor };

// What an end frame holds when the module does not call the operation there.
enum class Held { Call, Source, Frame };

struct Module {
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

void PrintTo(const Module& m, std::ostream* os) {
    *os << m.name;
}

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
Picture expected(const Module& m, const Picture& main, const Picture& src, int i, int S, int E) {
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

const Module kModules[] = {
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

bool isDoor(const Module& m) {
    return m.geo == Geo::HDoor || m.geo == Geo::VDoor;
}

struct Size {
    int w, h;
};

enum class Source { Swap, Colour, Negative };
const char* sourceText(Source s) {
    return s == Source::Swap ? "Swap" : s == Source::Colour ? "Primary Color" : "Negative";
}

class OpeningFixture : public TransitionTest {
  protected:
    static constexpr int S = 1, E = 5, kFrames = 7;
    void prepare(int w, int h) {
        load(kFrames, w, h);
        swap = patternPicture(w, h, 101);
        host().loadSwap(swap);
        host().setPrimaryColor(200, 30, 60);
        colour = Picture::filled(w, h, host::packColor(200, 30, 60));
        trace.clear();
    }
    Picture sourceFor(Source s, int i) const {
        if (s == Source::Swap) return swap;
        if (s == Source::Colour) return colour;
        Picture n = original[static_cast<std::size_t>(i)];
        krl::Negative(n.r, n.g, n.b, n.width() + 1, n.height() + 1);
        return n;
    }
    Picture swap, colour;
};

using Param = std::tuple<Module, Size, Source>;

class OpeningReference : public OpeningFixture, public testing::WithParamInterface<Param> {};

TEST_P(OpeningReference, EveryFrameIsTheNamedShape) {
    const auto& [m, size, source] = GetParam();
    prepare(size.w, size.h);
    m.run(S, E, sourceText(source));
    for (int i = 0; i < kFrames; ++i) {
        const auto k = static_cast<std::size_t>(i);
        EXPECT_EQ(frame(i), expected(m, original[k], sourceFor(source, i), i, S, E))
            << m.name << " frame " << i;
    }
    std::vector<std::string> visits;
    for (int i = S + m.first; i <= E + m.last; ++i)
        visits.push_back("Van_GotoFrame(" + std::to_string(i) + ")");
    EXPECT_EQ(calls("Van_GotoFrame"), visits) << "the frames the module makes";
    EXPECT_EQ(host().swapPicture(), swap) << "the source is the run's own copy";
    EXPECT_FALSE(host().locked());
}

std::string paramName(const testing::TestParamInfo<Param>& info) {
    const Module& m = std::get<0>(info.param);
    const Size s = std::get<1>(info.param);
    const Source src = std::get<2>(info.param);
    const char* tag = src == Source::Swap ? "Swap" : src == Source::Colour ? "Colour" : "Negative";
    return std::string(m.name) + "_" + std::to_string(s.w) + "x" + std::to_string(s.h) + "_" + tag;
}

// Every module on both sizes with each source its dialog offers: the doors take no filtered one.
std::vector<Param> referenceCases() {
    std::vector<Param> out;
    for (const Module& m : kModules)
        for (const Size s : {Size{16, 10}, Size{15, 11}})
            for (const Source src : {Source::Swap, Source::Colour, Source::Negative})
                if (!isDoor(m) || src != Source::Negative) out.emplace_back(m, s, src);
    return out;
}

INSTANTIATE_TEST_SUITE_P(Openings, OpeningReference, testing::ValuesIn(referenceCases()), paramName);

class OpeningStored : public OpeningFixture, public testing::WithParamInterface<std::tuple<Module, Size>> {};

TEST_P(OpeningStored, TwinsKeepTheGeometryOverTheOverlap) {
    const auto& [m, size] = GetParam();
    prepare(size.w, size.h);
    const auto slot = writeSlot(2, kFrames, size.w, size.h);
    if (m.to()) {
        // Start 2: the overlap is frames 2..6 against stored frames 0..4; 5 and 6 are appended.
        const int start = 2, end = kFrames - 1;
        m.stored(start, 2);
        ASSERT_EQ(host().totalFrames(), start + kFrames);
        for (int i = 0; i < start; ++i)
            EXPECT_EQ(frame(i), original[static_cast<std::size_t>(i)]) << i;
        for (int i = start; i <= end; ++i)
            EXPECT_EQ(frame(i), expected(m, original[static_cast<std::size_t>(i)],
                                         slot[static_cast<std::size_t>(i - start)], i, start, end))
                << m.name << " frame " << i;
        for (int k = end - start + 1; k < kFrames; ++k)
            EXPECT_EQ(frame(start + k), slot[static_cast<std::size_t>(k)]) << "appended " << k;
    } else {
        // End 4: stored frames 0 and 1 go in front, the overlap 2..6 meets stored frames 2..6.
        const int end = 4, extra = kFrames - (end + 1);
        m.stored(end, 2);
        ASSERT_EQ(host().totalFrames(), kFrames + extra);
        for (int k = 0; k < extra; ++k)
            EXPECT_EQ(frame(k), slot[static_cast<std::size_t>(k)]) << "in front " << k;
        for (int i = extra; i <= extra + end; ++i)
            EXPECT_EQ(frame(i), expected(m, original[static_cast<std::size_t>(i - extra)],
                                         slot[static_cast<std::size_t>(i)], i, extra, extra + end))
                << m.name << " frame " << i;
        for (int j = end + 1; j < kFrames; ++j)
            EXPECT_EQ(frame(j + extra), original[static_cast<std::size_t>(j)]) << "after " << j;
    }
    EXPECT_FALSE(host().locked());
}

INSTANTIATE_TEST_SUITE_P(Openings, OpeningStored,
                         testing::Combine(testing::ValuesIn(kModules),
                                          testing::Values(Size{16, 10}, Size{15, 11})),
                         [](const testing::TestParamInfo<std::tuple<Module, Size>>& i) {
                             const Size s = std::get<1>(i.param);
                             return std::string(std::get<0>(i.param).name) + "_" + std::to_string(s.w) + "x" +
                                    std::to_string(s.h);
                         });

class OpeningRuns : public OpeningFixture {};

TEST_F(OpeningRuns, TheColumnRunStartsAtStartWhereRowsAndBoxesWait) {
    // Bounds 16: a = round(16 / 2.0) = 8 at Start, so the column run's first frame shows column 8 of
    // the source; the row and box runs leave that frame alone.
    prepare(16, 10);
    ColumnOpenTo(S, E, "Swap");
    for (int y : {0, 5, 10}) {
        EXPECT_EQ(frame(S).r.at(8, y), swap.r.at(8, y));
        EXPECT_EQ(frame(S).r.at(7, y), original[S].r.at(7, y));
        EXPECT_EQ(frame(S).r.at(9, y), original[S].r.at(9, y));
    }
    for (auto run : {RowOpenTo, BoxOpenTo, CrossOpenTo}) {
        prepare(16, 10);
        run(S, E, "Swap");
        EXPECT_EQ(frame(S), original[S]);
    }
}

TEST_F(OpeningRuns, OddSizesRoundTheHalfToEvenOnEitherSideOfTheCentre) {
    // Bounds 13 give round(6.5) = 6: columns 6..7, two of them. Bounds 15 give round(7.5) = 8:
    // columns 8..7, none, so the frame stays whole.
    prepare(13, 8);
    ColumnOpenTo(S, E, "Swap");
    EXPECT_EQ(frame(S).r.at(6, 3), swap.r.at(6, 3));
    EXPECT_EQ(frame(S).r.at(7, 3), swap.r.at(7, 3));
    EXPECT_EQ(frame(S).r.at(5, 3), original[S].r.at(5, 3));
    EXPECT_EQ(frame(S).r.at(8, 3), original[S].r.at(8, 3));
    prepare(15, 8);
    ColumnOpenTo(S, E, "Swap");
    EXPECT_EQ(frame(S), original[S]);
}

TEST_F(OpeningRuns, TheOpeningCrossFromRunLeavesItsLastFrameAlone) {
    prepare(12, 9);
    CrossOpenFrom(S, E, "Swap");
    EXPECT_EQ(frame(S), swap);
    EXPECT_EQ(frame(E), original[E]);
    EXPECT_NE(frame(E - 1), original[E - 1]);
    EXPECT_EQ(calls("Van_SetRbuffer").size(), std::size_t(E - S)) << "frame End is neither read nor written";
}

TEST_F(OpeningRuns, AClosingRunWithoutAGuardEndsOnTheCentreLine) {
    // The closing box has no guard: at End its size is round(W / 2.0) = 8, and BoxMix copies the
    // single pixel (8, 5) of the frame into the source. The guarded closing rows end on the source.
    prepare(16, 10);
    BoxCloseTo(S, E, "Swap");
    Picture want = swap;
    want.r.at(8, 5) = original[E].r.at(8, 5);
    want.g.at(8, 5) = original[E].g.at(8, 5);
    want.b.at(8, 5) = original[E].b.at(8, 5);
    EXPECT_EQ(frame(E), want);
    prepare(16, 10);
    RowCloseTo(S, E, "Swap");
    EXPECT_EQ(frame(E), swap);
}

TEST_F(OpeningRuns, ASourceWrittenByTheCallIsFreshOnEveryFrame) {
    // The closing rows lay a shrinking band of the frame over the source read once before the loop.
    // Were the source not restored, each frame would keep the wider band of the frame before, and the
    // last frame would not be the source.
    prepare(10, 12);
    RowCloseTo(S, E, "Primary Color");
    EXPECT_EQ(frame(E), colour);
    // Frame 4: d = round(3 / 4 * 12 / 2.0) = round(4.5) = 4, so rows 0..3 are colour, 4..8 the frame.
    EXPECT_EQ(frame(4).r.at(2, 3), 200);
    EXPECT_EQ(frame(4).r.at(2, 4), original[4].r.at(2, 4));
    EXPECT_EQ(frame(4).r.at(2, 9), 200);
    // The same holds for the doors, whose opening To run writes the leaves over the source.
    prepare(10, 12);
    HDoorOpenTo(S, E, "Swap");
    EXPECT_EQ(frame(E), swap);
    EXPECT_EQ(host().swapPicture(), swap);
}

TEST_F(OpeningRuns, DoorsEndOnWholePictures) {
    // Whatever the leaves give, a door's To run ends on the source and its From run starts on the
    // source and ends on the animation, exactly; an odd size does not leave a seam.
    for (const Module& m : kModules) {
        if (!isDoor(m)) continue;
        for (const Size s : {Size{15, 11}, Size{16, 10}}) {
            prepare(s.w, s.h);
            m.run(S, E, "Swap");
            if (m.to()) {
                EXPECT_EQ(frame(E), swap) << m.name << " " << s.w;
            } else {
                EXPECT_EQ(frame(S), swap) << m.name << " " << s.w;
                EXPECT_EQ(frame(E), original[E]) << m.name << " " << s.w;
            }
        }
    }
}

} // namespace
} // namespace kirrel::test
