#include "project/JobProcesses.h"

#include "base/SystemError.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <optional>

// Not every system's headers declare it.
extern char** environ; // NOLINT(readability-redundant-declaration)

namespace {

/// Where a process finds its end of the connection.
constexpr int connection = 3;

/// Each message has its length in front of it.
using Length = quint32;
constexpr auto lengthBytes = static_cast<qsizetype>(sizeof(Length));

bool send(int socket, const QByteArray& message) {
    const auto length = static_cast<Length>(message.size());
    QByteArray bytes(reinterpret_cast<const char*>(&length), lengthBytes);
    bytes += message;
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t count =
            write(socket, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        at += count;
    }
    return true;
}

/// Waits for more bytes, and appends them. False at the end.
bool receive(int socket, QByteArray& received) {
    std::array<char, 65536> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the call.
    ssize_t count = 0;
    do
        count = read(socket, buffer.data(), buffer.size());
    while (count < 0 && errno == EINTR);
    if (count > 0)
        received.append(buffer.data(), count);
    return count > 0;
}

/// Takes the first message off `received`, if it is whole.
std::optional<QByteArray> takeMessage(QByteArray& received) {
    Length length = 0;
    if (received.size() < lengthBytes)
        return std::nullopt;
    std::memcpy(&length, received.constData(), sizeof length);
    if (received.size() - lengthBytes < qsizetype{length})
        return std::nullopt;
    QByteArray message = received.mid(lengthBytes, length);
    received.remove(0, lengthBytes + length);
    return message;
}

QByteArray ownProgram() {
#ifdef __linux__
    // Also where the file has another name by now, or none.
    return "/proc/self/exe";
#else
    return QCoreApplication::applicationFilePath().toLocal8Bit();
#endif
}

/// A process that does jobs.
class JobProcess {
  public:
    JobProcess(pid_t pid, int socket) : m_pid(pid), m_socket(socket) {}
    static Result<std::unique_ptr<JobProcess>> start();
    JobProcess(const JobProcess&) = delete;
    JobProcess& operator=(const JobProcess&) = delete;
    ~JobProcess() {
        if (m_pid != 0)
            end();
    }

    int socket() const { return m_socket; }
    std::size_t job() const { return m_job; }

    void begin(std::size_t job, const QByteArray& bytes) {
        m_job = job;
        // If that fails, the process has ended, and so does the connection.
        send(m_socket, bytes);
    }

    /// Takes what has come: the answer if it is whole, or why there is none.
    std::optional<Result<QByteArray>> proceed() {
        if (!receive(m_socket, m_received))
            return Result<QByteArray>(ended());
        if (std::optional<QByteArray> answer = takeMessage(m_received))
            return Result<QByteArray>(std::move(*answer));
        return std::nullopt;
    }

  private:
    /// Closes the connection, upon which the process ends. Returns its status.
    int end() {
        int status = 0;
        close(m_socket);
        while (waitpid(m_pid, &status, 0) < 0 && errno == EINTR)
            continue;
        m_pid = 0;
        return status;
    }

    Error ended() {
        const int status = end();
        const QString sentence = QStringLiteral("the process that makes the icons ended");
        return {ErrorCode::NotWritable,
                WIFSIGNALED(status) ? QStringLiteral("%1 by signal %2").arg(sentence).arg(WTERMSIG(status))
                                    : sentence};
    }

    pid_t m_pid;
    int m_socket;
    std::size_t m_job = 0;
    QByteArray m_received;
};

Result<std::unique_ptr<JobProcess>> JobProcess::start() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
        return systemError(errno, ErrorCode::NotWritable);
    for (const int end : ends)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], connection);
    QByteArray name("tobrimax-cli");
    QByteArray argument(JobProcesses::word);
    const std::array<char*, 3> words{name.data(), argument.data(), nullptr};
    pid_t pid = 0;
    const int error = posix_spawn(&pid, ownProgram().constData(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (error == 0)
        return std::make_unique<JobProcess>(pid, ends[0]);
    close(ends[0]);
    return Error{ErrorCode::NotWritable,
                 QStringLiteral("no process can be started: %1").arg(systemSentence(error))};
}

/// Waits until one of the processes has something to say. Whether each has.
std::vector<bool> waited(const std::vector<std::unique_ptr<JobProcess>>& processes) {
    std::vector<pollfd> polled;
    polled.reserve(processes.size());
    for (const auto& process : processes)
        polled.push_back({process->socket(), POLLIN, 0});
    const int count = poll(polled.data(), static_cast<nfds_t>(polled.size()), -1);
    std::vector<bool> speak;
    speak.reserve(polled.size());
    for (const pollfd& one : polled)
        speak.push_back(count > 0 && one.revents != 0);
    return speak;
}

} // namespace

void JobProcesses::run(const std::vector<QByteArray>& jobs, int count, const Done& done) {
    std::vector<std::unique_ptr<JobProcess>> processes;
    std::size_t next = 0;
    while (true) {
        while (std::ssize(processes) < count && next < jobs.size()) {
            Result<std::unique_ptr<JobProcess>> process = JobProcess::start();
            if (process) {
                processes.push_back(std::move(*process));
                processes.back()->begin(next, jobs[next]);
            } else if (processes.empty()) {
                done(next, process.error());
            } else {
                break;
            }
            ++next;
        }
        if (processes.empty())
            return;
        const std::vector<bool> speak = waited(processes);
        for (std::size_t i = 0; i < speak.size(); ++i) {
            std::optional<Result<QByteArray>> answer;
            if (speak[i])
                answer = processes[i]->proceed();
            if (!answer)
                continue;
            const bool isThere = static_cast<bool>(*answer);
            done(processes[i]->job(), std::move(*answer));
            if (!isThere || next == jobs.size()) {
                processes[i].reset();
            } else {
                processes[i]->begin(next, jobs[next]);
                ++next;
            }
        }
        std::erase(processes, nullptr);
    }
}

bool JobProcesses::isStartedHere(int argc, const char* const* argv) {
    struct stat status = {};
    return argc == 2 && std::strcmp(argv[1], word) == 0 && fstat(connection, &status) == 0 &&
           S_ISSOCK(status.st_mode);
}

void JobProcesses::serve(const std::function<QByteArray(const QByteArray& job)>& work) {
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
    fcntl(connection, F_SETFD, FD_CLOEXEC);
    QByteArray received;
    while (true) {
        std::optional<QByteArray> job = takeMessage(received);
        if (job ? !send(connection, work(*job)) : !receive(connection, received))
            return;
    }
}
