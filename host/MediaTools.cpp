#include "host/MediaTools.h"

#include <QStandardPaths>

namespace kirrel::host {

namespace {

struct ToolPackage {
    const char* program;
    const char* shownAs; // what the user knows the tool as
    const char* package; // the Debian package that brings it
};

constexpr ToolPackage kPackages[] = {
    {"ffmpeg", "ffmpeg", "ffmpeg"},
    {"ffprobe", "ffprobe", "ffmpeg"},
    {"convert", "ImageMagick", "imagemagick"},
    {"identify", "ImageMagick", "imagemagick"},
};

} // namespace

QString findTool(const QString& program) {
    return QStandardPaths::findExecutable(program);
}

QString requireTool(const QString& program, const QString& task) {
    QString found = findTool(program);
    if (!found.isEmpty()) return found;
    QString shownAs = program;
    QString package = program;
    for (const ToolPackage& p : kPackages)
        if (program == QLatin1String(p.program)) {
            shownAs = QString::fromLatin1(p.shownAs);
            package = QString::fromLatin1(p.package);
        }
    throw MissingTool(QString("%1 needs %2, which is not installed. Install Debian's %3 package (sudo apt "
                              "install %3) and try again.")
                          .arg(task, shownAs, package)
                          .toStdString());
}

} // namespace kirrel::host
