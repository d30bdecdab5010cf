#include "platform/services/UserDefaults.h"

#include <QFile>
#include <QStandardPaths>

#include <sys/stat.h>

namespace {

/// Whether the settings can be in the file `path`. Reading a FIFO or a device might never end, and a huge
/// file would be read whole.
bool isUsable(const QString& path) {
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return true; // the file is not there yet
    constexpr off_t largest = 1 << 20;
    return S_ISREG(status.st_mode) && status.st_size <= largest;
}

std::unique_ptr<QSettings> ofTheUser() {
    const QString organization = QStringLiteral("Varnholt");
    const QString application = QStringLiteral("Tobrimax");
    const QString file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
                         organization + u'/' + application + QStringLiteral(".conf");
    if (!isUsable(file))
        return nullptr;
    auto settings =
        std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, organization, application);
    // Reads only this program's own values, and no system-wide ones.
    settings->setFallbacksEnabled(false);
    return settings;
}

} // namespace

UserDefaults::UserDefaults() : m_settings(ofTheUser()) {}

UserDefaults::UserDefaults(const QString& path)
    : m_settings(isUsable(path) ? std::make_unique<QSettings>(path, QSettings::IniFormat) : nullptr) {}

QVariant UserDefaults::value(const QString& key) const {
    return m_settings ? m_settings->value(key) : m_ofThisRun.value(key);
}

void UserDefaults::setValue(const QString& key, const QVariant& value) {
    if (m_settings)
        m_settings->setValue(key, value);
    else
        m_ofThisRun.insert(key, value);
}

QStringList UserDefaults::allKeys() const {
    return m_settings ? m_settings->allKeys() : QStringList(m_ofThisRun.keys());
}

qint64 UserDefaults::integerForKey(const QString& key) const {
    return value(key).toLongLong();
}

bool UserDefaults::boolForKey(const QString& key) const {
    return value(key).toBool();
}

QString UserDefaults::stringForKey(const QString& key) const {
    return value(key).toString();
}

void UserDefaults::setInteger(qint64 value, const QString& forKey) {
    setValue(forKey, value);
}

void UserDefaults::setBool(bool value, const QString& forKey) {
    setValue(forKey, value);
}

void UserDefaults::setString(const QString& value, const QString& forKey) {
    setValue(forKey, value);
}

bool UserDefaults::synchronize() {
    if (!m_settings)
        return false;
    m_settings->sync();
    return m_settings->status() == QSettings::NoError;
}
