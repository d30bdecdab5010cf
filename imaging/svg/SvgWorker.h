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
    ~SvgWorker();
    SvgWorker(const SvgWorker&) = delete;
    SvgWorker& operator=(const SvgWorker&) = delete;

    /// A stream socket; the program's end.
    int socket() const { return m_socket.number(); }

    /// The processor time that the process has taken so far, in seconds.
    double processorTime() const;

    /// Whether one of its threads has a processor or waits for one. False where the system does not tell.
    bool wantsProcessor() const;

    /// Moves the limits on. Does nothing where the system can't set another process's limits: then the time
    /// is watched from outside alone.
    void allow(const Limits& limits);

    /// What the end of a process was.
    enum class End { Memory, Time, Unstarted, Other };
    /// Ends the process and tells how it ended. With `isClosed` it has closed the pipe, and gets a moment to
    /// end by itself.
    End end(bool isClosed);
    /// How it ended, for people: its signal or status.
    QString endText() const;

    /// The path of the program that is started, for people.
    static QString programPath();

    /// Starts another program instead of tobrimax-svg, for tests; empty for that again.
    static void useProgram(const QByteArray& path);

  private:
    SvgWorker(pid_t process, FileDescriptor socket) : m_process(process), m_socket(std::move(socket)) {}
    void reap(int options);

    pid_t m_process;
    FileDescriptor m_socket;
    bool m_isReaped = false;
    int m_status = 0;
    double m_finalTime = 0; ///< the processor time, once the process has ended
};
