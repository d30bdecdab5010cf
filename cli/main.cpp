#include "cli/CommandLine.h"
#include "cli/text/Terminal.h"

#include <QCoreApplication>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>
#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

/// Keeps the memory of one picture's buffers for the next picture: getting new memory from the system takes
/// longer than filling it.
void keepFreedMemory() {
#ifdef __GLIBC__
    constexpr int largestKept = 32 << 20;
    mallopt(M_MMAP_THRESHOLD, largestKept);
    mallopt(M_TRIM_THRESHOLD, 2 * largestKept);
#endif
}

/// Lets the heap grow in large pages, where the system has them. The fault for one costs far less than the
/// 512 faults of the small pages in it.
void useLargePages() {
#if defined __GLIBC__ && defined MADV_HUGEPAGE
    constexpr int heap = 48 << 20; // more than a set takes; these are addresses until they are used
    constexpr int usualPad = 128 << 10;
    const auto end = [] { return static_cast<char*>(sbrk(0)); };
    char* const before = end();
    mallopt(M_TOP_PAD, heap);
    // Larger than what is free now, so that the heap grows. A compiler may drop a block that nobody looks at.
    void* volatile block = std::malloc(heap / 64);
    std::free(block);
    mallopt(M_TOP_PAD, usualPad);
    if (end() > before)
        madvise(before, static_cast<std::size_t>(end() - before), MADV_HUGEPAGE);
#endif
}

} // namespace

int main(int argc, char** argv) {
    keepFreedMemory();
    useLargePages();
    // With these signals ignored, a file size limit or a closed pipe makes a write fail and does not end the
    // program.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        // The handler is installed before the application is made, which may print messages about the locale.
        Terminal::showDiagnosticLog(false);
        const QCoreApplication application(argc, argv);
        return runCommandLine(argc, argv);
    } catch (const std::bad_alloc&) {
        // Prints without allocating memory.
        std::fputs("tobrimax-cli: error: not enough memory\n", stderr);
        return 1;
    }
}
