#include "exchange/BatchRunner.h"

#include "exchange/BatchWorkers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace kirrel::exchange {

namespace {

bool plainCharacter(QChar c) {
    if (c.isLetterOrNumber() && c.unicode() < 128) return true;
    return QStringLiteral("-+_.,():?*/=").contains(c);
}

bool bareNameCharacter(QChar c) {
    return (c.isLetterOrNumber() && c.unicode() < 128) || QStringLiteral("._-*?").contains(c);
}

bool hasControlCharacter(const QString& s) {
    for (QChar c : s)
        if (c.unicode() < 0x20 || c.unicode() == 0x7f) return true;
    return false;
}

QString sameFolderKey(const QString& path) {
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

bool isTempFolder(const QString& dir, const RunnerFolders& folders) {
    return QDir::isAbsolutePath(dir) && sameFolderKey(dir) == sameFolderKey(folders.temp);
}

// The single argument of "cd" or "del": the rest of the line, unquoted if wholly quoted.
QString singleOperand(const QString& rest, bool* quoted) {
    const QString t = rest.trimmed();
    *quoted = t.size() >= 2 && t.startsWith('"') && t.endsWith('"');
    return *quoted ? t.mid(1, t.size() - 2) : t;
}

QString refused(int line, const QString& why) {
    return QString("line %1: %2").arg(line).arg(why);
}

} // namespace

bool wildcardMatch(const QString& pattern, const QString& name) {
    // Iterative matching with one back-tracking point for the last '*'.
    int p = 0, n = 0, star = -1, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || pattern[p].toLower() == name[n].toLower())) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

QStringList splitArguments(const QString& text, QString* why) {
    QStringList args;
    QString current;
    bool inQuotes = false, inToken = false, segmentStart = false;
    auto fail = [&](const QString& reason) {
        if (why) *why = reason;
        return QStringList();
    };
    for (QChar c : text) {
        if (c == '"') {
            if (inQuotes && segmentStart) return fail("an empty quoted name");
            inQuotes = !inQuotes;
            inToken = true;
            segmentStart = inQuotes;
            continue;
        }
        if (inQuotes) {
            // A quoted part is always a file: it must be an absolute path.
            if (segmentStart && c != '/') return fail("a quoted name that is not an absolute path");
            segmentStart = false;
            current += c;
            continue;
        }
        if (c == ' ') {
            if (inToken) args << current;
            current.clear();
            inToken = false;
            continue;
        }
        if (!plainCharacter(c)) return fail(QString("the character '%1' outside quotes").arg(c));
        current += c;
        inToken = true;
    }
    if (inQuotes) return fail("an unbalanced quote");
    if (inToken) args << current;
    return args;
}

