#pragma once

#include "base/Result.h"

#include <QByteArray>

/// Refuses property lists before libplist parses them. libplist calls itself for each level of a list, and
/// copies an object for each reference to it. Lists that are nested too deep or have too many objects are
/// therefore refused. Bytes that are no list are refused too.
namespace PropertyListGuard {

inline constexpr int maximumDepth = 64;
inline constexpr int maximumObjects = 200000;

/// Malformed for an XML list that is not well-formed, has declarations of its own or goes beyond the limits.
Result<Done> checkXml(const QByteArray& list);

/// Malformed for a binary list with positions outside of it, with a NUL in a text, or beyond the limits. A
/// shared object counts once for each reference.
Result<Done> checkBinary(const QByteArray& list);

} // namespace PropertyListGuard
