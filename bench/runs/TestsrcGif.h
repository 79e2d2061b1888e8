#pragma once
// An animated GIF of ffmpeg's testsrc2 at 25 frames a second, as a user's GIF might be: made on first
// use in a scratch folder that lasts as long as the program; empty when ffmpeg is missing or fails.

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace kirrel::bench {

inline QString testsrcGif(int frames, int w, int h) {
    static QTemporaryDir dir;
    QString gif = QDir(dir.path()).filePath(QString("testsrc2-%1x%2x%3.gif").arg(frames).arg(w).arg(h));
    if (QFile::exists(gif)) return gif;
    QProcess p;
    p.start("ffmpeg", {"-v", "error", "-nostdin", "-f", "lavfi", "-i",
                       QString("testsrc2=size=%1x%2:rate=25").arg(w).arg(h), "-frames:v",
                       QString::number(frames), gif});
    return p.waitForFinished(300000) && p.exitCode() == 0 ? gif : QString();
}

} // namespace kirrel::bench
