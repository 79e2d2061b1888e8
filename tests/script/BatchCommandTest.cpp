// kirrel batch: one script over many inputs, each in its own process. A damaged input fails alone,
// outputs already there are kept or counted as done, Ctrl+C leaves only whole outputs, and GNU
// parallel spreading the same command gives the same files.

#include "support/Fixtures.h"
#include "support/MediaCheck.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <csignal>

namespace kirrel::test {
namespace {

class BatchCommand : public ScriptTest {
  protected:
    void SetUp() override {
        if (const QString m = missingTool({"ffmpeg", "convert"}); !m.isEmpty())
            GTEST_SKIP() << m.toStdString();
        // A wipe into the primary colour over the whole animation.
        writeFile(at("wipe.json"), R"({"host": {"animation": "in/clip00.gif"}, "steps": [
            {"open": "Wipes"}, {"set": {"control": "cboWipeOptions", "text": "Primary Color"}},
            {"click": "cmd_Run"}]})");
    }
    // n small GIFs in in/, clip00.gif ... (each its own content).
    QStringList makeInputs(int n, int frames = 6) {
        QStringList inputs;
        for (int i = 0; i < n; ++i) {
            inputs << at(QString("in/clip%1.gif").arg(i, 2, 10, QChar('0')));
            QDir().mkpath(at("in"));
            runTool("ffmpeg", {"-v", "error", "-f", "lavfi", "-i",
                               QString("testsrc2=size=48x32:rate=10,hue=h=%1").arg(i * 17), "-frames:v",
                               QString::number(frames), "-y", inputs.back()});
        }
        return inputs;
    }
    ToolOutput batch(const QStringList& args) const {
        return runTool(KIRREL_EXE, QStringList{"batch", "wipe.json"} + args, dir.path());
    }
    static int framesOf(const QString& gif) {
        const ToolOutput r = runTool("identify", {"-format", "%p\n", gif});
        return r.code == 0 ? static_cast<int>(r.out.count('\n')) : -1;
    }
};

TEST_F(BatchCommand, ADamagedInputFailsAloneAndOutputsThereAreKept) {
    QStringList inputs = makeInputs(20);
    writeFile(at("in/clip07.gif"), "GIF89a cut");
    const ToolOutput r = batch(inputs + QStringList{"--out", "out", "--jobs", "2"});
    EXPECT_EQ(r.code, 1) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("19 written, 0 already there, 1 failed")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("clip07.gif: host: clip07.gif")) << r.err.toStdString();
    EXPECT_EQ(QDir(at("out")).entryList(QDir::Files).size(), 19);
    EXPECT_EQ(framesOf(at("out/clip03.gif")), 6);

    // Again: nothing is written over without --force; --skip-existing counts them as done.
    writeFile(at("out/clip03.gif"), "mine");
    EXPECT_EQ(batch({inputs[3], "--out", "out"}).code, 1);
    EXPECT_EQ(batch({inputs[3], "--out", "out", "--skip-existing"}).code, 0);
    EXPECT_EQ(readFile(at("out/clip03.gif")), "mine");
    EXPECT_EQ(batch({inputs[3], "--out", "out", "--force", "--format", "webp"}).code, 0);
    EXPECT_TRUE(QFileInfo::exists(at("out/clip03.webp")));
    const ToolOutput usage = batch({"--out", "out"});
    EXPECT_EQ(usage.code, 2) << "no input";
    EXPECT_TRUE(usage.err.contains("(see kirrel batch --help)")) << usage.err.toStdString();
    const ToolOutput missing = batch({at("in/gone.gif"), "--out", "out"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_TRUE(missing.err.contains("gone.gif: the input does not exist")) << missing.err.toStdString();
}

TEST_F(BatchCommand, CtrlCLeavesOnlyWholeOutputs) {
    const QStringList inputs = makeInputs(12, 40);
    QProcess p;
    p.setWorkingDirectory(dir.path());
    p.start(KIRREL_EXE,
            QStringList{"batch", "wipe.json"} + inputs + QStringList{"--out", "out", "--jobs", "2"});
    ASSERT_TRUE(p.waitForStarted());
    for (int i = 0; i < 400 && QDir(at("out")).entryList({"*.gif"}, QDir::Files).isEmpty(); ++i)
        QThread::msleep(25);
    ::kill(static_cast<pid_t>(p.processId()), SIGINT);
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 128 + SIGINT);
    const QStringList written = QDir(at("out")).entryList(QDir::Files | QDir::Hidden);
    EXPECT_LT(written.size(), 12) << "stopped before the end";
    for (const QString& f : written) {
        EXPECT_TRUE(f.endsWith(".gif") && !f.startsWith('.')) << f.toStdString() << ": a partial file";
        EXPECT_EQ(framesOf(at("out/" + f)), 40) << f.toStdString();
    }
}

TEST_F(BatchCommand, GnuParallelGivesTheSameFilesAsJobs) {
    if (!missingTool({"parallel"}).isEmpty()) GTEST_SKIP() << "GNU parallel is not installed";
    const QStringList inputs = makeInputs(4);
    ASSERT_EQ(batch(inputs + QStringList{"--out", "jobs", "--jobs", "2"}).code, 0);
    const ToolOutput p = runTool(
        "parallel", QStringList{"-j2", QString(KIRREL_EXE) + " batch wipe.json {} --out par", ":::"} + inputs,
        dir.path());
    ASSERT_EQ(p.code, 0) << p.err.toStdString();
    EXPECT_EQ(QDir(at("par")).entryList(QDir::Files).size(), 4);
    for (const QString& f : QDir(at("jobs")).entryList(QDir::Files))
        EXPECT_TRUE(readFile(at("jobs/" + f)) == readFile(at("par/" + f))) << f.toStdString();
}

} // namespace
} // namespace kirrel::test
