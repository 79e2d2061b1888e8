// The host's undo history: one step per user action, undo and redo, the budget, and frames shared
// between steps; then the same through a session script, as Edit > Undo and Redo.

#include "host/AnimationFiles.h"
#include "panel/EventGuard.h"
#include "support/Fixtures.h"

#include <QJsonArray>

namespace kirrel::test {
namespace {

using host::Picture;

class History : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        std::vector<Picture> frames;
        for (int f = 0; f < 6; ++f)
            frames.push_back(patternPicture(15, 9, f));
        host().loadAnimation(frames);
        original = host().snapshot();
    }
    // One user action that paints frame f with value v in red.
    void paint(int f, int v, const std::string& label) {
        runGuarded(
            [&] {
                krl::Plane r(15, 9);
                r.fill(static_cast<std::uint8_t>(v));
                host().setFrame(host::Channel::R, r, f);
            },
            label);
    }
    int red(int f) const { return host().framePicture(f).r.at(3, 3); }
    host::HostSnapshot original;
};

TEST_F(History, OneStepPerActionUndoRedoAndANewStepDropsRedo) {
    runGuarded(
        [&] {
            paint(1, 10, "inner"); // a nested action belongs to the outer one
            paint(2, 20, "inner");
            nameAction("Wipes");
        },
        "fallback");
    runGuarded([] {}, "Nothing"); // no change, no step
    paint(3, 30, "Toonify");
    EXPECT_EQ(host().history().undoLabels(), (std::vector<std::string>{"Wipes", "Toonify"}));

    host().gotoFrame(5);
    ASSERT_TRUE(host().undo());
    EXPECT_EQ(red(3), original.frames[3].r.at(3, 3));
    EXPECT_EQ(red(1), 10);
    ASSERT_TRUE(host().undo());
    EXPECT_EQ(red(1), original.frames[1].r.at(3, 3));
    EXPECT_TRUE(host().framePicture(2).r.sharesBufferWith(original.frames[2].r))
        << "the very planes come back";
    EXPECT_FALSE(host().undo());
    EXPECT_EQ(host().history().redoLabels(), (std::vector<std::string>{"Wipes", "Toonify"}));

    ASSERT_TRUE(host().redo());
    EXPECT_EQ(red(2), 20);
    paint(0, 5, "Fades"); // a new step after an undo: "Toonify" can no longer be redone
    EXPECT_EQ(host().history().undoLabels(), (std::vector<std::string>{"Wipes", "Fades"}));
    EXPECT_TRUE(host().history().redoLabels().empty());

    // Undo inside an action moves in the history; it is not itself a step.
    runGuarded([&] { host().undo(); }, "Edit");
    EXPECT_EQ(host().history().undoLabels(), (std::vector<std::string>{"Wipes"}));
}

TEST_F(History, PlanesRewrittenWithTheSameBytesAreNoChange) {
    runGuarded([&] { host().setFrame(host::Channel::G, Picture(host().framePicture(4)).g, 4); }, "Same");
    runGuarded(
        [&] {
            krl::Plane same = host().framePicture(4).b;
            same.data()[0] = same.data()[0]; // detached: a new buffer holding the same bytes
            host().setFrame(host::Channel::B, same, 4);
        },
        "Same");
    EXPECT_TRUE(host().history().undoLabels().empty());
}

TEST_F(History, AStepCostsOnlyTheFramesItTouched) {
    std::vector<Picture> frames(300, patternPicture(99, 99, 1));
    for (std::size_t f = 0; f < frames.size(); ++f)
        frames[f].r = patternPicture(99, 99, static_cast<int>(f)).r; // 300 distinct red planes
    host().loadAnimation(frames);
    const std::size_t plane = 100 * 100;
    runGuarded(
        [&] {
            for (int f = 10; f < 20; ++f) {
                krl::Plane r(99, 99);
                r.fill(7);
                host().setFrame(host::Channel::R, r, f);
            }
        },
        "Ten frames");
    EXPECT_EQ(host().history().cost(host().snapshot()), 10 * plane);
    // A second step over the same frames keeps the first step's planes once, and its own once.
    runGuarded(
        [&] {
            for (int f = 10; f < 20; ++f) {
                krl::Plane r(99, 99);
                r.fill(9);
                host().setFrame(host::Channel::R, r, f);
            }
        },
        "Again");
    EXPECT_EQ(host().history().cost(host().snapshot()), 20 * plane);

    // The budget drops the oldest step first, but never the newest.
    host().history().setBudget(15 * plane);
    runGuarded([&] { host().setFrameDelay(0, 40); }, "Delay");
    EXPECT_EQ(host().history().undoLabels(), (std::vector<std::string>{"Again", "Delay"}));
    host().history().setBudget(1);
    paint(0, 1, "Big");
    EXPECT_EQ(host().history().undoLabels(), (std::vector<std::string>{"Big"}));
}

TEST_F(History, StepSummaryNamesWhatChanged) {
    std::vector<std::string> said;
    host().onStepAdded = [&](const host::StepSummary& s) { said.push_back(host::describe(s)); };
    paint(2, 1, "Wipes");
    runGuarded(
        [&] {
            for (int f = 1; f <= 4; ++f)
                host().setFrame(host::Channel::G, krl::Plane(15, 9), f);
        },
        "Fades");
    runGuarded([&] { host().swapMainAndSwap(); }, "Swap Main and Swap");
    runGuarded([&] { host().fillAlpha(0); }, "Clear Alpha");
    host().onStepAdded = nullptr;
    EXPECT_EQ(said, (std::vector<std::string>{"Wipes: frame 2 changed", "Fades: frames 1\u20134 changed",
                                              "Swap Main and Swap: frame 0 changed, the swap picture changed",
                                              "Clear Alpha: the alpha channel changed"}));
}

class HistoryScript : public ScriptTest {};

TEST_F(HistoryScript, AWipeIsUndoneAndRedoneFromTheScript) {
    host::writePictureDat(at("swap.dat"), Picture::filled(8, 6, 0xFF0000));
    const RunResult ok =
        run(R"JS({"host": {"temp_dir": "tmp", "size": [8, 6], "frames": 5, "swap": "swap.dat"},
      "steps": [
        {"open": "Wipes"},
        {"click": "cmd_Run"},
        {"dump": "wiped"},
        {"window": "undo"},
        {"dump": "undone"},
        {"window": "redo"},
        {"dump": "redone"}]})JS");
    ASSERT_EQ(ok.exitCode, 0) << ok.err;
    EXPECT_EQ(state("wiped")["history"].toObject()["undo"].toArray().first().toString(), "Wipes");
    EXPECT_EQ(state("undone")["history"].toObject()["redo"].toArray().first().toString(), "Wipes");
    EXPECT_TRUE(state("undone")["history"].toObject()["undo"].toArray().isEmpty());
    const auto wiped = dumped("wiped"), undone = dumped("undone"), redone = dumped("redone");
    EXPECT_NE(wiped[4].r, undone[4].r);
    EXPECT_EQ(wiped[4].r, redone[4].r);
    EXPECT_EQ(undone[4].r.at(1, 1), 255) << "the white frames are back";
}

} // namespace
} // namespace kirrel::test
