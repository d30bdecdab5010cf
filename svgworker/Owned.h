#pragma once

#include <memory>

/// Frees an object by a library's function.
template <auto function>
struct FreedBy {
    void operator()(auto* object) const { function(object); }
};

/// Owns an object of a library in C.
template <typename Object, auto function>
using Owned = std::unique_ptr<Object, FreedBy<function>>;
