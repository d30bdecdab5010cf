#pragma once

// Calls vector code for the best instruction set that the code is compiled for and the processor has. Uses
// Highway's tables of functions, but not its library: when loaded, that measures the clock's resolution,
// which takes 4 ms.

#include "imaging/simd/VectorTargets.h"

// after VectorTargets.h
#include <hwy/targets.h>

#include <cstdint>
#include <string_view>

namespace VectorDispatch {

/// An instruction set that code is compiled for.
struct InstructionSet {
    std::int64_t target; ///< Highway's bit
    /// The processor's features that Highway allows the compiler to use: names with commas between them.
    /// Empty where the compiler uses only what every processor has.
    std::string_view features;
};

/// Whether the processor and the system have all of these features. A feature that is not known here counts
/// as missing: a newer Highway that needs more features gets a lesser instruction set.
bool hasFeatures(std::string_view features);

/// The instruction sets that code is compiled for and that the processor and the system have: Highway's bits.
/// The fallback's bits are always set.
std::int64_t supported();

/// The instruction set in use: at first the best one. Tests choose others.
hwy::ChosenTarget& chosen();

} // namespace VectorDispatch

#define VECTOR_TABLE(function) HWY_CONCAT(function, VectorTable)

#if (HWY_TARGETS & (HWY_TARGETS - 1)) == 0

#define VECTOR_EXPORT(function) static_assert(true)
#define VECTOR_DISPATCH(function) HWY_STATIC_DISPATCH(function)

#else

/// Makes a function's table. Use it once for each function, in the namespace around the instruction set's.
/// Highway's first place stands for "not yet chosen", which does not occur here.
#define VECTOR_EXPORT(function)                                                                              \
    static decltype(&HWY_STATIC_DISPATCH(function)) const VECTOR_TABLE(                                      \
        function)[HWY_MAX_DYNAMIC_TARGETS + 2] = {nullptr, HWY_CHOOSE_TARGET_LIST(function),                 \
                                                  HWY_CHOOSE_FALLBACK(function)}
/// The function to call. Use it in the same namespace.
#define VECTOR_DISPATCH(function) (*VECTOR_TABLE(function)[VectorDispatch::chosen().GetIndex()])

#endif
