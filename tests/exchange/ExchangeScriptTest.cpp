// GIF, MNG and PNG through the real converter, driven by session scripts of the kirrel executable:
// what leaves the panel is checked with the converter's own identify, and what comes back in is
// compared pixel by pixel. These run the converter, so they are few and their pictures small.

#include "host/AnimationFiles.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <functional>

namespace kirrel::test {
namespace {

struct Rgb {
    int r, g, b;
    bool operator==(const Rgb&) const = default;
};
using PixelFn = std::function<Rgb(int frame, int x, int y)>;

Rgb rgbAt(const host::Picture& p, int x, int y) {
    return {p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)};
}

// An animation file for the host whose pixel (x, y) of frame f is pixel(f, x, y).
void writeAnimation(const QString& path, int frames, int w, int h, const PixelFn& pixel) {
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
    host::writeAnimationDat(path, a);
}

// Few colours, different in every frame and across each picture, so a GIF keeps them exactly.
Rgb sample(int f, int x, int y) {
    return {40 * f + 10, (x * 50) % 250, y < 2 ? 200 : 30};
}

std::string identify(const QString& file, const QString& format) {
    QProcess p;
    p.start("identify", {"-format", format, file});
    p.waitForFinished(60000);
    return p.readAllStandardOutput().toStdString();
}

class ExchangeScript : public ScriptTest {
  protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable("convert").isEmpty())
            GTEST_SKIP() << "the converter is not installed";
    }
    // Every pixel of the W x H picture of every frame dumped, against `want`.
    void expectFrames(const QString& dump, int frames, int w, int h, const PixelFn& want) {
        const auto got = dumped(dump);
        ASSERT_EQ(got.size(), static_cast<std::size_t>(frames)) << dump.toStdString();
        ASSERT_EQ(got[0].width(), w) << dump.toStdString();
        ASSERT_EQ(got[0].height(), h) << dump.toStdString();
        int wrong = 0;
        for (int f = 0; f < frames; ++f)
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x)
                    wrong += !(rgbAt(got[static_cast<std::size_t>(f)], x, y) == want(f, x, y));
        EXPECT_EQ(wrong, 0) << dump.toStdString();
    }
    QStringList leftovers() const { return QDir(at("tmp")).entryList(QDir::Files); }
};

