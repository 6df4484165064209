// The tests of the shell run inside the toolkit's application object on a private X server with a message bus
// of its own, both of which end with the process.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <QApplication>

#include "tests/contract/test_bus.h"
#include "tests/contract/x11/x_test_server.h"
#include "tests/support/temporary_folder.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    const pintle::TemporaryFolder home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        ::setenv(name, home.path().c_str(), 1);
    for (const char* name : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "WAYLAND_DISPLAY", "SESSION_MANAGER",
                             "QT_SCALE_FACTOR", "QT_QPA_PLATFORMTHEME"})
        ::unsetenv(name);
    const pintle::XTestServer server({"-screen", "0", "1280x800x24"});
    const pintle::TestBus bus;
    ::setenv("DISPLAY", server.display().c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    QApplication::setStyle(QStringLiteral("fusion"));
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
