#include "tests/support/Process.h"

#include <QProcess>

#include <sys/resource.h>

double secondsOfChildren() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

QStringList ProcessResult::errorLines() const {
    return QString::fromUtf8(errors).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

ProcessResult runProcess(const QString& program, const QStringList& arguments, const QString& workingFolder) {
    constexpr int oneMinute = 60000;
    QProcess process;
    process.setWorkingDirectory(workingFolder);
    const double secondsBefore = secondsOfChildren();
    process.start(program, arguments);
    process.closeWriteChannel();
    const bool isFinished = process.waitForFinished(oneMinute);
    ProcessResult result;
    if (isFinished && process.exitStatus() == QProcess::NormalExit &&
        process.error() != QProcess::FailedToStart)
        result.exitStatus = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    result.seconds = secondsOfChildren() - secondsBefore;
    return result;
}

ProcessResult runCli(const QStringList& arguments, const QString& workingFolder) {
    return runProcess(QStringLiteral(TOBRIMAX_CLI), arguments, workingFolder);
}

ProcessResult runPython(const QString& script, const QStringList& arguments) {
    return runProcess(QStringLiteral(PYTHON3), QStringList{QStringLiteral("-c"), script} + arguments);
}
