#include "imaging/svg/SvgWorker.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "imaging/svgpipe/SvgMessages.h"
#include "platform/services/Bundle.h"

#include <QFile>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <ctime>
#include <string>
#include <utility>

extern char** environ; // NOLINT(readability-redundant-declaration): not declared everywhere

namespace {

QByteArray otherProgram; // NOLINT: set by tests alone

constexpr const char* programName = "tobrimax-svg";

QByteArray program() {
    return otherProgram.isEmpty() ? QFile::encodeName(Bundle::pathOfHelper(QLatin1String(programName)))
                                  : otherProgram;
}

/// The limit in whole seconds: the system counts no finer, and the program ends the worker before.
rlim_t wholeSeconds(double seconds) {
    return static_cast<rlim_t>(std::ceil(seconds)) + 1;
}

/// Two connected stream sockets that no other program inherits. Sending on `own` does not wait.
bool connect(FileDescriptor& own, FileDescriptor& others) {
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
        return false;
    own = FileDescriptor(ends[0]);
    others = FileDescriptor(ends[1]);
    return ::fcntl(ends[0], F_SETFD, FD_CLOEXEC) == 0 && ::fcntl(ends[1], F_SETFD, FD_CLOEXEC) == 0 &&
           ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
}

/// Starts the program with `end` as its end of the pipe, and without the user's terminal. Returns 0 or the
/// errno of the failure.
int spawn(const QByteArray& program, int end, const SvgWorker::Limits& limits, pid_t& process) {
    std::string path = program.toStdString();
    std::string seconds = std::to_string(wholeSeconds(limits.seconds));
    std::string memory = std::to_string(limits.memoryBytes);
    const std::array<char*, 4> arguments{path.data(), seconds.data(), memory.data(), nullptr};
    posix_spawn_file_actions_t actions;
    if (const int error = posix_spawn_file_actions_init(&actions); error != 0)
        return error;
    int error = posix_spawn_file_actions_adddup2(&actions, end, SvgPipe::workerEnd);
    for (int i = 0; i < SvgPipe::workerEnd && error == 0; ++i)
        error = posix_spawn_file_actions_addopen(&actions, i, "/dev/null", O_RDWR, 0);
    if (error == 0)
        error = posix_spawn(&process, path.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

Error notStarted(const QByteArray& path, int error) {
    if (error == ENOMEM)
        return outOfMemory();
    return {ErrorCode::Unsupported,
            QStringLiteral("the SVG document can't be drawn, since the program %1 can't be started (%2)")
                .arg(QFile::decodeName(path), systemSentence(error))};
}

} // namespace

void SvgWorker::useProgram(const QByteArray& path) {
    otherProgram = path;
}

Result<std::unique_ptr<SvgWorker>> SvgWorker::start(const Limits& limits) {
    const QByteArray path = program();
    FileDescriptor own;
    FileDescriptor workers;
    if (!connect(own, workers))
        return notStarted(path, errno);
    // A descriptor that is the worker's already would be closed when the worker starts.
    if (workers.number() == SvgPipe::workerEnd)
        workers = FileDescriptor(::fcntl(workers.number(), F_DUPFD_CLOEXEC, SvgPipe::workerEnd + 1));
    pid_t process = 0;
    if (const int error = spawn(path, workers.number(), limits, process); error != 0)
        return notStarted(path, error);
    return std::unique_ptr<SvgWorker>(new SvgWorker(process, std::move(own)));
}

double SvgWorker::processorTime() const {
    if (m_process == 0)
        return m_finalTime;
#ifndef __APPLE__
    clockid_t clock{};
    timespec time{};
    constexpr double nanosecond = 1e-9;
    if (::clock_getcpuclockid(m_process, &clock) == 0 && ::clock_gettime(clock, &time) == 0)
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
#endif
    return 0;
}

void SvgWorker::allow([[maybe_unused]] const Limits& limits) {
#ifdef __linux__
    if (m_process == 0)
        return;
    const auto setSoftLimit = [this](auto resource, rlim_t value, bool isRaisedAlone) {
        rlimit limit{};
        if (::prlimit(m_process, resource, nullptr, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY ||
            (isRaisedAlone && limit.rlim_cur >= value))
            return;
        limit.rlim_cur = std::min(value, limit.rlim_max);
        ::prlimit(m_process, resource, &limit, nullptr);
    };
    setSoftLimit(RLIMIT_CPU, wholeSeconds(processorTime() + limits.seconds), false);
    setSoftLimit(RLIMIT_AS, static_cast<rlim_t>(limits.memoryBytes), true);
#endif
}

bool SvgWorker::isReaped(int options) {
    // The system forgets the time of a process with the process.
    const double time = processorTime();
    pid_t ended = 0;
    while (m_process != 0 && (ended = ::waitpid(m_process, &m_status, options)) < 0 && errno == EINTR) {
    }
    if (ended != 0) {
        m_process = 0;
        m_finalTime = time;
    }
    return m_process == 0;
}

void SvgWorker::end() {
    if (m_process == 0)
        return;
    ::kill(m_process, SIGKILL);
    isReaped(0);
}

int SvgWorker::status() {
    constexpr int mostWaits = 100;
    constexpr useconds_t millisecond = 1000;
    for (int i = 0; i < mostWaits && !isReaped(WNOHANG); ++i)
        ::usleep(millisecond);
    end();
    return m_status;
}
