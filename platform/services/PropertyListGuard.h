#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <optional>

/// What libplist must not be given. It walks a list by calling itself and copies an object each time that it
/// is referred to, so a list nested too deep or with too many objects is refused before it is parsed, as are
/// bytes that are no list.
namespace PropertyListGuard {

inline constexpr int maximumDepth = 64;
inline constexpr int maximumObjects = 200000;

/// Malformed for an XML list that is not well-formed or goes beyond the limits.
std::optional<Error> refusedXml(const QByteArray& list);

/// Likewise for a binary list; objects that are shared count each time.
std::optional<Error> refusedBinary(const QByteArray& list);

} // namespace PropertyListGuard
