#include "cli/CommandLine.h"
#include "cli/Terminal.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    // Before the application, which may have something to say about the locale.
    Terminal::showDiagnosticLog(false);
    const QCoreApplication application(argc, argv);
    return runCommandLine(argc, argv);
}
