#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

/// The few values that the program keeps from run to run, by key. A FIFO, a folder, a device or a file of
/// more than 1 MiB in the place of their file is left alone. The values are then kept for this run only.
class UserDefaults {
  public:
    /// The user's values, in the place where the system keeps settings.
    UserDefaults();
    /// The values in the INI file `path`.
    explicit UserDefaults(const QString& path);

    /// 0, false or empty where the key has no value.
    qint64 integerForKey(const QString& key) const;
    bool boolForKey(const QString& key) const;
    QString stringForKey(const QString& key) const;
    bool hasKey(const QString& key) const { return allKeys().contains(key); }

    /// The values are written to the file soon after, or by `synchronize`.
    void setInteger(qint64 value, const QString& forKey);
    void setBool(bool value, const QString& forKey);
    void setString(const QString& value, const QString& forKey);

    /// Writes all values to the file now. False where that fails or there is no file.
    bool synchronize();

    QStringList allKeys() const;

  private:
    QVariant value(const QString& key) const;
    void setValue(const QString& key, const QVariant& value);

    std::unique_ptr<QSettings> m_settings; ///< null where there can be no file
    QVariantMap m_ofThisRun;
};
