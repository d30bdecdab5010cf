#pragma once

// The instruction sets that vector code is compiled for. Include this before Highway's headers.

#include <QtGlobal>

#if Q_BYTE_ORDER == Q_BIG_ENDIAN
// The vector code reads pixels as words whose lowest byte comes first.
#define HWY_COMPILE_ONLY_SCALAR
#else
// SVE and RVV: the length of these vectors is known only when the program runs. Such vectors can't be
// members, and they narrow in another order. HWY_AVX3 - 1: the bits below HWY_AVX3 are newer AVX-512 sets,
// which have nothing that is used here.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV | (HWY_AVX3 - 1))
#endif

// No half floats are used here, and clang 14 can't be asked whether the processor has them.
#define HWY_DISABLE_F16C
