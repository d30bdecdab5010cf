// The main window in its plain style, for which the application itself has no control.
#include "shell/AppDelegate.h"

int main(int argc, char** argv) {
    QCoreApplication::setApplicationName(QStringLiteral("Tobrimax"));
    Application application(argc, argv);
    const Bundle bundle;
    const Screen screen;
    Workspace workspace;
    UserDefaults defaults;
    AppDelegate delegate({application,
                          {bundle, screen, workspace},
                          defaults,
                          [](const QString&) { return false; },
                          [](const StoreError&) { return false; }});
    delegate.setupInitialController();
    delegate.setupWindowStyle();
    return Application::exec();
}
