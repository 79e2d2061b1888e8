// The pattern masks against models of their own (the mirrored scans by the cell whose write comes
// last, the sawtooths by their modular formula on a scripted random source, the circles by their
// distance from the centre), and the pattern runs on the host: every member in both plain shapes on an
// odd and an even frame, pixel by pixel, and the stored twins. Odd and even bounds both, since the
// centres round half to even.

#include "transitions/PatternMasks.h"
#include "transitions/Patterns.h"
#include "transitions/TransitionSupport.h"

#include <QImage>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace kirrel::test {
namespace {

using transitions::LinesDirection;

class MaskSizes : public testing::TestWithParam<std::pair<int, int>> {};

// Bounds whose centres round up or land exactly, so that the iris stays within a byte.
INSTANTIATE_TEST_SUITE_P(OddAndEven, MaskSizes,
                         testing::Values(std::pair{8, 6}, std::pair{7, 11}, std::pair{3, 12},
                                         std::pair{16, 15}, std::pair{2, 2}));

TEST_P(MaskSizes, IrisDiamondAndXMatchTheirModels) {
    const auto [W, H] = GetParam();
    const krl::Plane iris = transitions::irisMask(W, H), diamond = transitions::diamondMask(W, H),
                     x = transitions::xMask(W, H);
    const int cx = static_cast<int>(rne(W / 2.0)), cy = static_cast<int>(rne(H / 2.0));
    const int xEnd = static_cast<int>(rne(W / 2.0 + 1.0)), yEnd = static_cast<int>(rne(H / 2.0 + 1.0));
    // Of a cell's mirror images, the one the row-by-row scan reaches last holds its value.
    auto last = [](int v, int mirror, int end) {
        return std::max(v <= end ? v : -1, mirror <= end ? mirror : -1);
    };
    for (int j = 0; j <= H; ++j)
        for (int i = 0; i <= W; ++i) {
            const double dx = std::abs(i - cx) / static_cast<double>(cx);
            const double dy = std::abs(j - cy) / static_cast<double>(cy);
            ASSERT_EQ(iris.at(i, j), rne(std::sqrt(dy * dx) * 255.0)) << i << "," << j;

            const int px = last(i, W - i, xEnd), py = last(j, H - j, yEnd);
            const double a = rne(std::abs(cx - px) / static_cast<double>(cx) * 127.0);
            ASSERT_EQ(diamond.at(i, j), rne(std::abs(cy - py) / static_cast<double>(cy) * 127.0 + a));

            const int qx = std::max(i, W - i), qy = std::max(j, H - j); // the lower right quarter
            const double t = rne(std::abs(double(cx - qx) / W * 255.0 - double(cy - qy) / H * 255.0) * 2);
            ASSERT_EQ(x.at(i, j), std::min(t, 255.0)) << i << "," << j;
        }
    // The iris stays shut along both centre lines to the last: a four-pointed star.
    for (int i = 0; i <= W; ++i)
        EXPECT_EQ(iris.at(i, cy), 0);
}

TEST(PatternMask, OverflowAndTooNarrowFramesAreErrors) {
    // round(2.5) = 2: the far column lies 3 from the centre, 1.5 of the normalised distance.
    EXPECT_THROW(transitions::irisMask(5, 5), std::overflow_error);
    EXPECT_THROW(transitions::irisMask(9, 8), std::overflow_error);
    EXPECT_NO_THROW(transitions::irisMask(7, 7)) << "round(3.5) = 4 keeps every distance within 1";
    // A bound of 1 has its centre at round(0.5) = 0.
    EXPECT_THROW(transitions::irisMask(1, 10), std::domain_error);
    EXPECT_THROW(transitions::diamondMask(10, 1), std::domain_error);
    EXPECT_THROW(transitions::xMask(0, 10), std::domain_error);
    EXPECT_THROW(transitions::circleMask(0, 10), std::out_of_range);
}

TEST(PatternMask, LinesAreSawtoothsThatStartEachLineAtRandom) {
    const float script[] = {0.1f, 0.5f, std::nextafter(1.0f, 0.0f), 0.0f, 0.73f, 0.002f};
    auto start = [&](int k) { return static_cast<int>(rne(script[k % 6] * 255.0f)); };
    for (auto [direction, W, H] : {std::tuple{LinesDirection::ToLeft, 300, 7},
                                   {LinesDirection::ToRight, 299, 6},
                                   {LinesDirection::Up, 5, 290},
                                   {LinesDirection::Down, 8, 301}}) {
        int calls = 0;
        const krl::Plane m = transitions::linesMask(direction, W, H, [&] { return script[calls++ % 6]; });
        for (int y = 0; y <= H; ++y)
            for (int x = 0; x <= W; ++x) {
                int v = 0;
                if (direction == LinesDirection::ToRight) v = (y == 0 ? 0 : start(y - 1)) + x;
                if (direction == LinesDirection::ToLeft) v = (y == 0 ? 255 : start(y - 1)) - x;
                if (direction == LinesDirection::Up) // column 0 is never written
                    v = x == 0 ? 0 : (x == 1 ? 0 : start(x - 2)) + (H - y);
                if (direction == LinesDirection::Down) v = (x == 0 ? 0 : start(x - 1)) + y;
                ASSERT_EQ(m.at(x, y), (v % 256 + 256) % 256) << int(direction) << ": " << x << "," << y;
            }
        EXPECT_EQ(calls, direction == LinesDirection::ToLeft || direction == LinesDirection::ToRight
                             ? H + 1
                             : (direction == LinesDirection::Up ? W : W + 1));
    }
}

using transitions::PatternFamily;

// How a member's mask turns; the blinds and lines have no mask a test can know beforehand.
enum class Kind { Unknown, Open, Close, CircleOpen, CircleClose };

struct Member {
    PatternFamily family;
    int variant;
    Kind kind;
    const char* name;
};

const Member kMembers[] = {
    {PatternFamily::Blinds, 0, Kind::Unknown, "HBlinds"},
    {PatternFamily::Blinds, 1, Kind::Unknown, "VBlinds"},
    {PatternFamily::Diamonds, 0, Kind::Open, "DiamondOpen"},
    {PatternFamily::Diamonds, 1, Kind::Close, "DiamondClose"},
    {PatternFamily::Iris, 0, Kind::Open, "IrisOpen"},
    {PatternFamily::Iris, 1, Kind::Close, "IrisClose"},
    {PatternFamily::Lines, 0, Kind::Unknown, "LinesToLeft"},
    {PatternFamily::Lines, 1, Kind::Unknown, "LinesToRight"},
    {PatternFamily::Lines, 2, Kind::Unknown, "LinesUp"},
    {PatternFamily::Lines, 3, Kind::Unknown, "LinesDown"},
    {PatternFamily::X, 0, Kind::Open, "XOpen"},
    {PatternFamily::X, 1, Kind::Close, "XClose"},
    {PatternFamily::Circles, 0, Kind::CircleOpen, "CirclesOpen"},
    {PatternFamily::Circles, 1, Kind::CircleClose, "CirclesClose"},
};

krl::Plane maskOf(PatternFamily family, int W, int H) {
    if (family == PatternFamily::Diamonds) return transitions::diamondMask(W, H);
    if (family == PatternFamily::Iris) return transitions::irisMask(W, H);
    if (family == PatternFamily::X) return transitions::xMask(W, H);
    if (family == PatternFamily::Circles) return transitions::circleMask(W, H);
    return {};
}

// Whether a pixel of mask value m shows the source at frame i of a run over s..e: the hard mix takes
// the second picture below the level, the circles' cut turns what lies above it.
bool showsSource(Kind kind, bool to, int m, int i, int s, int e) {
    const double n = e - s;
    const int up = rne((i - s) / n * 255.0);
    const int down = rne((e - i) / n * 255.0);
    const int inverse = rne(255.0 - (i - s) / n * 255.0);
    if (kind == Kind::Open) return to == (m < up);
    if (kind == Kind::Close) return to ? m >= down : m < inverse;
    if (kind == Kind::CircleOpen) return to == (m > down);
    return to != (m > 255 - down);
}

struct RunCase {
    Member member;
    bool to;
    int W, H;
};

class PatternRun : public TransitionTest, public testing::WithParamInterface<RunCase> {
  protected:
    bool isSource(int f, int x, int y) const {
        const auto& p = frame(f);
        return p.r.at(x, y) == 0x50 && p.g.at(x, y) == 0x50 && p.b.at(x, y) == 0x50;
    }
    bool isOriginal(int f, int x, int y) const {
        const auto& p = frame(f);
        const auto& o = original[static_cast<std::size_t>(f)];
        return p.r.at(x, y) == o.r.at(x, y) && p.g.at(x, y) == o.g.at(x, y) && p.b.at(x, y) == o.b.at(x, y);
    }
};

TEST_P(PatternRun, TurnsWhereTheMaskMeetsTheLevelAndEndsWhole) {
    const auto& [member, to, W, H] = GetParam();
    constexpr int S = 1, E = 5;
    load(7, W, H);
    (to ? transitions::runPatternTo : transitions::runPatternFrom)(member.family, member.variant, S, E,
                                                                   "Swap");

    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(6), original[6]);
    EXPECT_EQ(frame(E), to ? host().swapPicture() : original[E]) << "the last frame is a whole picture";
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_TRUE(calls("van_status").empty());

