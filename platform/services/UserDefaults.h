#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

/// The few values that the program remembers from run to run, by key. What stands in the place of their file
/// and can't be theirs is left alone: then they are remembered for this run only.
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
    bool hasKey(const QString& key) const { return allKeys().contains(key); }

    /// Written to the file soon after, or by `synchronize`.
    void setInteger(qint64 value, const QString& forKey);
    void setBool(bool value, const QString& forKey);
    void setString(const QString& value, const QString& forKey);

    /// Whether everything is in the file now.
    bool synchronize();

    QStringList allKeys() const;

  private:
    QVariant value(const QString& key) const;
    void setValue(const QString& key, const QVariant& value);

    std::unique_ptr<QSettings> m_settings; ///< null where there can be no file
    QVariantMap m_ofThisRun;
};
