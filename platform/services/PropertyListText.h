#pragma once

#include "base/Result.h"

#include <QByteArray>

/// Property lists in XML of several encodings.
namespace PropertyListText {

/// The same list in UTF-8, which it then declares too where it declares an encoding. A byte order mark tells
/// the encoding, else the first bytes and the declaration do, else it is UTF-8. Source: Extensible Markup
/// Language (XML) 1.0, appendix F. Malformed for any encoding but UTF-8, UTF-16, ISO-8859-1 and US-ASCII,
/// which the sentence names, and for bytes that are not of the encoding.
Result<QByteArray> inUtf8(const QByteArray& list);

} // namespace PropertyListText
