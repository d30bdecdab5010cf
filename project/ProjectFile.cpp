#include "project/ProjectFile.h"

#include "base/Suggestion.h"
#include "layouts/CheckedMap.h"
#include "layouts/Toml.h"

#include <QLocale>

#include <algorithm>
#include <optional>
#include <string>

namespace {

using Key = ProjectFile::Key;

constexpr char setKey[] = "set";

Error refused(const QString& where, const QString& sentence) {
    return {ErrorCode::Malformed, where.isEmpty() ? sentence : QStringLiteral("%1: %2").arg(where, sentence)};
}

/// The words of a value, or none where it is of another type.
std::optional<QStringList> words(const QVariant& value, Key::Kind kind) {
    const int type = value.typeId();
    switch (kind) {
    case Key::Kind::Flag:
        if (type == QMetaType::Bool)
            return value.toBool() ? QStringList{QStringLiteral("true")} : QStringList{};
        return std::nullopt;
    case Key::Kind::Number:
        if (type == QMetaType::LongLong)
            return QStringList{QString::number(value.toLongLong())};
        if (type == QMetaType::Double)
            return QStringList{QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest)};
        return std::nullopt;
    case Key::Kind::Texts:
        if (type == QMetaType::QVariantList) {
            const QVariantList list = value.toList();
            const bool areTexts = !list.isEmpty() && std::ranges::all_of(list, [](const QVariant& one) {
                return one.typeId() == QMetaType::QString;
            });
            return areTexts ? std::optional(value.toStringList()) : std::nullopt;
        }
        [[fallthrough]];
    case Key::Kind::Text:
        if (type == QMetaType::QString)
            return QStringList{value.toString()};
        return std::nullopt;
    }
    return std::nullopt;
}

QString wanted(Key::Kind kind) {
    switch (kind) {
    case Key::Kind::Flag:
        return QStringLiteral("true or false");
    case Key::Kind::Number:
        return QStringLiteral("a number");
    case Key::Kind::Texts:
        return QStringLiteral("a text or a list of texts");
    case Key::Kind::Text:
        break;
    }
    return QStringLiteral("a text");
}

/// Puts the values of `map` into `set`, in place of those that are there.
std::optional<Error> add(const QVariantMap& map, const std::vector<Key>& keys, const QString& where,
                         ProjectFile::Set& set) {
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        if (where.isEmpty() && entry.key() == QLatin1String(setKey))
            continue;
        const auto key = std::ranges::find(keys, entry.key(), &Key::name);
        if (key == keys.end()) {
            std::vector<std::string> names;
            names.reserve(keys.size());
            for (const Key& known : keys)
                names.push_back(known.name.toStdString());
            return refused(where, QStringLiteral("there is no key \"%1\"%2")
                                      .arg(entry.key(), QString::fromStdString(suggestion(
                                                            entry.key().toStdString(), names, '"'))));
        }
        if (key->isForAll && !where.isEmpty())
            return refused(
                where,
                QStringLiteral("\"%1\" holds for all sets; write it above the first [[set]]").arg(key->name));
        const std::optional<QStringList> value = words(*entry, key->kind);
        if (!value)
            return refused(where, QStringLiteral("\"%1\" takes %2").arg(key->name, wanted(key->kind)));
        if (value->isEmpty())
            set.remove(key->name);
        else
            set.insert(key->name, *value);
    }
    return std::nullopt;
}

} // namespace

Result<std::vector<ProjectFile::Set>> ProjectFile::read(const QByteArray& toml,
                                                        const std::vector<Key>& keys) {
    const Result<QVariantMap> document = parsedToml(toml);
    if (!document)
        return document.error();
    Set common;
    if (std::optional<Error> error = add(*document, keys, {}, common))
        return *error;
    std::optional<Error> error;
    const std::vector<QVariantMap> maps = CheckedMap(*document, {}, error).maps(setKey);
    if (error)
        return *error;
    std::vector<Set> sets;
    for (const QVariantMap& map : maps) {
        sets.push_back(common);
        const QString where = QStringLiteral("set %1").arg(sets.size());
        if (std::optional<Error> wrong = add(map, keys, where, sets.back()))
            return *wrong;
    }
    if (sets.empty())
        sets.push_back(common);
    return sets;
}
