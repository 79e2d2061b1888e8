// Tools > Record Session: a session in the window becomes a script that kirrel --script plays to the
// same animation, swap and alpha, byte for byte, and that plays on another animation of another size
// and length, the frame lists filling anew.

#include "HostWindowSupport.h"

#include "host/AnimationFiles.h"
#include "host/SessionRecorder.h"
#include "host/StateDump.h"
#include "panel/FormBase.h"
#include "panel/Panel.h"
#include "support/SampleGifs.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>

namespace kirrel::test {
namespace {

class SessionRecording : public HostWindowTest {
  protected:
    QString at(const QString& rel) const { return QDir(scratch.path()).filePath(rel); }
    // Opens a plug-in as the user does: its category, then a double click.
    static void openPlugin(const QString& category, const QString& plugin) {
        auto* main = panel::FormBase::find("Mainfrm");
        auto* cats = qobject_cast<QListWidget*>(main->control("List1"));
        auto* plugins = qobject_cast<QListWidget*>(main->control("List2"));
        cats->setCurrentItem(cats->findItems(category, Qt::MatchExactly).front());
        QListWidgetItem* item = plugins->findItems(plugin, Qt::MatchExactly).front();
        plugins->setCurrentItem(item);
        emit plugins->itemDoubleClicked(item);
    }
    template <class T> static T* ctl(const QString& form, const QString& name) {
        return qobject_cast<T*>(panel::FormBase::find(form)->control(name));
    }
    // Plays the script with a dump added at its end.
    RunResult replay(const QString& script, const QString& animation = {}) {
        QFile f(script);
        f.open(QIODevice::ReadOnly);
        QJsonObject root = QJsonDocument::fromJson(f.readAll()).object();
        f.close();
        if (!animation.isEmpty()) {
            QJsonObject host = root["host"].toObject();
            host["animation"] = animation;
            host.remove("delays"); // the recorded input's, as a batch drops them too
            root["host"] = host;
        }
        QJsonArray steps = root["steps"].toArray();
        steps.append(QJsonObject{{"dump", "replayed"}});
        root["steps"] = steps;
        const QString copy = at("replay.json");
        writeFile(copy, QJsonDocument(root).toJson().toStdString());
        QProcess p;
        p.setWorkingDirectory(scratch.path());
        p.start(KIRREL_EXE, {"--script", copy});
        p.waitForFinished(120000);
        return {p.exitCode(), {}, p.readAllStandardError().toStdString()};
    }
};

TEST_F(SessionRecording, ARecordedSessionReplaysToTheSameBytesAndOnAnotherAnimation) {
    if (!haveConvert()) GTEST_SKIP() << "ImageMagick is not installed";
    const QString gif = makeSampleGifs(at("gifs")).filter("dispose-mix").front();
    // The converter's batch runner is built beside the kirrel program.
    qputenv("KIRREL_BATCH_RUNNER", QFile::encodeName(QFileInfo(KIRREL_EXE).absolutePath() + "/kirrel_batch"));
    host().setAppDir(QFileInfo(KIRREL_EXE).absolutePath().toStdString());
    panel::startPanel();
    window->recorder().start({}, true, host().alphaPlane());

    openPlugin("Transitions", "Wipes");
    ctl<QComboBox>("frmWipes", "cboWipeOptions")->setCurrentText("Primary Color");
    ctl<QComboBox>("frmWipes", "cboFrameStart")->setCurrentIndex(2);
    ctl<QPushButton>("frmWipes", "cmd_Run")->click();
    ctl<QPushButton>("frmWipes", "cmdCancel")->click();
    window->action("swapMainAndSwap")->trigger();
    window->action("nextFrame")->trigger();
    window->action("nextFrame")->trigger();
    // A box the user answers: the import asks for its file.
    answerFile(gif.toStdString());
    responder.push({host::QueuedAnswer::Kind::Question, 1, {}}); // yes, the wiped frames may go
    panel::FormBase::find("Mainfrm")->findChild<QAction*>("menuImportAnimGif")->trigger();
    window->action("clearAlpha")->trigger();
    settle();

    const QString script = at("walk-session.json");
    ASSERT_FALSE(window->recorder().stopAndSave(script).has_value());
    const std::string text = readFile(script);
    for (const char* step : {R"({"open":"Wipes"})", R"("click":"cmd_Run")", R"({"window":"swapMainAndSwap"})",
                             R"("Van_GotoFrame")", R"({"answer":[{"file":"gifs/)",
                             R"({"menu":"menuImportAnimGif"})", R"({"window":"clearAlpha"})"})
        EXPECT_NE(text.find(step), std::string::npos) << step << "\n" << text;
    EXPECT_EQ(text.find("cboFrameEnd"), std::string::npos) << "untouched lists are not steps";

    dumpHost(host(), at("recorded"));
    qunsetenv("KIRREL_BATCH_RUNNER");
    const RunResult r = replay(script);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    for (const char* file : {"animation.dat", "swap.dat", "alpha.dat"})
        EXPECT_TRUE(readFile(at(QString("recorded/") + file)) == readFile(at(QString("replayed/") + file)))
            << file;
}

TEST_F(SessionRecording, ARecordingPlaysOnAnAnimationOfAnotherSizeAndLength) {
    panel::startPanel();
    window->recorder().start({}, true, host().alphaPlane());
    openPlugin("Transitions", "Wipes");
    ctl<QComboBox>("frmWipes", "cboWipeOptions")->setCurrentText("Primary Color");
    ctl<QComboBox>("frmWipes", "cboFrameEnd")
        ->setCurrentIndex(ctl<QComboBox>("frmWipes", "cboFrameEnd")->count() - 1);
    ctl<QPushButton>("frmWipes", "cmd_Run")->click();
    const QString script = at("wipe-session.json");
    ASSERT_FALSE(window->recorder().stopAndSave(script).has_value());

    host::Animation other;
    for (int f = 0; f < 20; ++f)
        other.frames.push_back(patternPicture(30, 20, f));
    host::writeAnimationDat(at("other.dat"), other);
    const RunResult r = replay(script, "other.dat");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto frames = host::readAnimationDat(at("replayed/animation.dat")).frames;
    ASSERT_EQ(frames.size(), 20u);
    // The wipe ran to the new animation's last frame: it shows the primary colour (black) whole.
    EXPECT_EQ(frames.back().r.at(29, 19), 0);
    EXPECT_EQ(frames.back().g.at(0, 0), 0);
    EXPECT_NE(frames.front().g.at(0, 0), 0) << "the first frame is the animation's own";
}

} // namespace
} // namespace kirrel::test
