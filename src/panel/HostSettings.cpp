#include "panel/HostSettings.h"

#include <QSettings>

namespace kirrel::panel {

namespace {
std::map<QString, QString>& overlay() {
    static std::map<QString, QString> values;
    return values;
}
} // namespace

QString readHostSetting(const QString& application, const QString& section, const QString& key,
                        const QString& fallback) {
    if (section == QLatin1String("Startup")) {
        auto it = overlay().find(key);
        if (it != overlay().end()) return it->second;
    }
    QSettings store(QSettings::IniFormat, QSettings::UserScope, application);
    return store.value(section + "/" + key, fallback).toString();
}

void overlayHostSettings(const std::map<QString, QString>& startupValues) { overlay() = startupValues; }
void clearHostSettingsOverlay() { overlay().clear(); }

} // namespace kirrel::panel
