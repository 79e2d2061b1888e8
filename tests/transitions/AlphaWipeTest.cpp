// The alpha wipes against the plain ones, for every member in both plain shapes and for odd and even
// sizes: all-255 alpha is the plain wipe, all-0 alpha changes nothing. And the ends every wipe must
// reach: the To run's last frame is all source, the From run's first frame is all source.

#include "transitions/TransitionSupport.h"
#include "transitions/Wipes.h"

#include <tuple>

namespace kirrel::test {
namespace {

using host::Picture;
using namespace transitions;

using WipeCase = std::tuple<int /*member*/, bool /*to*/, int /*width*/>;

class WipeMembers : public TransitionTest, public testing::WithParamInterface<WipeCase> {
  protected:
    void run(WipeFamily family) {
        const auto [member, to, width] = GetParam();
        to ? runWipeTo(family, member, 1, 4, "Swap") : runWipeFrom(family, member, 1, 4, "Swap");
        (void)width;
    }
    void loadCase() {
        const int w = std::get<2>(GetParam());
        load(6, w, w - 3);
    }
};

// Pixels of the red plane in which two pictures differ.
int differing(const Picture& a, const Picture& b) {
    int n = 0;
    for (std::size_t i = 0; i < a.r.size(); ++i)
        n += a.r.data()[i] != b.r.data()[i];
    return n;
}

TEST_P(WipeMembers, EndsAreAllSourceAndAllAnimation) {
    loadCase();
    run(WipeFamily::Plain);
    const auto [member, to, w] = GetParam();
    if (to) {
        EXPECT_EQ(frame(4), host().swapPicture()) << "the To run ends all source";
    } else if (member == 3) {
        // The top wipe mixes at Start with y1 = H: its bottom row returns to the frame.
        for (int x = 0; x <= w; ++x)
            EXPECT_EQ(frame(1).r.at(x, w - 3), original[1].r.at(x, w - 3));
        EXPECT_EQ(differing(frame(1), host().swapPicture()), w + 1);
    } else {
        EXPECT_EQ(frame(1), host().swapPicture()) << "the From run starts all source";
    }
    if (!to) EXPECT_EQ(frame(4), original[4]) << "the From run ends all animation";
    EXPECT_EQ(frame(0), original[0]);
    EXPECT_EQ(frame(5), original[5]);
}

TEST_P(WipeMembers, FullAlphaIsThePlainWipeAndNoAlphaChangesNothing) {
    const auto [member, to, w] = GetParam();
    loadCase();
    run(WipeFamily::Plain);
    std::vector<Picture> plain;
    for (int f = 0; f < 6; ++f)
        plain.push_back(frame(f));

    loadCase();
    host().setAlpha(flatPlane(w, w - 3, 255));
    run(WipeFamily::Alpha);
    for (int f = 0; f < 6; ++f) {
        if (f == 1) continue;
        EXPECT_EQ(frame(f), plain[static_cast<std::size_t>(f)]) << "frame " << f;
    }
    // At frame Start the alpha members that mix there differ from the plain ones by one edge line at
    // most: the alpha From runs all mix at Start, and so do the right and top To runs.
    const bool alphaMixesAtStart = !to || member == 0 || member == 3;
    const bool plainMixesAtStart = member == 3;
    const int diff = differing(frame(1), plain[1]);
    if (alphaMixesAtStart == plainMixesAtStart)
        EXPECT_EQ(diff, 0);
    else
        EXPECT_GT(diff, 0);
    EXPECT_LE(diff, w + 1);

    loadCase();
    host().setAlpha(flatPlane(w, w - 3, 0));
    run(WipeFamily::Alpha);
    for (int f = 0; f < 6; ++f)
        EXPECT_EQ(frame(f), original[static_cast<std::size_t>(f)]) << "frame " << f;
}

std::string caseName(const testing::TestParamInfo<WipeCase>& i) {
    static const char* names[] = {"Right", "Left", "Bottom", "Top"};
    return std::string(names[std::get<0>(i.param)]) + (std::get<1>(i.param) ? "To" : "From") +
           std::to_string(std::get<2>(i.param));
}

INSTANTIATE_TEST_SUITE_P(AllMembers, WipeMembers,
                         testing::Combine(testing::Range(0, 4), testing::Bool(), testing::Values(11, 12)),
                         caseName);

// The geometry checked column by column against the formulas: W = 100, Span 3.
TEST_F(TransitionTest, RightFromAndTopRowsFollowTheFormulas) {
    load(5, 100, 10);
    Wipe2RightFrom(0, 3, "Swap");
    EXPECT_EQ(frame(0), host().swapPicture());
    // The animation comes back over the source from the left, up to x2 = 33, 67, 100 inclusive.
    for (const auto& [f, x2] : std::vector<std::pair<int, int>>{{1, 33}, {2, 67}}) {
        EXPECT_EQ(frame(f).r.at(x2, 0), original[static_cast<std::size_t>(f)].r.at(x2, 0));
        EXPECT_EQ(frame(f).r.at(x2 + 1, 0), 0x50);
    }
    EXPECT_EQ(frame(3), original[3]);

    // The top wipe mixes at Start too, with y1 = H: only the bottom row takes the source.
    load(4, 8, 6);
    Wipe2TopTo(0, 3, "Swap");
    for (int y = 0; y < 6; ++y)
        EXPECT_EQ(frame(0).r.at(3, y), original[0].r.at(3, y));
    EXPECT_EQ(frame(0).r.at(3, 6), 0x50);
    EXPECT_EQ(frame(3), host().swapPicture());
}

} // namespace
} // namespace kirrel::test
