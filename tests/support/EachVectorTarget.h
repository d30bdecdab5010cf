#pragma once

#include "imaging/simd/VectorDispatch.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

/// Calls `test` once for each instruction set that this program was compiled for and that the processor has,
/// with the vector code of that set alone in use. Returns the number of sets.
inline int forEachVectorTarget(const std::function<void()>& test) {
    const std::int64_t supported = VectorDispatch::supported() & HWY_TARGETS;
    int count = 0;
    for (std::int64_t left = supported; left != 0; left &= left - 1) {
        const std::int64_t target = left & -left;
        const testing::ScopedTrace trace(__FILE__, __LINE__, hwy::TargetName(target));
        VectorDispatch::chosen().Update(target);
        test();
        ++count;
    }
    VectorDispatch::chosen().Update(VectorDispatch::supported());
    return count;
}
