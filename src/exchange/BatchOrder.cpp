#include "exchange/BatchOrder.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kirrel::exchange {

namespace {

// Options a conversion running ahead may hold, with the number of values each takes: none of them
// names a file, so every other argument is an input or the output.
constexpr std::pair<const char*, int> kQuietOptions[] = {
    {"-background", 1}, {"-transparent", 1}, {"-compress", 1}, {"-depth", 1},
    {"-alpha", 1},      {"-strip", 0},       {"+repage", 0},
};

int quietOptionValues(const QString& option) {
    for (const auto& [name, values] : kQuietOptions)
        if (option == QLatin1String(name)) return values;
    return -1;
}

bool isOption(const QString& arg) {
    return arg.startsWith('-') || arg.startsWith('+');
}

// Characters with which the converter expands a name or makes names up.
bool hasPatternCharacter(const QString& s) {
    for (QChar c : s)
        if (QStringLiteral("*?[]{}%").contains(c)) return true;
    return false;
}

QString folderKey(const QString& dir) {
    const QString canonical = QFileInfo(dir).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(dir) : canonical;
}

QString absolute(const QString& path, const QString& cwd) {
    return QDir::cleanPath(QDir::isAbsolutePath(path) ? path : cwd + "/" + path);
}

FileRef fileRef(const QString& path, FileRef::Kind kind) {
    const QFileInfo info(path);
    return {folderKey(info.absolutePath()), info.fileName().toLower(), kind};
}

// A coder's prefix ("png24:") before a path; the converter writes and reads the path after it.
const QRegularExpression& coderPrefix() {
    static const QRegularExpression re("^[A-Za-z0-9_]+:");
    return re;
}

// The paths an argument may name: itself, and without a coder's prefix or a frame selection ("[0]").
QStringList pathsOf(const QString& arg, const QString& cwd) {
    QStringList paths = {arg};
    const QRegularExpressionMatch prefix = coderPrefix().match(arg);
    if (prefix.hasMatch() && prefix.capturedLength() < arg.size()) paths << arg.mid(prefix.capturedLength());
    for (int i = 0, n = static_cast<int>(paths.size()); i < n; ++i) {
        const QString& p = paths[i];
        if (p.endsWith(']') && p.lastIndexOf('[') > 0) paths << p.left(p.lastIndexOf('['));
    }
    std::transform(paths.begin(), paths.end(), paths.begin(),
                   [&](const QString& p) { return absolute(p, cwd); });
    return paths;
}

// Everything a conversion running in order may write: it may hold any option, so every argument that
// is not an option may name a file it writes.
std::vector<FileRef> possibleWrites(const QStringList& args, const QString& cwd) {
    std::vector<FileRef> writes;
    for (const QString& a : args) {
        if (isOption(a)) continue;
        const QStringList paths = pathsOf(a, cwd);
        std::transform(paths.begin(), paths.end(), std::back_inserter(writes), [](const QString& p) {
            return fileRef(p, hasPatternCharacter(p) ? FileRef::Kind::Pattern : FileRef::Kind::Name);
        });
    }
    return writes;
}

// Marks the line as one that may run ahead when its arguments allow it: quiet options, plain inputs
// that are no links, and one plain output in the temporary folder.
void allowRunningAhead(RunLine& line, const QString& tempKey) {
    const QStringList& args = line.command.args;
    const int last = static_cast<int>(args.size()) - 1;
    if (last < 1) return;
    std::vector<FileRef> reads;
    for (int i = 0; i < last; ++i) {
        const QString& a = args[i];
        if (isOption(a)) {
            const int values = quietOptionValues(a);
            if (values < 0 || i + values >= last) return;
            i += values;
            continue;
        }
        for (const QString& p : pathsOf(a, line.workingDir)) {
            // A link could make two names of one file; such a line waits its turn.
            if (hasPatternCharacter(p) || QFileInfo(p).isSymLink()) return;
            reads.push_back(fileRef(p, FileRef::Kind::Name));
        }
    }
    const QString& output = args[last];
    const QRegularExpressionMatch prefix = coderPrefix().match(output);
    const QString path =
        absolute(output.mid(prefix.hasMatch() ? prefix.capturedLength() : 0), line.workingDir);
    if (reads.empty() || isOption(output) || hasPatternCharacter(path) ||
        QFileInfo(path).fileName().isEmpty() || folderKey(QFileInfo(path).absolutePath()) != tempKey)
        return;
    line.mayRunAhead = true;
    line.outputArg = last;
    line.reads = std::move(reads);
}

QString stem(const QString& name) {
    const int dot = static_cast<int>(name.lastIndexOf('.'));
    return dot > 0 ? name.left(dot) : name;
}

} // namespace

std::vector<RunLine> runLines(const std::vector<BatchCommand>& commands, const RunnerFolders& folders,
                              const QString& startDir) {
    const QString tempKey = folderKey(folders.temp);
    std::vector<RunLine> lines;
    QString cwd = startDir;
    for (const BatchCommand& cmd : commands) {
        RunLine line;
        line.command = cmd;
        line.workingDir = cwd;
        switch (cmd.kind) {
        case BatchCommand::Kind::Drive:
            break;
        case BatchCommand::Kind::Cd:
            cwd = folders.temp;
            line.workingDir = cwd;
            break;
        case BatchCommand::Kind::Del:
            line.writes.push_back({folderKey(cmd.args[0]), cmd.args[1].toLower(), FileRef::Kind::Deleted});
            break;
        case BatchCommand::Kind::Convert:
            for (QString& a : line.command.args)
                for (const auto& [name, staged] : folders.staged)
                    if (a == name) a = staged;
            line.writes = possibleWrites(line.command.args, cwd);
            allowRunningAhead(line, tempKey);
            break;
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

bool mayTouch(const FileRef& written, const FileRef& read) {
    if (written.folder != read.folder) return false;
    switch (written.kind) {
    case FileRef::Kind::Deleted:
        return wildcardMatch(written.name, read.name);
    case FileRef::Kind::Pattern:
        return true;
    case FileRef::Kind::Name:
        // Given several pictures for a one-picture format, the converter writes "name-0.ext" and on.
        return read.name == written.name || read.name.startsWith(stem(written.name) + "-");
    }
    return true;
}

bool mayStartAhead(const std::vector<RunLine>& lines, std::size_t firstUnended, std::size_t index) {
    const RunLine& line = lines[index];
    if (!line.mayRunAhead) return false;
    auto touchesRead = [&](const FileRef& w) {
        return std::any_of(line.reads.begin(), line.reads.end(),
                           [&](const FileRef& r) { return mayTouch(w, r); });
    };
    for (std::size_t j = firstUnended; j < index; ++j)
        if (std::any_of(lines[j].writes.begin(), lines[j].writes.end(), touchesRead)) return false;
    return true;
}

} // namespace kirrel::exchange
