#pragma once

#include <cstdlib>

/// Ends the program, which is a finding, unless `isTrue`.
inline void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}
