#include "host/BatchCommand.h"

#include "host/PngSequence.h"
#include "host/ScriptRunner.h"
#include "panel/Interrupt.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

#include <unistd.h>

namespace kirrel::host {

namespace {

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The formats a batch writes, and the file ending each gives the output.
const std::map<QString, QString>& formats() {
    static const std::map<QString, QString> table = {{"gif", "gif"}, {"apng", "png"},  {"webp", "webp"},
                                                     {"mp4", "mp4"}, {"webm", "webm"}, {"png", "png"}};
    return table;
}

struct Options {
    QString script;
    QStringList inputs;
    QString out;
    QString format = "gif";
    int jobs = 0;
    bool force = false;
    bool skipExisting = false;
};

Options parse(const QStringList& args) {
    Options o;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        auto value = [&]() -> QString {
            if (i + 1 >= args.size()) throw UsageError((a + " needs a value").toStdString());
            return args[++i];
        };
        if (a == "--out")
            o.out = value();
        else if (a == "--format")
            o.format = value().toLower();
        else if (a == "--jobs") {
            bool ok = false;
            o.jobs = value().toInt(&ok);
            if (!ok || o.jobs < 1 || o.jobs > 256) throw UsageError("--jobs takes a number from 1 to 256");
        } else if (a == "--force")
            o.force = true;
        else if (a == "--skip-existing")
            o.skipExisting = true;
        else if (a.startsWith("--"))
            throw UsageError(("unknown option " + a).toStdString());
        else if (o.script.isEmpty())
            o.script = a;
        else
            o.inputs << a;
    }
    if (o.script.isEmpty()) throw UsageError("batch needs a session script");
    if (o.inputs.isEmpty()) throw UsageError("batch needs at least one input file");
    if (o.out.isEmpty()) throw UsageError("batch needs --out DIR");
    if (!formats().count(o.format))
        throw UsageError(
            ("unknown --format " + o.format + " (gif, apng, webp, mp4, webm, png)").toStdString());
    if (o.force && o.skipExisting) throw UsageError("--force and --skip-existing exclude each other");
    if (o.jobs == 0) o.jobs = std::max(1, QThread::idealThreadCount());
    return o;
}

enum class Outcome { Pending, Running, Written, Skipped, Failed, Stopped };

struct Job {
    QString input;
    QString output;  // the file the export writes (for "png", the name its frames are numbered after)
    QString present; // the file whose presence means the output is there
    Outcome outcome = Outcome::Pending;
    QString message;
    std::unique_ptr<QProcess> process;
};

QString outputName(const QString& input) {
    const QFileInfo info(QDir::cleanPath(input));
    return info.isDir() ? info.fileName() : info.completeBaseName();
}

// The recording's stored animations go with every job: each plays in a temporary folder of its own,
// so that jobs never meet in the panel's working files.
void copySlots(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QFileInfo& f : QDir(from).entryInfoList({"AnimSlot *.dat", "AnimThumb *.bmp"}, QDir::Files))
        QFile::copy(f.absoluteFilePath(), QDir(to).filePath(f.fileName()));
}

QJsonObject jobScript(const QJsonObject& recorded, const QString& scriptDir, const Job& job,
                      const QString& temp, const Options& o) {
    QJsonObject root = recorded;
    // Paths the recording names stay the recording's: they are taken from its folder.
    if (!root.contains("base")) root["base"] = scriptDir;
    root["fail_on_error"] = true;
    QJsonObject host = root["host"].toObject();
    host["animation"] = QFileInfo(job.input).absoluteFilePath();
    host["temp_dir"] = temp;
    host.remove("size");
    host.remove("frames");
    host.remove("delays"); // the recorded animation's: the input brings its own
    root["host"] = host;
    QJsonArray steps = root["steps"].toArray();
    QJsonObject exportStep{{"export", job.output}};
    if (o.format == "png") exportStep["frames"] = true;
    steps.append(exportStep);
    root["steps"] = steps;
    return root;
}

QString lastLine(const QByteArray& text) {
    const QStringList lines = QString::fromLocal8Bit(text).split('\n', Qt::SkipEmptyParts);
    QString line = lines.isEmpty() ? QString() : lines.last().trimmed();
    if (line.startsWith("kirrel: ")) line = line.mid(8);
    return line;
}

QString clock(qint64 ms) {
    const qint64 s = (ms + 500) / 1000;
    return QString("%1:%2").arg(s / 60).arg(s % 60, 2, 10, QChar('0'));
}

