// The host's frame model as the panel relies on it: write-through of the main buffer, reads of the
// store that leave the current frame alone, InsertFrame for the splices, the animation makers,
// Total 0 as a still picture, and frame numbers outside the animation.

#include "panel/Vantry.h"
#include "support/Support.h"

#include <climits>
#include <functional>

namespace kirrel::test {
namespace {

using Vantry::Vantry_Class;

host::Picture pictureOf(krl::Plane r, krl::Plane g, krl::Plane b) {
    host::Picture p;
    p.r = std::move(r);
    p.g = std::move(g);
    p.b = std::move(b);
    return p;
}

class FrameModel : public HostTest {
  protected:
    // Three frames of 6 x 4 whose pictures are patternPicture(6, 4, seed) for seeds 0, 50, 100.
    void loadThree(int current = 0) {
        host().loadAnimation({patternPicture(6, 4, 0), patternPicture(6, 4, 50), patternPicture(6, 4, 100)},
                             current);
    }
    host::Picture frameThroughInterface(int f) {
        return pictureOf(van.Van_GetRFrame(f), van.Van_GetGFrame(f), van.Van_GetBFrame(f));
    }
    host::Picture mainThroughInterface() {
        return pictureOf(van.Van_GetRBuffer(), van.Van_GetGBuffer(), van.Van_GetBBuffer());
    }
    void expectFrames(const std::vector<int>& seeds) {
        ASSERT_EQ(van.Van_GetTotalFrames(), static_cast<short>(seeds.size()));
        for (std::size_t f = 0; f < seeds.size(); ++f)
            EXPECT_EQ(frameThroughInterface(static_cast<int>(f)), patternPicture(6, 4, seeds[f]))
                << "frame " << f;
    }
    Vantry_Class van;
};

TEST_F(FrameModel, MainBufferReachesItsFrameByTheNextGoto) {
    loadThree();
    van.Van_GotoFrame(1);
    const host::Picture painted = patternPicture(6, 4, 200);
    van.Van_SetRbuffer(painted.r);
    van.Van_SetGbuffer(painted.g);
    van.Van_SetBbuffer(painted.b);
    van.Van_InsertFrame(1); // copies frame 1 as painted
    van.Van_GotoFrame(1);   // to the current frame: an ordinary call
    van.Van_GotoFrame(0);
    EXPECT_EQ(mainThroughInterface(), patternPicture(6, 4, 0));
    van.Van_GotoFrame(1);
    EXPECT_EQ(mainThroughInterface(), painted);
    expectFrames({0, 200, 200, 100});
}

TEST_F(FrameModel, StoreAccessLeavesTheCurrentFrameAlone) {
    loadThree(1);
    EXPECT_EQ(frameThroughInterface(2), patternPicture(6, 4, 100));
    const host::Picture other = patternPicture(6, 4, 33);
    van.Van_SetRFrame(other.r, 0);
    van.Van_SetGFrame(other.g, 0);
    van.Van_SetBFrame(other.b, 0);
    EXPECT_EQ(van.Van_GetCurrentFrame(), 1);
    EXPECT_EQ(mainThroughInterface(), patternPicture(6, 4, 50));
    expectFrames({33, 50, 100});
}

struct InsertCase {
    int n;
    std::vector<int> seedsAfter;
};

void PrintTo(const InsertCase& c, std::ostream* os) {
    *os << "InsertFrame(" << c.n << ")";
}

class InsertFrame : public FrameModel, public ::testing::WithParamInterface<InsertCase> {};

TEST_P(InsertFrame, CopiesFrameNAndMovesLaterFramesUp) {
    // The current frame is elsewhere: what is copied is frame n, not the main buffer, except after
    // the last frame, where the insertion appends the frame shown now.
    loadThree(GetParam().n == 0 ? 2 : 0);
    van.Van_InsertFrame(GetParam().n);
    expectFrames(GetParam().seedsAfter);
}

INSTANTIATE_TEST_SUITE_P(EveryPlace, InsertFrame,
                         ::testing::Values(InsertCase{0, {0, 0, 50, 100}}, InsertCase{1, {0, 50, 50, 100}},
                                           InsertCase{2, {0, 50, 100, 0}}, InsertCase{-1, {0, 50, 100}},
                                           InsertCase{3, {0, 50, 100}}, InsertCase{INT_MIN, {0, 50, 100}}));

struct MakeCase {
    const char* name;
    std::function<void(Vantry_Class&)> make;
    int total;
};

class MakeAnimation : public FrameModel, public ::testing::WithParamInterface<MakeCase> {};

TEST_P(MakeAnimation, FromAStillPicture) {
    host().loadStill(patternPicture(6, 4, 77));
    GetParam().make(van);
    ASSERT_EQ(van.Van_GetTotalFrames(), GetParam().total);
    EXPECT_EQ(van.Van_BufferWidth(), 6);
    EXPECT_EQ(van.Van_BufferHeight(), 4);
    EXPECT_EQ(mainThroughInterface(), patternPicture(6, 4, 77));
    if (GetParam().total == 0) return;
    EXPECT_EQ(van.Van_GetCurrentFrame(), 0);
    for (int f : {0, GetParam().total - 1})
        EXPECT_EQ(frameThroughInterface(f), patternPicture(6, 4, 77));
    van.Van_InsertFrame(0); // the count is read as 16-bit: the animation never grows past it
    EXPECT_GT(van.Van_GetTotalFrames(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, MakeAnimation,
    ::testing::Values(
        MakeCase{"Double30", [](Vantry_Class& v) { v.Van_CreateAnim(30.0); }, 30},
        MakeCase{"HalfRoundsToEvenDown", [](Vantry_Class& v) { v.Van_CreateAnim(2.5); }, 2},
        MakeCase{"HalfRoundsToEvenUp", [](Vantry_Class& v) { v.Van_CreateAnim(3.5); }, 4},
        MakeCase{"Zero", [](Vantry_Class& v) { v.Van_CreateAnim(0); }, 0},
        MakeCase{"Negative", [](Vantry_Class& v) { v.Van_CreateAnimAdv(-4, 2); }, 0},
        MakeCase{"Adv", [](Vantry_Class& v) { v.Van_CreateAnimAdv(5, 2); }, 5},
        MakeCase{"AdvAtTheLimit", [](Vantry_Class& v) { v.Van_CreateAnimAdv(32767, 2); }, 32767},
        MakeCase{"AdvPastTheLimit", [](Vantry_Class& v) { v.Van_CreateAnimAdv(100000, 2); }, 32767}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(FrameModel, CreateAnimAdvOverAnAnimationCopiesTheCurrentFrame) {
    loadThree(1);
    van.Van_CreateAnimAdv(2, 2);
    expectFrames({50, 50});
}

TEST_F(FrameModel, NewBufferStartsAWhiteStillAndRescalesSwapAndAlpha) {
    loadThree();
    host().loadSwap(host::Picture::filled(6, 4, 0x102030));
    krl::Plane alpha(6, 4);
    alpha.fill(40);
    van.Van_SetAbuffer(alpha);
    van.Van_NewBuffer(9, 7);
    EXPECT_EQ(van.Van_BufferWidth(), 9);
    EXPECT_EQ(van.Van_BufferHeight(), 7);
    EXPECT_EQ(van.Van_GetTotalFrames(), 0);
    EXPECT_EQ(mainThroughInterface(), host::Picture::filled(9, 7, 0xFFFFFF));
    EXPECT_EQ(pictureOf(van.Van_GetSwapRBuffer(), van.Van_GetSwapGBuffer(), van.Van_GetSwapBBuffer()),
              host::Picture::filled(9, 7, 0x102030));
    krl::Plane alphaAfter(9, 7);
    alphaAfter.fill(40);
    EXPECT_EQ(van.Van_GetABuffer(), alphaAfter);

    for (auto [w, h] : {std::pair{-4, -1}, std::pair{0, 0}, std::pair{INT_MAX, 2}}) {
        van.Van_NewBuffer(w, h);
        EXPECT_GE(van.Van_BufferWidth(), 0);
        EXPECT_GE(van.Van_BufferHeight(), 0);
        EXPECT_EQ(van.Van_GetRBuffer().width(), van.Van_BufferWidth());
        EXPECT_EQ(van.Van_GetABuffer().height(), van.Van_BufferHeight());
    }
}

TEST_F(FrameModel, TotalZeroIsAStillPicture) {
    host().loadStill(patternPicture(6, 4, 5));
    EXPECT_EQ(van.Van_GetTotalFrames(), 0);
    van.Van_GotoFrame(0);
    van.Van_GotoFrame(3);
    van.Van_InsertFrame(0);
    van.Van_SetRFrame(krl::Plane(6, 4), 0);
    EXPECT_EQ(van.Van_GetTotalFrames(), 0);
    EXPECT_EQ(mainThroughInterface(), patternPicture(6, 4, 5));
    EXPECT_EQ(van.Van_GetRFrame(0).width(), 6);
    krl::Plane red(6, 4);
    red.fill(1);
    van.Van_SetRbuffer(red);
    EXPECT_EQ(van.Van_GetRBuffer(), red);
}

class OutsideTheAnimation : public FrameModel, public ::testing::WithParamInterface<int> {};

TEST_P(OutsideTheAnimation, FrameNumbersAreHarmless) {
    loadThree(1);
    const int f = GetParam();
    van.Van_GotoFrame(f);
    EXPECT_EQ(van.Van_GetRFrame(f).width(), 6);
    EXPECT_EQ(van.Van_GetBFrame(f).height(), 4);
    van.Van_SetRFrame(krl::Plane(6, 4), f);
    van.Van_SetGFrame(krl::Plane(1, 1), f);
    van.Van_InsertFrame(f);
    van.Van_DeleteFrame(f);
    EXPECT_EQ(van.Van_GetCurrentFrame(), 1);
    expectFrames({0, 50, 100});
}

INSTANTIATE_TEST_SUITE_P(Numbers, OutsideTheAnimation, ::testing::Values(-1, 3, 32767, INT_MIN, INT_MAX));

} // namespace
} // namespace kirrel::test
