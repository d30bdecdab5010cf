// Draws one SVG document for another program:
//   tobrimax-svg PROCESSOR-SECONDS ADDRESS-SPACE-BYTES DESCRIPTOR DOCUMENT-BYTES
// The descriptor is that of the memory which it has in common with the program.

#include "imaging/svgpipe/SvgMessages.h"
#include "svgworker/Confinement.h"
#include "svgworker/Session.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#ifdef __linux__
#include <sys/prctl.h>
#endif

int main(int argc, char** argv) {
    std::array<std::uint64_t, 4> numbers{};
    if (argc != numbers.size() + 1) {
        std::fputs("tobrimax-svg draws SVG documents for tobrimax and tobrimax-cli, which start it.\n",
                   stderr);
        return 2;
    }
    std::transform(argv + 1, argv + argc, numbers.begin(),
                   [](const char* text) { return std::strtoull(text, nullptr, 0); });
    const auto [seconds, addressSpace, memory, documentBytes] = numbers;
    // The limit of time ends the worker also where the program ignores that signal.
    ::signal(SIGXCPU, SIG_DFL);
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    // One thread for the filters, however many cores there are.
    ::setenv("RAYON_NUM_THREADS", "1", 1); // NOLINT(concurrency-mt-unsafe): there is one thread
    // Nothing of a desktop's is asked for files.
    ::setenv("GIO_USE_VFS", "local", 1);           // NOLINT(concurrency-mt-unsafe)
    ::setenv("GIO_USE_VOLUME_MONITOR", "unix", 1); // NOLINT(concurrency-mt-unsafe)
    if (!Confinement::enter(static_cast<int>(memory), seconds, addressSpace))
        ::_exit(SvgPipe::rightsStatus);
    // Ends without the libraries' cleaning up.
    ::_exit(serve(STDIN_FILENO, STDOUT_FILENO, Confinement::memory, documentBytes));
}
