#include "shell/ApplicationMain.h"

#include "platform/services/Workspace.h"
#include "shell/AppDelegate.h"
#include "shell/Appearance.h"
#include "shell/ApplicationIcon.h"
#include "shell/Languages.h"
#include "shell/StoreErrorAlert.h"

#include <QFileInfo>
#include <QLocale>

#include <csignal>

int applicationMain(int argc, char** argv) {
    // Writing beyond the limit of file sizes then fails with an error that is shown. The signal would end the
    // process.
    std::signal(SIGXFSZ, SIG_IGN);
    const Bundle bundle;
    QCoreApplication::setOrganizationName(QStringLiteral("Varnholt"));
    QCoreApplication::setApplicationName(QStringLiteral("Tobrimax"));
    Application application(argc, argv);
    const Languages languages(QLocale::system().uiLanguages());
    QCoreApplication::setApplicationVersion(
        bundle.infoDictionary().value(QStringLiteral("CFBundleShortVersionString")).toString());
    // A desktop finds the application's entry, and with it name and icon, by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral("tobrimax"));
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
