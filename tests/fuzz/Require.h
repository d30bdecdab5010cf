#pragma once

#include <cstdlib>

/// Ends the program unless `isTrue`; the fuzzer takes that as a finding.
inline void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}
