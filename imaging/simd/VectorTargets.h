#pragma once

// Which kinds of vectors the code for Highway is compiled for. To be included before anything of Highway.

#include <QtGlobal>

#if Q_BYTE_ORDER == Q_BIG_ENDIAN
// Pixels are taken as words whose lowest byte comes first.
#define HWY_COMPILE_ONLY_SCALAR
#else
// Vectors whose length is known only when the program runs can be no members, and narrow in another order.
// The instruction sets of AVX-512 beyond HWY_AVX3, whose bits are below it, have nothing that is used here.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV | (HWY_AVX3 - 1))
#endif

// No half floats are used here, and clang 14 can't be asked whether the processor has them.
#define HWY_DISABLE_F16C
