#include "imaging/simd/VectorDispatch.h"

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

namespace {

#if HWY_ARCH_X86

/// Of what Highway's AVX2 takes, the one feature that not every compiler can be asked for.
bool hasHalfFloats() {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_F16C) != 0;
}

std::int64_t additional() {
    __builtin_cpu_init();
    // Each stands on the one before.
    if (__builtin_cpu_supports("ssse3") == 0)
        return 0;
    std::int64_t targets = HWY_SSSE3;
    if (__builtin_cpu_supports("sse4.2") == 0 || __builtin_cpu_supports("pclmul") == 0 ||
        __builtin_cpu_supports("aes") == 0)
        return targets;
    targets |= HWY_SSE4;
    if (__builtin_cpu_supports("avx2") == 0 || __builtin_cpu_supports("fma") == 0 ||
        __builtin_cpu_supports("bmi") == 0 || __builtin_cpu_supports("bmi2") == 0 || !hasHalfFloats())
        return targets;
    targets |= HWY_AVX2;
    if (__builtin_cpu_supports("avx512f") == 0 || __builtin_cpu_supports("avx512vl") == 0 ||
        __builtin_cpu_supports("avx512dq") == 0 || __builtin_cpu_supports("avx512bw") == 0)
        return targets;
    return targets | HWY_AVX3;
}

#else

std::int64_t additional() {
    return 0;
}

#endif

hwy::ChosenTarget* best() {
    static hwy::ChosenTarget target;
    target.Update(VectorDispatch::supported());
    return &target;
}

} // namespace

std::int64_t VectorDispatch::supported() {
    static const std::int64_t targets = HWY_STATIC_TARGET | HWY_SCALAR | HWY_EMU128 | additional();
    return targets;
}

hwy::ChosenTarget& VectorDispatch::chosen() {
    static hwy::ChosenTarget* const target = best();
    return *target;
}
