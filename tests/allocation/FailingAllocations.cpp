#include "tests/allocation/FailingAllocations.h"

#include "tests/allocation/LiveAllocations.h"

#include <gtest/gtest.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <string>

#if defined(__SANITIZE_ADDRESS__)
#define TOBRIMAX_OWN_MALLOC 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TOBRIMAX_OWN_MALLOC 0
#endif
#endif
#ifndef TOBRIMAX_OWN_MALLOC
#define TOBRIMAX_OWN_MALLOC 1
#endif

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

/// isRunning is set during an operation, isWatching during an operation outside of a Pause. Other threads are
/// not counted.
thread_local bool isRunning = false;
thread_local bool isWatching = false;
std::size_t counted = 0;
std::size_t failing = 0;
std::size_t smallest = 0;
LiveAllocations live;

struct Range {
    std::uintptr_t begin;
    std::uintptr_t end;
};
/// The addresses of the code of the libraries that are left out.
std::array<Range, 64> ranges;
std::size_t rangeCount = 0;

int addLeftOut(dl_phdr_info* library, std::size_t /*size*/, void* data) {
    const auto& names = *static_cast<const FailingAllocations::Libraries*>(data);
    const auto isOne = [&](const char* name) { return std::strstr(library->dlpi_name, name) != nullptr; };
    if (std::ranges::none_of(names, isOne))
        return 0;
    for (int i = 0; i < library->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = library->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0 && rangeCount < ranges.size()) {
            const std::uintptr_t begin = library->dlpi_addr + segment.p_vaddr;
            ranges[rangeCount++] = {begin, begin + segment.p_memsz};
        }
    }
    return 0;
}

/// Whether this allocation of `size` bytes is the one to fail. `caller` is the address of the code that asks
/// for it.
bool fails(const void* caller, std::size_t size) {
    if (!isWatching || size < smallest)
        return false;
    const auto at = reinterpret_cast<std::uintptr_t>(caller);
    for (std::size_t i = 0; i < rangeCount; ++i) {
        if (at >= ranges[i].begin && at < ranges[i].end)
            return false;
    }
    return counted++ == failing;
}

void* kept(void* place) {
    if (isWatching && place != nullptr)
        live.add(place);
    return place;
}

void letGo(void* place) {
    if (isRunning && place != nullptr)
        live.remove(place);
}

struct Run {
    bool result = false;
    bool hasThrown = false;
    bool wasReached = false; ///< whether the operation got to the allocation that should fail
    std::size_t allocations = 0;
    std::size_t left = 0;
};

/// Runs `operation` and lets allocation number `which` fail.
Run run(const std::function<bool()>& operation, std::size_t which, FailingAllocations::Libraries names) {
    rangeCount = 0;
    dl_iterate_phdr(addLeftOut, &names);
    live.clear();
    counted = 0;
    failing = which;
    Run run;
    isRunning = true;
    isWatching = true;
    try {
        run.result = operation();
    } catch (const std::exception&) {
        run.hasThrown = true;
    }
    isWatching = false;
    isRunning = false;
    run.allocations = counted;
    run.wasReached = counted > which;
    run.left = live.count();
    return run;
}

} // namespace

FailingAllocations::Pause::Pause() {
    isWatching = false;
}

FailingAllocations::Pause::~Pause() {
    isWatching = isRunning;
}

namespace {

void expectFailures(const std::function<bool()>& operation, const FailingAllocations::Libraries& leftOut,
                    std::size_t step) {
    ASSERT_TRUE(operation());
    std::size_t failures = 0;
    for (std::size_t which = 0;; which += step) {
        SCOPED_TRACE("allocation " + std::to_string(which));
        Run result = run(operation, which, leftOut);
        EXPECT_FALSE(result.hasThrown);
        // Memory that a library keeps for the life of the process is allocated only the first time, so a
        // second run must keep nothing.
        if (result.left != 0)
            result = run(operation, which, leftOut);
        EXPECT_EQ(result.left, 0U);
        if (!result.wasReached)
            break;
        failures += result.result ? 0 : 1;
        if (testing::Test::HasFailure())
            return;
    }
    // Under AddressSanitizer, `malloc` never fails here, so there may be no failure.
    EXPECT_TRUE(failures > 0 || TOBRIMAX_OWN_MALLOC == 0);
    EXPECT_TRUE(operation()) << "with memory again";
}

} // namespace

