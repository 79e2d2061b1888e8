// The batch runner: every batch the panel writes is understood, anything else is refused before
// anything runs, deletes stay inside the temporary folder, names never reach a shell, and the batch
// file is gone at the end in every case.

#include "exchange/BatchRunner.h"
#include "exchange/BatchText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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
    // Runs the runner program on a batch written into the temporary folder.
    int run(const std::string& name, const std::string& bytes, const QString& path = {}) {
        touch(at("tmp/" + QString::fromStdString(name)), QByteArray::fromStdString(bytes));
        QProcess p;
        p.setWorkingDirectory(folders.temp);
        if (!path.isNull()) {
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert("PATH", path);
            p.setProcessEnvironment(env);
        }
        p.start(runnerProgram(),
                {"--temp", folders.temp, "--app", folders.app, at("tmp/" + QString::fromStdString(name))});
        EXPECT_TRUE(p.waitForFinished(60000));
        return p.exitCode();
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
