#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>

/// Expectations of files that the readers refuse.
namespace Refusals {

/// Expects that the picture is refused with that code and a sentence.
void expectError(const QByteArray& picture, ErrorCode code);

/// Checks every beginning of `whole`, from no byte up to `spare` + 1 bytes short of the whole.
void eachBeginning(const QByteArray& whole, const std::function<void(const QByteArray&)>& expectation,
                   qsizetype spare = 0);

/// Expects that the picture is read, and that reading fails if it is cut off anywhere. `spare` bytes at its
/// end may be missing.
void expectNeedsEveryByte(const QByteArray& picture, qsizetype spare = 0);

/// Expects that `body` takes less than half a second: a header is enough to refuse a file, without memory for
/// the pixels that it claims.
void expectAtOnce(const std::function<void()>& body);

} // namespace Refusals
