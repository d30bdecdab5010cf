#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The result of a program's run.
struct ProcessResult {
    int exitStatus = -1; ///< -1 if it did not start, crashed or ran for more than a minute
    QByteArray output;
    QByteArray errors;
    double seconds = 0; ///< of processor time

    /// The lines on standard error.
    QStringList errorLines() const;
};

/// The processor time of all child processes that have ended, in seconds. A busy machine does not lengthen
/// it.
double secondsOfChildren();

/// Runs a program, found through PATH, to its end, in `workingFolder` if one is given.
ProcessResult runProcess(const QString& program, const QStringList& arguments,
                         const QString& workingFolder = {});

/// Runs tobrimax-cli.
ProcessResult runCli(const QStringList& arguments, const QString& workingFolder = {});

/// Runs a script with the Python that has Pillow.
ProcessResult runPython(const QString& script, const QStringList& arguments);
