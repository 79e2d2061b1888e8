// The pattern runs on the host: every member in both plain shapes on an odd and an even frame, its
// pictures at the first and last frame of the range and in between, and the stored twins.

#include "panel/EventGuard.h"
#include "transitions/PatternMasks.h"
#include "transitions/Patterns.h"
#include "transitions/TransitionSupport.h"

#include <algorithm>

namespace kirrel::test {
namespace {

using transitions::PatternFamily;

// How a member's mask turns: Open and Close on the computed masks by the hard mix, the circles by
// their cut, and the two whose pattern is random or the library's own.
enum class Kind { Blinds, Lines, Open, Close, CircleOpen, CircleClose };

struct Member {
    PatternFamily family;
    int variant;
    Kind kind;
    const char* name;
};

const Member kMembers[] = {
    {PatternFamily::Blinds, 0, Kind::Blinds, "HBlinds"},
    {PatternFamily::Blinds, 1, Kind::Blinds, "VBlinds"},
    {PatternFamily::Diamonds, 0, Kind::Open, "DiamondOpen"},
    {PatternFamily::Diamonds, 1, Kind::Close, "DiamondClose"},
    {PatternFamily::Iris, 0, Kind::Open, "IrisOpen"},
    {PatternFamily::Iris, 1, Kind::Close, "IrisClose"},
    {PatternFamily::Lines, 0, Kind::Lines, "LinesToLeft"},
    {PatternFamily::Lines, 1, Kind::Lines, "LinesToRight"},
    {PatternFamily::Lines, 2, Kind::Lines, "LinesUp"},
    {PatternFamily::Lines, 3, Kind::Lines, "LinesDown"},
    {PatternFamily::X, 0, Kind::Open, "XOpen"},
    {PatternFamily::X, 1, Kind::Close, "XClose"},
    {PatternFamily::Circles, 0, Kind::CircleOpen, "CirclesOpen"},
    {PatternFamily::Circles, 1, Kind::CircleClose, "CirclesClose"},
};

krl::Plane maskOf(PatternFamily family, int W, int H) {
    switch (family) {
    case PatternFamily::Diamonds:
        return transitions::diamondMask(W, H);
    case PatternFamily::Iris:
        return transitions::irisMask(W, H);
    case PatternFamily::X:
        return transitions::xMask(W, H);
    case PatternFamily::Circles:
        return transitions::circleMask(W, H);
    default:
        return {};
    }
}

int rne(double v) {
    return static_cast<int>(std::nearbyint(v));
}

// Whether a pixel with mask value m shows the source at frame i of a run over s..e.
bool showsSource(Kind kind, bool to, int m, int i, int s, int e) {
    const double n = e - s;
    const int up = rne((i - s) / n * 255.0), down = rne((e - i) / n * 255.0);
    const int inverse = rne(255.0 - (i - s) / n * 255.0);
    switch (kind) {
    case Kind::Open:
        return to == (m < up);
    case Kind::Close:
        return to ? !(m < down) : m < inverse;
    case Kind::CircleOpen:
        return to == (m > down);
    case Kind::CircleClose:
        return to != (m > 255 - down);
    default:
        return false;
    }
}

struct RunCase {
    Member member;
    bool to;
    int W, H;
};

void PrintTo(const RunCase& c, std::ostream* os) {
    *os << c.member.name << (c.to ? "To " : "From ") << c.W << "x" << c.H;
}

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
    if (to)
        transitions::runPatternTo(member.family, member.variant, S, E, "Swap");
    else
        transitions::runPatternFrom(member.family, member.variant, S, E, "Swap");

    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(6), original[6]);
    EXPECT_EQ(frame(E), to ? host().swapPicture() : original[E]) << "the last frame is a whole picture";
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_TRUE(calls("van_status").empty());
    EXPECT_EQ(calls("Van_Refresh").size(), 1u);

    // The circles cut their mask short of the last column and row, which the final copy cleans up.
    const bool circle = member.kind == Kind::CircleOpen || member.kind == Kind::CircleClose;
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
                if (!mask.empty())
                    ASSERT_EQ(source, showsSource(member.kind, to, mask.at(x, y), i, S, E))
                        << "frame " << i << " at " << x << "," << y << " mask " << int(mask.at(x, y));
            }
        // To runs only ever gain source, From runs only lose it.
        if (to)
            EXPECT_GE(sources, previous) << "frame " << i;
        else
            EXPECT_LE(sources, previous) << "frame " << i;
        previous = sources;
        if (i == S && member.kind != Kind::Close && member.kind != Kind::CircleClose)
            EXPECT_EQ(sources, to ? 0 : (w + 1) * (h + 1)) << "level 0 at the first frame";
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
    return std::string(i.param.member.name) + (i.param.to ? "To" : "From") + std::to_string(i.param.W) + "x" +
           std::to_string(i.param.H);
});

class PatternEdges : public TransitionTest {};

