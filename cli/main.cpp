#include "cli/CommandLine.h"
#include "cli/Terminal.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <new>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

/// Keeps what one picture's buffers were in for the next one: to have each of them from the system again
/// costs more time than to fill it.
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
    // A limit on file sizes and a reader that went away are errors of the write, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        // Before the application, which may have something to say about the locale.
        Terminal::showDiagnosticLog(false);
        const QCoreApplication application(argc, argv);
        return runCommandLine(argc, argv);
    } catch (const std::bad_alloc&) {
        // In a way that needs none.
        std::fputs("tobrimax-cli: error: not enough memory\n", stderr);
        return 1;
    }
}
