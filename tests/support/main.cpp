#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Runs without a display unless one is chosen.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
