// The exchange dialogs without the converter: the export dialogs' frame list and its delays, the
// boxes' repairs, and a cancelled requester that leaves nothing behind; the sprite sheet's grid rule,
// where each frame lands, and its dialog leaving the sheet in the main buffer.

#include "exchange/SpriteSheet.h"
#include "support/Forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>

namespace kirrel::test {
namespace {

class GifDialog : public FormTest {
  protected:
    void SetUp() override {
        FormTest::SetUp();
        host().loadAnimation({patternPicture(4, 3, 0), patternPicture(4, 3, 9), patternPicture(4, 3, 18),
                              patternPicture(4, 3, 27)},
                             1);
    }
    static QStringList entries(panel::FormBase* f) {
        QStringList out;
        auto* list = ctl<QComboBox>(f, "cboFrameList");
        for (int i = 0; i < list->count(); ++i)
            out << list->itemText(i);
        return out;
    }
    void setDelay(panel::FormBase* f, int frame, const std::string& answer) {
        ctl<QComboBox>(f, "cboFrameList")->setCurrentIndex(frame);
        responder.push({host::QueuedAnswer::Kind::Input, 0, answer});
        click(f, "cmdSetDelay");
    }
};

TEST_F(GifDialog, EveryFrameHasItsDelayEntryAndGlobalDelayLocksItsButton) {
    panel::FormBase* f = open("frmSave2AnimGif");
    EXPECT_EQ(entries(f), (QStringList{"Frame: 0 (Delay = 0)", "Frame: 1 (Delay = 0)", "Frame: 2 (Delay = 0)",
                                       "Frame: 3 (Delay = 0)"}));
    setDelay(f, 3, "12");
    EXPECT_EQ(entries(f)[3], "Frame: 3 (Delay = 12)");
    EXPECT_EQ(host().dialogs().back().text, "Set Delay for Frame #3");
    // A text that is no number, an empty box and a negative value change nothing; 0 is a delay.
    for (const char* bad : {"soon", "", "-4"})
        setDelay(f, 3, bad);
    EXPECT_EQ(entries(f)[3], "Frame: 3 (Delay = 12)");
    setDelay(f, 3, "0");
    EXPECT_EQ(entries(f)[3], "Frame: 3 (Delay = 0)");
    // One delay for all frames locks the per-frame button; an empty box reads zero.
    ctl<QCheckBox>(f, "chkGlobalDelay")->click();
    EXPECT_FALSE(f->control("cmdSetDelay")->isEnabled());
    ctl<QCheckBox>(f, "chkGlobalDelay")->click();
    EXPECT_TRUE(f->control("cmdSetDelay")->isEnabled());
    ctl<QLineEdit>(f, "txtDelay")->setText("");
    f->leave("txtDelay");
    EXPECT_EQ(ctl<QLineEdit>(f, "txtDelay")->text(), "0");
}

TEST_F(GifDialog, CancelledRequesterWritesNothingAndGivesTheButtonsBack) {
    for (const char* form : {"frmSave2AnimGif", "frmSave2MNG", "frmSave2PNG"}) {
        panel::FormBase* f = open(form);
        answerFile("");
        click(f, "cmdSave");
        EXPECT_TRUE(f->control("cmdSave")->isEnabled()) << form;
        EXPECT_TRUE(f->control("cmdCancel")->isEnabled()) << form;
        EXPECT_EQ(host().progress(), 0) << form;
        EXPECT_TRUE(QDir(QString::fromStdString(tempDir())).entryList(QDir::Files).isEmpty()) << form;
    }
}

TEST_F(GifDialog, NonNumericBoxesAreAnErrorAndMngRepairsNothing) {
    panel::FormBase* gif = open("frmSave2AnimGif");
    ctl<QLineEdit>(gif, "txtLoops")->setText("many");
    click(gif, "cmdSave");
    EXPECT_EQ(host().dialogs().back().kind, "error");
    EXPECT_TRUE(gif->control("cmdSave")->isEnabled());

    panel::FormBase* mng = open("frmSave2MNG");
    ctl<QLineEdit>(mng, "txtDelay")->setText("");
    const auto before = host().dialogs().size();
    click(mng, "cmdSave");
    ASSERT_EQ(host().dialogs().size(), before + 1) << "no requester: the empty box fails first";
    EXPECT_EQ(host().dialogs().back().kind, "error");
}

TEST_F(GifDialog, ARunnerThatCannotStartEndsTheWaitWithAMessage) {
    qputenv("KIRREL_BATCH_RUNNER", QFile::encodeName(QDir(scratch.path()).filePath("no-such-runner")));
    panel::FormBase* f = open("frmSave2MNG");
    answerFile(QDir(scratch.path()).filePath("out.mng").toStdString());
    click(f, "cmdSave");
    qunsetenv("KIRREL_BATCH_RUNNER");
    EXPECT_EQ(host().dialogs().back().text.rfind("The converter's batch runner could not be started: ", 0),
              0u)
        << host().dialogs().back().text;
    EXPECT_TRUE(QDir(QString::fromStdString(tempDir())).entryList(QDir::Files).isEmpty())
        << "the frame bitmaps and the batch are cleared away";
    EXPECT_TRUE(f->control("cmdSave")->isEnabled());
}

TEST(SpriteGrid, RoundedRootThenAColumnThenARow) {
    const int cases[][3] = {{1, 1, 1},  {2, 1, 2},  {3, 2, 2},  {5, 2, 3},  {9, 3, 3},
                            {10, 3, 4}, {12, 3, 4}, {13, 4, 4}, {16, 4, 4}, {17, 4, 5}};
    for (const auto& c : cases) {
        const exchange::SpriteGrid g = exchange::spriteGrid(c[0]);
        EXPECT_EQ(g.rows, c[1]) << c[0] << " frames";
        EXPECT_EQ(g.cols, c[2]) << c[0] << " frames";
    }
    for (int n = 1; n <= 500; ++n) {
        const exchange::SpriteGrid g = exchange::spriteGrid(n);
        EXPECT_GE(g.rows * g.cols, n) << "every frame has a cell";
        EXPECT_LT(g.rows * g.cols - n, g.cols) << "never a whole row of unused cells";
    }
}

class SpriteSheet : public FormTest {
  protected:
    // Five flat frames of 3 x 2 pixels; frame f has the value 10 f + 1 in red, + 2 green, + 3 blue.
    void SetUp() override {
        FormTest::SetUp();
        std::vector<host::Picture> frames;
        for (int f = 0; f < 5; ++f)
            frames.push_back(
                host::Picture::filled(3, 2, host::packColor(10 * f + 1, 10 * f + 2, 10 * f + 3)));
        host().loadAnimation(frames, 2);
    }
};

TEST_F(SpriteSheet, TheDialogPutsTheFramesRowByRowIntoTheMainBuffer) {
    panel::FormBase* form = open("frmSpriteSheet");
    EXPECT_EQ(text(form, "lblFrames"), "Frames: 5");
    EXPECT_EQ(text(form, "lblRows"), "Rows: 2");
    EXPECT_EQ(text(form, "lblCols"), "Columns: 3");
    apply(form);
    EXPECT_EQ(calls("Van_NewBuffer"), (std::vector<std::string>{"Van_NewBuffer(9, 4)"}));
    // Cells 3 wide and 2 high: frames 0, 1, 2 on the first row, 3 and 4 on the second.
    Vantry::Vantry_Class van;
    const krl::Plane r = van.Van_GetRBuffer(), g = van.Van_GetGBuffer(), b = van.Van_GetBBuffer();
    const std::pair<int, int> where[] = {{1, 1}, {4, 0}, {7, 1}, {0, 3}, {5, 2}};
    for (int f = 0; f < 5; ++f) {
        EXPECT_EQ(r.at(where[f].first, where[f].second), 10 * f + 1) << f;
        EXPECT_EQ(b.at(where[f].first, where[f].second), 10 * f + 3) << f;
    }
    EXPECT_EQ(g.at(7, 3), 0) << "the sixth cell is unused and stays black";
    EXPECT_EQ(r.at(8, 3), 0);
    EXPECT_EQ(text(form, "lblFrames"), "Frames: 0") << "the labels follow the host after the run";
    EXPECT_TRUE(form->control("cmd_Run")->isEnabled());
}

TEST_F(SpriteSheet, WithoutAnAnimationTheDialogOffersToMakeOne) {
    host().loadStill(host::Picture::filled(3, 2, 0));
    panel::FormBase* form = open("frmSpriteSheet");
    responder.push({host::QueuedAnswer::Kind::Question, 2, ""});
    apply(form);
    ASSERT_FALSE(host().dialogs().empty());
    EXPECT_EQ(host().dialogs().back().text,
              "No Animation in memory!\n\n\nWould you like to create an animation now?");
    EXPECT_EQ(host().bufferWidth(), 3) << "nothing changed";
}

} // namespace
} // namespace kirrel::test
