// GIF, MNG and PNG through the real converter, driven by session scripts of the kirrel executable:
// what leaves the panel is checked with the converter's own identify, and what comes back in is
// compared pixel by pixel, with ImageMagick's coalesced frames for the sample GIFs. And a failed
// action loses nothing and leaves nothing behind: converters that hang, fail, write garbage or
// nothing, or a first good frame and then garbage; names the converter would read as patterns; stale
// working files; a long export; Ctrl+C; and a form's error in a session script. These run the
// converter, so they are few and their pictures small.

#include "host/AnimationFiles.h"
#include "support/Fixtures.h"
#include "support/MediaCheck.h"
#include "support/SampleGifs.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <functional>

namespace kirrel::test {
namespace {

struct Rgb {
    int r, g, b;
    bool operator==(const Rgb&) const = default;
};
using PixelFn = std::function<Rgb(int frame, int x, int y)>;

// The export of out.gif with one delay for all frames.
const std::string kGlobalGif = R"({"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay",
    "value": true}}, {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"})";

class ExchangeScript : public ScriptTest {
  protected:
    void SetUp() override {
        if (!missingTool({"convert"}).isEmpty()) GTEST_SKIP() << "ImageMagick's convert is not installed";
    }
    // A session on anim.dat (or what `host` names first) whose working files go to tmp.
    RunResult session(const std::string& steps, const std::string& host = "") const {
        return run(R"({"host": {)" + host + R"("temp_dir": "tmp", "animation": "anim.dat"}, "steps": [)" +
                   steps + "]}");
    }
    // Every working file a run left in the temporary folder.
    QStringList leftovers() const { return QDir(at("tmp")).entryList(QDir::Files); }
    std::string identify(const QString& file, const QString& format) const {
        return runTool("identify", {"-format", format, at(file)}).out.toStdString();
    }
    // An animation file of bounds w x h whose pixel (x, y) of frame f is pixel(f, x, y).
    void writeAnimation(const QString& file, int frames, int w, int h, const PixelFn& pixel) const {
        host::Animation a;
        for (int f = 0; f < frames; ++f) {
            host::Picture p(w, h);
            for (int y = 0; y <= h; ++y)
                for (int x = 0; x <= w; ++x) {
                    const Rgb c = pixel(f, x, y);
                    p.r.at(x, y) = static_cast<std::uint8_t>(c.r);
                    p.g.at(x, y) = static_cast<std::uint8_t>(c.g);
                    p.b.at(x, y) = static_cast<std::uint8_t>(c.b);
                }
            a.frames.push_back(p);
        }
        host::writeAnimationDat(at(file), a);
    }
    // The pixels of the pictures proper (the ride-along column and row left out) of a dump that differ
    // from anim.dat's; -1 when the frames or their sizes differ.
    int pixelsUnlikeTheAnimation(const QString& dump) const {
        const auto got = dumped(dump), want = host::readAnimationDat(at("anim.dat")).frames;
        if (got.size() != want.size()) return -1;
        int wrong = 0;
        for (std::size_t f = 0; f < want.size(); ++f) {
            if (!got[f].r.sameBounds(want[f].r)) return -1;
            for (int y = 0; y < want[f].height(); ++y)
                for (int x = 0; x < want[f].width(); ++x)
                    wrong += got[f].r.at(x, y) != want[f].r.at(x, y) ||
                             got[f].g.at(x, y) != want[f].g.at(x, y) ||
                             got[f].b.at(x, y) != want[f].b.at(x, y);
        }
        return wrong;
    }
};

// Few colours, different in every frame and across each picture, so a GIF keeps them exactly.
Rgb sample(int f, int x, int y) {
    return {40 * f + 10, (x * 50) % 250, y < 2 ? 200 : 30};
}

TEST_F(ExchangeScript, PerFrameGifCarriesItsDelaysAndLoopsAndComesBackBothWays) {
    writeAnimation("anim.dat", 4, 7, 5, sample);
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "animation": "anim.dat", "current_frame": 1},
      "steps": [{"open": "Export To AnimGif"}, {"set": {"control": "cboFrameList", "index": 2}},
        {"answer": [{"input": "12"}]}, {"click": "cmdSetDelay"},
        {"set": {"control": "cboFrameList", "index": 3}},
        {"answer": [{"input": "not a number"}]}, {"click": "cmdSetDelay"},
        {"set": {"control": "txtLoops", "text": "3"}}, {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"dump": "exported"}, {"close": "frmSave2AnimGif"},
        {"answer": [{"file": "out.gif"}]}, {"open": "Import AnimGif"}, {"dump": "viaPng"},
        {"answer": [{"file": "out.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "direct"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(identify("out.gif", "%w %h %T;"), "7 5 0;7 5 0;7 5 12;7 5 0;");
    EXPECT_NE(runTool("identify", {"-verbose", at("out.gif")}).out.indexOf("Iterations: 3"), -1);

    // The progress display: frames written, then the two imports' counting and reading.
    std::vector<std::string> progress;
    for (const std::string& l : traceLines())
        if (l.rfind("Van_SetProgress(", 0) == 0) progress.push_back(l.substr(16, l.size() - 17));
    auto holds = [&](const std::vector<std::string>& run) {
        return std::search(progress.begin(), progress.end(), run.begin(), run.end()) != progress.end();
    };
    EXPECT_TRUE(holds({"12.5", "25", "37.5", "50"}));
    EXPECT_TRUE(holds({"10", "0", "7.5", "15", "22.5", "30", "47.5", "65", "82.5", "0"}));
    EXPECT_TRUE(holds({"10", "30", "47.5", "65", "82.5", "0"}));

    EXPECT_EQ(state("exported")["current_frame"].toInt(), 1)
        << "the per-frame way leaves the host where it stood";
    EXPECT_EQ(pixelsUnlikeTheAnimation("viaPng"), 0);
    EXPECT_EQ(pixelsUnlikeTheAnimation("direct"), 0);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(ExchangeScript, GlobalGifKeepsElevenFramesInOrderAndMngIsRecognised) {
    writeAnimation("anim.dat", 11, 4, 3, [](int f, int, int) { return Rgb{20 * f, 0, 255 - 20 * f}; });
    const RunResult r =
        session(R"({"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}},
        {"set": {"control": "txtDelay", "text": "7"}}, {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"}, {"dump": "exported"}, {"close": "frmSave2AnimGif"},
        {"open": "Export Anim To MNG"}, {"set": {"control": "txtDelay", "text": "5"}},
        {"answer": [{"file": "out.mng"}]}, {"click": "cmdSave"})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(identify("out.gif", "%T,"), "7,7,7,7,7,7,7,7,7,7,7,");
    // Frame 10 must come last, not after frame 1.
    QImageReader reader(at("out.gif"));
    std::vector<int> reds;
    for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
        reds.push_back(qRed(frame.pixel(1, 1)));
    EXPECT_EQ(reds, (std::vector<int>{0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200}));
    EXPECT_EQ(state("exported")["current_frame"].toInt(), 10) << "the global way ends on the last frame";
    EXPECT_EQ(identify("out.mng", "%m %w %h\n").substr(0, 8), "MNG 4 3\n");
    EXPECT_EQ(lineCount(identify("out.mng", "%m\n")), 11);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(ExchangeScript, PrimaryColourBecomesTransparentInGifAndPng) {
    // Width 5: W*3 mod 4 is 3, the width whose rows need the most care. Red 10 is the primary colour.
    writeAnimation("anim.dat", 2, 5, 3, [](int, int x, int) {
        return x < 2 ? Rgb{10, 0, 0} : Rgb{10, 0, 1};
    });
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat", "primary": [10, 0, 0]},
      "steps": [{"open": "Export To AnimGif"}, {"set": {"control": "chkGifTransparent", "value": true}},
        {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"}, {"close": "frmSave2AnimGif"},
        {"open": "Export Transparent PNG"}, {"set": {"control": "optTransparency(1)", "value": true}},
        {"answer": [{"file": "out.png"}]}, {"click": "cmdSave"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    for (const char* file : {"out.gif", "out.png"}) {
        const QImage image(at(file));
        ASSERT_EQ(image.size(), QSize(5, 3)) << file;
        for (int x = 0; x < 5; ++x) { // equal to the primary in two channels only stays opaque, blue 1
            EXPECT_EQ(qAlpha(image.pixel(x, 1)), x < 2 ? 0 : 255) << file << " x=" << x;
            EXPECT_TRUE(x < 2 || image.pixel(x, 1) == qRgba(10, 0, 1, 255)) << file << " x=" << x;
        }
    }
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(ExchangeScript, AFrameBitmapThatCannotBeWrittenIsReportedAndNothingElseChanges) {
    // The second frame's bitmap cannot be written (a folder stands under its name, which the clearing
    // of stale working files leaves alone): the export stops with an error, the animation stays as
    // it was, and no GIF appears.
    writeAnimation("anim.dat", 3, 4, 3, sample);
    QDir(dir.path()).mkpath("tmp/temp1.bmp");
    const RunResult r = session(kGlobalGif + R"(, {"dump": "after"})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto texts = dialogTexts(state("after"));
    ASSERT_FALSE(texts.empty());
    EXPECT_NE(texts.back().find("temp1.bmp"), std::string::npos) << texts.back();
    EXPECT_FALSE(state("after")["locked"].toBool());
    EXPECT_EQ(readFile(at("after/animation.dat")), readFile(at("anim.dat")));
    EXPECT_FALSE(QFileInfo::exists(at("out.gif")));
}

TEST_F(ExchangeScript, WithoutTheConverterTheWaitEndsWithAClearMessage) {
    writeAnimation("anim.dat", 3, 4, 3, sample);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(dir.path())); // a search path that holds no converter
    const RunResult r = session(kGlobalGif + R"(, {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"},
        {"close": "frmSave2AnimGif"}, {"answer": [{"file": "out.gif"}]}, {"menu": "menuImportAnimGif"},
        {"dump": "after"})");
    qputenv("PATH", path);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const std::string missing =
        "The converter could not be found: ImageMagick's convert is not installed or not on the search path.";
    std::vector<std::string> messages;
    for (const auto& t : dialogTexts(state("after")))
        if (t.find("converter") != std::string::npos || t.find("Import Failed") != std::string::npos)
            messages.push_back(t);
    EXPECT_EQ(messages,
              (std::vector<std::string>{missing, missing, missing, "Import Failed, Must be Animated Gif."}));
    EXPECT_FALSE(QFileInfo::exists(at("out.gif")));
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    EXPECT_EQ(dumped("after").size(), 3u) << "a failed import changes nothing";
}

// The panel's two ways in, "Import AnimGif" (PNG frames turned into bitmaps) and "Open AnimGif" (the
// converter writes GIF frames), give every sample GIF as ImageMagick coalesces it, with every clear
// pixel on the paper colour, and name the animation after the file.
TEST_F(ExchangeScript, BothWaysInGiveEverySampleGifAsImageMagickCoalescesIt) {
    const QStringList gifs = makeSampleGifs(at("gifs"));
    std::string steps;
    for (int i = 0; i < gifs.size(); ++i) {
        const std::string answer = R"({"answer": [{"file": "gifs/)" +
                                   QFileInfo(gifs[i]).fileName().toStdString() + R"("}]}, )",
                          n = std::to_string(i);
        steps += answer + R"({"open": "Import AnimGif"}, {"dump": "png)" + n + R"("}, )" + answer +
                 R"({"menu": "menuImportAnimGif"}, {"dump": "direct)" + n + R"("}, )";
    }
    steps.resize(steps.size() - 2);
    const RunResult r =
        run(R"({"host": {"temp_dir": "tmp", "secondary": [192, 160, 96]}, "steps": [)" + steps + "]}");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    for (int i = 0; i < gifs.size(); ++i) {
        SCOPED_TRACE(gifs[i].toStdString());
        const RgbaFrames want = coalescedFrames(gifs[i]);
        for (const char* way : {"png", "direct"}) {
            SCOPED_TRACE(way);
            const QString dump = way + QString::number(i);
            EXPECT_EQ(pixelsUnlikeCoalesced(dumped(dump), want, host::packColor(192, 160, 96), false), 0);
            for (const auto& d : state(dump)["dialogs"].toArray())
                EXPECT_EQ(d.toObject()["kind"].toString(), "file_open")
                    << d.toObject()["text"].toString().toStdString();
        }
    }
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    // The animation is named after the chosen file, never after a working file.
    std::string named;
    for (const std::string& l : traceLines())
        if (l.rfind("Van_RenameBuffer(", 0) == 0) named = l;
    EXPECT_NE(named.find(QFileInfo(gifs.back()).fileName().toStdString()), std::string::npos) << named;
}

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

class ConverterFaults : public ExchangeScript {
  protected:
    void SetUp() override {
        ExchangeScript::SetUp();
        if (IsSkipped()) return;
        writeAnimation("anim.dat", 3, 6, 4, [](int f, int x, int y) {
            return Rgb{10 * f + x, 3 * y, x * y};
        });
        savedPath_ = qgetenv("PATH");
    }
    void TearDown() override { qputenv("PATH", savedPath_); }
    // The next runs find a converter of this body first.
    void useFake(const std::string& body) {
        writeFile(at("fake/convert"), "#!/bin/sh\n" + body);
        QFile::setPermissions(at("fake/convert"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(at("fake")) + ":" + savedPath_);
    }
    // The user's folder holds nothing but what the test put there.
    QStringList strays() const {
        return QDir(dir.path())
            .entryList({".kirrel-*", "*.gif", "*.png", "*.mng"}, QDir::Files | QDir::Hidden);
    }
    // The sample GIF to import, as in.gif.
    QString inGif() const {
        const QString gif = makeSampleGifs(at("gifs")).front();
        QFile::copy(gif, at("in.gif"));
        return gif;
    }
    QByteArray savedPath_;
};

TEST_F(ConverterFaults, EveryFaultLosesNothingAndLeavesNothingBehind) {
    inGif();
    writeFile(at("out.gif"), "the user's own file"); // an old out.gif must survive every failed export
    for (const Fake& fake : kFakes) {
        SCOPED_TRACE(fake.name);
        useFake(fake.body);
        // Every way that runs the converter, each followed by a dump.
        const RunResult r = session(
            kGlobalGif + R"(, {"dump": "global"}, {"set": {"control": "chkGifTransparent", "value": true}},
            {"answer": [{"file": "out.gif"}]}, {"click": "cmdSave"}, {"dump": "perFrame"},
            {"close": "frmSave2AnimGif"}, {"answer": [{"file": "in.gif"}]}, {"menu": "menuImportAnimGif"},
            {"dump": "direct"}, {"answer": [{"file": "in.gif"}]}, {"open": "Import AnimGif"},
            {"dump": "png"})",
            R"("converter_timeout_s": 2, )");
        ASSERT_EQ(r.exitCode, 0) << r.err;
        for (const char* dump : {"global", "perFrame", "direct", "png"}) {
            SCOPED_TRACE(dump);
            const QJsonObject s = state(dump);
            EXPECT_TRUE(readFile(at(QString(dump) + "/animation.dat")) == readFile(at("anim.dat")))
                << "the animation changed";
            EXPECT_EQ(s["progress"].toDouble(), 0.0);
            const QJsonArray dialogs = s["dialogs"].toArray();
            EXPECT_TRUE(std::any_of(dialogs.begin(), dialogs.end(), [](const QJsonValue& d) {
                return !d.toObject()["kind"].toString().startsWith("file_");
            })) << "the user is told";
        }
        EXPECT_NE(dialogTexts(state("global")).back().find(fake.says), std::string::npos)
            << dialogTexts(state("global")).back();
        EXPECT_EQ(readFile(at("out.gif")), "the user's own file");
        EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(' ').toStdString();
        EXPECT_EQ(strays(), QStringList({"in.gif", "out.gif"})) << strays().join(' ').toStdString();
    }
}

TEST_F(ConverterFaults, AFirstGoodFrameThenGarbageStopsTheImportAndNamesTheFrame) {
    // Frame 0 a real GIF, frame 1 garbage: the direct way's converter run.
    useFake("for last; do :; done\nd=$(dirname \"$last\")\ncp '" + inGif().toStdString() +
            "' \"$d/gif_frame-0.gif\"\necho garbage > \"$d/gif_frame-1.gif\"\n");
    const RunResult r =
        session(R"({"answer": [{"file": "in.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "after"})");
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
    const QStringList names = {"plain.gif", "out%d.gif", "out[1].gif", "out*.gif",          "out?.gif",
                               "o\"ut.gif", "o\nut.gif", "-out.gif",   "$(touch PWNED).gif"};
    auto answer = [](const QString& name) { // the name as a JSON string
        const QByteArray list = QJsonDocument(QJsonArray{"odd/" + name}).toJson(QJsonDocument::Compact);
        return R"({"answer": [{"file": )" + list.mid(1, list.size() - 2).toStdString() + "}]}, ";
    };
    std::string exports, imports;
    for (int i = 0; i < names.size(); ++i) {
        exports += answer(names[i]) + R"({"click": "cmdSave"}, )";
        imports += answer(names[i]) + R"({"menu": "menuImportAnimGif"}, {"dump": "in)" + std::to_string(i) +
                   R"("}, )";
    }
    QDir().mkpath(at("odd"));
    const RunResult r =
        session(R"({"open": "Export To AnimGif"}, {"set": {"control": "chkGlobalDelay", "value": true}}, )" +
                exports + R"({"close": "frmSave2AnimGif"}, )" + imports + R"({"dump": "end"})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    QStringList got = QDir(at("odd")).entryList(QDir::Files | QDir::Hidden), want = names;
    got.sort();
    want.sort();
    EXPECT_EQ(got, want);
    EXPECT_FALSE(QFileInfo::exists(at("PWNED")));
    for (int i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(names[i].toStdString());
        EXPECT_EQ(state("in" + QString::number(i))["total_frames"].toInt(), 3);
        EXPECT_EQ(readFile(at(QString("in%1/animation.dat").arg(i))), readFile(at("in0/animation.dat")))
            << "the odd name's GIF comes back as the plain one's";
    }
}

