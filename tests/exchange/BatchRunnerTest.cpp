// The batch runner: every batch the panel writes is understood, anything else is refused before
// anything runs, deletes stay inside the temporary folder, names never reach a shell, and the batch
// file is gone at the end in every case.

#include "exchange/BatchRunner.h"
#include "exchange/BatchOrder.h"
#include "exchange/BatchText.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace kirrel::exchange {
namespace {

QString runnerProgram() {
    return QFileInfo(KIRREL_EXE).absolutePath() + "/kirrel_batch";
}

class BatchRunner : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(root.isValid());
        for (const char* d : {"tmp", "app", "outside"})
            QDir(root.path()).mkpath(d);
        folders = {at("tmp"), at("app"), {}, 15 * 60};
        touch(at("outside/keep.bmp"));
    }
    QString at(const QString& rel) const { return QDir(root.path()).filePath(rel); }
    static void touch(const QString& path, const QByteArray& bytes = "x") {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    std::string temp() const { return folders.temp.toStdString(); }
    std::string app() const { return folders.app.toStdString(); }
    BatchPlan plan(const std::string& bytes) const {
        return planBatch(QByteArray::fromStdString(bytes), folders, folders.temp);
    }
    // Runs the runner program on a batch written into the temporary folder, with the given PATH and
    // further settings ("NAME=value").
    int run(const std::string& name, const std::string& bytes, const QString& path = {},
            const QStringList& settings = {}) {
        touch(at("tmp/" + QString::fromStdString(name)), QByteArray::fromStdString(bytes));
        QProcess p;
        p.setWorkingDirectory(folders.temp);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (!path.isNull()) env.insert("PATH", path);
        for (const QString& s : settings)
            env.insert(s.section('=', 0, 0), s.section('=', 1));
        p.setProcessEnvironment(env);
        p.start(runnerProgram(),
                {"--temp", folders.temp, "--app", folders.app, at("tmp/" + QString::fromStdString(name))});
        EXPECT_TRUE(p.waitForFinished(60000));
        return p.exitCode();
    }
    // Every file and folder under the fixture's root with its bytes, to compare whole runs.
    QMap<QString, QByteArray> snapshot() const {
        QMap<QString, QByteArray> files;
        QDirIterator it(root.path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QFileInfo e(it.next());
            QFile f(e.filePath());
            files[QDir(root.path()).relativeFilePath(e.filePath())] =
                e.isFile() && f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<folder>");
        }
        return files;
    }
    void clearFolders() {
        for (const char* d : {"tmp", "outside"}) {
            QDir(at(d)).removeRecursively();
            QDir(root.path()).mkpath(d);
        }
    }
    QString marker(const std::string& name) const {
        QFile f(at("tmp/" + QString::fromStdString(name) + ".failed"));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    QTemporaryDir root;
    RunnerFolders folders;
};

TEST_F(BatchRunner, UnderstandsEveryBatchThePanelWrites) {
    // Names a user may well choose: blanks, '&', ';', "$()" and quotes-free odd characters.
    const std::string out = at("outside/Tom & Jerry; $(final).gif").toStdString();
    const std::vector<std::string> batches = {
        batchBytes(gifPerFrameBatch(temp(), {gifConversionLine(app(), temp(), 0, Rgb{1, 2, 3})},
                                    {gifAppendLine(app(), temp(), out, 0, 4, 0)})),
        batchBytes(gifSingleCommandBatch(temp(), gifSingleCommandLine(app(), out, 4, 0, 120))),
        batchBytes(gifImportDirectBatch(app(), temp(), out)),
        batchBytes(gifImportPngBatch(app(), temp(), out)),
        batchBytes(gifImportBitmapLines(app(), temp(), 3)),
        batchBytes(pngConvertBatch(app(), out)),
    };
    for (const std::string& b : batches) {
        const BatchPlan p = plan(b);
        EXPECT_TRUE(p.refusal.isEmpty()) << p.refusal.toStdString() << "\n" << b;
        EXPECT_FALSE(p.commands.empty());
    }
    // The odd name reaches the converter as one literal argument.
    const BatchPlan png = plan(batchBytes(pngConvertBatch(app(), out)));
    ASSERT_EQ(png.commands[0].kind, BatchCommand::Kind::Convert);
    EXPECT_EQ(png.commands[0].args.last(), QString::fromStdString(out));
    // The quoted converter path with its blank behind the name, and the png24: prefix glued to a
    // quoted path, come out as the converter expects them.
    const BatchPlan gif = plan(batchBytes(gifImportPngBatch(app(), temp(), out)));
    EXPECT_EQ(gif.commands[1].args.last(), "png24:" + folders.temp + "/gif_frame.png");
}

TEST_F(BatchRunner, RefusesInjectedNamesBeforeRunningAnything) {
    const std::string o = at("outside").toStdString();
    const std::vector<std::string> injected = {
        o + "/x\" & touch PWNED & \"" + o + "/y.gif", // a quote closes the name and a command follows
        o + "/x\"; touch PWNED; \"" + o + "/y.gif",   // the same with semicolons
        o + "/x\" $(touch PWNED) \"" + o + "/y.gif",  // a substitution outside the quotes
        o + "/x.gif\ndel *.dat\n" + o + "/y.gif",     // a line break smuggles in lines of its own
        o + "/x.gif\r\ntouch PWNED",                  // likewise with CR LF
        "|touch PWNED",                               // a pipe the converter itself would run
        "-write /tmp/PWNED",                          // an option posing as a name
        "msl:x.gif",                                  // a coder prefix
    };
    for (const std::string& name : injected) {
        for (const std::string& b : {batchBytes(pngConvertBatch(app(), name)),
                                     batchBytes(gifImportDirectBatch(app(), temp(), name))}) {
            const BatchPlan p = plan(b);
            EXPECT_FALSE(p.refusal.isEmpty()) << b;
            EXPECT_TRUE(p.commands.empty()) << "a refused file runs nothing at all";
        }
    }
}

TEST_F(BatchRunner, RefusesOtherProgramsFoldersAndCommands) {
    const std::string conv = "\"" + app() + "/convert.exe\"";
    const std::vector<std::string> lines = {
        "\"/bin/sh\" -c date",                                  // not the converter
        "\"" + app() + "/../app/convert.exe\" -version",        // the converter by a detour is fine...
        "del ../outside/keep.bmp",                              // a bare name leaving the folder
        "del \"" + at("outside/keep.bmp").toStdString() + "\"", // a quoted one elsewhere
        "del \"" + temp() + "/../outside/*\"",                  // climbing out with a wildcard
        "del \"" + temp() + "\"",                               // the folder itself
        "cd /",                                                 // another folder
        "cd " + temp() + "/..",
        "copy a b",
        "rm -rf /",
        conv + " a.bmp b.gif > log",
        conv + " a.bmp `touch PWNED` b.gif",
        conv + " a.bmp %PATH% b.gif",
        conv + " \"\" b.gif",
        conv + "x a.bmp",
    };
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const BatchPlan p = plan(lines[i] + "\r\n");
        if (i == 1)
            EXPECT_TRUE(p.refusal.isEmpty()) << lines[i];
        else
            EXPECT_FALSE(p.refusal.isEmpty()) << lines[i];
    }
}

