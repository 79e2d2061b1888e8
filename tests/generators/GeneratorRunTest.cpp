// The generators' procedures on the host: the threshold's levels, the vertical hold's roll, Focus's
// blur rounds, the noise, and the frame tools' moves of whole frames.

#include "generators/Focus.h"
#include "generators/FrameTools.h"
#include "generators/Generators.h"
#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "stored/StoredSupport.h"

#include <stdexcept>

namespace kirrel::test {
namespace {

using generators::FrameSpan;

class GeneratorRun : public HostTest {
  protected:
    void load(int frames, int w = 8, int h = 6, int current = 0) {
        pictures = patternFrames(frames, w, h, 11);
        host().loadAnimation(pictures, current);
    }
    const host::Picture& frame(int f) const { return host().framePicture(f); }
    std::vector<host::Picture> pictures;
};

TEST_F(GeneratorRun, ThresholdClimbsFromLevelZeroAtStartToFullAtEnd) {
    const FrameSpan span{2, 6};
    EXPECT_EQ(generators::thresholdLevel(span, 2), 0);
    EXPECT_EQ(generators::thresholdLevel(span, 3), 64);  // 63.75
    EXPECT_EQ(generators::thresholdLevel(span, 4), 128); // 127.5 goes to the even 128
    EXPECT_EQ(generators::thresholdLevel(span, 6), 255);

    load(8, 8, 6, 7);
    generators::GenerateThreshold(span);
    auto greyCut = [&](int f, int level) {
        host::Picture p = pictures[static_cast<std::size_t>(f)];
        krl::GreyScale(p.r, p.g, p.b, 8, 6);
        krl::Threshold(p.r, level, 8, 6);
        p.g = p.r;
        p.b = p.r;
        return p;
    };
    for (int f = 2; f <= 6; ++f)
        EXPECT_EQ(frame(f), greyCut(f, generators::thresholdLevel(span, f))) << f;
    // Level 0 turns the whole picture white.
    EXPECT_EQ(frame(2).r.at(3, 3), 255);
    for (int f : {0, 1, 7})
        EXPECT_EQ(frame(f), pictures[static_cast<std::size_t>(f)]) << f;
    EXPECT_EQ(calls("Van_Lock").size(), 1u);
    EXPECT_EQ(calls("Van_Unlock").size(), 1u);
    EXPECT_FALSE(host().locked());
}

// Offsets 6, 4 and 0 rows of 6 at frames 1, 2 and 4 of the span 1..4.
TEST_F(GeneratorRun, VerticalHoldLeavesStartAndRollsToTheWholeFrameAtEnd) {
    load(5);
    generators::VerticalHold({1, 4}, false);
    EXPECT_EQ(frame(1), pictures[1]);
    // The roll wraps the picture around: the frame at End is the picture itself again.
    EXPECT_EQ(frame(4), pictures[4]);
    host::Picture rolled = pictures[2];
    const host::Picture copy = rolled;
    krl::PushOverlay(rolled.r, rolled.g, rolled.b, copy.r, copy.g, copy.b, 8, 6, 4, 3);
    EXPECT_EQ(frame(2), rolled);
    EXPECT_FALSE(host().locked());
}

TEST_F(GeneratorRun, TheDividerShowsAtTheSeam) {
    load(5);
    generators::VerticalHold({1, 4}, true);
    auto blackRows = [&](int f) {
        std::vector<int> rows;
        for (int y = 0; y <= 6; ++y) {
            bool black = true;
            for (int x = 0; x <= 8; ++x)
                black =
                    black && frame(f).r.at(x, y) == 0 && frame(f).g.at(x, y) == 0 && frame(f).b.at(x, y) == 0;
            if (black) rows.push_back(y);
        }
        return rows;
    };
    // At Start the seam lies past the bottom row: the frame is as it was.
    EXPECT_EQ(frame(1), pictures[1]);
    // Between, the line along the lined picture's top edge marks the seam.
    EXPECT_EQ(blackRows(2), std::vector<int>{4});
    EXPECT_EQ(blackRows(3), std::vector<int>{2});
    // At End the whole frame is the lined picture: black along its top and bottom.
    EXPECT_EQ(blackRows(4), (std::vector<int>{0, 6}));
    EXPECT_EQ(frame(4).r.at(3, 3), pictures[4].r.at(3, 3));
}

host::Picture blurred(host::Picture p, int rounds, int w, int h) {
    for (int i = 0; i < rounds; ++i)
        krl::BoxBlur(p.r, p.g, p.b, p.r, p.g, p.b, w, h);
    return p;
}

TEST_F(GeneratorRun, FocusGivesOneRoundToTheSharpestFrameAndThirtyOneToTheSoftest) {
    for (bool in : {false, true}) {
        EXPECT_EQ(generators::focusRounds({3, 4}, 3, in), in ? 31 : 1);
        EXPECT_EQ(generators::focusRounds({3, 4}, 4, in), in ? 1 : 31);
        EXPECT_EQ(generators::focusRounds({0, 3}, 1, in), in ? 21 : 11); // 30 * 2/3 and 30 * 1/3
    }
    load(3);
    generators::FocusOut({0, 1});
    EXPECT_EQ(frame(0), blurred(pictures[0], 1, 8, 6));
    EXPECT_EQ(frame(1), blurred(pictures[1], 31, 8, 6));
    EXPECT_EQ(frame(2), pictures[2]);
    load(2);
    generators::FocusIn({0, 1});
    EXPECT_EQ(frame(0), blurred(pictures[0], 31, 8, 6));
    EXPECT_EQ(frame(1), blurred(pictures[1], 1, 8, 6));
}

TEST_F(GeneratorRun, FocusWithAlphaBlursOnlyWhereTheAlphaIsSet) {
    load(2);
    krl::Plane alpha(8, 6);
    for (int y = 0; y <= 6; ++y)
        for (int x = 4; x <= 8; ++x)
            alpha.at(x, y) = 255;
    host().setAlpha(alpha);
    generators::FocusOutAlpha({0, 1});
    const host::Picture soft = blurred(pictures[1], 31, 8, 6);
    EXPECT_EQ(frame(1).r.at(1, 2), pictures[1].r.at(1, 2));
    EXPECT_EQ(frame(1).r.at(6, 2), soft.r.at(6, 2));
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u);
}

TEST_F(GeneratorRun, FocusOverOneFrameFailsOnItsFirstFrame) {
    load(2);
    EXPECT_THROW(generators::FocusIn({1, 1}), std::domain_error);
    EXPECT_EQ(frame(1), pictures[1]);
}

TEST_F(GeneratorRun, NoiseChangesEveryFrameOfTheRangeDifferently) {
    krl::SeedNoise(7);
    load(5);
    generators::GenerateStatic({1, 3}, 60);
    for (int f = 1; f <= 3; ++f)
        EXPECT_NE(frame(f), pictures[static_cast<std::size_t>(f)]) << f;
    EXPECT_NE(frame(1), frame(2));
    EXPECT_EQ(frame(0), pictures[0]);
    EXPECT_EQ(frame(4), pictures[4]);
    EXPECT_TRUE(calls("Van_Lock").empty());
    EXPECT_TRUE(calls("Van_GetABuffer").empty());

    // Through a clear alpha plane the noise doesn't reach the picture.
    load(5);
    host().setAlpha(krl::Plane(8, 6));
    generators::GenerateStaticAlpha({1, 3}, 100);
    EXPECT_EQ(calls("Van_GetABuffer").size(), 3u);
    EXPECT_EQ(frame(2), pictures[2]);
}

TEST_F(GeneratorRun, PingPongOfOneFrameGivesTwo) {
    load(1);
    generators::PingPongAppend();
    ASSERT_EQ(host().totalFrames(), 2);
    EXPECT_EQ(frame(0), pictures[0]);
    EXPECT_EQ(frame(1), pictures[0]);
}

} // namespace
} // namespace kirrel::test
