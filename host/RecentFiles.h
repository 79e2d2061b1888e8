#pragma once
// The animations opened lately, newest first, kept in the user's settings between runs.

#include <QStringList>

namespace kirrel::host {

class RecentFiles {
  public:
    static constexpr int kMax = 8;
    QStringList list() const;
    void add(const QString& path);
    void remove(const QString& path);
    void clear();
};

} // namespace kirrel::host
