#pragma once

// Calls vector code for the best instruction set that it was compiled for and that the processor has: by
// Highway's own tables of functions, but without its library, which measures the clock's resolution for 3 ms
// wherever it is loaded.

#include "imaging/simd/VectorTargets.h"

// after VectorTargets.h
#include <hwy/targets.h>

#include <cstdint>

namespace VectorDispatch {

/// The instruction sets that the processor and the system have: Highway's bits. Those of which the compiler
/// knows only one variant may be missing.
std::int64_t supported();

/// The one in use: at first the best one, others for tests.
hwy::ChosenTarget& chosen();

} // namespace VectorDispatch

#define VECTOR_TABLE(function) HWY_CONCAT(function, VectorTable)

#if (HWY_TARGETS & (HWY_TARGETS - 1)) == 0

#define VECTOR_EXPORT(function) static_assert(true)
#define VECTOR_DISPATCH(function) HWY_STATIC_DISPATCH(function)

#else

/// Once for each function, in the namespace around that of the instruction set. The first place is that of a
/// choice not yet made, which there is never.
#define VECTOR_EXPORT(function)                                                                              \
    static decltype(&HWY_STATIC_DISPATCH(function)) const VECTOR_TABLE(                                      \
        function)[HWY_MAX_DYNAMIC_TARGETS + 2] = {nullptr, HWY_CHOOSE_TARGET_LIST(function),                 \
                                                  HWY_CHOOSE_FALLBACK(function)}
/// The function to be called, from within that namespace.
#define VECTOR_DISPATCH(function) (*VECTOR_TABLE(function)[VectorDispatch::chosen().GetIndex()])

#endif
