// A preview's run on a scratch host: what it shows when it runs, refuses or fails, leaving the real
// host untouched, and the small copies of frames and slot files it works on.

#include "panel/PreviewRun.h"
#include "host/ScaledCopies.h"
#include "panel/EventGuard.h"
#include "panel/Vantry.h"
#include "stored/DataFile.h"
#include "stored/SlotCopies.h"
#include "stored/StoredSupport.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace kirrel::test {
namespace {

using host::Picture;

class ScratchRun : public HostTest {
  protected:
    void loadPatterned(int frames, int w, int h) {
        host().loadAnimation(patternFrames(frames, w, h));
        host().loadSwap(patternPicture(w, h, 200));
        trace.clear();
    }
};

TEST_F(ScratchRun, APreviewShowsItsRangeOrWhyItStopped) {
    loadPatterned(5, 6, 4);
    host().setFrameDelays({10, 20, 30, 40, 50});
    const std::vector<Picture> before = {host().framePicture(0), host().framePicture(4)};
    panel::PreviewRunner runner(160, 120);
    auto plan = [](std::function<void()> run) {
        panel::PreviewPlan p;
        p.first = 1;
        p.last = 3;
        p.run = [run = std::move(run)](double) { run(); };
        return p;
    };

    // Frames 1..3 turn grey and a copy of frame 3 is added after it: four frames show.
    const panel::PreviewFrames grown = runner.run(plan([] {
        Vantry::Vantry_Class van;
        for (int i = 1; i <= 3; ++i) {
            van.Van_GotoFrame(i);
            van.Van_SetRbuffer(krl::Plane(6, 4));
        }
        van.Van_InsertFrame(3);
    }));
    EXPECT_TRUE(grown.text.empty()) << grown.text;
    ASSERT_EQ(grown.frames.size(), 4u);
    EXPECT_EQ(grown.delays, (std::vector<int>{20, 30, 40, 40}));
    EXPECT_EQ(grown.frames[3].r, krl::Plane(6, 4));
    EXPECT_EQ(grown.frames[0].g, host().framePicture(1).g);

    const std::pair<std::function<void()>, std::string> stops[] = {
        {[] { Vantry::Vantry_Class().Van_MessageBox("Overflow"); }, "Overflow"},
        {[] { Vantry::Vantry_Class().Van_QuestionBox("Go on?"); }, "Go on?"},
        {[] { throw std::runtime_error("Division by zero"); }, "Division by zero"},
        {[] { endProgram(); }, "The preview failed"},
    };
    for (const auto& [run, words] : stops) {
        const panel::PreviewFrames stopped = runner.run(plan(run));
        EXPECT_EQ(stopped.text, words);
        EXPECT_TRUE(stopped.frames.empty());
    }
    panel::PreviewPlan refused = plan([] {});
    refused.refusal = "Need at least 3 frames selected!";
    EXPECT_EQ(runner.run(refused).text, refused.refusal);
    panel::PreviewPlan outside = plan([] {});
    outside.last = 5;
    EXPECT_EQ(runner.run(outside).text, "Nothing to preview");

    EXPECT_FALSE(programEnded());
    EXPECT_TRUE(trace.empty());
    EXPECT_TRUE(host().dialogs().empty());
    EXPECT_EQ(host().totalFrames(), 5);
    EXPECT_TRUE(host().framePicture(0) == before[0] && host().framePicture(4) == before[1]);
}

TEST_F(ScratchRun, CopiesScaleOnlyTheFramesAskedForAndEachPlaneOnce) {
    loadPatterned(6, 320, 240);
    host().gotoFrame(4);
    host::ScaledCopies copies(160, 120);
    host::HostState a, b, c;
    copies.copyInto(a, host(), 2, 3, "/scratch");
    EXPECT_EQ(a.bufferWidth(), 160);
    EXPECT_EQ(a.bufferHeight(), 120);
    EXPECT_EQ(a.totalFrames(), 6);
    EXPECT_EQ(a.currentFrame(), 4);
    EXPECT_EQ(a.framePicture(2).r, host::shrinkPlane(host().framePicture(2).r, 160, 120));
    EXPECT_EQ(a.framePicture(0).r, krl::Plane(160, 120)) << "a frame the run does not read";
    EXPECT_EQ(a.swapPicture().b, host::shrinkPlane(host().swapPicture().b, 160, 120));
    EXPECT_EQ(copies.cached(), 6u + 3u + 1u);

    copies.copyInto(b, host(), 2, 4, "/scratch");
    EXPECT_TRUE(b.framePicture(3).g.sharesBufferWith(a.framePicture(3).g)) << "scaled once";
    EXPECT_EQ(copies.cached(), 13u);

    host().setFrame(host::Channel::R, patternPicture(320, 240, 99).r, 2);
    copies.copyInto(c, host(), 2, 4, "/scratch");
    EXPECT_FALSE(c.framePicture(2).r.sharesBufferWith(a.framePicture(2).r));
    EXPECT_EQ(c.framePicture(2).r, host::shrinkPlane(host().framePicture(2).r, 160, 120));
    EXPECT_EQ(copies.cached(), 13u) << "the replaced plane's copy goes";
}

TEST_F(ScratchRun, SlotCopiesFitTheBoxAndFollowTheSlotFile) {
    QTemporaryDir folder;
    const std::string copiesDir = folder.path().toStdString();
    stored::SlotCopies slotCopies(copiesDir, 160, 120);
    const auto real = [&](int slot) { return QString::fromStdString(stored::slotDataPath(tempDir(), slot)); };
    const auto copy = [&](int slot) { return QString::fromStdString(stored::slotDataPath(copiesDir, slot)); };

    writeFile(real(0), flatSlotBytes(3, 12, 9, '\x21'));
    slotCopies.refresh(tempDir(), 0);
    EXPECT_EQ(readFile(copy(0)), readFile(real(0))) << "a slot that fits is copied as it is";

    writeFile(real(1), flatSlotBytes(2, 320, 240, '\x33'));
    slotCopies.refresh(tempDir(), 1);
    const std::string shrunk = readFile(copy(1));
    EXPECT_EQ(shrunk.substr(0, 6), int16le({2, 160, 120}));
    EXPECT_EQ(shrunk.size(), 6u + 2u * 3u * 161u * 121u);

    // Kept while the slot file stays as it is: a copy spoiled meanwhile is not made again.
    writeFile(copy(1), "spoiled");
    slotCopies.refresh(tempDir(), 1);
    EXPECT_EQ(readFile(copy(1)), "spoiled");
    writeFile(real(1), flatSlotBytes(3, 320, 240, '\x33'));
    slotCopies.refresh(tempDir(), 1);
    EXPECT_EQ(readFile(copy(1)).substr(0, 6), int16le({3, 160, 120}));

    QFile::remove(real(1));
    slotCopies.refresh(tempDir(), 1);
    EXPECT_FALSE(QFile::exists(copy(1))) << "an emptied slot";

    writeFile(real(0), int16le({4, 12, 9}) + "short");
    EXPECT_THROW(slotCopies.refresh(tempDir(), 0), stored::DamagedFile);
    EXPECT_FALSE(QFile::exists(copy(0)));
}

} // namespace
} // namespace kirrel::test
