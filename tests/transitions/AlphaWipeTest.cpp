// The alpha wipes against the plain ones, for every member in both plain shapes and for odd and even
// sizes: all-255 alpha is the plain wipe (but for the edge line where an alpha member mixes at Start
// and its plain fellow doesn't), all-0 alpha changes nothing.

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
    EXPECT_EQ(diff > 0, alphaMixesAtStart != plainMixesAtStart);
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

} // namespace
} // namespace kirrel::test
