#pragma once

#include "platform/VectorTargets.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
// after VectorTargets.h
#include <hwy/targets.h>

/// Calls `test` once for each instruction set that this program was compiled for and that the processor has,
/// with the vector code of just that one in use. Returns how many these were.
inline int forEachVectorTarget(const std::function<void()>& test) {
    const std::int64_t supported = hwy::SupportedTargets() & HWY_TARGETS;
    int count = 0;
    for (std::int64_t left = supported; left != 0; left &= left - 1) {
        const std::int64_t target = left & -left;
        const testing::ScopedTrace trace(__FILE__, __LINE__, hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(target);
        test();
        ++count;
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    return count;
}