BatchPlan planBatch(const QByteArray& bytes, const RunnerFolders& folders, const QString& startDir) {
    BatchPlan plan;
    QString cwd = startDir;
    const QString converter = QDir::cleanPath(folders.app + "/convert.exe");
    const QList<QByteArray> lines = bytes.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const int number = i + 1;
        QByteArray raw = lines[i];
        while (raw.endsWith('\r'))
            raw.chop(1);
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.isEmpty()) continue;
        if (hasControlCharacter(line)) {
            plan.refusal = refused(number, "a control character");
            break;
        }
        BatchCommand cmd;
        cmd.line = number;
        const QString lower = line.toLower();
        bool quoted = false;
        if (line.startsWith('"')) {
            QString why;
            QStringList args = splitArguments(line, &why);
            if (args.isEmpty()) {
                plan.refusal = refused(number, why.isEmpty() ? "no program" : why);
                break;
            }
            // The program part must be wholly quoted and name the converter.
            const int close = line.indexOf('"', 1);
            if (close < 0 || (close + 1 < line.size() && line[close + 1] != ' ')) {
                plan.refusal = refused(number, "a program path that is not wholly quoted");
                break;
            }
            QString program = line.mid(1, close - 1);
            while (program.endsWith(' '))
                program.chop(1);
            if (QDir::cleanPath(program) != converter) {
                plan.refusal = refused(number, "a program other than the converter: " + program);
                break;
            }
            args.removeFirst();
            cmd.kind = BatchCommand::Kind::Convert;
            cmd.args = args;
        } else if (lower.startsWith("cd ")) {
            const QString dir = singleOperand(line.mid(3), &quoted);
            if (!isTempFolder(dir, folders)) {
                plan.refusal = refused(number, "a change to a folder other than the temporary folder");
                break;
            }
            cmd.kind = BatchCommand::Kind::Cd;
            cwd = folders.temp;
        } else if (lower.startsWith("del ")) {
            const QString name = singleOperand(line.mid(4), &quoted);
            QString dir, pattern;
            if (quoted) {
                if (!name.startsWith('/') || name.contains('"')) {
                    plan.refusal = refused(number, "a quoted name that is not an absolute path");
                    break;
                }
                const int slash = name.lastIndexOf('/');
                dir = name.left(slash == 0 ? 1 : slash);
                pattern = name.mid(slash + 1);
            } else {
                const auto bad =
                    std::find_if(name.begin(), name.end(), [](QChar c) { return !bareNameCharacter(c); });
                if (bad != name.end()) {
                    plan.refusal = refused(number, QString("the character '%1' in a name").arg(*bad));
                    break;
                }
                dir = cwd;
                pattern = name;
            }
            if (pattern.isEmpty() || pattern == "." || pattern == ".." || !isTempFolder(dir, folders)) {
                plan.refusal = refused(number, "a delete outside the temporary folder");
                break;
            }
            cmd.kind = BatchCommand::Kind::Del;
            cmd.args = {folders.temp, pattern};
        } else if (line.size() == 2 &&
                   (line == folders.temp.left(2) || (line[0].isLetter() && line[1] == ':'))) {
            cmd.kind = BatchCommand::Kind::Drive;
        } else {
            plan.refusal = refused(number, "not a command of a converter batch");
            break;
        }
        plan.commands.push_back(cmd);
    }
    if (!plan.refusal.isEmpty()) plan.commands.clear();
    return plan;
}

QString failureMarkerPath(const QString& batchPath) {
    return batchPath + ".failed";
}

namespace {

// The batch file as named, or its entry of another case (the file system it was made for ignores case).
QString resolveBatch(const QString& batchPath) {
    if (QFileInfo::exists(batchPath)) return batchPath;
    const QFileInfo info(batchPath);
    const QFileInfoList entries = QDir(info.absolutePath()).entryInfoList(QDir::Files);
    const auto same = std::find_if(entries.begin(), entries.end(), [&](const QFileInfo& e) {
        return e.fileName().compare(info.fileName(), Qt::CaseInsensitive) == 0;
    });
    return same != entries.end() ? same->absoluteFilePath() : batchPath;
}

} // namespace

int batchWorkers() {
    bool ok = false;
    const int forced = qEnvironmentVariableIntValue("KIRREL_BATCH_WORKERS", &ok);
    return ok && forced > 0 ? forced : std::max(1, QThread::idealThreadCount());
}

QProcessEnvironment converterEnvironment() {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    // The converter asks for a 128 MiB buffer for every GIF it writes; with glibc's defaults each is
    // mapped and unmapped anew, and the kernel's work on them is most of a GIF write. Above that size
    // the buffer is kept in the heap and reused: the same files in a third of the time. A user's own
    // setting of either stays.
    for (const char* name : {"MALLOC_MMAP_THRESHOLD_", "MALLOC_TRIM_THRESHOLD_"})
        if (!env.contains(name)) env.insert(name, QString::number(256 * 1024 * 1024));
    // KIRREL_CONVERTER_TUNING=0 leaves out the two settings below, to compare.
    if (qEnvironmentVariable("KIRREL_CONVERTER_TUNING") == "0") return env;
    // Each converter then still touches that buffer (its colour cache, filled anew for every picture
    // it quantizes) a 4 KiB page at a time: 32768 page faults per start, half of a frame's conversion.
    // With glibc's hugetlb tunable the heap is advised for transparent huge pages wherever the system
    // offers them on request, 512 times fewer faults.
    const QString tunables = env.value("GLIBC_TUNABLES");
    if (!tunables.contains("glibc.malloc.hugetlb"))
        env.insert("GLIBC_TUNABLES", (tunables.isEmpty() ? "" : tunables + ":") + "glibc.malloc.hugetlb=1");
    // The runner keeps every core busy with converters of its own; a converter's OpenMP threads would
    // only wait for one another on a shared core (its pictures are too small to gain from them).
    if (!env.contains("MAGICK_THREAD_LIMIT")) env.insert("MAGICK_THREAD_LIMIT", "1");
    return env;
}

