#pragma once

#include "base/Result.h"
#include "files/FileDescriptor.h"

#include <QByteArray>

#include <sys/types.h>

#include <memory>

/// A process that draws one SVG document, and the program's end of the pipe to it. It lives as long as this
/// object.
class SvgWorker {
  public:
    /// The soft limits of the process.
    struct Limits {
        double seconds = 0;     ///< of processor time, from now on
        qint64 memoryBytes = 0; ///< of address space
    };

    /// Starts a worker. Unsupported where its program is missing or can't be started, OutOfMemory.
    static Result<std::unique_ptr<SvgWorker>> start(const Limits& limits);
    /// Ends the process at once.
    ~SvgWorker() { end(); }
    SvgWorker(const SvgWorker&) = delete;
    SvgWorker& operator=(const SvgWorker&) = delete;

    /// A stream socket; the program's end. Sending does not wait.
    int socket() const { return m_socket.number(); }

    /// The processor time that the process has taken so far, in seconds; 0 where the system does not tell.
    double processorTime() const;

    /// Moves the limits on. Does nothing where the system can't set another process's limits: then the time
    /// is watched from outside alone.
    void allow(const Limits& limits);

    /// Waits a moment for a process that has closed the pipe, and ends it if it goes on. Returns its status
    /// as waitpid does.
    int status();

    /// Starts another program instead of tobrimax-svg, for tests; empty for that again.
    static void useProgram(const QByteArray& path);

  private:
    SvgWorker(pid_t process, FileDescriptor socket) : m_process(process), m_socket(std::move(socket)) {}
    bool isReaped(int options);
    void end();

    pid_t m_process; ///< 0 once it has ended
    FileDescriptor m_socket;
    int m_status = 0;
    double m_finalTime = 0; ///< the processor time, once it has ended
};
