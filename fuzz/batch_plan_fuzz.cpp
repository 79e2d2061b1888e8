// The batch-line runner's checker: any text as a batch file, planned against a temporary folder that
// exists (with a link out of it, so that resolving a folder is exercised) and an application folder.
// Only planBatch runs: nothing is started and nothing is deleted. For every text it accepts, the
// harness checks what the runner would then do: each program line names the converter, and each
// delete is one name matched inside the temporary folder itself.

#include "exchange/BatchRunner.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// A fixed place, so that the seeds can name it.
const QString kRoot = QStringLiteral("/tmp/kirrel-fuzz-batch");

const kirrel::exchange::RunnerFolders& folders() {
    static const kirrel::exchange::RunnerFolders f = [] {
        QDir().mkpath(kRoot + "/Temp Files");
        QDir().mkpath(kRoot + "/App");
        QFile::link(kRoot, kRoot + "/Temp Files/up");
        return kirrel::exchange::RunnerFolders{kRoot + "/Temp Files", kRoot + "/App", {}, 15 * 60};
    }();
    return f;
}

[[noreturn]] void fault(const char* what, const QString& line) {
    std::fprintf(stderr, "batch accepted with %s: %s\n", what, qPrintable(line));
    std::abort();
}

// The program part of a line as the command processor reads it: the text inside its first pair of
// quotes, with trailing blanks dropped.
QString programOf(const QString& line) {
    if (!line.startsWith('"')) return {};
    const int close = line.indexOf('"', 1);
    if (close < 0) return {};
    QString program = line.mid(1, close - 1);
    while (program.endsWith(' '))
        program.chop(1);
    return QDir::cleanPath(program);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kirrel::exchange::BatchCommand;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QList<QByteArray> lines = bytes.split('\n');
    const QString converter = QDir::cleanPath(folders().app + "/convert.exe");
    // The runner starts in the temporary folder; a run started elsewhere must not reach out either.
    for (const QString& start : {folders().temp, QStringLiteral("/")}) {
        const kirrel::exchange::BatchPlan plan = kirrel::exchange::planBatch(bytes, folders(), start);
        if (!plan.refusal.isEmpty()) {
            if (!plan.commands.empty()) fault("a refusal and commands", plan.refusal);
            continue;
        }
        for (const BatchCommand& cmd : plan.commands) {
            if (cmd.line < 1 || cmd.line > lines.size()) fault("a line number out of range", {});
            const QString line = QString::fromUtf8(lines[cmd.line - 1]).trimmed();
            switch (cmd.kind) {
            case BatchCommand::Kind::Convert:
                if (programOf(line) != converter) fault("a program other than the converter", line);
                break;
            case BatchCommand::Kind::Del: {
                if (cmd.args.size() != 2 || cmd.args[0] != folders().temp)
                    fault("a delete outside the temporary folder", line);
                const QString& pattern = cmd.args[1];
                if (pattern.isEmpty() || pattern == "." || pattern == ".." || pattern.contains('/') ||
                    pattern.contains(QChar(0)))
                    fault("a delete pattern that is not one name", line);
                (void)kirrel::exchange::wildcardMatch(pattern, QStringLiteral("GifConvert.bat"));
                break;
            }
            case BatchCommand::Kind::Cd:
            case BatchCommand::Kind::Drive:
                break;
            }
        }
    }
    return 0;
}
