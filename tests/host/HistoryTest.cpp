// The host's undo history: one step per user action, undo and redo, the budget, and frames shared
// between steps; then the same through a session script, as Edit > Undo and Redo.

#include "host/AnimationFiles.h"
#include "panel/EventGuard.h"
#include "support/Fixtures.h"

#include <QJsonArray>

namespace kirrel::test {
namespace {

using host::Picture;
using Labels = std::vector<std::string>;

class History : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        load(6, 15);
        original = host().snapshot();
    }
    // n frames of w x w - 6 pixels, each its own pattern.
    void load(int n, int w) {
        std::vector<Picture> frames;
        for (int f = 0; f < n; ++f)
            frames.push_back(patternPicture(w, w - 6, f));
        host().loadAnimation(frames);
    }
    // One user action that paints frames first..last with value v in red.
    void paint(int first, int last, int v, const std::string& label) {
        runGuarded(
            [&] {
                for (int f = first; f <= last; ++f) {
                    krl::Plane r(host().bufferWidth(), host().bufferHeight());
                    r.fill(static_cast<std::uint8_t>(v));
                    host().setFrame(host::Channel::R, r, f);
                }
            },
            label);
    }
    int red(int f) const { return host().framePicture(f).r.at(3, 3); }
    Labels undoLabels() const { return host().history().undoLabels(); }
    host::HostSnapshot original;
};

TEST_F(History, OneStepPerActionUndoRedoAndANewStepDropsRedo) {
    runGuarded(
        [&] {
            paint(1, 1, 10, "inner"); // a nested action belongs to the outer one
            paint(2, 2, 20, "inner");
            nameAction("Wipes");
        },
        "fallback");
    // No change, no step: nor planes rewritten with the same bytes, shared or in a buffer of their own.
    runGuarded(
        [&] {
            host().setFrame(host::Channel::G, Picture(host().framePicture(4)).g, 4);
            krl::Plane same = host().framePicture(4).b;
            same.data()[0] = same.data()[0]; // detached: a new buffer holding the same bytes
            host().setFrame(host::Channel::B, same, 4);
        },
        "Nothing");
    paint(3, 3, 30, "Toonify");
    EXPECT_EQ(undoLabels(), (Labels{"Wipes", "Toonify"}));

    host().gotoFrame(5);
    ASSERT_TRUE(host().undo());
    EXPECT_EQ(red(3), original.frames[3].r.at(3, 3));
    EXPECT_EQ(red(1), 10);
    ASSERT_TRUE(host().undo());
    EXPECT_EQ(red(1), original.frames[1].r.at(3, 3));
    EXPECT_TRUE(host().framePicture(2).r.sharesBufferWith(original.frames[2].r))
        << "the very planes come back";
    EXPECT_FALSE(host().undo());
    EXPECT_EQ(host().history().redoLabels(), (Labels{"Wipes", "Toonify"}));

    ASSERT_TRUE(host().redo());
    EXPECT_EQ(red(2), 20);
    paint(0, 0, 5, "Fades"); // a new step after an undo: "Toonify" can no longer be redone
    EXPECT_EQ(undoLabels(), (Labels{"Wipes", "Fades"}));
    EXPECT_TRUE(host().history().redoLabels().empty());
    // Undo inside an action moves in the history; it is not itself a step.
    runGuarded([&] { host().undo(); }, "Edit");
    EXPECT_EQ(undoLabels(), (Labels{"Wipes"}));
}

