#include "shell/ApplicationMain.h"

#include "platform/services/Workspace.h"
#include "shell/AppDelegate.h"
#include "shell/Appearance.h"
#include "shell/ApplicationIcon.h"
#include "shell/StoreErrorAlert.h"

#include <QFileInfo>

#include <csignal>

int applicationMain(int argc, char** argv) {
    // A file that may not grow is an error to be shown, not the end of the process.
    std::signal(SIGXFSZ, SIG_IGN);
    const Bundle bundle;
    QCoreApplication::setOrganizationName(QStringLiteral("Varnholt"));
    QCoreApplication::setApplicationName(QStringLiteral("Tobrimax"));
    Application application(argc, argv);
    QCoreApplication::setApplicationVersion(
        bundle.infoDictionary().value(QStringLiteral("CFBundleShortVersionString")).toString());
    const Appearance appearance(application);
    QGuiApplication::setWindowIcon(applicationIcon());

    const Screen screen;
    Workspace workspace;
    UserDefaults defaults;
    AppDelegate delegate({application,
                          {bundle, screen, workspace},
                          defaults,
                          [](const QString& path) { return QFileInfo::exists(path); },
                          presentStoreError});
    application.setDelegate(&delegate);
    return application.run();
}
