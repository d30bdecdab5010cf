#include "tests/support/Process.h"

#include <QElapsedTimer>
#include <QProcess>

QStringList ProcessResult::errorLines() const {
    return QString::fromUtf8(errors).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

ProcessResult runProcess(const QString& program, const QStringList& arguments, const QString& workingFolder) {
    constexpr int oneMinute = 60000;
    QProcess process;
    process.setWorkingDirectory(workingFolder);
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    process.closeWriteChannel();
    const bool isFinished = process.waitForFinished(oneMinute);
    ProcessResult result;
    if (isFinished && process.exitStatus() == QProcess::NormalExit &&
        process.error() != QProcess::FailedToStart)
        result.exitStatus = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    result.seconds = static_cast<double>(timer.elapsed()) / 1000;
    return result;
}

ProcessResult runCli(const QStringList& arguments, const QString& workingFolder) {
    return runProcess(QStringLiteral(TOBRIMAX_CLI), arguments, workingFolder);
}

ProcessResult runPython(const QString& script, const QStringList& arguments) {
    return runProcess(QStringLiteral(PYTHON3), QStringList{QStringLiteral("-c"), script} + arguments);
}
