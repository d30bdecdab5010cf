#pragma once

#include <QSettings>
#include <QString>

/// The few values that the program remembers from run to run, by key.
class UserDefaults {
  public:
    /// The user's own, in the place where the system keeps such values.
    UserDefaults();
    /// Those in an INI file of that path.
    explicit UserDefaults(const QString& path);

    /// 0, false or empty where there is no such value.
    qint64 integerForKey(const QString& key) const;
    bool boolForKey(const QString& key) const;
    QString stringForKey(const QString& key) const;
    bool hasKey(const QString& key) const { return m_settings.contains(key); }

    /// Written to the file soon after, or by `synchronize`.
    void setInteger(qint64 value, const QString& forKey);
    void setBool(bool value, const QString& forKey);
    void setString(const QString& value, const QString& forKey);

    /// Whether everything is in the file now.
    bool synchronize();

    QStringList allKeys() const { return m_settings.allKeys(); }

  private:
    QSettings m_settings;
};