TEST_F(History, AStepCostsOnlyTheFramesItTouched) {
    load(300, 99); // 300 distinct red planes
    const std::size_t plane = 100 * 94;
    paint(10, 19, 7, "Ten frames");
    EXPECT_EQ(host().history().cost(host().snapshot()), 10 * plane);
    // A second step over the same frames keeps the first step's planes once, and its own once.
    paint(10, 19, 9, "Again");
    EXPECT_EQ(host().history().cost(host().snapshot()), 20 * plane);
    // An effect that writes every frame back and changes one costs that one: the planes holding the
    // bytes they held are shared again.
    runGuarded(
        [&] {
            for (int f = 0; f < 300; ++f) {
                krl::Plane same = host().framePicture(f).r;
                same.data()[0] = static_cast<std::uint8_t>(same.data()[0] + (f == 0));
                host().setFrame(host::Channel::R, same, f);
            }
        },
        "Rewrite");
    EXPECT_EQ(host().history().cost(host().snapshot()), 21 * plane);
    runGuarded([&] { host().fillAlpha(0); }, "Clear Alpha"); // the alpha plane it replaced counts too
    EXPECT_EQ(host().history().cost(host().snapshot()), 22 * plane);

    // The budget drops the oldest step first, but never the newest.
    host().history().setBudget(15 * plane);
    runGuarded([&] { host().setFrameDelay(0, 40); }, "Delay");
    EXPECT_EQ(undoLabels(), (Labels{"Again", "Rewrite", "Clear Alpha", "Delay"}));
    host().history().setBudget(1);
    paint(0, 0, 1, "Big");
    EXPECT_EQ(undoLabels(), (Labels{"Big"}));
}

TEST_F(History, DelaysKeepEveryPositiveMillisecondAndAStepUndoesThem) {
    runGuarded([&] { host().setFrameDelays({1, 0, 1000000, -5}); }, "Delays");
    EXPECT_EQ(host().frameDelays(),
              (std::vector<int>{1, host::HostState::kDefaultDelayMs, host::HostState::kMaxDelayMs,
                                host::HostState::kDefaultDelayMs, host::HostState::kDefaultDelayMs,
                                host::HostState::kDefaultDelayMs}));
    ASSERT_TRUE(host().undo());
    EXPECT_EQ(host().frameDelays(), original.delays);
}

TEST_F(History, StepSummaryNamesWhatChanged) {
    Labels said;
    host().onStepAdded = [&](const host::StepSummary& s) { said.push_back(host::describe(s)); };
    paint(2, 2, 1, "Wipes");
    paint(1, 4, 0, "Fades");
    runGuarded([&] { host().swapMainAndSwap(); }, "Swap Main and Swap");
    runGuarded([&] { host().fillAlpha(0); }, "Clear Alpha");
    host().onStepAdded = nullptr;
    EXPECT_EQ(said, (Labels{"Wipes: frame 2 changed", "Fades: frames 1\u20134 changed",
                            "Swap Main and Swap: frame 0 changed, the swap picture changed",
                            "Clear Alpha: the alpha channel changed"}));
}

using HistoryScript = ScriptTest;

TEST_F(HistoryScript, AWipeIsUndoneAndRedoneFromTheScript) {
    host::writePictureDat(at("swap.dat"), Picture::filled(8, 6, 0xFF0000));
    const RunResult ok =
        run(R"JS({"host": {"temp_dir": "tmp", "size": [8, 6], "frames": 5, "swap": "swap.dat"},
      "steps": [{"open": "Wipes"}, {"click": "cmd_Run"}, {"dump": "wiped"}, {"window": "undo"}, {"dump": "undone"},
        {"window": "redo"}, {"dump": "redone"}]})JS");
    ASSERT_EQ(ok.exitCode, 0) << ok.err;
    const auto history = [&](const QString& dump, const char* list) {
        return state(dump)["history"].toObject()[list].toVariant().toStringList();
    };
    EXPECT_EQ(history("wiped", "undo"), QStringList{"Wipes"});
    EXPECT_EQ(history("undone", "redo"), QStringList{"Wipes"});
    EXPECT_TRUE(history("undone", "undo").isEmpty());
    const auto wiped = dumped("wiped"), undone = dumped("undone"), redone = dumped("redone");
    EXPECT_NE(wiped[4].r, undone[4].r);
    EXPECT_EQ(wiped[4].r, redone[4].r);
    EXPECT_EQ(undone[4].r.at(1, 1), 255) << "the white frames are back";
}

} // namespace
} // namespace kirrel::test
