// The batch runner: every batch the panel writes is understood, anything else is refused before
// anything runs, deletes stay inside the temporary folder, names never reach a shell, and the batch
// file is gone at the end in every case.

#include "exchange/BatchRunner.h"
#include "exchange/BatchOrder.h"
#include "exchange/BatchText.h"
#include "support/MediaCheck.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace kirrel::exchange {
namespace {

class BatchRunner : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(root.isValid());
        for (const char* d : {"tmp", "app", "outside"})
            QDir(root.path()).mkpath(d);
        folders = {at("tmp"), at("app"), {}, 15 * 60};
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
    // Runs the runner program on a batch written to `batch` (relative to the root) from the temporary
    // folder, with the given PATH and further settings ("NAME=value").
    int run(const QString& batch, const std::string& bytes, const QString& path = {},
            const QStringList& settings = {}) {
        touch(at(batch), QByteArray::fromStdString(bytes));
        QProcess p;
        p.setWorkingDirectory(folders.temp);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (!path.isNull()) env.insert("PATH", path);
        for (const QString& s : settings)
            env.insert(s.section('=', 0, 0), s.section('=', 1));
        p.setProcessEnvironment(env);
        p.start(QFileInfo(KIRREL_EXE).absolutePath() + "/kirrel_batch",
                {"--temp", folders.temp, "--app", folders.app, at(batch)});
        EXPECT_TRUE(p.waitForFinished(60000));
        return p.exitCode();
    }
    // A stand-in converter running `script`, alone in the folder it returns.
    QString converterIn(const QString& folder, const QString& script) {
        QDir(root.path()).mkpath(folder);
        touch(at(folder + "/convert"), script.toUtf8());
        QFile::setPermissions(at(folder + "/convert"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return at(folder);
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
    // What the marker left beside a batch says; empty when there is none.
    QString marker(const QString& batch) const {
        QFile f(at(batch + ".failed"));
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

// Anything but the panel's own lines is refused, in the words the user sees, before anything runs.
TEST_F(BatchRunner, RefusesEverythingElseInItsOwnWordsBeforeRunningAnything) {
    const std::string o = at("outside").toStdString(), conv = "\"" + app() + "/convert.exe\"";
    const std::pair<std::string, const char*> injected[] = {
        {o + "/x\" & touch PWNED & \"" + o + "/y.gif",
         "the character '&' outside quotes"}, // a command follows
        {o + "/x\"; touch PWNED; \"" + o + "/y.gif", "the character ';' outside quotes"},
        {o + "/x\" $(touch PWNED) \"" + o + "/y.gif", "the character '$' outside quotes"},
        {o + "/x.gif\ndel *.dat\n" + o + "/y.gif", "an unbalanced quote"}, // lines smuggled in
        {o + "/x.gif\r\ntouch PWNED", "an unbalanced quote"},
        {"|touch PWNED", "a quoted name that is not an absolute path"},      // a pipe the converter runs
        {"-write /tmp/PWNED", "a quoted name that is not an absolute path"}, // an option posing as a name
        {"msl:x.gif", "a quoted name that is not an absolute path"},         // a coder prefix
    };
    for (const auto& [name, why] : injected)
        for (const std::string& b : {batchBytes(pngConvertBatch(app(), name)),
                                     batchBytes(gifImportDirectBatch(app(), temp(), name))}) {
            const BatchPlan p = plan(b);
            EXPECT_EQ(p.refusal.toStdString(), std::string("line 1: ") + why) << b;
            EXPECT_TRUE(p.commands.empty()) << "a refused file runs nothing at all";
        }
    const std::string elsewhere = "a delete outside the temporary folder",
                      cd = "a change to a folder other than the temporary folder",
                      unknown = "not a command of a converter batch";
    const std::pair<std::string, std::string> lines[] = {
        {"\"/bin/sh\" -c date", "a program other than the converter: /bin/sh"},
        {"\"" + app() + "/../app/convert.exe\" -version", ""}, // the converter by a detour is fine
        {"del ../outside/keep.bmp", "the character '/' in a name"},
        {"del \"" + o + "/keep.bmp\"", elsewhere},
        {"del \"" + temp() + "/../outside/*\"", elsewhere}, // climbing out with a wildcard
        {"del \"" + temp() + "\"", elsewhere},              // the folder itself
        {"cd /", cd},
        {"cd " + temp() + "/..", cd},
        {"copy a b", unknown},
        {"rm -rf /", unknown},
        {"echo \x1b[0m", "a control character"},
        {conv + " a.bmp b.gif > log", "the character '>' outside quotes"},
        {conv + " a.bmp `touch PWNED` b.gif", "the character '`' outside quotes"},
        {conv + " a.bmp %PATH% b.gif", "the character '%' outside quotes"},
        {conv + " \"\" b.gif", "an empty quoted name"},
        {conv + "x a.bmp", "a program path that is not wholly quoted"},
    };
    for (const auto& [line, why] : lines)
        EXPECT_EQ(plan("\r\n" + line + "\r\n").refusal.toStdString(), why.empty() ? "" : "line 2: " + why)
            << line;
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

// However a run ends, the batch file is gone (the panel's signal that it has), a marker says in the
// user's words what went wrong, deletes keep to their pattern in the temporary folder, and no name
// ever reaches a shell. A batch outside the temporary folder is neither run nor deleted.
TEST_F(BatchRunner, EveryEndRemovesTheBatchAndMarksWhatWentWrong) {
    const QString killer = converterIn("killer", "#!/bin/sh\nkill -9 $$\n"); // dies midway by a signal
    const std::string o = at("outside").toStdString(), png = batchBytes(pngConvertBatch(app(), o + "/l.png"));
    auto expectEnd = [&](const char* what, const QString& batch, const std::string& bytes,
                         const QString& path, int code, const QString& markerStart, const QStringList& kept,
                         const QStringList& gone) {
        SCOPED_TRACE(what);
        clearFolders();
        for (const char* n : {"tmp/temp0.bmp", "tmp/temp11.bmp", "tmp/other.bmp", "tmp/AnimSlot 1.dat",
                              "tmp/png_main.bmp", "outside/keep.bmp"})
            touch(at(n));
        EXPECT_EQ(run(batch, bytes, path), code);
        const QString said = marker(batch);
        EXPECT_TRUE(markerStart.isEmpty() ? said.isEmpty() : said.startsWith(markerStart))
            << said.toStdString();
        for (const QString& f : kept + QStringList{"outside/keep.bmp"})
            EXPECT_TRUE(QFileInfo::exists(at(f))) << f.toStdString();
        for (const QString& f : gone + (code == 2 ? QStringList() : QStringList{batch}))
            EXPECT_FALSE(QFileInfo::exists(at(f))) << f.toStdString();
    };
    expectEnd("deletes", "tmp/GifConvert.bat", "cd " + temp() + "\r\ndel temp*.bmp\r\ndel GifConvert.bat\r\n",
              {}, 0, {}, {"tmp/other.bmp", "tmp/AnimSlot 1.dat"}, {"tmp/temp0.bmp", "tmp/temp11.bmp"});
    expectEnd("refused", "tmp/PNGConvert.bat",
              batchBytes(pngConvertBatch(app(), o + "/x\" & touch PWNED & \"" + o + "/y.png")) +
                  "del temp*.bmp\r\n",
              {}, 3,
              "refused\nThe converter was not run: the batch file holds line 1: the character '&' outside "
              "quotes.\n",
              {"tmp/temp0.bmp", "tmp/png_main.bmp"}, {"tmp/PWNED", "PWNED"});
    // The batch goes on to its deletes.
    expectEnd(
        "no converter", "tmp/PNGConvert.bat", png, at("app"), 4,
        "missing\nThe converter could not be found: ImageMagick's convert is not installed or not on the "
        "search path.\n",
        {}, {"tmp/png_main.bmp"});
    expectEnd("killed converter", "tmp/PNGConvert.bat", png, killer, 1, "failed\n", {}, {"tmp/png_main.bmp"});
    // An odd but legal name reaches the converter literally, which cannot open it.
    expectEnd("failing converter", "tmp/GifImport01.bat",
              batchBytes(gifImportDirectBatch(app(), temp(), o + "/$(touch PWNED) & x.gif")), {}, 1,
              "failed\nThe converter reported an error: ", {}, {"tmp/PWNED", "outside/PWNED", "PWNED"});
    expectEnd("outside", "outside/GifConvert.bat", "del keep.bmp\r\n", {}, 2, {}, {"outside/GifConvert.bat"},
              {});
}

} // namespace
} // namespace kirrel::exchange