class Progress {
  public:
    explicit Progress(int total) : total_(total), tty_(::isatty(STDERR_FILENO) != 0) { clock_.start(); }
    void show(int done, int failed, const QString& finished = {}) {
        const qint64 spent = clock_.elapsed();
        const QString left =
            done > 0 && done < total_ ? clock(spent * (total_ - done) / done) + " left" : QString();
        if (!tty_) {
            if (!finished.isEmpty()) std::fprintf(stderr, "%d/%d %s\n", done, total_, qPrintable(finished));
            return;
        }
        constexpr int kWidth = 30;
        const int filled = total_ ? kWidth * done / total_ : kWidth;
        const QString bar = QString(filled, QChar(0x2588)) + QString(kWidth - filled, QChar(0x00B7));
        std::fprintf(stderr, "\r[%s] %d/%d done, %d failed  %s   ", qPrintable(bar), done, total_, failed,
                     qPrintable(left));
        std::fflush(stderr);
    }
    void end() const {
        if (tty_) std::fputc('\n', stderr);
    }
    qint64 elapsed() const { return clock_.elapsed(); }

  private:
    int total_;
    bool tty_;
    QElapsedTimer clock_;
};

} // namespace

int runBatchCommand(const QStringList& arguments, const std::string& userTempDir) {
    Options o;
    try {
        o = parse(arguments);
    } catch (const UsageError& e) {
        std::fprintf(stderr, "kirrel batch: %s (see kirrel batch --help)\n", e.what());
        return 2;
    }
    std::string error;
    const QJsonObject recorded = readSessionScript(o.script, error);
    if (!error.empty()) {
        std::fprintf(stderr, "kirrel batch: %s\n", error.c_str());
        return 2;
    }
    const QString scriptDir = QFileInfo(o.script).absolutePath();
    const QString recordedTemp =
        recorded["host"].toObject().contains("temp_dir")
            ? QDir(scriptDir).absoluteFilePath(recorded["host"].toObject()["temp_dir"].toString())
            : QString::fromStdString(userTempDir);
    if (!QDir().mkpath(o.out)) {
        std::fprintf(stderr, "kirrel batch: cannot make the output folder %s\n", qPrintable(o.out));
        return 2;
    }
    const QString extension = formats().at(o.format);

    std::vector<Job> jobs;
    std::set<QString> names;
    for (const QString& input : o.inputs) {
        Job job;
        job.input = input;
        const QString name = outputName(input);
        job.output = QDir(o.out).absoluteFilePath(name + "." + extension);
        job.present = o.format == "png" ? pngSequenceNames(job.output, 1).front() : job.output;
        if (!names.insert(name).second) {
            job.outcome = Outcome::Failed;
            job.message = "another input already writes " + QFileInfo(job.output).fileName();
        } else if (!QFileInfo::exists(input)) {
            job.outcome = Outcome::Failed;
            job.message = "the input does not exist";
        } else if (QFileInfo::exists(job.present) && !o.force) {
            job.outcome = o.skipExisting ? Outcome::Skipped : Outcome::Failed;
            if (!o.skipExisting)
                job.message = QFileInfo(job.present).fileName() +
                              " is already there (--force writes over it, "
                              "--skip-existing counts it as done)";
        }
        jobs.push_back(std::move(job));
    }

    QTemporaryDir work(QDir::tempPath() + "/kirrel-batch-XXXXXX");
    if (!work.isValid()) {
        std::fprintf(stderr, "kirrel batch: cannot make a working folder in %s\n",
                     qPrintable(QDir::tempPath()));
        return 2;
    }
    installInterruptHandlers();
    Progress progress(static_cast<int>(jobs.size()));
    int running = 0;
    std::size_t next = 0;
    auto finished = [&] {
        return static_cast<int>(std::count_if(jobs.begin(), jobs.end(), [](const Job& j) {
            return j.outcome == Outcome::Written || j.outcome == Outcome::Skipped ||
                   j.outcome == Outcome::Failed;
        }));
    };
    auto failures = [&] {
        return static_cast<int>(std::count_if(jobs.begin(), jobs.end(),
                                              [](const Job& j) { return j.outcome == Outcome::Failed; }));
    };
    progress.show(finished(), failures());
    bool stopping = false;
    while (true) {
        if (interrupted() && !stopping) {
            // Ctrl+C reaches the jobs too when they share the terminal; a signal sent to this process
            // alone is passed on. Each job stops after its step, its output whole or not there.
            stopping = true;
            for (Job& j : jobs)
                if (j.outcome == Outcome::Running && j.process)
                    ::kill(static_cast<pid_t>(j.process->processId()), SIGINT);
        }
        while (!stopping && running < o.jobs && next < jobs.size()) {
            Job& job = jobs[next];
            const std::size_t index = next++;
            if (job.outcome != Outcome::Pending) continue;
            const QString dir = work.filePath(QString::number(index));
            copySlots(recordedTemp, dir + "/tmp");
            const QString scriptFile = dir + "/session.json";
            QFile f(scriptFile);
            if (!f.open(QIODevice::WriteOnly) ||
                f.write(QJsonDocument(jobScript(recorded, scriptDir, job, dir + "/tmp", o)).toJson()) < 0) {
                job.outcome = Outcome::Failed;
                job.message = "cannot write the job's script in " + dir;
                continue;
            }
            f.close();
            job.process = std::make_unique<QProcess>();
            job.process->setProgram(QCoreApplication::applicationFilePath());
            job.process->setArguments({"--script", scriptFile});
            job.process->setWorkingDirectory(dir);
            job.process->setStandardInputFile(QProcess::nullDevice());
            job.process->setStandardOutputFile(QProcess::nullDevice());
            job.process->start();
            job.outcome = Outcome::Running;
            ++running;
        }
        if (running == 0 && (stopping || next >= jobs.size())) break;
        for (Job& job : jobs) {
            if (job.outcome != Outcome::Running || !job.process->waitForFinished(0)) continue;
            --running;
            const bool ok = job.process->exitStatus() == QProcess::NormalExit && job.process->exitCode() == 0;
            const int code = job.process->exitCode();
            if (ok && QFileInfo::exists(job.present)) {
                job.outcome = Outcome::Written;
            } else if (code > 128 && interrupted()) {
                job.outcome = Outcome::Stopped;
            } else {
                job.outcome = Outcome::Failed;
                job.message = lastLine(job.process->readAllStandardError());
                if (job.message.isEmpty())
                    job.message = ok ? "the script ran but wrote nothing" : "the job ended unexpectedly";
            }
            progress.show(finished(), failures(),
                          QFileInfo(job.input).fileName() +
                              (job.outcome == Outcome::Failed ? ": failed" : ""));
        }
        QThread::msleep(20);
        progress.show(finished(), failures());
    }
    progress.end();

    int written = 0, skipped = 0, failed = 0, stopped = 0;
    for (const Job& j : jobs) {
        written += j.outcome == Outcome::Written;
        skipped += j.outcome == Outcome::Skipped;
        failed += j.outcome == Outcome::Failed;
        stopped += j.outcome == Outcome::Stopped || j.outcome == Outcome::Pending;
    }
    std::fprintf(stderr, "%d written, %d already there, %d failed%s in %s.\n", written, skipped, failed,
                 stopped ? qPrintable(QString(", %1 not done (stopped)").arg(stopped)) : "",
                 qPrintable(clock(progress.elapsed())));
    for (const Job& j : jobs)
        if (j.outcome == Outcome::Failed)
            std::fprintf(stderr, "  %s: %s\n", qPrintable(j.input), qPrintable(j.message));
    if (interrupted()) return 128 + interruptSignal();
    return failed ? 1 : 0;
}

