#include "platform/UserDefaults.h"

UserDefaults::UserDefaults()
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Varnholt"),
                 QStringLiteral("Tobrimax")) {
    // Only what this program wrote itself.
    m_settings.setFallbacksEnabled(false);
}

UserDefaults::UserDefaults(const QString& path) : m_settings(path, QSettings::IniFormat) {}

qint64 UserDefaults::integerForKey(const QString& key) const {
    return m_settings.value(key).toLongLong();
}

bool UserDefaults::boolForKey(const QString& key) const {
    return m_settings.value(key).toBool();
}

QString UserDefaults::stringForKey(const QString& key) const {
    return m_settings.value(key).toString();
}

void UserDefaults::setInteger(qint64 value, const QString& forKey) {
    m_settings.setValue(forKey, value);
}

void UserDefaults::setBool(bool value, const QString& forKey) {
    m_settings.setValue(forKey, value);
}

void UserDefaults::setString(const QString& value, const QString& forKey) {
    m_settings.setValue(forKey, value);
}

bool UserDefaults::synchronize() {
    m_settings.sync();
    return m_settings.status() == QSettings::NoError;
}
