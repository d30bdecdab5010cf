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
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
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

/// Two connected stream sockets that no other program inherits.
bool connect(FileDescriptor& own, FileDescriptor& others) {
    std::array<int, 2> ends{-1, -1};
#ifdef SOCK_CLOEXEC
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return false;
#else
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
        return false;
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
#endif
    own = FileDescriptor(ends[0]);
    others = FileDescriptor(ends[1]);
    return true;
}

/// Starts the program with `end` as its end of the pipe, and without the user's terminal. Returns 0 or the
/// errno of the failure.
int spawn(const QByteArray& program, int end, const SvgWorker::Limits& limits, pid_t& process) {
    std::string path = program.toStdString();
    std::string seconds = std::to_string(wholeSeconds(limits.seconds));
    std::string memory = std::to_string(limits.memoryBytes);
    const std::array<char*, 4> arguments{path.data(), seconds.data(), memory.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (const int error = posix_spawn_file_actions_init(&actions); error != 0)
        return error;
    if (const int error = posix_spawnattr_init(&attributes); error != 0) {
        posix_spawn_file_actions_destroy(&actions);
        return error;
    }
    // The limit of time ends the worker also where the program ignores that signal.
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGXCPU);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    int error = posix_spawn_file_actions_adddup2(&actions, end, SvgPipe::workerEnd);
    for (int i = 0; i < SvgPipe::workerEnd && error == 0; ++i)
        error = posix_spawn_file_actions_addopen(&actions, i, "/dev/null", O_RDWR, 0);
    if (error == 0)
        error = posix_spawn(&process, path.c_str(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
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

double seconds(const timeval& time) {
    constexpr double microsecond = 1e-6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * microsecond;
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

SvgWorker::~SvgWorker() {
    end(false);
}

double SvgWorker::processorTime() const {
    if (m_isReaped)
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

bool SvgWorker::wantsProcessor() const {
    // A thread may end meanwhile.
    std::error_code ignored;
    const std::filesystem::path tasks("/proc/" + std::to_string(m_process) + "/task");
    for (std::filesystem::directory_iterator thread(tasks, ignored), end; !ignored && thread != end;
         thread.increment(ignored)) {
        // Its line is its number, its name in brackets, and its state.
        const FileDescriptor file(::open((thread->path() / "stat").c_str(), O_RDONLY | O_CLOEXEC));
        std::array<char, 512> text{};
        const ssize_t length = ::read(file.number(), text.data(), text.size());
        const std::string_view line(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        const std::size_t name = line.rfind(')');
        if (name != std::string_view::npos && line.substr(name).starts_with(") R "))
            return true;
    }
    return false;
}

void SvgWorker::allow([[maybe_unused]] const Limits& limits) {
#ifdef __linux__
    if (m_isReaped)
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

void SvgWorker::reap(int options) {
    if (m_isReaped)
        return;
    rusage usage{};
    pid_t ended = 0;
    do {
        ended = ::wait4(m_process, &m_status, options, &usage);
    } while (ended < 0 && errno == EINTR);
    if (ended == 0)
        return;
    m_isReaped = true;
    m_finalTime = seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

SvgWorker::End SvgWorker::end(bool isClosed) {
    // A worker that has closed the pipe is about to end by itself.
    constexpr int mostWaits = 100;
    constexpr useconds_t millisecond = 1000;
    reap(WNOHANG);
    for (int i = 0; isClosed && !m_isReaped && i < mostWaits; ++i) {
        ::usleep(millisecond);
        reap(WNOHANG);
    }
    if (!m_isReaped) {
        ::kill(m_process, SIGKILL);
        reap(0);
    }
    constexpr int noProgram = 127;
    if (WIFSIGNALED(m_status))
        return WTERMSIG(m_status) == SIGXCPU ? End::Time : End::Other;
    if (WEXITSTATUS(m_status) == SvgPipe::memoryStatus)
        return End::Memory;
    return WEXITSTATUS(m_status) == noProgram ? End::Unstarted : End::Other;
}

QString SvgWorker::endText() const {
    return WIFSIGNALED(m_status) ? QStringLiteral("signal %1").arg(WTERMSIG(m_status))
                                 : QStringLiteral("status %1").arg(WEXITSTATUS(m_status));
}

QString SvgWorker::programPath() {
    return QFile::decodeName(program());
}
