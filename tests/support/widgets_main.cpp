// Starts the test programs that need widgets. Without a screen unless the environment names a platform.
#include <gtest/gtest.h>
#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir cache; // of exports
    qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
    const QTemporaryDir data; // boards
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
