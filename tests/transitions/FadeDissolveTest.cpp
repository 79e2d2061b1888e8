// Fades, alpha fades and dissolves: the level each frame gets, the sources that work on the frame
// alone, the alpha limit, and the dissolve's noise plane made once per run.

#include "pixel/Filters.h"
#include "pixel/Mixing.h"
#include "transitions/Dissolves.h"
#include "transitions/Fades.h"
#include "transitions/TransitionSupport.h"
#include "transitions/Wipes.h"

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

class FadeRun : public TransitionTest {
  protected:
    // Frame f mixed with the swap grey at pct (the share of the frame that stays), as the library does it.
    Picture mixedWithSwap(int f, int pct) const {
        Picture p = original[static_cast<std::size_t>(f)];
        const Picture& s = host().swapPicture();
        krl::MixBuffers(p.r, p.g, p.b, s.r, s.g, s.b, pct, p.width(), p.height());
        return p;
    }
};

TEST_F(FadeRun, FadeToWithSpanTwoKeepsAHundredThenFiftyThenNothing) {
    load(4, 9, 5);
    FadeTo(1, 3, "Swap");
    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(1), original[1]) << "frame Start is fetched and written back as it was";
    EXPECT_EQ(frame(2), mixedWithSwap(2, 50));
    EXPECT_EQ(frame(3), host().swapPicture());
    EXPECT_TRUE(calls("van_status").empty()) << "a fade shows no progress";
    EXPECT_EQ(calls("Van_SetRbuffer").size(), 3u);
    EXPECT_FALSE(host().locked());
}

TEST_F(FadeRun, FadeFromWithSpanTwoGoesNothingFiftyHundred) {
    load(3, 9, 5);
    FadeFrom(0, 2, "Swap");
    EXPECT_EQ(frame(0), host().swapPicture()) << "frame Start is all source";
    EXPECT_EQ(frame(1), mixedWithSwap(1, 50));
    EXPECT_EQ(frame(2), original[2]);
    EXPECT_EQ(host().swapPicture(), Picture::filled(9, 5, 0x505050)) << "the source is never changed";
}

TEST_F(FadeRun, SourcesOfTheFrameAloneGetTheEffectsShare) {
    load(3, 6, 4);
    FadeTo(0, 2, "Negative");
    Picture negative = original[2];
    krl::Negative(negative.r, negative.g, negative.b, 7, 5);
    EXPECT_EQ(frame(2), negative) << "Pct 0 gives the full negative";

    load(3, 6, 4);
    FadeTo(0, 2, "Brightness");
    Picture bright = original[1];
    krl::IncreaseBrightness(bright.r, bright.g, bright.b, 50, 6, 4);
    EXPECT_EQ(frame(1), bright);

    load(3, 6, 4);
    FadeFrom(0, 2, "Darkness");
    Picture dark = original[0];
    krl::IncreaseDarkness(dark.r, dark.g, dark.b, 100, 6, 4);
    EXPECT_EQ(frame(0), dark);
    EXPECT_EQ(frame(2), original[2]);
}

class AlphaFadeRun : public FadeRun, public testing::WithParamInterface<bool> {};

// Alpha all 255 is the plain fade; alpha all 0 leaves every frame as it was. In both directions.
TEST_P(AlphaFadeRun, TheAlphaDecidesWhereTheFadeShows) {
    const bool to = GetParam();
    load(4, 7, 6);
    to ? FadeTo(0, 3, "Swap") : FadeFrom(0, 3, "Swap");
    std::vector<Picture> plain;
    for (int f = 0; f < 4; ++f)
        plain.push_back(frame(f));

    load(4, 7, 6);
    host().setAlpha(flatPlane(7, 6, 255));
    to ? AFadeTo(0, 3, "Swap") : AFadeFrom(0, 3, "Swap");
    for (int f = 0; f < 4; ++f)
        EXPECT_EQ(frame(f), plain[static_cast<std::size_t>(f)]) << "frame " << f;
    EXPECT_EQ(calls("Van_GetABuffer").size(), 1u) << "the alpha is read once for the run";

    load(4, 7, 6);
    host().setAlpha(flatPlane(7, 6, 0));
    to ? AFadeTo(0, 3, "Swap") : AFadeFrom(0, 3, "Swap");
    for (int f = 0; f < 4; ++f)
        EXPECT_EQ(frame(f), original[static_cast<std::size_t>(f)]) << "frame " << f;
}

