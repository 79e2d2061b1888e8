#include "host/PngSequence.h"

#include "host/AnimationFiles.h"

#include <QDir>
#include <QFileInfo>

#include <stdexcept>

namespace kirrel::host {

QStringList pngSequenceNames(const QString& chosenFile, int count) {
    const QFileInfo info(chosenFile);
    QString base = info.completeBaseName();
    if (info.suffix().compare("png", Qt::CaseInsensitive) != 0) base = info.fileName();
    if (base.isEmpty()) base = "frame";
    const int digits = std::max(4, static_cast<int>(QString::number(std::max(0, count - 1)).size()));
    QStringList names;
    for (int i = 0; i < count; ++i)
        names << info.dir().filePath(QString("%1_%2.png").arg(base).arg(i, digits, 10, QChar('0')));
    return names;
}

void writePngSequence(const QString& chosenFile, const std::vector<Picture>& frames,
                      const krl::Plane* alpha) {
    const QStringList names = pngSequenceNames(chosenFile, static_cast<int>(frames.size()));
    QImage mask;
    if (alpha && !frames.empty() && alpha->width() == frames.front().width() &&
        alpha->height() == frames.front().height())
        mask = imageFromPlane(*alpha).convertToFormat(QImage::Format_Grayscale8);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        QImage img = imageFromPicture(frames[i]);
        if (!mask.isNull()) {
            img = img.convertToFormat(QImage::Format_ARGB32);
            img.setAlphaChannel(mask);
        }
        const QString& name = names[static_cast<qsizetype>(i)];
        if (!img.save(name, "PNG"))
            throw std::runtime_error(QDir::toNativeSeparators(name).toStdString() + " could not be written");
    }
}

} // namespace kirrel::host
