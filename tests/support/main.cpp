// Starts every test program: Qt without a screen, then the tests.
#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir cache; // of exports
    qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

/// Read by the leak sanitizer: x265 leaves a few kilobytes behind for each encoder that it closes.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libx265\n";
}
