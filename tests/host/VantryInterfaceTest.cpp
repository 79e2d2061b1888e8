// The automation interface as the panel relies on it. The trace is what the other parts' tests
// compare runs against, so its format is exact: one line per call in call order, numbers as they
// are, strings quoted, planes by their upper bounds. Planes cross by value; the main buffer writes
// through to its frame; InsertFrame and the animation makers shape the store; Total 0 is a still
// picture; frame numbers outside the animation and closing calls outside a run are harmless.

#include "host/HostOperations.h"
#include "panel/Vantry.h"
#include "support/Support.h"

#include <climits>
#include <functional>

namespace kirrel::test {
namespace {

using host::QueuedAnswer;
using Vantry::Vantry_Class;

TEST_F(HostTest, TraceWritesEveryCallInOrderAndExactly) {
    host().loadAnimation(
        {patternPicture(4, 3, 0), patternPicture(4, 3, 1), patternPicture(4, 3, 2), patternPicture(4, 3, 3)});
    responder.push({QueuedAnswer::Kind::Value, 4, {}});
    responder.push({QueuedAnswer::Kind::Question, 6, {}});
    responder.push({QueuedAnswer::Kind::File, 0, "/x/a \"b\".gif"});
    Vantry_Class van;
    krl::Plane r;
    // Each call beside its line. Colours pack red low, green in the middle, blue high; the boxes'
    // answers reach the caller.
    const std::pair<std::function<void()>, const char*> calls[] = {
        {[&] { van.Van_BufferHeight(); }, "Van_BufferHeight()"},
        {[&] { van.Van_BufferWidth(); }, "Van_BufferWidth()"},
        {[&] { van.Van_GotoFrame(3); }, "Van_GotoFrame(3)"},
        {[&] { r = van.Van_GetRBuffer(); }, "Van_GetRBuffer()"},
        {[&] { van.Van_SetRbuffer(r); }, "Van_SetRbuffer(plane(4,3))"},
        {[&] { van.Van_SetGFrame(r, 2); }, "Van_SetGFrame(plane(4,3), 2)"},
        {[&] { van.Van_GetBFrame(1); }, "Van_GetBFrame(1)"},
        {[&] { van.van_status(50); }, "van_status(50)"},
        {[&] { van.van_status(100.0 / 3); }, "van_status(33.333333333333336)"},
        {[&] { van.van_status(12.5); }, "van_status(12.5)"},
        {[&] { van.Van_CreateAnim(30.0); }, "Van_CreateAnim(30)"},
        {[&] { van.Van_CreateAnimAdv(5, 2); }, "Van_CreateAnimAdv(5, 2)"},
        {[&] { van.Van_SetPrimaryColor(255, 0, 7); }, "Van_SetPrimaryColor(255, 0, 7)"},
        {[&] { van.Van_SetSecondaryColor(1, 2, 200); }, "Van_SetSecondaryColor(1, 2, 200)"},
        {[&] { EXPECT_EQ(van.Van_getPrimaryColor(), 0x0700FF); }, "Van_getPrimaryColor()"},
        {[&] { EXPECT_EQ(van.Van_getSecondaryColor(), 0xC80201); }, "Van_getSecondaryColor()"},
        {[&] { EXPECT_EQ(van.Van_ValueBox("Number of \"Stripes\"", 1, -50), 4); },
         "Van_ValueBox(\"Number of \\\"Stripes\\\"\", 1, -50)"},
        {[&] { van.Van_MessageBox("Slot Empty"); }, "Van_MessageBox(\"Slot Empty\")"},
        {[&] { EXPECT_EQ(van.Van_QuestionBox("\nClear Animation Undo file?"), 6); },
         "Van_QuestionBox(\"\\nClear Animation Undo file?\")"},
        {[&] {
             EXPECT_EQ(van.Van_RequestFile_open("Open", "a\\b.msk", "msk(*.msk)|*.msk"), "/x/a \"b\".gif");
         },
         "Van_RequestFile_open(\"Open\", \"a\\\\b.msk\", \"msk(*.msk)|*.msk\")"},
        {[&] { van.Van_SetAbuffer(krl::Plane(0, 0)); }, "Van_SetAbuffer(plane(0,0))"},
        {[&] { van.van_StatusClose(); }, "van_StatusClose()"},
    };
    std::vector<std::string> want;
    for (const auto& [call, line] : calls) {
        call();
        want.push_back(line);
    }
    EXPECT_EQ(trace, want);
    EXPECT_EQ(host().dialogs().back().answer, "\"/x/a \\\"b\\\".gif\"");
    EXPECT_TRUE(responder.pending().empty());
}

// A script's "host" steps reach the interface with their arguments in order and refuse any other
// count; the user's answer to the discard question is kept for state.json.
TEST_F(HostTest, ScriptHostStepsCallTheInterfaceWithTheirArgumentsInOrder) {
    host().hasUnsavedChanges = [] { return true; };
    responder.push({QueuedAnswer::Kind::Question, 7, {}});
    const std::pair<const char*, QJsonArray> steps[] = {{"Van_SetPrimaryColor", {255, 0, 7}},
                                                        {"Van_SetSecondaryColor", {1, 2, 200}},
                                                        {"Van_getPrimaryColor", {}},
                                                        {"Van_GetAppDir", {}},
                                                        {"Van_ConfirmDiscard", {}}};
    for (const auto& [name, args] : steps) {
        host::callHostOperation(name, args);
        EXPECT_THROW(host::callHostOperation(name, QJsonArray(args) << 1), host::HostOperationError) << name;
    }
    EXPECT_EQ(trace,
              (std::vector<std::string>{"Van_SetPrimaryColor(255, 0, 7)", "Van_SetSecondaryColor(1, 2, 200)",
                                        "Van_getPrimaryColor()", "Van_GetAppDir()", "Van_ConfirmDiscard()"}));
    ASSERT_EQ(host().dialogs().size(), 1u);
    EXPECT_EQ(host().dialogs().back().answer, "7");
}

class Interface : public HostTest {
  protected:
    static host::Picture pictureOf(krl::Plane r, krl::Plane g, krl::Plane b) {
        host::Picture p;
        p.r = std::move(r);
        p.g = std::move(g);
        p.b = std::move(b);
        return p;
    }
    // Three frames of 6 x 4 whose pictures are patternPicture(6, 4, seed) for seeds 0, 50, 100.
    void loadThree(int current = 0) {
        host().loadAnimation({patternPicture(6, 4, 0), patternPicture(6, 4, 50), patternPicture(6, 4, 100)},
                             current);
    }
    host::Picture frame(int f) {
        return pictureOf(van.Van_GetRFrame(f), van.Van_GetGFrame(f), van.Van_GetBFrame(f));
    }
    host::Picture mainBuffer() {
        return pictureOf(van.Van_GetRBuffer(), van.Van_GetGBuffer(), van.Van_GetBBuffer());
    }
    void expectFrames(const std::vector<int>& seeds) {
        ASSERT_EQ(van.Van_GetTotalFrames(), static_cast<short>(seeds.size()));
        for (std::size_t f = 0; f < seeds.size(); ++f)
            EXPECT_EQ(frame(static_cast<int>(f)), patternPicture(6, 4, seeds[f])) << "frame " << f;
    }
    Vantry_Class van;
};

// Closing calls with nothing open do nothing; and a second handle closes what the first opened,
// twice over without harm.
TEST_F(Interface, ClosingCallsOutsideARunDoNothing) {
    for (int round = 0; round < 2; ++round) {
        Vantry_Class other;
        for (int i = 0; i < 2; ++i) {
            other.van_StatusClose();
            other.Van_RestorePointer();
            other.Van_Unlock();
        }
        EXPECT_FALSE(host().locked() || host().statusOpen() || host().pointer() != 0);
        EXPECT_TRUE(host().dialogs().empty());
        van.Van_Lock();
        van.Van_ChangePointer(11);
        van.van_status(50);
        EXPECT_TRUE(host().locked() && host().statusOpen() && host().pointer() == 11);
    }
}

TEST_F(Interface, MainBufferReachesItsFrameByTheNextGotoAndStoreAccessLeavesItAlone) {
    loadThree();
    van.Van_GotoFrame(1);
    const host::Picture painted = patternPicture(6, 4, 200);
    van.Van_SetRbuffer(painted.r);
    van.Van_SetGbuffer(painted.g);
    van.Van_SetBbuffer(painted.b);
    van.Van_InsertFrame(1); // copies frame 1 as painted
    van.Van_GotoFrame(1);   // to the current frame: an ordinary call
    van.Van_GotoFrame(0);
    EXPECT_EQ(mainBuffer(), patternPicture(6, 4, 0));
    van.Van_GotoFrame(1);
    EXPECT_EQ(mainBuffer(), painted);
    expectFrames({0, 200, 200, 100});

    const host::Picture other = patternPicture(6, 4, 33);
    van.Van_SetRFrame(other.r, 0);
    van.Van_SetGFrame(other.g, 0);
    van.Van_SetBFrame(other.b, 0);
    EXPECT_EQ(van.Van_GetCurrentFrame(), 1);
    EXPECT_EQ(mainBuffer(), painted);
    expectFrames({33, 200, 200, 100});
}

class InsertFrame : public Interface,
                    public ::testing::WithParamInterface<std::pair<int, std::vector<int>>> {};

TEST_P(InsertFrame, CopiesFrameNAndMovesLaterFramesUp) {
    // The current frame is elsewhere: what is copied is frame n, not the main buffer, except after
    // the last frame, where the insertion appends the frame shown now; one past it is outside. (Other
    // numbers outside the animation are below, with the other calls.)
    const auto& [n, seedsAfter] = GetParam();
    loadThree(n == 0 ? 2 : 0);
    van.Van_InsertFrame(n);
    expectFrames(seedsAfter);
}

INSTANTIATE_TEST_SUITE_P(EveryPlace, InsertFrame,
                         ::testing::Values(std::pair{0, std::vector{0, 0, 50, 100}},
                                           std::pair{1, std::vector{0, 50, 50, 100}},
                                           std::pair{2, std::vector{0, 50, 100, 0}},
                                           std::pair{3, std::vector{0, 50, 100}}));

struct MakeCase {
    const char* name;
    double count;
    int total;
    bool adv = false;      // CreateAnimAdv rather than CreateAnim
    bool overAnim = false; // over loadThree(1) rather than a still picture: its current frame repeats
};

class MakeAnimation : public Interface, public ::testing::WithParamInterface<MakeCase> {};

TEST_P(MakeAnimation, FromAStillPictureOrTheCurrentFrame) {
    const MakeCase& c = GetParam();
    const int seed = c.overAnim ? 50 : 77;
    c.overAnim ? loadThree(1) : host().loadStill(patternPicture(6, 4, seed));
    if (c.adv)
        van.Van_CreateAnimAdv(static_cast<int>(c.count), 2);
    else
        van.Van_CreateAnim(c.count);
    ASSERT_EQ(van.Van_GetTotalFrames(), c.total);
    EXPECT_EQ(van.Van_BufferWidth(), 6);
    EXPECT_EQ(van.Van_BufferHeight(), 4);
    EXPECT_EQ(mainBuffer(), patternPicture(6, 4, seed));
    if (c.total == 0) return;
    EXPECT_EQ(van.Van_GetCurrentFrame(), 0);
    for (int f : {0, c.total - 1})
        EXPECT_EQ(frame(f), patternPicture(6, 4, seed));
    van.Van_InsertFrame(0); // the count is read as 16-bit: the animation never grows past it
    EXPECT_GT(van.Van_GetTotalFrames(), 0);
}

INSTANTIATE_TEST_SUITE_P(Counts, MakeAnimation,
                         ::testing::Values(MakeCase{"Double30", 30.0, 30},
                                           MakeCase{"HalfRoundsToEvenDown", 2.5, 2},
                                           MakeCase{"HalfRoundsToEvenUp", 3.5, 4}, MakeCase{"Zero", 0, 0},
                                           MakeCase{"Negative", -4, 0, true}, MakeCase{"Adv", 5, 5, true},
                                           MakeCase{"AdvAtTheLimit", 32767, 32767, true},
                                           MakeCase{"AdvPastTheLimit", 100000, 32767, true},
                                           MakeCase{"AdvOverAnAnimation", 2, 2, true, true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Interface, NewBufferStartsAWhiteStillAndRescalesSwapAndAlpha) {
    loadThree();
    host().loadSwap(host::Picture::filled(6, 4, 0x102030));
    van.Van_SetAbuffer(host::Picture::filled(6, 4, 40).r);
    van.Van_NewBuffer(9, 7);
    EXPECT_EQ(van.Van_GetTotalFrames(), 0);
    EXPECT_EQ(mainBuffer(), host::Picture::filled(9, 7, 0xFFFFFF));
    EXPECT_EQ(pictureOf(van.Van_GetSwapRBuffer(), van.Van_GetSwapGBuffer(), van.Van_GetSwapBBuffer()),
              host::Picture::filled(9, 7, 0x102030));
    EXPECT_EQ(van.Van_GetABuffer(), host::Picture::filled(9, 7, 40).r);
    for (auto [w, h] : {std::pair{-4, -1}, std::pair{0, 0}, std::pair{INT_MAX, 2}}) {
        van.Van_NewBuffer(w, h);
        EXPECT_GE(van.Van_BufferWidth(), 0);
        EXPECT_GE(van.Van_BufferHeight(), 0);
        EXPECT_EQ(van.Van_GetRBuffer().width(), van.Van_BufferWidth());
        EXPECT_EQ(van.Van_GetABuffer().height(), van.Van_BufferHeight());
    }
}

class OutsideTheAnimation : public Interface, public ::testing::WithParamInterface<int> {};

// Also on a still picture (Total 0), where every frame number is outside and the buffer is the
// picture.
TEST_P(OutsideTheAnimation, FrameNumbersAreHarmless) {
    const int f = GetParam();
    host().loadStill(patternPicture(6, 4, 5));
    for (const int g : {0, f}) {
        van.Van_GotoFrame(g);
        van.Van_InsertFrame(g);
        van.Van_SetRFrame(krl::Plane(6, 4), g);
    }
    EXPECT_EQ(van.Van_GetTotalFrames(), 0);
    EXPECT_EQ(mainBuffer(), patternPicture(6, 4, 5));
    EXPECT_EQ(van.Van_GetRFrame(f).width(), 6);
    van.Van_SetRbuffer(host::Picture::filled(6, 4, 1).r);
    EXPECT_EQ(van.Van_GetRBuffer(), host::Picture::filled(6, 4, 1).r);
    loadThree(1);
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

struct PlaneAccess {
    const char* name;
    std::function<krl::Plane(Vantry_Class&)> get;
    std::function<void(Vantry_Class&, const krl::Plane&)> set;
};

#define KIRREL_PLANE(name, get, set)                                                                         \
    PlaneAccess {                                                                                            \
#name, [](Vantry_Class & v) { return v.get; }, [](Vantry_Class & v, const krl::Plane& p) { v.set; }  \
    }

class PlaneExchange : public Interface, public ::testing::WithParamInterface<PlaneAccess> {};

// What a getter returns is the caller's own copy, and what a setter is given the host copies, so a
// run may keep working in the same array; a plane of the wrong size leaves the buffer's size alone.
TEST_P(PlaneExchange, HandedOutAndTakenByValue) {
    loadThree(1);
    host().loadSwap(patternPicture(6, 4, 7));
    const PlaneAccess& a = GetParam();
    const krl::Plane before = a.get(van);
    ASSERT_EQ(before.width(), 6);
    ASSERT_EQ(before.height(), 4);
    krl::Plane mine = a.get(van);
    mine.at(1, 1) ^= 0xFF;
    mine.at(6, 4) ^= 0xFF; // the column and row that ride along are the caller's too
    EXPECT_EQ(a.get(van), before) << "changing a returned plane changed the host";
    a.set(van, mine);
    const krl::Plane handedIn = mine;
    EXPECT_EQ(a.get(van), handedIn);
    mine.at(2, 3) ^= 0xFF;
    mine.data()[0] ^= 1;
    EXPECT_EQ(a.get(van), handedIn) << "the host did not keep its own copy";

    for (const krl::Plane& p : {krl::Plane(), krl::Plane(-3, -3), krl::Plane(0, 0), krl::Plane(2, 1),
                                krl::Plane(40, 30), krl::Plane(6, 0), krl::Plane(0, 4)}) {
        a.set(van, p);
        EXPECT_EQ(a.get(van).width(), 6) << p.width() << "x" << p.height();
        EXPECT_EQ(a.get(van).height(), 4) << p.width() << "x" << p.height();
    }
    EXPECT_EQ(van.Van_BufferWidth(), 6);
    EXPECT_EQ(van.Van_GetTotalFrames(), 3);
}

INSTANTIATE_TEST_SUITE_P(EveryPlane, PlaneExchange,
                         ::testing::Values(KIRREL_PLANE(RBuffer, Van_GetRBuffer(), Van_SetRbuffer(p)),
                                           KIRREL_PLANE(GBuffer, Van_GetGBuffer(), Van_SetGbuffer(p)),
                                           KIRREL_PLANE(BBuffer, Van_GetBBuffer(), Van_SetBbuffer(p)),
                                           KIRREL_PLANE(ABuffer, Van_GetABuffer(), Van_SetAbuffer(p)),
                                           KIRREL_PLANE(SwapR, Van_GetSwapRBuffer(), Van_SetSwapRBuffer(p)),
                                           KIRREL_PLANE(SwapG, Van_GetSwapGBuffer(), Van_SetSwapGBuffer(p)),
                                           KIRREL_PLANE(SwapB, Van_GetSwapBBuffer(), Van_SetSwapBBuffer(p)),
                                           KIRREL_PLANE(RFrame, Van_GetRFrame(2), Van_SetRFrame(p, 2)),
                                           KIRREL_PLANE(GFrame, Van_GetGFrame(2), Van_SetGFrame(p, 2)),
                                           KIRREL_PLANE(BFrame, Van_GetBFrame(2), Van_SetBFrame(p, 2))),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace kirrel::test
