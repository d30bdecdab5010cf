#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Conversion between paths as text and as bytes. On Linux a name may be any bytes. The text has one UTF-16
/// unit from U+DC80 to U+DCFF for each byte that is not UTF-8. UTF-8 never gives such a unit, so no two paths
/// have the same text.
namespace PathBytes {

/// The text of a path in the file system's bytes.
QString decoded(QByteArrayView path);

/// The file system's bytes of a path.
QByteArray encoded(const QString& path);

/// The byte that `unit` stands for. No value if it stands for a character.
std::optional<quint8> rawByte(QChar unit);

/// `text` with U+FFFD in place of the bytes that are not UTF-8, for readers that take only Unicode.
QString withReplacements(const QString& text);

} // namespace PathBytes
