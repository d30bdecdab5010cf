#pragma once

#include <QString>
#include <QVariant>

#include <optional>

enum class AttributeType { String, Integer, Double, Boolean, Date, Data };

/// How the store's file writes attributes: names of types, and values as text that XML can hold. Numbers and
/// dates read back as the very same value.

QString nameOf(AttributeType type);
std::optional<AttributeType> attributeTypeNamed(const QString& name);

/// `value` as an attribute of that type: converted where that loses nothing, else no value.
std::optional<QVariant> attributeValue(const QVariant& value, AttributeType type);

/// `value` is of that type.
QString attributeText(const QVariant& value, AttributeType type);
/// No value where the text is of no such type.
std::optional<QVariant> attributeFromText(const QString& text, AttributeType type);
