#pragma once

#include "base/Result.h"

#include <cerrno>
#include <new>
#include <type_traits>

/// The error for too little memory, if nothing more is known. Takes no memory itself.
inline Error outOfMemory() {
    return {ErrorCode::OutOfMemory, QStringLiteral("not enough memory")};
}

/// The Result type of an operation that returns a T: the same type if T is a Result, Result<Done> if T is
/// void.
template <typename T>
struct AsResult {
    using Type = Result<T>;
};
template <typename T>
struct AsResult<Result<T>> {
    using Type = Result<T>;
};
template <>
struct AsResult<void> {
    using Type = Result<Done>;
};

/// Runs `operation` and returns its value as a Result; OutOfMemory if it throws std::bad_alloc.
template <typename Operation>
auto unlessMemoryIsShort(Operation operation) -> typename AsResult<std::invoke_result_t<Operation&>>::Type {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Operation&>>) {
            operation();
            return Done{};
        } else {
            return operation();
        }
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    }
}

/// Notices that the C library had no memory to give, by the ENOMEM that it leaves in errno. For libraries
/// that fail without giving this reason.
class RefusedMemory {
  public:
    RefusedMemory() { errno = 0; }

    /// Whether the last call that failed since construction failed for lack of memory.
    bool wasSeen() const { return errno == ENOMEM; } // NOLINT(readability-convert-member-functions-to-static)
};
