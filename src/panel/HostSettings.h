#pragma once
// The host's per-user settings store, read by application, section and key. Values are decimal
// numbers held as text. A session script may lay its own values over the store for one run, so that
// batch jobs never change a user's real settings.

#include <QString>

#include <map>

namespace kirrel::panel {

QString readHostSetting(const QString& application, const QString& section, const QString& key,
                        const QString& fallback);
void overlayHostSettings(const std::map<QString, QString>& startupValues);
void clearHostSettingsOverlay();

} // namespace kirrel::panel
