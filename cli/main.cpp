#include "cli/CommandLine.h"
#include "cli/text/Terminal.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <new>
#ifdef __GLIBC__
#include <malloc.h>
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

} // namespace

int main(int argc, char** argv) {
    keepFreedMemory();
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
