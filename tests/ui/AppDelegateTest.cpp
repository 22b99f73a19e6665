#include "entry/AppDelegate.h"

#include "WindowFrameFixture.h"
#include "platform/PropertyList.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

using test::frameKey;

class AppDelegateTest : public test::WindowFrameFixture {
protected:
    /// But for the frame that the platform of these tests draws around a window once it is shown.
    static void expectIn(const QRect& room, const QRect& geometry) {
        EXPECT_LE(geometry.width(), room.width());
        EXPECT_LE(geometry.height(), room.height());
        EXPECT_TRUE(room.adjusted(0, 0, 8, 24).contains(geometry));
    }

    AppDelegate delegate_{[] { return std::make_unique<QWindow>(); }, file_};
};

TEST_F(AppDelegateTest, ShowsOneWindowOfTheGivenSizeInTheMiddle) {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    const QSize fitting = QSize(950, 700).boundedTo(WindowFrameAutosave::room(available).size());
    EXPECT_EQ(delegate_.window(), nullptr);
    delegate_.applicationDidFinishLaunching();
    const QWindow* window = delegate_.window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->title(), QStringLiteral("Zentrill - Environment Cleaner"));
    EXPECT_EQ(window->size(), fitting);
    EXPECT_TRUE(window->isVisible());
    // The window's frame may be drawn around its content.
    const QPoint off = window->geometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 4);
    EXPECT_TRUE(AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(AppDelegateTest, RestoresTheSavedFrameInsteadOfCentring) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({20, 30, 600, 500}).toStdString()));
    delegate_.applicationDidFinishLaunching();
    EXPECT_EQ(delegate_.window()->geometry(), QRect(20, 30, 600, 500));
}

TEST_F(AppDelegateTest, FitsTheWindowIntoTheScreen) {
    // The screen of these tests is lower than the window's own minimum.
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect room = WindowFrameAutosave::room(available);
    AppDelegate delegate(
        [&] {
            auto window = std::make_unique<QWindow>();
            window->setMinimumSize(available.size() + QSize(100, 100));
            return window;
        },
        file_);
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(delegate.window()->minimumSize(), room.size());
    expectIn(room, delegate.window()->geometry());
    EXPECT_EQ(delegate.window()->size(), QSize(950, 700).boundedTo(room.size()));
}

TEST_F(AppDelegateTest, LeavesASavedFrameAloneThatDoesNotFitThisScreen) {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    const QString frame = text(QRect(QPoint(60, 50), available.size() + QSize(50, 50)));
    ASSERT_TRUE(setPropertyListString(file_, frameKey, frame.toStdString()));
    delegate_.applicationDidFinishLaunching();
    expectIn(WindowFrameAutosave::room(available), delegate_.window()->geometry());
    delegate_.window()->close();
    EXPECT_EQ(propertyListString(file_, frameKey), frame.toStdString());
}

TEST_F(AppDelegateTest, SavesTheFrameWhenTheWindowCloses) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({20, 30, 600, 500}).toStdString()));
    delegate_.applicationDidFinishLaunching();
    delegate_.window()->setGeometry(30, 40, 610, 510);
    delegate_.window()->close();
    EXPECT_EQ(saved(), QRect(30, 40, 610, 510));
}

TEST_F(AppDelegateTest, SavesNothingAfterItForgotTheWindow) {
    // Without a window there is nothing to forget.
    delegate_.forgetWindowState();
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({20, 30, 600, 500}).toStdString()));
    delegate_.applicationDidFinishLaunching();
    delegate_.window()->setGeometry(30, 40, 610, 510);
    delegate_.forgetWindowState();
    delegate_.window()->close();
    EXPECT_EQ(saved(), QRect(20, 30, 600, 500));
}

} // namespace
} // namespace zentrill
