#pragma once

// Which kinds of vectors the code for Highway is compiled for. To be included before anything of Highway.

#include <QtGlobal>

#if Q_BYTE_ORDER == Q_BIG_ENDIAN
// Pixels are taken as words whose lowest byte comes first.
#define HWY_COMPILE_ONLY_SCALAR
#else
// Vectors whose length is known only when the program runs can be no members, and narrow in another order.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#endif
