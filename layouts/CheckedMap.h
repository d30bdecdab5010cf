#pragma once

#include "base/Result.h"

#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <initializer_list>
#include <optional>
#include <vector>

/// A table of a settings file, whose keys are read one after the other. The first thing that is wrong is
/// remembered; what is wrong reads as if its key were not there.
class CheckedMap {
  public:
    /// `where` stands in front of sentences, such as "file 3 (icons/a.png)". `map` and `error` are kept by
    /// reference; `error` gets the first error, Malformed.
    CheckedMap(const QVariantMap& map, QString where, std::optional<Error>& error)
        : m_map(map), m_where(std::move(where)), m_error(error) {}

    /// Refuses all other keys, with the nearest of these.
    void allow(std::initializer_list<const char*> keys);

    bool has(const char* key) const { return m_map.contains(QLatin1String(key)); } ///< any value
    QString text(const char* key, const QString& otherwise = {});                  ///< one text
    bool flag(const char* key);                                                    ///< false without the key
    std::optional<int> wholeNumber(const char* key, int least, int most); ///< no value without the key
    /// A whole number for a square, or a text such as "310x150"; no value without the key.
    std::optional<QSize> size(const char* key, int least, int most);
    std::vector<int> wholeNumbers(const char* key, int least, int most); ///< a list; empty without the key
    /// A number above 0 and at most 1, or such a fraction in a text ("824/1024").
    double part(const char* key, double otherwise);
    /// One text, or a list of texts.
    QStringList texts(const char* key);
    /// The index in `words`; 0 without the key.
    std::size_t choice(const char* key, std::initializer_list<const char*> words);
    std::vector<QVariantMap> maps(const char* key);

    void refuse(const QString& sentence); ///< Stores the error, unless there is one.

  private:
    QVariant value(const char* key) const { return m_map.value(QLatin1String(key)); }
    void refuseType(const char* key, const QString& wanted);

    const QVariantMap& m_map;
    QString m_where;
    std::optional<Error>& m_error;
};