// The per-frame export's lines: each frame's conversion, then its append to the output.
std::string perFrameExport(const std::string& app, const std::string& temp, const std::string& out,
                           int frames) {
    std::vector<std::string> conversions, appends;
    for (int i = 0; i < frames; ++i) {
        conversions.push_back(
            gifConversionLine(app, temp, i, i % 2 ? std::optional<Rgb>(Rgb{200, 40, 40}) : std::nullopt));
        appends.push_back(gifAppendLine(app, temp, out, i, 4 + i, 0));
    }
    return batchBytes(gifPerFrameBatch(temp, conversions, appends));
}

bool realConverterInstalled() {
    if (QStandardPaths::findExecutable("convert").isEmpty()) return false;
    QProcess p;
    p.start("convert", {"-version"});
    return p.waitForFinished(60000) && p.readAllStandardOutput().contains("ImageMagick");
}

// One run line after another and one on several converters at once, with the converter's memory
// settings, leave the same files, byte for byte, and the same marker: a per-frame export, the same with a
// broken frame in the middle, and the import's frame-by-frame batch.
TEST_F(BatchRunner, LinesRunAtOnceLeaveWhatOneAfterAnotherLeaves) {
    if (!realConverterInstalled()) GTEST_SKIP() << "ImageMagick's convert is not installed";
    constexpr int kFrames = 5;
    auto picture = [](int i) {
        QImage image(48, 36, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, (x + 3 * i) % 8 == 0 ? qRgb(200, 40, 40) : qRgb(x * 5, y * 7, 30 * i));
        return image;
    };
    auto frames = [&](const char* format, const char* stem, const char* extension, int broken) {
        for (int i = 0; i < kFrames; ++i) {
            const QString path = at(QString("tmp/%1%2.%3").arg(stem).arg(i).arg(extension));
            if (i == broken)
                touch(path, "not a picture");
            else
                ASSERT_TRUE(picture(i).save(path, format));
        }
    };
    const std::string out = at("outside/anim.gif").toStdString();
    struct Case {
        const char* what;
        std::function<void()> prepare;
        std::string name, bytes;
        int code;
    };
    std::vector<BatchLine> import;
    for (int i = 0; i < kFrames; ++i)
        for (BatchLine& l : gifImportBitmapLines(app(), temp(), i))
            import.push_back(l);
    import.push_back(gifImportBitmapClosing(temp()));
    const std::vector<Case> cases = {
        {"export", [&] { frames("BMP", "temp", "bmp", -1); }, kGifConvertBat,
         perFrameExport(app(), temp(), out, kFrames), 0},
        {"export with frame 2 broken", [&] { frames("BMP", "temp", "bmp", 2); }, kGifConvertBat,
         perFrameExport(app(), temp(), out, kFrames), 1},
        {"import", [&] { frames("PNG", "gif_frame-", "png", -1); }, kGifImport02Bat, batchBytes(import), 0},
    };
    // One after another with the converter's plain memory settings, and on three converters with all.
    const QStringList ways[2] = {{"KIRREL_BATCH_WORKERS=1", "KIRREL_CONVERTER_TUNING=0"},
                                 {"KIRREL_BATCH_WORKERS=3"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        QMap<QString, QByteArray> left[2];
        for (int way : {0, 1}) {
            clearFolders();
            c.prepare();
            EXPECT_EQ(run(c.name, c.bytes, {}, ways[way]), c.code);
            left[way] = snapshot();
        }
        EXPECT_EQ(left[0].keys(), left[1].keys());
        EXPECT_TRUE(left[0] == left[1]) << "the files differ";
        if (c.code == 0) {
            EXPECT_TRUE(marker(c.name).isEmpty());
            EXPECT_FALSE(left[1].contains("tmp/" + QString::fromStdString(c.name)));
        } else {
            EXPECT_TRUE(marker(c.name).startsWith("failed\n")) << marker(c.name).toStdString();
        }
    }
    // What was compared is real work: the export holds every frame.
    clearFolders();
    frames("BMP", "temp", "bmp", -1);
    ASSERT_EQ(run(kGifConvertBat, perFrameExport(app(), temp(), out, kFrames)), 0);
    EXPECT_EQ(QImageReader(QString::fromStdString(out)).imageCount(), kFrames);
}

// A converter that records when each call starts and ends: conversions overlap, yet every append
// waits for its frame and the one before it, a frame's GIF shows in the folder only in its turn, and
// of two failures the one earlier in the batch is reported even when the later one came first.
TEST_F(BatchRunner, IndependentLinesOverlapYetShowInTheBatchsOrder) {
    QDir(root.path()).mkpath("fake");
    const QString log = at("fake/calls.log");
    touch(at("fake/convert"),
          QString("#!/bin/sh\n"
                  "for last; do :; done\n"
                  "seen=$(cd '%1' && ls temp*.gif 2>/dev/null | tr '\\n' ' ')\n"
                  "echo \"start $* | $seen\" >> '%2'\n"
                  "case \"$*\" in\n"
                  "  *-dispose*) ;;\n"
                  "  *temp2.gif) sleep 0.6; echo \"end $*\" >> '%2'; echo \"boom $last\" >&2; exit 1 ;;\n"
                  "  *temp3.gif) echo \"end $*\" >> '%2'; echo \"bang $last\" >&2; exit 1 ;;\n"
                  "esac\n"
                  "sleep 0.2\n"
                  "echo made > \"$last\"\n"
                  "echo \"end $*\" >> '%2'\n")
              .arg(folders.temp, log)
              .toUtf8());
    QFile::setPermissions(at("fake/convert"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const std::string out = at("outside/anim.gif").toStdString();
    const std::string batch = perFrameExport(app(), temp(), out, 6);
    QString markers[2];
    for (int workers : {1, 3}) {
        clearFolders();
        QFile::remove(log);
        EXPECT_EQ(run(kGifConvertBat, batch, at("fake") + ":" + qEnvironmentVariable("PATH"),
                      {"KIRREL_BATCH_WORKERS=" + QString::number(workers)}),
                  1);
        markers[workers > 1] = marker(kGifConvertBat);
    }
    EXPECT_TRUE(markers[1].startsWith("failed\nThe converter reported an error: boom "))
        << markers[1].toStdString();
    EXPECT_TRUE(markers[1].trimmed().endsWith("/temp2.gif"));
    EXPECT_EQ(markers[0].toStdString(), markers[1].toStdString());

    // The calls of the run on three converters, as "start"/"end", "conv"/"append" and the frame.
    QFile f(log);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QStringList calls = QString::fromUtf8(f.readAll()).split('\n', Qt::SkipEmptyParts);
    auto when = [&](const QString& event, bool append, int frame) {
        const QRegularExpression re(
            QString("^%1 .*%2.*temp%3\\.(bmp|gif) ").arg(event, append ? "-dispose" : "").arg(frame));
        for (int i = 0; i < calls.size(); ++i)
            if (re.match(calls[i]).hasMatch() && calls[i].contains("-dispose") == append) return i;
        return -1;
    };
    for (int i = 0; i < 6; ++i) {
        const int start = when("start", true, i);
        ASSERT_GE(start, 0) << i;
        if (i != 2 && i != 3) {
            EXPECT_GT(start, when("end", false, i)) << "append " << i << " before its conversion";
        }
        if (i > 0) {
            EXPECT_GT(start, when("end", true, i - 1)) << "append " << i << " before the one before it";
        }
        // The GIFs in the folder when the append starts: its own frame's and those before, no more.
        QStringList seen = calls[start].section('|', 1).split(' ', Qt::SkipEmptyParts);
        seen.sort();
        QStringList expected;
        for (int j = 0; j <= i; ++j)
            if (j != 2 && j != 3) expected << QString("temp%1.gif").arg(j);
        expected.sort();
        EXPECT_EQ(seen.join(' ').toStdString(), expected.join(' ').toStdString()) << "append " << i;
    }
    EXPECT_LT(when("start", false, 4), when("end", false, 2))
        << "a later conversion ran while an earlier one did";
    EXPECT_LT(when("end", false, 3), when("end", false, 2)) << "the later failure came first";
    EXPECT_TRUE(QDir(folders.temp).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot) ==
                QStringList{QString(kGifConvertBat) + ".failed"});
}

// Which conversions may start while lines before them still run.
TEST_F(BatchRunner, OnlyConversionsThatDependOnNothingPendingRunAhead) {
    const std::string conv = "\"" + app() + "/convert.exe\" ";
    auto q = [&](const std::string& name) { return "\"" + temp() + "/" + name + "\""; };
    touch(at("outside/real.png"));
    QFile::link(at("outside/real.png"), at("tmp/link.png"));
    auto lines = [&](const std::vector<std::string>& text) {
        std::string bytes;
        for (const std::string& l : text)
            bytes += l + "\r\n";
        const BatchPlan p = plan(bytes);
        EXPECT_TRUE(p.refusal.isEmpty()) << p.refusal.toStdString();
        return runLines(p.commands, folders, folders.temp);
    };
    // A frame's conversion starts while earlier frames convert and append; an append never runs ahead.
    const BatchPlan exportPlan = plan(perFrameExport(app(), temp(), at("outside/a.gif").toStdString(), 3));
    const auto exported = runLines(exportPlan.commands, folders, folders.temp);
    EXPECT_TRUE(mayStartAhead(exported, 0, 2));
    EXPECT_TRUE(mayStartAhead(exported, 1, 4));
    EXPECT_FALSE(mayStartAhead(exported, 0, 3));
    // The converter's own names for several pictures ("gif_frame-0.png") belong to the line writing
    // "gif_frame.png"; a delete waits for nobody but holds back a line reading what it deletes.
    const auto derived =
        lines({conv + q("anim.gif") + " png24:" + q("gif_frame.png"),
               conv + q("gif_frame-0.png") + " -compress none " + q("gif_frame-0.bmp"),
               "del " + q("gif_frame-0.png"), conv + q("gif_frame-0.png") + " " + q("again.bmp"),
               conv + q("gif_frame-1.png") + " " + q("gif_frame-1.bmp")});
    EXPECT_FALSE(mayStartAhead(derived, 0, 1));
    EXPECT_FALSE(mayStartAhead(derived, 2, 3));
    EXPECT_TRUE(mayStartAhead(derived, 1, 4));
    // Options that may write files, patterns, links, outputs outside the temporary folder: in order.
    const auto never =
        lines({conv + q("a.bmp") + " -write " + q("b.gif") + " " + q("c.gif"),
               conv + q("temp?.bmp") + " " + q("d.gif"), conv + q("link.png") + " " + q("e.bmp"),
               conv + q("f.bmp") + " \"" + at("outside/f.gif").toStdString() + "\"",
               conv + q("g.bmp") + " " + q("g%d.gif")});
    for (const RunLine& l : never)
        EXPECT_FALSE(l.mayRunAhead) << l.command.args.join(' ').toStdString();
}

// The converter's memory settings join the user's own and never override them.
TEST(ConverterEnvironment, AddsItsSettingsToTheUsersOwn) {
    const QByteArray saved = qgetenv("GLIBC_TUNABLES"), threads = qgetenv("MAGICK_THREAD_LIMIT");
    qunsetenv("MAGICK_THREAD_LIMIT");
    qputenv("GLIBC_TUNABLES", "glibc.malloc.arena_max=2");
    EXPECT_EQ(converterEnvironment().value("GLIBC_TUNABLES"),
              "glibc.malloc.arena_max=2:glibc.malloc.hugetlb=1");
    qputenv("GLIBC_TUNABLES", "glibc.malloc.hugetlb=0");
    EXPECT_EQ(converterEnvironment().value("GLIBC_TUNABLES"), "glibc.malloc.hugetlb=0");
    EXPECT_EQ(converterEnvironment().value("MAGICK_THREAD_LIMIT"), "1");
    qputenv("KIRREL_CONVERTER_TUNING", "0");
    qunsetenv("GLIBC_TUNABLES");
    EXPECT_FALSE(converterEnvironment().contains("GLIBC_TUNABLES"));
    EXPECT_FALSE(converterEnvironment().contains("MAGICK_THREAD_LIMIT"));
    EXPECT_EQ(converterEnvironment().value("MALLOC_MMAP_THRESHOLD_"), QString::number(256 * 1024 * 1024));
    qunsetenv("KIRREL_CONVERTER_TUNING");
    if (!saved.isNull()) qputenv("GLIBC_TUNABLES", saved);
    if (!threads.isNull()) qputenv("MAGICK_THREAD_LIMIT", threads);
}

TEST(BatchWildcards, MatchAsTheCommandProcessorDoes) {
    EXPECT_TRUE(wildcardMatch("temp*.bmp", "temp12.bmp"));
    EXPECT_TRUE(wildcardMatch("temp*.bmp", "TEMP.BMP"));
    EXPECT_TRUE(wildcardMatch("temp?.bmp", "temp7.bmp"));
    EXPECT_FALSE(wildcardMatch("temp?.bmp", "temp17.bmp"));
    EXPECT_FALSE(wildcardMatch("temp*.bmp", "temp1.bmp.failed"));
    EXPECT_TRUE(wildcardMatch("gifconvert.bat", "GifConvert.bat"));
    EXPECT_TRUE(wildcardMatch("*a*b", "xxaYYb"));
    EXPECT_FALSE(wildcardMatch("*a*b", "xxaYYbc"));
}

TEST_F(BatchRunner, DeletesOnlyMatchingFilesInItsFolderAndItselfLast) {
    for (const char* n : {"tmp/temp0.bmp", "tmp/temp11.bmp", "tmp/other.bmp", "tmp/AnimSlot 1.dat"})
        touch(at(n));
    const std::string batch = "cd " + temp() + "\r\ndel temp*.bmp\r\ndel GifConvert.bat\r\n";
    EXPECT_EQ(run("GifConvert.bat", batch), 0);
    EXPECT_FALSE(QFileInfo::exists(at("tmp/temp0.bmp")));
    EXPECT_FALSE(QFileInfo::exists(at("tmp/temp11.bmp")));
    EXPECT_TRUE(QFileInfo::exists(at("tmp/other.bmp")));
    EXPECT_TRUE(QFileInfo::exists(at("tmp/AnimSlot 1.dat")));
    EXPECT_FALSE(QFileInfo::exists(at("tmp/GifConvert.bat")));
    EXPECT_TRUE(marker("GifConvert.bat").isEmpty());
}

TEST_F(BatchRunner, RefusedFileRunsNothingButStillSignalsTheEnd) {
    touch(at("tmp/temp0.bmp"));
    const std::string o = at("outside").toStdString();
    const std::string bad = batchBytes(pngConvertBatch(app(), o + "/x\" & touch PWNED & \"" + o + "/y.png")) +
                            "del temp*.bmp\r\n";
    EXPECT_EQ(run("PNGConvert.bat", bad), 3);
    EXPECT_FALSE(QFileInfo::exists(at("tmp/PNGConvert.bat")));
    EXPECT_TRUE(QFileInfo::exists(at("tmp/temp0.bmp"))) << "not even the harmless lines run";
    EXPECT_FALSE(QFileInfo::exists(at("tmp/PWNED")));
    EXPECT_TRUE(QFileInfo::exists(at("outside/keep.bmp")));
    EXPECT_TRUE(marker("PNGConvert.bat").startsWith("refused\n"));
}

TEST_F(BatchRunner, MissingConverterIsReportedAndTheBatchStillEnds) {
    touch(at("tmp/png_main.bmp"));
    const QString emptyPath = at("app"); // holds no convert
    EXPECT_EQ(run("PNGConvert.bat", batchBytes(pngConvertBatch(app(), at("outside/l.png").toStdString())),
                  emptyPath),
              4);
    EXPECT_FALSE(QFileInfo::exists(at("tmp/png_main.bmp"))) << "the batch goes on to its deletes";
    EXPECT_FALSE(QFileInfo::exists(at("tmp/PNGConvert.bat")));
    EXPECT_TRUE(marker("PNGConvert.bat").startsWith("missing\n"));
}

TEST_F(BatchRunner, FailingConverterLeavesAMarkerAndNoShellEverRuns) {
    // The name is odd but legal: it reaches the converter literally, which cannot open it.
    const std::string in = at("outside/$(touch PWNED) & x.gif").toStdString();
    EXPECT_EQ(run("GifImport01.bat", batchBytes(gifImportDirectBatch(app(), temp(), in))), 1);
    EXPECT_FALSE(QFileInfo::exists(at("tmp/GifImport01.bat")));
    EXPECT_TRUE(marker("GifImport01.bat").startsWith("failed\n"));
    for (const char* where : {"tmp/PWNED", "outside/PWNED", "PWNED"})
        EXPECT_FALSE(QFileInfo::exists(at(where)));
}

TEST_F(BatchRunner, KilledConverterLeavesAMarkerAndTheBatchStillEnds) {
    // A converter that dies by a signal midway: the run is a failure like any other, and the panel's
    // wait still ends because the batch file goes.
    QDir(root.path()).mkpath("killer");
    touch(at("killer/convert"), "#!/bin/sh\nkill -9 $$\n");
    QFile::setPermissions(at("killer/convert"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    touch(at("tmp/png_main.bmp"));
    EXPECT_NE(run("PNGConvert.bat", batchBytes(pngConvertBatch(app(), at("outside/l.png").toStdString())),
                  at("killer")),
              0);
    EXPECT_FALSE(QFileInfo::exists(at("tmp/PNGConvert.bat")));
    EXPECT_TRUE(marker("PNGConvert.bat").startsWith("failed\n")) << marker("PNGConvert.bat").toStdString();
    EXPECT_TRUE(QFileInfo::exists(at("outside/keep.bmp")));
}

TEST_F(BatchRunner, BatchOutsideItsFolderIsNeitherRunNorDeleted) {
    touch(at("outside/GifConvert.bat"), "del keep.bmp\r\n");
    QProcess p;
    p.start(runnerProgram(), {"--temp", folders.temp, "--app", folders.app, at("outside/GifConvert.bat")});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 2);
    EXPECT_TRUE(QFileInfo::exists(at("outside/GifConvert.bat")));
    EXPECT_TRUE(QFileInfo::exists(at("outside/keep.bmp")));
}

} // namespace
} // namespace kirrel::exchange
