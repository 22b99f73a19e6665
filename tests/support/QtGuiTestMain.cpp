#include "support/TemporaryHome.h"

#include <QGuiApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    // No display, no graphics card, no file outside the test's own folder.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QPA_PLATFORMTHEME", "generic");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QML_DISK_CACHE_PATH", "/dev/null");
    const zentrill::test::TemporaryHome home;
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
