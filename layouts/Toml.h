#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QVariantMap>

/// A TOML 1.0 document: tables as QVariantMap, lists as QVariantList, texts as QString, whole numbers as
/// qlonglong, others as double and bool; dates as their text. Malformed with line and column where the bytes
/// are no such document, or where keys or values are nested more deeply than anybody writes them.
Result<QVariantMap> parsedToml(const QByteArray& bytes);