const char* batchCommandHelp() {
    return R"HELP(Usage: kirrel batch SCRIPT INPUT... --out DIR [--format gif|apng|webp|mp4|webm|png]
                    [--jobs N] [--force | --skip-existing]

Plays the session script SCRIPT (a recording made with Tools > Record Session, or one written by hand;
see kirrel --help) once for every INPUT: a GIF, APNG, WebP, a video, a folder of PNG frames or a .dat
animation. Each input replaces the animation the script names, and the result is written into DIR
under the input's name: walk.gif gives DIR/walk.gif (or .png, .webp, .mp4, .webm; --format png writes
the frames as DIR/walk_0000.png, DIR/walk_0001.png, ...). The default format is gif.

Every input plays in a process of its own, N at once (--jobs, the number of cores by default), with
its own copy of the stored animations the script may splice with. One input's failure never stops the
others: an effect's error box, an input that cannot be read or an export that fails is that input's
failure, and the summary at the end names each with its message.

An output that is already there is never written over without --force; --skip-existing counts it as
done, so that a batch run again after a machine was lost does only what is left. Ctrl+C stops the
jobs after their current step: every output written is whole, and no partial file is left.

Exit code: 0 when every input was written (or was already there), 1 when some failed, 2 for a wrong
command line or script, 130 after Ctrl+C.
)HELP";
}

} // namespace kirrel::host
