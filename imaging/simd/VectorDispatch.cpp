// Compiled once for each instruction set, to learn which features of the processor its code needs.
#include "imaging/simd/VectorDispatch.h"

#include <algorithm>
#include <array>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/simd/VectorDispatch.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

namespace vectordispatch::HWY_NAMESPACE {

// The same feature names that Highway gives the compiler.
#ifdef HWY_TARGET_STR
[[maybe_unused]] constexpr VectorDispatch::InstructionSet instructionSet{HWY_TARGET, HWY_TARGET_STR};
#else
[[maybe_unused]] constexpr VectorDispatch::InstructionSet instructionSet{HWY_TARGET, ""};
#endif

} // namespace vectordispatch::HWY_NAMESPACE

#if HWY_ONCE

namespace {

#if HWY_ARCH_X86

struct Feature {
    std::string_view name;
    bool isThere;
};

// __builtin_cpu_supports takes only literals.
#define FEATURE(name)                                                                                        \
    Feature {                                                                                                \
        name, __builtin_cpu_supports(name) != 0                                                              \
    }

bool hasFeature(std::string_view name) {
    __builtin_cpu_init();
    const std::array known{
        FEATURE("sse2"),     FEATURE("ssse3"),    FEATURE("sse4.1"),   FEATURE("sse4.2"),
        FEATURE("pclmul"),   FEATURE("aes"),      FEATURE("avx"),      FEATURE("avx2"),
        FEATURE("bmi"),      FEATURE("bmi2"),     FEATURE("fma"),      FEATURE("avx512f"),
        FEATURE("avx512cd"), FEATURE("avx512vl"), FEATURE("avx512dq"), FEATURE("avx512bw")};
    const auto found = std::ranges::find(known, name, &Feature::name);
    return found != known.end() && found->isThere;
}

#else

bool hasFeature(std::string_view /*name*/) {
    return false;
}

#endif

std::int64_t supportedTargets() {
    std::int64_t targets = HWY_STATIC_TARGET | HWY_SCALAR | HWY_EMU128;
#if (HWY_TARGETS & (HWY_TARGETS - 1)) != 0
    using namespace vectordispatch;
    constexpr std::array<const VectorDispatch::InstructionSet*, HWY_MAX_DYNAMIC_TARGETS> compiled{
        HWY_CHOOSE_TARGET_LIST(instructionSet)};
    for (const VectorDispatch::InstructionSet* each : compiled) {
        if (each != nullptr && VectorDispatch::hasFeatures(each->features))
            targets |= each->target;
    }
#endif
    return targets;
}

hwy::ChosenTarget* best() {
    static hwy::ChosenTarget target;
    target.Update(VectorDispatch::supported());
    return &target;
}

} // namespace

bool VectorDispatch::hasFeatures(std::string_view features) {
    while (!features.empty()) {
        const std::string_view name = features.substr(0, features.find(','));
        if (!hasFeature(name))
            return false;
        features.remove_prefix(std::min(features.size(), name.size() + 1));
    }
    return true;
}

std::int64_t VectorDispatch::supported() {
    static const std::int64_t targets = supportedTargets();
    return targets;
}

hwy::ChosenTarget& VectorDispatch::chosen() {
    static hwy::ChosenTarget* const target = best();
    return *target;
}

#endif