RunOutcome runBatchFile(const QString& givenPath, const RunnerFolders& folders, const QString& converter) {
    RunOutcome outcome;
    const QString batchPath = resolveBatch(givenPath);
    const QFileInfo batchInfo(batchPath);
    if (!isTempFolder(batchInfo.absolutePath(), folders)) {
        outcome.exitCode = 2;
        outcome.kind = "refused";
        outcome.message = "The batch file is not in the temporary folder.";
        return outcome;
    }
    QFile file(batchPath);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly)) {
        // Our batch files are small; a huge one is not ours.
        if (file.size() > 64LL * 1024 * 1024) {
            outcome.exitCode = 3;
            outcome.kind = "refused";
            outcome.message = "The batch file is too large.";
        } else {
            bytes = file.readAll();
        }
        file.close();
    } else {
        outcome.exitCode = 2;
        outcome.kind = "refused";
        outcome.message = "The batch file could not be read.";
    }

    if (outcome.kind.isEmpty()) {
        const BatchPlan plan = planBatch(bytes, folders, QDir::currentPath());
        if (!plan.refusal.isEmpty()) {
            outcome.exitCode = 3;
            outcome.kind = "refused";
            outcome.message = "The converter was not run: the batch file holds " + plan.refusal + ".";
        } else {
            WorkerSettings settings{converter, converterEnvironment(), batchWorkers(), batchInfo.fileName()};
            outcome = runPlannedLines(plan.commands, folders, QDir::currentPath(), settings);
        }
    }

    if (!outcome.kind.isEmpty()) {
        QFile marker(failureMarkerPath(batchPath));
        if (marker.open(QIODevice::WriteOnly | QIODevice::Truncate))
            marker.write((outcome.kind + "\n" + outcome.message + "\n").toUtf8());
    }
    // The completion signal the panel waits for, whatever happened before.
    QFile::remove(batchPath);
    return outcome;
}

int batchRunnerMain(const QStringList& arguments) {
    RunnerFolders folders;
    QString batch;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        if ((a == "--temp" || a == "--app") && i + 1 < arguments.size())
            (a == "--temp" ? folders.temp : folders.app) = arguments[++i];
        else if (a == "--limit" && i + 1 < arguments.size())
            folders.limitSeconds = std::max(1, arguments[++i].toInt());
        else if (a == "--stage" && i + 2 < arguments.size()) {
            folders.staged.append({arguments[i + 1], arguments[i + 2]});
            i += 2;
        } else if (batch.isEmpty() && !a.startsWith("--"))
            batch = a;
        else {
            std::fprintf(stderr, "kirrel_batch: unknown argument %s\n", qPrintable(a));
            return 2;
        }
    }
    if (folders.temp.isEmpty() || folders.app.isEmpty() || batch.isEmpty()) {
        std::fputs(
            "Usage: kirrel_batch --temp DIR --app DIR [--limit SECONDS] [--stage NAME STAGED]... BATCHFILE\n",
            stderr);
        return 2;
    }
    const QString converter = QStandardPaths::findExecutable("convert");
    const RunOutcome outcome = runBatchFile(batch, folders, converter);
    if (!outcome.message.isEmpty()) std::fprintf(stderr, "kirrel_batch: %s\n", qPrintable(outcome.message));
    return outcome.exitCode;
}

} // namespace kirrel::exchange
