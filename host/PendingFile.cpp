#include "host/PendingFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <stdexcept>

namespace kirrel::host {

PendingFile::PendingFile(const QString& target) : target_(QFileInfo(target).absoluteFilePath()) {
    const QFileInfo info(target_);
    const QString suffix = info.suffix().isEmpty() ? QString() : "." + info.suffix();
    QTemporaryFile reserve(info.dir().filePath("." + info.completeBaseName() + ".kirrel-XXXXXX" + suffix));
    reserve.setAutoRemove(false);
    if (!reserve.open())
        throw std::runtime_error(QString("%1 cannot be written: the folder %2 cannot be written to.")
                                     .arg(info.fileName(), QDir::toNativeSeparators(info.absolutePath()))
                                     .toStdString());
    temp_ = reserve.fileName();
    // A reserved temporary file is private to its owner; the finished file is an ordinary one.
    reserve.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                           QFileDevice::ReadOther);
}

PendingFile::~PendingFile() {
    if (!committed_) QFile::remove(temp_);
}

void PendingFile::commit() {
    const QString name = QFileInfo(target_).fileName();
    if (QFileInfo(temp_).size() <= 0)
        throw std::runtime_error((name + " could not be written: nothing was made.").toStdString());
    // rename() puts the new file in place of an old one in one step; Qt's rename refuses to replace.
    if (std::rename(QFile::encodeName(temp_).constData(), QFile::encodeName(target_).constData()) != 0)
        throw std::runtime_error(
            (name + " could not be written: the finished file could not take its name.").toStdString());
    committed_ = true;
}

} // namespace kirrel::host
