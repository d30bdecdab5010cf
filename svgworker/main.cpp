// Draws one SVG document for another program: tobrimax-svg PROCESSOR-SECONDS MEMORY-BYTES
// It is started with its end of a pipe as descriptor 3. Each limit may be 0, for no limit.

#include "imaging/svgpipe/SvgMessages.h"
#include "svgworker/Confinement.h"
#include "svgworker/Session.h"

#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#ifdef __linux__
#include <sys/prctl.h>
#endif

int main(int argc, char** argv) {
    int type = 0;
    socklen_t length = sizeof type;
    if (argc != 3 || ::getsockopt(SvgPipe::workerEnd, SOL_SOCKET, SO_TYPE, &type, &length) != 0) {
        std::fputs("tobrimax-svg draws SVG documents for tobrimax and tobrimax-cli, which start it.\n",
                   stderr);
        return 2;
    }
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
    constexpr int decimal = 10;
    const Confinement::Limits limits{std::strtoull(argv[1], nullptr, decimal),
                                     std::strtoull(argv[2], nullptr, decimal)};
    if (!Confinement::setLimits(limits) || !Confinement::giveUpRights())
        ::_exit(SvgPipe::rightsStatus);
    // Ends without the libraries' cleaning up.
    ::_exit(serve(SvgPipe::workerEnd));
}
