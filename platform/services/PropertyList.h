#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QVariant>

/// Property lists in XML and binary encoding; XML in the encodings that PropertyListText reads.
namespace PropertyList {

/// The root object: arrays as QVariantList, dictionaries as QVariantMap, strings as QString, integers as
/// qint64, reals as double, booleans as bool, data as QByteArray, dates as QDateTime (UTC). Malformed for
/// bytes that are no property list, and for a list that PropertyListGuard refuses, for example one nested
/// deeper than 64. OutOfMemory.
Result<QVariant> parse(const QByteArray& bytes);

} // namespace PropertyList