    // The circles cut their mask short of the last column and row, which the final copy cleans up.
    const bool circle = member.family == PatternFamily::Circles;
    const int w = circle ? W - 1 : W, h = circle ? H - 1 : H;
    const krl::Plane mask = maskOf(member.family, W, H);
    int previous = to ? -1 : (w + 1) * (h + 1) + 1;
    for (int i = S; i < E; ++i) {
        int sources = 0;
        for (int y = 0; y <= h; ++y)
            for (int x = 0; x <= w; ++x) {
                const bool source = isSource(i, x, y);
                ASSERT_TRUE(source || isOriginal(i, x, y)) << "frame " << i << " at " << x << "," << y;
                sources += source;
                if (!mask.empty()) {
                    ASSERT_EQ(source, showsSource(member.kind, to, mask.at(x, y), i, S, E))
                        << "frame " << i << " at " << x << "," << y << " mask " << int(mask.at(x, y));
                }
            }
        // To runs only ever gain source, From runs only lose it; level 0 at Start changes nothing.
        EXPECT_TRUE(to ? sources >= previous : sources <= previous) << "frame " << i;
        previous = sources;
        if (i == S && member.kind != Kind::Close && member.kind != Kind::CircleClose) {
            EXPECT_EQ(sources, to ? 0 : (w + 1) * (h + 1));
        }
        // Lines Up never writes column 0 of its mask: that column turns at the first step.
        if (i == S + 1 && member.family == PatternFamily::Lines && member.variant == 2) {
            for (int y = 0; y <= H; ++y)
                EXPECT_EQ(isSource(i, 0, y), to) << y;
        }
    }
}

