// The export dialogs without the converter: the frame list and its delays, the boxes' repairs,
// and a cancelled requester that leaves nothing behind.

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

TEST_F(GifDialog, EveryFrameHasItsDelayEntry) {
    panel::FormBase* f = open("frmSave2AnimGif");
    EXPECT_EQ(f->windowTitle(), "Export Animation to Animated Gif");
    EXPECT_EQ(entries(f), (QStringList{"Frame: 0 (Delay = 0)", "Frame: 1 (Delay = 0)", "Frame: 2 (Delay = 0)",
                                       "Frame: 3 (Delay = 0)"}));
    setDelay(f, 3, "12");
    EXPECT_EQ(entries(f)[3], "Frame: 3 (Delay = 12)");
    EXPECT_EQ(host().dialogs().back().text, "Set Delay for Frame #3");
    EXPECT_EQ(host().dialogs().back().title, "Kirrel");
    // A text that is no number, an empty box and a negative value change nothing; 0 is a delay.
    for (const char* bad : {"soon", "", "-4"})
        setDelay(f, 3, bad);
    EXPECT_EQ(entries(f)[3], "Frame: 3 (Delay = 12)");
    setDelay(f, 3, "0");
    EXPECT_EQ(entries(f)[3], "Frame: 3 (Delay = 0)");
}

TEST_F(GifDialog, GlobalDelayLocksThePerFrameButtonAndEmptyBoxesReadZero) {
    panel::FormBase* f = open("frmSave2AnimGif");
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
    EXPECT_EQ(mng->windowTitle(), "Export Animation to MNG (Animated PNG)");
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

} // namespace
} // namespace kirrel::test