TEST_F(ConverterFaults, StaleWorkingFilesChangeNothing) {
    const int frames = static_cast<int>(coalescedFrames(inGif()).frames.size());
    for (const char* stale :
         {"gif_frame-7.gif", "gif_frame-7.png", "temp5.bmp", "temp9.gif", "GifImport02.bat"})
        writeFile(at(QString("tmp/") + stale), readFile(at("in.gif")));
    // What an ended runner's lines wrote ahead of their turn.
    QDir().mkpath(at("tmp/.kirrel-ahead-4242/7"));
    writeFile(at("tmp/.kirrel-ahead-4242/7/temp7.gif"), readFile(at("in.gif")));
    const RunResult r =
        session(R"({"answer": [{"file": "in.gif"}]}, {"menu": "menuImportAnimGif"}, {"dump": "direct"},
        {"answer": [{"file": "in.gif"}]}, {"open": "Import AnimGif"}, {"dump": "png"}, )" +
                kGlobalGif);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(state("direct")["total_frames"].toInt(), frames);
    EXPECT_EQ(state("png")["total_frames"].toInt(), frames);
    EXPECT_EQ(lineCount(identify("out.gif", "%p\n")), frames);
    EXPECT_TRUE(leftovers().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(at("tmp/.kirrel-ahead-4242")));
}

