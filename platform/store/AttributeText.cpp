#include "platform/store/AttributeText.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace {

const std::array<std::pair<AttributeType, QString>, 6> names{{
    {AttributeType::String, QStringLiteral("string")},
    {AttributeType::Integer, QStringLiteral("integer")},
    {AttributeType::Double, QStringLiteral("double")},
    {AttributeType::Boolean, QStringLiteral("boolean")},
    {AttributeType::Date, QStringLiteral("date")},
    {AttributeType::Data, QStringLiteral("data")},
}};

int metaTypeOf(AttributeType type) {
    switch (type) {
    case AttributeType::Integer:
        return QMetaType::LongLong;
    case AttributeType::Double:
        return QMetaType::Double;
    case AttributeType::Boolean:
        return QMetaType::Bool;
    case AttributeType::Date:
        return QMetaType::QDateTime;
    case AttributeType::Data:
        return QMetaType::QByteArray;
    default:
        return QMetaType::QString;
    }
}

/// Begins an escape: a UTF-16 unit as four hexadecimal digits. XML can't hold most control characters or
/// halves of surrogate pairs, and its readers change line ends.
constexpr QChar escape(u'\\');

bool isPlain(QChar c) {
    return c.unicode() >= 0x20 && c != escape && !c.isSurrogate() && c.unicode() < 0xFFFE;
}

QString escaped(const QString& text) {
    QString result;
    for (const QChar c : text) {
        if (isPlain(c))
            result += c;
        else
            result += escape + QStringLiteral("%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result;
}

std::optional<QVariant> unescaped(const QString& text) {
    constexpr int digits = 4;
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != escape) {
            result += text[i];
            continue;
        }
        bool isNumber = false;
        const ushort unit = text.mid(i + 1, digits).toUShort(&isNumber, 16);
        if (!isNumber || i + digits >= text.size())
            return std::nullopt;
        result += QChar(unit);
        i += digits;
    }
    return result;
}

} // namespace

QString nameOf(AttributeType type) {
    return std::ranges::find(names, type, &std::pair<AttributeType, QString>::first)->second;
}

std::optional<AttributeType> attributeTypeNamed(const QString& name) {
    const auto* found = std::ranges::find(names, name, &std::pair<AttributeType, QString>::second);
    return found != names.end() ? std::optional(found->first) : std::nullopt;
}

std::optional<QVariant> attributeValue(const QVariant& value, AttributeType type) {
    const QMetaType wanted(metaTypeOf(type));
    if (!value.isValid())
        return QVariant();
    // As a signed number the value would be negative. Converting it back gives the same value, so the check
    // below does not notice.
    if (type == AttributeType::Integer && value.typeId() == QMetaType::ULongLong && value.toLongLong() < 0)
        return std::nullopt;
    QVariant converted = value;
    if (!converted.convert(wanted))
        return std::nullopt;
    // The value is refused if it does not come back the same, for instance a fraction as an integer.
    QVariant back = converted;
    if (value.metaType() != wanted && (!back.convert(value.metaType()) || back != value))
        return std::nullopt;
    if (type == AttributeType::Date) {
        // As in the file: in milliseconds, in UTC.
        if (!converted.toDateTime().isValid())
            return std::nullopt;
        return converted.toDateTime().toUTC();
    }
    // A NaN does not equal itself. The object would always count as changed.
    if (type == AttributeType::Double) {
        if (std::isnan(converted.toDouble()))
            return std::nullopt;
        // -0 becomes 0.
        return converted.toDouble() == 0 ? QVariant(0.0) : converted;
    }
    return converted;
}

QString attributeText(const QVariant& value, AttributeType type) {
    switch (type) {
    case AttributeType::Integer:
        return QString::number(value.toLongLong());
    case AttributeType::Double:
        return QString::number(value.toDouble(), 'g', 17);
    case AttributeType::Boolean:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case AttributeType::Date:
        return QString::number(value.toDateTime().toMSecsSinceEpoch());
    case AttributeType::Data:
        return QString::fromLatin1(value.toByteArray().toBase64());
    default:
        return escaped(value.toString());
    }
}

std::optional<QVariant> attributeFromText(const QString& text, AttributeType type) {
    bool isRight = true;
    QVariant value;
    switch (type) {
    case AttributeType::Integer:
        value = text.toLongLong(&isRight);
        break;
    case AttributeType::Double:
        value = text.toDouble(&isRight);
        isRight = isRight && !std::isnan(value.toDouble());
        break;
    case AttributeType::Boolean:
        isRight = text == QLatin1String("true") || text == QLatin1String("false");
        value = text == QLatin1String("true");
        break;
    case AttributeType::Date:
        value = QDateTime::fromMSecsSinceEpoch(text.toLongLong(&isRight), QTimeZone::utc()).toUTC();
        break;
    case AttributeType::Data: {
        const auto bytes =
            QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        isRight = static_cast<bool>(bytes);
        value = *bytes;
        break;
    }
    default:
        return unescaped(text);
    }
    return isRight ? std::optional(value) : std::nullopt;
}
