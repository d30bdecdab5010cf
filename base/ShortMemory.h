#pragma once

#include "base/Result.h"

#include <new>
#include <type_traits>

/// What `operation` returns; `otherwise` where memory is short in it.
template <typename Operation>
auto unlessMemoryIsShort(Operation operation, decltype(operation()) otherwise) -> decltype(operation()) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return otherwise;
    }
}

/// The same; without another wish a Result tells of it, and everything else is what it is by default: null,
/// false, empty, without a value.
template <typename Operation>
auto unlessMemoryIsShort(Operation operation) -> decltype(operation()) {
    using Value = decltype(operation());
    static_assert(!std::is_enum_v<Value>, "whose first value may mean success");
    if constexpr (std::is_constructible_v<Value, Error>)
        return unlessMemoryIsShort(operation,
                                   Error{ErrorCode::TooLarge, QStringLiteral("not enough memory")});
    else
        return unlessMemoryIsShort(operation, Value{});
}