void FailingAllocations::expectFailuresOf(const std::function<bool()>& operation, const Libraries& leftOut,
                                          std::size_t step) {
    smallest = 0;
    expectFailures(operation, leftOut, step);
}

void FailingAllocations::expectFailuresOfLarge(std::size_t bytes, const std::function<bool()>& operation,
                                               const Libraries& leftOut) {
    smallest = bytes;
    expectFailures(operation, leftOut, 1);
    smallest = 0;
}

void FailingAllocations::expectNoneIn(const std::function<bool()>& operation) {
    // This run allocates what libraries keep for the life of the process.
    ASSERT_TRUE(operation());
    const Run result = run(operation, never, fragile);
    EXPECT_TRUE(result.result);
    EXPECT_EQ(result.allocations, 0U);
    EXPECT_EQ(result.left, 0U);
}

// NOLINTBEGIN: the C and C++ standards fix the names and the behaviour of these functions.
#if TOBRIMAX_OWN_MALLOC

extern "C" {

void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* place, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;
void __libc_free(void* place) noexcept;

void* malloc(std::size_t size) noexcept {
    if (fails(__builtin_return_address(0), size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return kept(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    if (fails(__builtin_return_address(0), count * size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return kept(__libc_calloc(count, size));
}

void* realloc(void* place, std::size_t size) noexcept {
    if (fails(__builtin_return_address(0), size)) {
        errno = ENOMEM;
        return nullptr;
    }
    letGo(place);
    return kept(__libc_realloc(place, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    if (fails(__builtin_return_address(0), size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return kept(__libc_memalign(alignment, size));
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    if (fails(__builtin_return_address(0), size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return kept(__libc_memalign(alignment, size));
}

int posix_memalign(void** place, std::size_t alignment, std::size_t size) noexcept {
    if (fails(__builtin_return_address(0), size))
        return ENOMEM;
    *place = kept(__libc_memalign(alignment, size));
    return *place != nullptr ? 0 : ENOMEM;
}

void free(void* place) noexcept {
    letGo(place);
    __libc_free(place);
}

} // extern "C"

#define TOBRIMAX_MALLOC __libc_malloc
#define TOBRIMAX_FREE __libc_free
#else
#define TOBRIMAX_MALLOC std::malloc
#define TOBRIMAX_FREE std::free
#endif

namespace {

void* made(std::size_t size, const void* caller) {
    return fails(caller, size) ? nullptr : kept(TOBRIMAX_MALLOC(size != 0 ? size : 1));
}

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    if (void* place = made(size, __builtin_return_address(0)))
        return place;
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new[](std::size_t size) {
    if (void* place = made(size, __builtin_return_address(0)))
        return place;
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return made(size, __builtin_return_address(0));
}

[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return made(size, __builtin_return_address(0));
}

[[gnu::noinline]] void operator delete(void* place) noexcept {
    letGo(place);
    TOBRIMAX_FREE(place);
}

[[gnu::noinline]] void operator delete[](void* place) noexcept {
    letGo(place);
    TOBRIMAX_FREE(place);
}

[[gnu::noinline]] void operator delete(void* place, std::size_t) noexcept {
    letGo(place);
    TOBRIMAX_FREE(place);
}

[[gnu::noinline]] void operator delete[](void* place, std::size_t) noexcept {
    letGo(place);
    TOBRIMAX_FREE(place);
}

[[gnu::noinline]] void operator delete(void* place, const std::nothrow_t&) noexcept {
    letGo(place);
    TOBRIMAX_FREE(place);
}

[[gnu::noinline]] void operator delete[](void* place, const std::nothrow_t&) noexcept {
    letGo(place);
    TOBRIMAX_FREE(place);
}
// NOLINTEND
