#pragma once

#include "base/Result.h"

#include <cerrno>
#include <new>
#include <type_traits>

/// Want of memory, where nothing more is known. Takes no memory itself.
inline Error outOfMemory() {
    return {ErrorCode::OutOfMemory, QStringLiteral("not enough memory")};
}

/// The Result that stands for a T: itself for a Result, Result<Done> for nothing.
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

/// What `operation` returns, as a Result; OutOfMemory where it throws std::bad_alloc.
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

/// Watches whether the C library refuses memory, which it leaves in errno. For libraries that fail without
/// telling that this is why.
class RefusedMemory {
  public:
    RefusedMemory() { errno = 0; }

    /// Whether the last failure of a call since this was made was want of memory.
    bool wasSeen() const { return errno == ENOMEM; } // NOLINT(readability-convert-member-functions-to-static)
};
