// The functions that give memory, as those of the GNU library. Where it has none to give, the worker ends at
// once with a status of its own: the libraries would abort, or leave a part of the drawing out.

#include "imaging/svgpipe/SvgMessages.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>

extern "C" {
void* __libc_malloc(std::size_t size);                          // NOLINT: the GNU library's names
void* __libc_calloc(std::size_t count, std::size_t size);       // NOLINT
void* __libc_realloc(void* memory, std::size_t size);           // NOLINT
void* __libc_memalign(std::size_t alignment, std::size_t size); // NOLINT

static void* orEnd(void* memory) {
    if (memory == nullptr)
        _exit(SvgPipe::memoryStatus);
    return memory;
}

void* malloc(std::size_t size) {
    return orEnd(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
    return orEnd(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size) {
    // With a size of 0 it frees the memory.
    void* moved = __libc_realloc(memory, size);
    return size == 0 ? moved : orEnd(moved);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return orEnd(__libc_memalign(alignment, size));
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0)
        return EINVAL;
    *memory = orEnd(__libc_memalign(alignment, size));
    return 0;
}
}
