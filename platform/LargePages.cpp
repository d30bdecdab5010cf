#include "platform/LargePages.h"

#include <sys/mman.h>

#include <cstdint>

void preferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::size_t page = 2 << 20;
    // To the first whole page.
    const std::size_t skipped = -reinterpret_cast<std::uintptr_t>(memory) % page;
    if (bytes > skipped + page)
        madvise(static_cast<char*>(memory) + skipped, bytes - skipped, MADV_HUGEPAGE);
#endif
}
