#pragma once

#include <QString>
#include <QVariant>

#include <optional>

enum class AttributeType { String, Integer, Double, Boolean, Date, Data };

/// How the store's file writes attributes: the names of their types, and their values as text that XML can
/// hold. Numbers and dates read back as exactly the same value.

QString nameOf(AttributeType type);
std::optional<AttributeType> attributeTypeNamed(const QString& name);

/// `value` converted to `type`. No value where the conversion would lose something. An invalid QVariant stays
/// invalid.
std::optional<QVariant> attributeValue(const QVariant& value, AttributeType type);

/// The text for `value`, which has the type `type`.
QString attributeText(const QVariant& value, AttributeType type);
/// The value that `text` stands for. No value where the text does not fit `type`.
std::optional<QVariant> attributeFromText(const QString& text, AttributeType type);
