// The main function of unit tests: an application without a display, and a home folder of its own,
// so that no test reads or writes what belongs to the user.

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char* argv[]) {
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    for (const char* variable :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR",
          "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY"}) {
        qunsetenv(variable);
    }
    // A machine without a network is told so soon.
    qputenv("RES_OPTIONS", "timeout:1 attempts:1");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
