#include "host/RecentFiles.h"

#include <QFileInfo>
#include <QSettings>

namespace kirrel::host {

namespace {
constexpr const char* kKey = "recentFiles";
}

QStringList RecentFiles::list() const {
    return QSettings().value(kKey).toStringList();
}

void RecentFiles::add(const QString& path) {
    const QString full = QFileInfo(path).absoluteFilePath();
    QStringList l = list();
    l.removeAll(full);
    l.prepend(full);
    while (l.size() > kMax)
        l.removeLast();
    QSettings().setValue(kKey, l);
}

void RecentFiles::remove(const QString& path) {
    QStringList l = list();
    l.removeAll(path);
    QSettings().setValue(kKey, l);
}

void RecentFiles::clear() {
    QSettings().remove(kKey);
}

} // namespace kirrel::host
