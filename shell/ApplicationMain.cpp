#include "shell/ApplicationMain.h"

#include "platform/Workspace.h"
#include "shell/AppDelegate.h"
#include "shell/Appearance.h"
#include "shell/ApplicationIcon.h"
#include "shell/MainMenu.h"

int applicationMain(int argc, char** argv) {
    QCoreApplication::setOrganizationName(QStringLiteral("Varnholt"));
    QCoreApplication::setApplicationName(QStringLiteral("Tobrimax"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TOBRIMAX_VERSION));
    Application application(argc, argv);
    const Appearance appearance(application);
    QGuiApplication::setWindowIcon(applicationIcon());

    const Bundle bundle;
    const Screen screen;
    Workspace workspace;
    UserDefaults defaults;
    AppDelegate delegate({application, {bundle, screen, workspace}, defaults});
    application.setDelegate(&delegate);
    return application.run();
}