INSTANTIATE_TEST_SUITE_P(Directions, AlphaFadeRun, testing::Values(true, false),
                         [](const testing::TestParamInfo<bool>& i) { return i.param ? "To" : "From"; });

class DissolveRun : public TransitionTest {
  protected:
    bool isSwap(int f, int x, int y) const {
        const Picture& p = frame(f);
        return p.r.at(x, y) == 0x50 && p.g.at(x, y) == 0x50 && p.b.at(x, y) == 0x50;
    }
    // Pixels of frame f (the picture proper) that hold the swap grey.
    int swapPixels(int f) const {
        int n = 0;
        for (int y = 0; y < frame(f).height(); ++y)
            for (int x = 0; x < frame(f).width(); ++x)
                n += isSwap(f, x, y);
        return n;
    }
};

TEST_F(DissolveRun, SpanTwoUsesHalfThenAll) {
    load(3, 40, 30);
    DissolveTo(0, 2, "Swap");
    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(2), host().swapPicture()) << "level 256 takes every pixel";
    const int half = swapPixels(1);
    EXPECT_GT(half, 40 * 30 / 4);
    EXPECT_LT(half, 40 * 30 * 3 / 4) << "level 128 of noise spread over 0..255";
    EXPECT_EQ(calls("Van_Refresh").size(), 1u);
}

TEST_F(DissolveRun, AChangedPixelStaysChangedAndTwoRunsDiffer) {
    load(6, 30, 20);
    DissolveTo(0, 5, "Swap");
    for (int f = 1; f < 5; ++f)
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 30; ++x)
                if (isSwap(f, x, y)) {
                    ASSERT_TRUE(isSwap(f + 1, x, y)) << f << ":" << x << "," << y;
                }
    const Picture first = frame(2);
    load(6, 30, 20);
    DissolveTo(0, 5, "Swap");
    EXPECT_NE(frame(2), first) << "the noise is seeded from the clock";
}

TEST_F(DissolveRun, FromStartsAllSourceAndEndsAllAnimation) {
    load(4, 20, 10);
    DissolveFrom(0, 3, "Swap");
    EXPECT_EQ(frame(0), host().swapPicture());
    EXPECT_EQ(frame(3), original[3]);
    EXPECT_GT(swapPixels(1), swapPixels(2));
}

// The primary colour as a source: the colour is read once, and the run ends on it without touching
// the swap. The wipe fills planes of its own once, the fade mixes the colour without any, and the
// dissolve paints it over a copy of the swap planes.
struct ColourRun {
    const char* name;
    void (*run)(int, int, const std::string&);
    std::size_t swapReads;
};

class PrimaryColourSource : public TransitionTest, public testing::WithParamInterface<ColourRun> {};

TEST_P(PrimaryColourSource, EndsOnTheColourAndLeavesTheSwapAlone) {
    load(3, 6, 4);
    host().setPrimaryColor(200, 10, 30);
    const Picture swapBefore = host().swapPicture();
    GetParam().run(0, 2, "Primary Color");
    EXPECT_EQ(frame(2), Picture::filled(6, 4, host::packColor(200, 10, 30)));
    EXPECT_EQ(host().swapPicture(), swapBefore);
    EXPECT_EQ(calls("Van_getPrimaryColor").size(), 1u);
    EXPECT_EQ(calls("Van_GetSwapRBuffer").size(), GetParam().swapReads);
}

INSTANTIATE_TEST_SUITE_P(Runs, PrimaryColourSource,
                         testing::Values(ColourRun{"Wipe", Wipe2LeftTo, 0}, ColourRun{"Fade", FadeTo, 0},
                                         ColourRun{"Dissolve", DissolveTo, 1}),
                         [](const testing::TestParamInfo<ColourRun>& i) {
                             return std::string(i.param.name);
                         });

} // namespace
} // namespace kirrel::test
