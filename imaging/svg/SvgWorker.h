#pragma once

#include "base/Result.h"
#include "imaging/svg/SvgMemory.h"
#include "imaging/svgpipe/SvgMessages.h"

#include <QProcess>
#include <QString>

#include <memory>
#include <optional>

/// A process that draws one SVG document. It lives as long as this object.
class SvgWorker {
  public:
    /// Starts a worker, which reads the document of `memory`. It ends by itself after so many seconds of
    /// processor time, rounded up, and takes no more address space than that, in bytes. Unsupported where its
    /// program is missing or can't be started.
    static Result<std::unique_ptr<SvgWorker>> start(double seconds, qint64 addressSpace,
                                                    const SvgMemory& memory);
    /// Ends the process at once.
    ~SvgWorker();
    SvgWorker(const SvgWorker&) = delete;
    SvgWorker& operator=(const SvgWorker&) = delete;

    /// Asks for a drawing. Where that fails, the process ends without an answer.
    void ask(const SvgPipe::Request& request);

    /// Waits for an answer or for the end of the process, at most for that long. Returns whether one of them
    /// has come.
    bool wait(int milliseconds);
    /// The next answer, once that has come; none where the process has ended before.
    std::optional<SvgPipe::Answer> answer();

    /// What it was asked for so far, in bytes: a part of the work is the same at every size.
    double work() const { return m_work; }

    /// Its state and, once it has ended, its status or signal.
    const QProcess& process() const { return m_process; }

    /// The processor time that the process has taken so far, in seconds; 0 where the system does not tell.
    /// Once the process has ended, what was known last.
    double processorTime();

    /// What of it is new since the last call.
    double newTime();

    /// How much of its processor time is left, in seconds.
    double secondsLeft() { return m_seconds - processorTime(); }

    /// Starts another program instead of tobrimax-svg, for tests; empty for that again.
    static void useProgram(const QString& path);

  private:
    explicit SvgWorker(double seconds) : m_seconds(seconds) {}

    QProcess m_process;
    double m_seconds;
    double m_work = 0;
    double m_processorTime = 0;
    double m_toldTime = 0;
};