TEST_F(PatternEdges, LinesUpTurnsItsFirstColumnAtOnce) {
    load(6, 12, 9);
    transitions::runPatternTo(PatternFamily::Lines, 2, 0, 5, "Swap");
    for (int y = 0; y <= 9; ++y) {
        EXPECT_EQ(frame(0).r.at(0, y), original[0].r.at(0, y));
        EXPECT_EQ(frame(1).r.at(0, y), 0x50) << "column 0 of the mask is 0, below the first level";
        EXPECT_EQ(frame(1).b.at(0, y), 0x50);
    }
    int turned = 0;
    for (int y = 0; y <= 9; ++y)
        for (int x = 1; x <= 12; ++x)
            turned += frame(1).r.at(x, y) == 0x50;
    EXPECT_LT(turned, 12 * 10) << "the other columns turn along their sawtooths";
}

TEST_F(PatternEdges, CloseToStandsOnItsCallAtTheLastFrame) {
    // XCloseTo has no final copy: at level 0 the source stands whole all the same, while at the first
    // frame the cells of mask 255 already show it.
    load(5, 20, 10);
    transitions::runPatternTo(PatternFamily::X, 1, 0, 4, "Primary Color");
    const krl::Plane mask = transitions::xMask(20, 10);
    const auto colour = host::Picture::filled(20, 10, host().primaryColor());
    EXPECT_EQ(frame(4), colour);
    int full = 0;
    for (int y = 0; y <= 10; ++y)
        for (int x = 0; x <= 20; ++x)
            if (mask.at(x, y) == 255) {
                ++full;
                EXPECT_EQ(frame(0).r.at(x, y), colour.r.at(x, y));
            }
    EXPECT_GT(full, 0);
}

TEST_F(PatternEdges, IrisOverflowIsReportedAndNothingChanges) {
    load(4, 5, 5);
    runGuarded([] { transitions::runPatternTo(PatternFamily::Iris, 0, 0, 3, "Swap"); });
    ASSERT_FALSE(host().dialogs().empty());
    EXPECT_EQ(host().dialogs().back().kind, "error");
    EXPECT_EQ(host().dialogs().back().text, "Overflow");
    for (int f = 0; f < 4; ++f)
        EXPECT_EQ(frame(f), original[static_cast<std::size_t>(f)]);
    // The next run goes on as usual.
    runGuarded([] { transitions::runPatternTo(PatternFamily::Diamonds, 0, 0, 3, "Swap"); });
    EXPECT_EQ(frame(3), host().swapPicture());
}

TEST_F(PatternEdges, StoredCirclesOpenFromTheCentreAndCloseOnIt) {
    // Open: the arriving picture shows at the centre first; Close: at the rim first.
    for (int variant : {0, 1}) {
        load(5, 40, 30);
        writeSlot(0, 5, 40, 30); // stored frame k is flat 10 + 20k
        transitions::runPatternToStored(PatternFamily::Circles, variant, 0, 0);
        const auto& middle = frame(2);
        const bool centreStored = middle.r.at(19, 14) == 50;
        const bool rimStored = middle.r.at(1, 1) == 50;
        EXPECT_EQ(centreStored, variant == 0) << variant;
        EXPECT_EQ(rimStored, variant == 1) << variant;
        EXPECT_EQ(frame(4).r.at(20, 15), 90) << "the overlap ends on the stored frame";
        EXPECT_EQ(frame(0), original[0]);
    }
    for (int variant : {0, 1}) {
        load(5, 40, 30);
        writeSlot(0, 5, 40, 30);
        transitions::runPatternFromStored(PatternFamily::Circles, variant, 4, 0);
        const auto& middle = frame(2);
        EXPECT_EQ(middle.r.at(19, 14) != 50, variant == 0) << variant;
        EXPECT_EQ(middle.r.at(1, 1) != 50, variant == 1) << variant;
        EXPECT_EQ(frame(0).r.at(20, 15), 10) << "the run starts on the stored frame";
        EXPECT_EQ(frame(4), original[4]);
    }
}

TEST_F(PatternEdges, StoredTwinsComputeTheSameMaskAsTheirPlainRuns) {
    // A slot of the animation's size holding the swap grey: the ToStored run over the whole animation
    // makes the frames the plain To run makes with the swap.
    for (const Member& m : kMembers) {
        if (m.kind == Kind::Lines || m.kind == Kind::CircleOpen || m.kind == Kind::CircleClose) continue;
        load(5, 10, 8);
        transitions::runPatternTo(m.family, m.variant, 0, 4, "Swap");
        std::vector<host::Picture> plain;
        for (int f = 0; f < 5; ++f)
            plain.push_back(frame(f));
        load(5, 10, 8);
        std::string bytes = int16le({5, 10, 8});
        bytes.append(static_cast<std::size_t>(5 * 3 * 11 * 9), '\x50');
        writeFile(QString::fromStdString(stored::slotDataPath(tempDir(), 0)), bytes);
        transitions::runPatternToStored(m.family, m.variant, 0, 0);
        ASSERT_EQ(host().totalFrames(), 5);
        for (int f = 0; f < 5; ++f)
            EXPECT_EQ(frame(f), plain[static_cast<std::size_t>(f)]) << m.name << " frame " << f;
    }
}

} // namespace
} // namespace kirrel::test
