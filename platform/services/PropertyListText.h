#pragma once

#include "base/Result.h"

#include <QByteArray>

/// Property lists in XML of several encodings.
namespace PropertyListText {

/// The same list in UTF-8. If it declares an encoding, it then declares UTF-8. The encoding is found by the
/// byte order mark, or else by the first bytes, or else by the declaration; without any of them it is UTF-8.
/// Source: Extensible Markup Language (XML) 1.0, appendix F. Malformed if the encoding is not UTF-8, UTF-16,
/// ISO-8859-1 or US-ASCII (the sentence names it), or if the bytes are not valid in the encoding.
Result<QByteArray> inUtf8(const QByteArray& list);

} // namespace PropertyListText
