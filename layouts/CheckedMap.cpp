#include "layouts/CheckedMap.h"

#include "base/Suggestion.h"

#include <algorithm>
#include <string>

namespace {

/// The number of "824/1024".
std::optional<double> fraction(const QString& text) {
    const QStringList numbers = text.split(u'/');
    if (numbers.size() != 2)
        return std::nullopt;
    bool isUpper = false;
    bool isLower = false;
    const double upper = numbers[0].trimmed().toDouble(&isUpper);
    const double lower = numbers[1].trimmed().toDouble(&isLower);
    if (!isUpper || !isLower || lower == 0)
        return std::nullopt;
    return upper / lower;
}

std::optional<int> wholeNumberOf(const QVariant& value, int least, int most) {
    if (value.typeId() != QMetaType::LongLong || value.toLongLong() < least || value.toLongLong() > most)
        return std::nullopt;
    return value.toInt();
}

QString wholeNumberText(int least, int most) {
    return QStringLiteral("a whole number from %1 to %2").arg(least).arg(most);
}

} // namespace

void CheckedMap::refuse(const QString& sentence) {
    if (!m_error)
        m_error = Error{ErrorCode::Malformed,
                        m_where.isEmpty() ? sentence : QStringLiteral("%1: %2").arg(m_where, sentence)};
}

void CheckedMap::refuseType(const char* key, const QString& wanted) {
    refuse(QStringLiteral("\"%1\" takes %2").arg(QLatin1String(key), wanted));
}

void CheckedMap::allow(std::initializer_list<const char*> keys) {
    const std::vector<std::string> words(keys.begin(), keys.end());
    // One unknown key is told; there may be very many.
    for (auto entry = m_map.begin(); entry != m_map.end() && !m_error; ++entry) {
        const std::string key = entry.key().toStdString();
        if (std::ranges::find(words, key) == words.end())
            refuse(QStringLiteral("there is no key \"%1\"%2")
                       .arg(entry.key(), QString::fromStdString(suggestion(key, words, '"'))));
    }
}

QString CheckedMap::text(const char* key, const QString& otherwise) {
    if (!has(key))
        return otherwise;
    if (value(key).typeId() == QMetaType::QString)
        return value(key).toString();
    refuseType(key, QStringLiteral("a text"));
    return otherwise;
}

bool CheckedMap::flag(const char* key) {
    if (has(key) && value(key).typeId() != QMetaType::Bool)
        refuseType(key, QStringLiteral("true or false"));
    return value(key).toBool();
}

std::optional<int> CheckedMap::wholeNumber(const char* key, int least, int most) {
    const std::optional<int> number = wholeNumberOf(value(key), least, most);
    if (has(key) && !number)
        refuseType(key, wholeNumberText(least, most));
    return number;
}

std::optional<QSize> CheckedMap::size(const char* key, int least, int most) {
    if (!has(key))
        return std::nullopt;
    if (const std::optional<int> side = wholeNumberOf(value(key), least, most))
        return QSize(*side, *side);
    const QStringList sides =
        value(key).typeId() == QMetaType::QString ? value(key).toString().split(u'x') : QStringList();
    if (sides.size() == 2) {
        bool isWidth = false;
        bool isHeight = false;
        const QSize size(sides[0].toInt(&isWidth), sides[1].toInt(&isHeight));
        const int shorter = std::min(size.width(), size.height());
        if (isWidth && isHeight && shorter >= least && std::max(size.width(), size.height()) <= most)
            return size;
    }
    refuseType(key,
               QStringLiteral("%1, or two in a text, such as \"310x150\"").arg(wholeNumberText(least, most)));
    return std::nullopt;
}

std::vector<int> CheckedMap::wholeNumbers(const char* key, int least, int most) {
    std::vector<int> numbers;
    for (const QVariant& element : value(key).toList()) {
        const std::optional<int> number = wholeNumberOf(element, least, most);
        if (!number)
            return refuseType(key, QStringLiteral("a list, each %1").arg(wholeNumberText(least, most))),
                   numbers;
        numbers.push_back(*number);
    }
    if (has(key) && numbers.empty())
        refuseType(key, QStringLiteral("a list, each %1").arg(wholeNumberText(least, most)));
    return numbers;
}

double CheckedMap::part(const char* key, double otherwise) {
    if (!has(key))
        return otherwise;
    std::optional<double> number;
    const int type = value(key).typeId();
    if (type == QMetaType::QString)
        number = fraction(value(key).toString());
    else if (type == QMetaType::Double || type == QMetaType::LongLong)
        number = value(key).toDouble();
    if (number && *number > 0 && *number <= 1)
        return *number;
    refuseType(key, QStringLiteral("a number above 0 and at most 1, or such a fraction as \"824/1024\""));
    return otherwise;
}

QStringList CheckedMap::texts(const char* key) {
    if (!has(key))
        return {};
    if (value(key).typeId() == QMetaType::QString)
        return {value(key).toString()};
    const QVariantList list = value(key).toList();
    const bool areTexts = std::ranges::all_of(
        list, [](const QVariant& element) { return element.typeId() == QMetaType::QString; });
    if (value(key).typeId() != QMetaType::QVariantList || !areTexts)
        refuseType(key, QStringLiteral("a text or a list of texts"));
    return value(key).toStringList();
}

std::size_t CheckedMap::choice(const char* key, std::initializer_list<const char*> words) {
    if (!has(key))
        return 0;
    const QString word = text(key);
    const std::vector<std::string> known(words.begin(), words.end());
    const auto found = std::ranges::find(known, word.toStdString());
    if (found != known.end())
        return static_cast<std::size_t>(found - known.begin());
    refuse(QStringLiteral("there is no %1 \"%2\"%3")
               .arg(QLatin1String(key), word,
                    QString::fromStdString(suggestion(word.toStdString(), known, '"'))));
    return 0;
}

std::vector<QVariantMap> CheckedMap::maps(const char* key) {
    std::vector<QVariantMap> maps;
    const QVariantList list = value(key).toList();
    for (const QVariant& element : list) {
        if (element.typeId() == QMetaType::QVariantMap)
            maps.push_back(element.toMap());
    }
    if (has(key) && (value(key).typeId() != QMetaType::QVariantList || std::ssize(maps) != list.size()))
        refuseType(key, QStringLiteral("a list of tables"));
    return maps;
}
