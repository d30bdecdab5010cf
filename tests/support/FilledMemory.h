#pragma once

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

/// While it exists, new memory is filled with a byte that is not 0, so that pixels nobody wrote are not right
/// by chance. With another C library than glibc it has no effect.
class FilledMemory {
  public:
    FilledMemory() { fill(0xaa); }
    ~FilledMemory() { fill(0); }
    FilledMemory(const FilledMemory&) = delete;
    FilledMemory& operator=(const FilledMemory&) = delete;

  private:
    static void fill([[maybe_unused]] int byte) {
#ifdef M_PERTURB
        mallopt(M_PERTURB, byte);
#endif
    }
};
