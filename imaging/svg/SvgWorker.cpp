#include "imaging/svg/SvgWorker.h"

#include "base/SystemError.h"
#include "platform/services/Bundle.h"

#include <QFile>
#include <QtMath>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <utility>

static QString otherProgram; // NOLINT: set by tests alone

void SvgWorker::useProgram(const QString& path) {
    otherProgram = path;
}

Result<std::unique_ptr<SvgWorker>> SvgWorker::start(double seconds, qint64 addressSpace,
                                                    const SvgMemory& memory) {
    std::unique_ptr<SvgWorker> worker(new SvgWorker(seconds));
    QProcess& process = worker->m_process;
    process.setProgram(otherProgram.isEmpty() ? Bundle::pathOfHelper(QLatin1String("tobrimax-svg"))
                                              : otherProgram);
    // The system counts whole seconds, and the program ends the worker before.
    const qint64 wholeSeconds = qCeil(seconds) + 1;
    process.setArguments({QString::number(wholeSeconds), QString::number(addressSpace),
                          QString::number(memory.descriptor()), QString::number(memory.documentBytes())});
    process.setStandardErrorFile(QProcess::nullDevice());
    // Nobody asks for that many answers ahead.
    QObject::connect(&process, &QProcess::readyRead, &process, [&process] {
        constexpr qint64 mostBytes = 64 * sizeof(SvgPipe::Answer);
        if (process.bytesAvailable() > mostBytes)
            process.kill();
    });
    // This process alone gets the memory.
    ::fcntl(memory.descriptor(), F_SETFD, 0);
    process.start(QIODevice::ReadWrite | QIODevice::Unbuffered);
    ::fcntl(memory.descriptor(), F_SETFD, FD_CLOEXEC);
    if (process.waitForStarted())
        return worker;
    const bool isProgram = ::access(QFile::encodeName(process.program()).constData(), X_OK) == 0;
    return Error{ErrorCode::Unsupported,
                 QStringLiteral("the SVG document can't be drawn, since the program %1 can't be started (%2)")
                     .arg(process.program(), isProgram ? process.errorString() : systemSentence(errno))};
}

SvgWorker::~SvgWorker() {
    m_process.kill();
    m_process.waitForFinished();
}

void SvgWorker::ask(const SvgPipe::Request& request) {
    m_process.write(reinterpret_cast<const char*>(&request), sizeof request);
    m_process.waitForBytesWritten();
    constexpr double samePart = 4 * 128.0 * 128;
    m_work += static_cast<double>(request.bytes()) + samePart;
}

bool SvgWorker::wait(int milliseconds) {
    const auto isReady = [this] {
        return m_process.bytesAvailable() >= qint64{sizeof(SvgPipe::Answer)} ||
               m_process.state() == QProcess::NotRunning;
    };
    return isReady() || (m_process.waitForReadyRead(milliseconds), isReady());
}

std::optional<SvgPipe::Answer> SvgWorker::answer() {
    SvgPipe::Answer answer;
    const qint64 bytes = m_process.read(reinterpret_cast<char*>(&answer), sizeof answer);
    return bytes == sizeof answer ? std::optional(answer) : std::nullopt;
}

double SvgWorker::processorTime() {
#ifndef __APPLE__
    clockid_t clock{};
    timespec time{};
    constexpr double nanosecond = 1e-9;
    if (m_process.state() == QProcess::Running &&
        ::clock_getcpuclockid(static_cast<pid_t>(m_process.processId()), &clock) == 0 &&
        ::clock_gettime(clock, &time) == 0)
        m_processorTime = static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
#endif
    return m_processorTime;
}

double SvgWorker::newTime() {
    const double time = processorTime();
    return time - std::exchange(m_toldTime, time);
}
