#include "platform/widgets/Application.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Runs without a display unless one is chosen, and without the settings of the user's desktop.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The home folder is in the build folder. A child process that aborts does not remove its home, so it
    // gets one inside its parent's home.
    const QString parent =
        qEnvironmentVariable("TOBRIMAX_TEST_HOME", QFileInfo(QString::fromLocal8Bit(argv[0])).absolutePath());
    const QTemporaryDir home(parent + QStringLiteral("/home-XXXXXX"));
    qputenv("TOBRIMAX_TEST_HOME", home.path().toLocal8Bit());
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(folder, home.path().toLocal8Bit());
    for (const char* setting : {"XDG_CURRENT_DESKTOP", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE"})
        qunsetenv(setting);
    testing::InitGoogleTest(&argc, argv);
    const Application application(argc, argv);
    return RUN_ALL_TESTS();
}
