#include "support/TemporaryHome.h"

#include <QGuiApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS(); // Runs none of them, and needs no application.
    }
    // No display, no graphics card, no file outside the test's own folder.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QPA_PLATFORMTHEME", "generic");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QML_DISK_CACHE_PATH", "/dev/null");
    const zentrill::test::TemporaryHome home;
    // Qt makes one of its own otherwise, and says so.
    qputenv("XDG_RUNTIME_DIR", home.path().c_str());
    // Nor a message bus, which would be started, or be the person's own.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