TEST_F(ExchangeScript, PerFrameGifCarriesItsDelaysAndLoopsAndComesBackBothWays) {
    writeAnimation(at("anim.dat"), 4, 7, 5, sample);
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat", "current_frame": 1},
      "steps": [
        {"open": "Export To AnimGif"},
        {"set": {"control": "cboFrameList", "index": 2}},
        {"answer": [{"input": "12"}]},
        {"click": "cmdSetDelay"},
        {"set": {"control": "cboFrameList", "index": 3}},
        {"answer": [{"input": "not a number"}]},
        {"click": "cmdSetDelay"},
        {"set": {"control": "txtLoops", "text": "3"}},
        {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"dump": "exported"},
        {"close": "frmSave2AnimGif"},
        {"answer": [{"file": "out.gif"}]},
        {"open": "Import AnimGif"},
        {"dump": "viaPng"},
        {"answer": [{"file": "out.gif"}]},
        {"menu": "menuImportAnimGif"},
        {"dump": "direct"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(identify(at("out.gif"), "%w %h %T;"), "7 5 0;7 5 0;7 5 12;7 5 0;");
    QProcess verbose;
    verbose.start("identify", {"-verbose", at("out.gif")});
    verbose.waitForFinished(60000);
    EXPECT_NE(verbose.readAllStandardOutput().indexOf("Iterations: 3"), -1);

    // The progress display: frames written, then the two imports' counting and reading.
    std::vector<std::string> progress;
    for (const std::string& l : traceFileLines(at("trace.txt")))
        if (l.rfind("Van_SetProgress(", 0) == 0) progress.push_back(l.substr(16, l.size() - 17));
    auto holds = [&](const std::vector<std::string>& run) {
        return std::search(progress.begin(), progress.end(), run.begin(), run.end()) != progress.end();
    };
    EXPECT_TRUE(holds({"12.5", "25", "37.5", "50"}));
    EXPECT_TRUE(holds({"10", "0", "7.5", "15", "22.5", "30", "47.5", "65", "82.5", "0"}));
    EXPECT_TRUE(holds({"10", "30", "47.5", "65", "82.5", "0"}));

    const QJsonObject exported = state("exported");
    EXPECT_EQ(exported["current_frame"].toInt(), 1) << "the per-frame way leaves the host where it stood";
    expectFrames("viaPng", 4, 7, 5, sample);
    expectFrames("direct", 4, 7, 5, sample);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(ExchangeScript, GlobalGifKeepsElevenFramesInOrderAndMngIsRecognised) {
    writeAnimation(at("anim.dat"), 11, 4, 3, [](int f, int, int) { return Rgb{20 * f, 0, 255 - 20 * f}; });
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat"},
      "steps": [
        {"open": "Export To AnimGif"},
        {"set": {"control": "chkGlobalDelay", "value": true}},
        {"set": {"control": "txtDelay", "text": "7"}},
        {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"dump": "exported"},
        {"close": "frmSave2AnimGif"},
        {"open": "Export Anim To MNG"},
        {"set": {"control": "txtDelay", "text": "5"}},
        {"answer": [{"file": "out.mng"}]},
        {"click": "cmdSave"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(identify(at("out.gif"), "%T,"), "7,7,7,7,7,7,7,7,7,7,7,");
    // Frame 10 must come last, not after frame 1.
    QImageReader reader(at("out.gif"));
    std::vector<int> reds;
    for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
        reds.push_back(qRed(frame.pixel(1, 1)));
    EXPECT_EQ(reds, (std::vector<int>{0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200}));
    EXPECT_EQ(state("exported")["current_frame"].toInt(), 10) << "the global way ends on the last frame";
    EXPECT_EQ(identify(at("out.mng"), "%m %w %h\n").substr(0, 8), "MNG 4 3\n");
    EXPECT_EQ(lineCount(identify(at("out.mng"), "%m\n")), 11);
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(ExchangeScript, PrimaryColourBecomesTransparentInGifAndPng) {
    // Width 5: W*3 mod 4 is 3, the width whose rows need the most care. Red 10 is the primary colour.
    writeAnimation(at("anim.dat"), 2, 5, 3, [](int, int x, int) {
        return x < 2 ? Rgb{10, 0, 0} : Rgb{10, 0, 1};
    });
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat", "primary": [10, 0, 0]},
      "steps": [
        {"open": "Export To AnimGif"},
        {"set": {"control": "chkGifTransparent", "value": true}},
        {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"close": "frmSave2AnimGif"},
        {"open": "Export Transparent PNG"},
        {"set": {"control": "optTransparency(1)", "value": true}},
        {"answer": [{"file": "out.png"}]},
        {"click": "cmdSave"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    for (const char* file : {"out.gif", "out.png"}) {
        const QImage image(at(file));
        ASSERT_EQ(image.size(), QSize(5, 3)) << file;
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(qAlpha(image.pixel(x, 1)), x < 2 ? 0 : 255) << file << " x=" << x;
            // The colour keeps its blue of 1: equal to the primary in two channels only stays opaque.
            if (x >= 2) {
                EXPECT_EQ(qBlue(image.pixel(x, 1)), 1) << file;
            }
        }
    }
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

TEST_F(ExchangeScript, GifMadeByTheConverterImportsAndLeavesAgainAndAStillOneIsRefused) {
    QProcess p;
    p.setWorkingDirectory(dir.path());
    p.start("convert", {"-size", "3x2", "xc:red", "xc:lime", "xc:blue", "-loop", "0", "anim.gif"});
    ASSERT_TRUE(p.waitForFinished(60000));
    p.start("convert", {"-size", "3x2", "xc:red", "still.gif"});
    ASSERT_TRUE(p.waitForFinished(60000));
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "size": [8, 8], "frames": 2},
      "steps": [
        {"answer": [{"file": "anim.gif"}]},
        {"menu": "menuImportAnimGif"},
        {"dump": "moving"},
        {"menu": "menuExportAnimGif"},
        {"set": {"control": "chkGlobalDelay", "value": true}},
        {"set": {"control": "txtDelay", "text": "20"}},
        {"answer": [{"file": "again.gif"}]},
        {"click": "cmdSave"},
        {"close": "frmSave2AnimGif"},
        {"answer": [{"file": "still.gif"}]},
        {"open": "Import AnimGif"},
        {"dump": "still"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const Rgb want[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
    expectFrames("moving", 3, 3, 2, [&](int f, int, int) { return want[f]; });
    // And out again: the same three pictures with the new delay.
    EXPECT_EQ(identify(at("again.gif"), "%w %h %T;"), "3 2 20;3 2 20;3 2 20;");
    QImageReader again(at("again.gif"));
    for (int f = 0; f < 3; ++f) {
        const QImage frame = again.read();
        ASSERT_FALSE(frame.isNull()) << f;
        EXPECT_EQ(frame.pixel(2, 1) & 0xFFFFFF, qRgb(want[f].r, want[f].g, want[f].b) & 0xFFFFFF) << f;
    }
    EXPECT_EQ(dialogTexts(state("still")).back(), "Import Failed, Must be Animated Gif.");
    EXPECT_EQ(readFile(at("still/animation.dat")), readFile(at("moving/animation.dat")))
        << "the host is unchanged";
}

TEST_F(ExchangeScript, AFrameBitmapThatCannotBeWrittenIsReportedAndNothingElseChanges) {
    // The second frame's bitmap cannot be written (a folder stands under its name, which the clearing
    // of stale working files leaves alone): the export stops with an error, the animation stays as
    // it was, and no GIF appears.
    writeAnimation(at("anim.dat"), 3, 4, 3, sample);
    QDir(dir.path()).mkpath("tmp/temp1.bmp");
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat"},
      "steps": [
        {"open": "Export To AnimGif"},
        {"set": {"control": "chkGlobalDelay", "value": true}},
        {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"dump": "after"}]})JS");
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const QJsonObject after = state("after");
    const auto texts = dialogTexts(after);
    ASSERT_FALSE(texts.empty());
    EXPECT_NE(texts.back().find("temp1.bmp"), std::string::npos) << texts.back();
    EXPECT_FALSE(after["locked"].toBool());
    EXPECT_EQ(readFile(at("after/animation.dat")), readFile(at("anim.dat")));
    EXPECT_FALSE(QFileInfo::exists(at("out.gif")));
}

TEST_F(ExchangeScript, WithoutTheConverterTheWaitEndsWithAClearMessage) {
    writeAnimation(at("anim.dat"), 3, 4, 3, sample);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(dir.path())); // a search path that holds no converter
    const RunResult r = run(R"JS({"host": {"temp_dir": "tmp", "animation": "anim.dat"},
      "steps": [
        {"open": "Export To AnimGif"},
        {"set": {"control": "chkGlobalDelay", "value": true}},
        {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"answer": [{"file": "out.gif"}]},
        {"click": "cmdSave"},
        {"close": "frmSave2AnimGif"},
        {"answer": [{"file": "out.gif"}]},
        {"menu": "menuImportAnimGif"},
        {"dump": "after"}]})JS");
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

} // namespace
} // namespace kirrel::test