std::vector<RunCase> everyRun() {
    std::vector<RunCase> out;
    for (const Member& m : kMembers)
        for (bool to : {true, false})
            for (auto [W, H] : {std::pair{11, 7}, std::pair{10, 8}})
                out.push_back({m, to, W, H});
    return out;
}

INSTANTIATE_TEST_SUITE_P(Members, PatternRun, testing::ValuesIn(everyRun()), [](const auto& i) {
    return std::string(i.param.member.name) + (i.param.to ? "To" : "From") + std::to_string(i.param.W);
});

class PatternEdges : public TransitionTest {};

TEST_F(PatternEdges, StoredTwinsMakeWhatTheirPlainRunsMake) {
    // A slot of the animation's size in the swap's grey: the ToStored run over the whole animation
    // gives the frames of the plain To run with the swap; the circles' one hard mix may differ only
    // where the mask equals the level, which the check at the centre and the rim stays clear of.
    for (const Member& m : kMembers) {
        if (m.family == PatternFamily::Lines) continue;
        load(5, 40, 30);
        transitions::runPatternTo(m.family, m.variant, 0, 4, "Swap");
        std::vector<host::Picture> plain;
        for (int f = 0; f < 5; ++f)
            plain.push_back(frame(f));
        load(5, 40, 30);
        writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), 0)),
                  flatSlotBytes(5, 40, 30, '\x50'));
        transitions::runPatternToStored(m.family, m.variant, 0, 0);
        ASSERT_EQ(host().totalFrames(), 5);
        for (int f = 0; f < 5; ++f)
            if (m.family != PatternFamily::Circles)
                EXPECT_EQ(frame(f), plain[static_cast<std::size_t>(f)]) << m.name << " frame " << f;
            else
                for (auto [x, y] : {std::pair{19, 14}, std::pair{1, 1}, std::pair{30, 22}})
                    EXPECT_EQ(frame(f).r.at(x, y), plain[static_cast<std::size_t>(f)].r.at(x, y))
                        << m.name << " frame " << f << " at " << x << "," << y;
    }
}

} // namespace
} // namespace kirrel::test
