// A failed action loses nothing and leaves nothing behind: converters that hang, fail, write garbage
// or nothing, or a first good frame and then garbage; names the converter would read as patterns;
// stale working files; a long export; Ctrl+C; and a form's error in a session script.

#include "host/AnimationFiles.h"
#include "support/Fixtures.h"
#include "support/SampleGifs.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <csignal>

namespace kirrel::test {
namespace {

// A script of the fake converter: $1.. are its arguments, the last is its output.
struct Fake {
    const char* name;
    const char* body;
    const char* says; // a piece of the one message the user gets
};

const Fake kFakes[] = {
    {"hangs", "exec sleep 600\n", "did not finish within 2 seconds"},
    {"fails", "echo 'convert: no decode delegate' >&2\nexit 1\n", "reported an error"},
    {"garbage", "for last; do :; done\necho garbage > \"$last\"\n", "does not check out"},
    {"empty", "for last; do :; done\n: > \"$last\"\n", "does not check out"},
};

// Pixels of the pictures proper (the ride-along column and row left out) that differ.
int differentPixels(const std::vector<host::Picture>& a, const std::vector<host::Picture>& b) {
    if (a.size() != b.size()) return -1;
    int n = 0;
    for (std::size_t f = 0; f < a.size(); ++f)
        for (int y = 0; y < a[f].height(); ++y)
            for (int x = 0; x < a[f].width(); ++x)
                n += a[f].r.at(x, y) != b[f].r.at(x, y) || a[f].g.at(x, y) != b[f].g.at(x, y) ||
                     a[f].b.at(x, y) != b[f].b.at(x, y);
    return n;
}

class ConverterFaults : public ScriptTest {
  protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable("convert").isEmpty())
            GTEST_SKIP() << "the converter is not installed";
        host::Animation a;
        for (int f = 0; f < 3; ++f)
            a.frames.push_back(patternPicture(6, 4, 10 * f));
        host::writeAnimationDat(at("anim.dat"), a);
        savedPath_ = qgetenv("PATH");
    }
    void TearDown() override { qputenv("PATH", savedPath_); }
    // The next runs find this converter first.
    void useFake(const Fake& f) {
        QDir().mkpath(at("fake"));
        writeFile(at("fake/convert"), std::string("#!/bin/sh\n") + f.body);
        QFile::setPermissions(at("fake/convert"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(at("fake")) + ":" + savedPath_);
    }
    // Every working file the runs make, left in the temporary folder.
    QStringList leftovers() const {
        return QDir(at("tmp")).entryList({"temp*", "gif_*", "*.bat", "*.failed", "png_*"}, QDir::Files);
    }
    // The user's folder holds nothing but what the test put there.
    QStringList strays() const {
        return QDir(dir.path())
            .entryList({".kirrel-*", "*.gif", "*.png", "*.mng"}, QDir::Files | QDir::Hidden);
    }
    // One script of the ways that run the converter, each followed by a dump.
    RunResult runEveryWay(const std::string& host = R"("temp_dir": "tmp", "animation": "anim.dat",
        "converter_timeout_s": 2)") {
        return run(R"({"host": {)" + host + R"(}, "steps": [
            {"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}},
            {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"}, {"dump": "global"},
            {"set": {"control": "chkGifTransparent", "value": true}},
            {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"}, {"dump": "perFrame"},
            {"close": "frmSave2AnimGif"},
            {"answer": [{"file": "in.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "direct"},
            {"answer": [{"file": "in.gif"}]}, {"open": "Import AnimGif"}, {"dump": "png"}]})");
    }
    QByteArray savedPath_;
};

TEST_F(ConverterFaults, EveryFaultLosesNothingAndLeavesNothingBehind) {
    // A GIF to import and an old out.gif that must survive every failed export.
    const QString gif = makeSampleGifs(at("gifs")).front();
    QFile::copy(gif, at("in.gif"));
    writeFile(at("out.gif"), "the user's own file");
    for (const Fake& fake : kFakes) {
        SCOPED_TRACE(fake.name);
        useFake(fake);
        const RunResult r = runEveryWay();
        ASSERT_EQ(r.exitCode, 0) << r.err;
        for (const char* dump : {"global", "perFrame", "direct", "png"}) {
            SCOPED_TRACE(dump);
            const QJsonObject s = state(dump);
            EXPECT_TRUE(readFile(at(QString(dump) + "/animation.dat")) == readFile(at("anim.dat")))
                << "the animation changed";
            EXPECT_EQ(s["progress"].toDouble(), 0.0);
            const auto texts = dialogTexts(s);
            std::string said;
            for (const auto& d : s["dialogs"].toArray())
                if (d.toObject()["kind"].toString() != "file_save" &&
                    d.toObject()["kind"].toString() != "file_open")
                    said += d.toObject()["text"].toString().toStdString() + "|";
            EXPECT_FALSE(said.empty());
        }
        EXPECT_NE(dialogTexts(state("global")).back().find(fake.says), std::string::npos)
            << dialogTexts(state("global")).back();
        EXPECT_EQ(readFile(at("out.gif")), "the user's own file");
        EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(' ').toStdString();
        EXPECT_EQ(strays(), QStringList({"in.gif", "out.gif"})) << strays().join(' ').toStdString();
    }
}

TEST_F(ConverterFaults, AFirstGoodFrameThenGarbageStopsTheImportAndNamesTheFrame) {
    const QString gif = makeSampleGifs(at("gifs")).front();
    QFile::copy(gif, at("in.gif"));
    // Frame 0 a real GIF, frame 1 garbage: the direct way's converter run.
    writeFile(at("good.gif"), readFile(gif));
    useFake({"half", "", ""});
    writeFile(at("fake/convert"), "#!/bin/sh\nfor last; do :; done\nd=$(dirname \"$last\")\n"
                                  "cp '" +
                                      at("good.gif").toStdString() +
                                      "' \"$d/gif_frame-0.gif\"\n"
                                      "echo garbage > \"$d/gif_frame-1.gif\"\n");
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "anim.dat"}, "steps": [
        {"answer": [{"file": "in.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "after"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(readFile(at("after/animation.dat")) == readFile(at("anim.dat"))) << "the animation changed";
    const auto texts = dialogTexts(state("after"));
    EXPECT_NE(texts.back().find("Frame 1 of in.gif could not be read"), std::string::npos) << texts.back();
    EXPECT_NE(texts.back().find("Nothing was changed."), std::string::npos);
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(ConverterFaults, OddNamesAreExactlyThoseFilesAndRunNothing) {
    // Each name once as the export's output and once as the import's input.
    // A plain name first: what it gives, every odd one must give.
    const std::vector<std::string> names = {"plain.gif", "out%d.gif",          "out[1].gif",
                                            "out*.gif",  "out?.gif",           "o\"ut.gif",
                                            "o\nut.gif", "$(touch PWNED).gif", "-out.gif"};
    std::string steps =
        R"({"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}},)";
    for (std::size_t i = 0; i < names.size(); ++i) {
        QJsonArray file{QString::fromStdString("odd/" + names[i])};
        const std::string quoted = QJsonDocument(file).toJson(QJsonDocument::Compact).toStdString();
        const std::string name = quoted.substr(1, quoted.size() - 2);
        steps += R"({"answer": [{"file": )" + name + R"(}]}, {"click": "cmdSave"},)";
    }
    steps += R"({"close": "frmSave2AnimGif"},)";
    for (std::size_t i = 0; i < names.size(); ++i) {
        QJsonArray file{QString::fromStdString("odd/" + names[i])};
        const std::string quoted = QJsonDocument(file).toJson(QJsonDocument::Compact).toStdString();
        steps += R"({"answer": [{"file": )" + quoted.substr(1, quoted.size() - 2) +
                 R"(}]}, {"menu": "menuImportAnimGif"}, {"dump": "in)" + std::to_string(i) + R"("},)";
    }
    steps.pop_back();
    QDir().mkpath(at("odd"));
    const RunResult r =
        run(R"({"host": {"temp_dir": "tmp", "animation": "anim.dat"}, "steps": [)" + steps + "]}");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    QStringList want;
    for (const std::string& n : names)
        want << QString::fromStdString(n);
    want.sort();
    QStringList got = QDir(at("odd")).entryList(QDir::Files | QDir::Hidden);
    got.sort();
    EXPECT_EQ(got, want);
    EXPECT_FALSE(QFileInfo::exists(at("PWNED")));
    for (std::size_t i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(names[i]);
        EXPECT_EQ(state("in" + QString::number(i))["total_frames"].toInt(), 3);
        EXPECT_EQ(differentPixels(dumped("in" + QString::number(i)), dumped("in0")), 0)
            << "the odd name's GIF comes back as the plain one's";
    }
}

TEST_F(ConverterFaults, StaleWorkingFilesChangeNothing) {
    QDir().mkpath(at("tmp"));
    const QString gif = makeSampleGifs(at("gifs")).front();
    QFile::copy(gif, at("in.gif"));
    const int frames = static_cast<int>(coalescedFrames(gif).frames.size());
    for (const char* stale :
         {"gif_frame-7.gif", "gif_frame-7.png", "temp5.bmp", "temp9.gif", "GifImport02.bat"})
        writeFile(at(QString("tmp/") + stale), readFile(at("in.gif")));
    // What an ended runner's lines wrote ahead of their turn.
    QDir().mkpath(at("tmp/.kirrel-ahead-4242/7"));
    writeFile(at("tmp/.kirrel-ahead-4242/7/temp7.gif"), readFile(at("in.gif")));
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "anim.dat"}, "steps": [
        {"answer": [{"file": "in.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "direct"},
        {"answer": [{"file": "in.gif"}]}, {"open": "Import AnimGif"}, {"dump": "png"},
        {"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}},
        {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(state("direct")["total_frames"].toInt(), frames);
    EXPECT_EQ(state("png")["total_frames"].toInt(), frames);
    QProcess identify;
    identify.start("identify", {"-format", "%p ", at("out.gif")});
    identify.waitForFinished(60000);
    EXPECT_EQ(identify.readAllStandardOutput().count(' '), frames);
    EXPECT_TRUE(leftovers().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(at("tmp/.kirrel-ahead-4242")));
}

TEST_F(ConverterFaults, AnExportOfMoreThanAThousandFramesTakesEveryFrame) {
    host::Animation a;
    for (int f = 0; f < 1001; ++f)
        a.frames.push_back(host::Picture::filled(2, 2, static_cast<std::uint32_t>(f % 7) * 0x202020));
    host::writeAnimationDat(at("long.dat"), a);
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "long.dat"}, "steps": [
        {"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}},
        {"answer": [{"file": "long.gif"}]}, {"click": "cmdSave"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    QProcess identify;
    identify.start("identify", {"-format", "%p\n", at("long.gif")});
    identify.waitForFinished(120000);
    EXPECT_EQ(identify.readAllStandardOutput().count('\n'), 1001);
}

TEST_F(ConverterFaults, CtrlCDuringAnExportEndsTheConverterAndCleansUp) {
    useFake({"hangs", "echo $$ > \"$KIRREL_FAKE_PID\"\nexec sleep 600\n", ""});
    qputenv("KIRREL_FAKE_PID", QFile::encodeName(at("fake.pid")));
    writeFile(at("session.json"), R"({"host": {"temp_dir": "tmp", "animation": "anim.dat"}, "steps": [
        {"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}},
        {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"}, {"dump": "never"}]})");
    QProcess kirrel;
    kirrel.setWorkingDirectory(dir.path());
    kirrel.start(KIRREL_EXE, {"--script", at("session.json")});
    ASSERT_TRUE(kirrel.waitForStarted());
    for (int i = 0; i < 200 && !QFileInfo::exists(at("fake.pid")); ++i)
        QThread::msleep(50);
    ASSERT_TRUE(QFileInfo::exists(at("fake.pid"))) << "the converter never started";
    ::kill(static_cast<pid_t>(kirrel.processId()), SIGINT);
    ASSERT_TRUE(kirrel.waitForFinished(20000));
    EXPECT_EQ(kirrel.exitCode(), 128 + SIGINT);
    // Gone, or a zombie waiting to be reaped: either way it runs no more.
    const std::string pid = QString::fromStdString(readFile(at("fake.pid"))).trimmed().toStdString();
    QThread::msleep(100);
    const std::string stat = readFile(QString::fromStdString("/proc/" + pid + "/stat"));
    const auto state = stat.find(") ");
    EXPECT_TRUE(stat.empty() || (state != std::string::npos && stat[state + 2] == 'Z'))
        << "the converter still runs";
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(' ').toStdString();
    EXPECT_FALSE(QFileInfo::exists(at("never")));
    EXPECT_TRUE(strays().isEmpty()) << strays().join(' ').toStdString();
}

TEST_F(ConverterFaults, AFormsErrorInAScriptIsAnErrorBoxAndTheScriptGoesOn) {
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "size": [6, 4], "frames": 5}, "steps": [
        {"open": "Export To AnimGif"}, {"set": {"control": "txtDelay", "text": "soon"}},
        {"set": {"control": "chkGlobalDelay", "value": true}}, {"click": "cmdSave"},
        {"set": {"control": "txtDelay", "text": "-1"}}, {"click": "cmdSave"},
        {"dump": "after"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto texts = dialogTexts(state("after"));
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0], "Type mismatch\n\nNothing was changed.");
    EXPECT_EQ(texts[1], "The delay must be a whole number from 0 to 65535.");
    EXPECT_FALSE(QFileInfo::exists(at("out.gif")));
}

} // namespace
} // namespace kirrel::test
