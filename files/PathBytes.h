#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Paths as texts. On Linux a name is any bytes. A byte that is no part of UTF-8 stands in the text as one
/// unit from U+DC80 to U+DCFF, without a partner. No UTF-8 gives such a unit, so that each text has its own
/// bytes.
namespace PathBytes {

/// The text for a path in the file system's own bytes.
QString decoded(QByteArrayView path);

/// The file system's own bytes for a path.
QByteArray encoded(const QString& path);

/// The byte that `unit` stands for; none for a unit of an ordinary text.
std::optional<quint8> rawByte(QChar unit);

/// `text` for readers that know Unicode alone: with U+FFFD for bytes that are no UTF-8.
QString withReplacements(const QString& text);

} // namespace PathBytes