TEST_F(ConverterFaults, AnExportOfMoreThanAThousandFramesTakesEveryFrame) {
    writeAnimation("anim.dat", 1001, 2, 2, [](int f, int, int) { return Rgb{f % 7 * 32, 0, 0}; });
    const RunResult r = session(kGlobalGif);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(lineCount(identify("out.gif", "%p\n")), 1001);
}

TEST_F(ConverterFaults, CtrlCDuringAnExportEndsTheConverterAndCleansUp) {
    useFake("echo $$ > \"$KIRREL_FAKE_PID\"\nexec sleep 600\n");
    qputenv("KIRREL_FAKE_PID", QFile::encodeName(at("fake.pid")));
    writeFile(at("session.json"), R"({"host": {"temp_dir": "tmp", "animation": "anim.dat"}, "steps": [)" +
                                      kGlobalGif + R"(, {"dump": "never"}]})");
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
    EXPECT_FALSE(QFileInfo::exists(at("never"))) << "the session went on";
    EXPECT_TRUE(strays().isEmpty()) << strays().join(' ').toStdString();
}

TEST_F(ConverterFaults, AFormsErrorInAScriptIsAnErrorBoxAndTheScriptGoesOn) {
    const RunResult r = run(R"({"host": {"temp_dir": "tmp", "size": [6, 4], "frames": 5}, "steps": [
        {"open": "Export To AnimGif"}, {"set": {"control": "txtDelay", "text": "soon"}},
        {"set": {"control": "chkGlobalDelay", "value": true}}, {"click": "cmdSave"},
        {"set": {"control": "txtDelay", "text": "-1"}}, {"click": "cmdSave"}, {"dump": "after"}]})");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(dialogTexts(state("after")),
              (std::vector<std::string>{"Type mismatch\n\nNothing was changed.",
                                        "The delay must be a whole number from 0 to 65535."}));
    EXPECT_FALSE(QFileInfo::exists(at("out.gif")));
}

} // namespace
} // namespace kirrel::test
