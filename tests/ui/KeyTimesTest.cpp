#include "ui/KeyTimes.h"

#include <QKeyEvent>
#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <xcb/xcb.h>
#endif

namespace zentrill {
namespace {

constexpr quint32 spaceBar = 65;
constexpr quint32 returnKey = 36;

class KeyTimesTest : public ::testing::Test {
protected:
    /// The time that such an event has after it was asked for; `own` is the one that it comes with.
    [[nodiscard]] quint64 timeOf(QEvent::Type type, quint32 scanCode, quint64 own = 0) {
        QKeyEvent event(type, Qt::Key_unknown, Qt::NoModifier, scanCode, 0, 0);
        event.setTimestamp(own);
        times_.setTime(event);
        return event.timestamp();
    }

    KeyTimes times_;
};

TEST_F(KeyTimesTest, GivesEachEventItsOwnTime) {
    times_.note(QEvent::KeyPress, spaceBar, 100);
    times_.note(QEvent::KeyRelease, spaceBar, 130);
    times_.note(QEvent::KeyPress, spaceBar, 130);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar), 100U);
    EXPECT_EQ(timeOf(QEvent::KeyRelease, spaceBar), 130U);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar), 130U);
    EXPECT_EQ(timeOf(QEvent::KeyRelease, spaceBar), 0U) << "nothing was noted";
}

TEST_F(KeyTimesTest, PassesOverWhatBecameNoEvent) {
    times_.note(QEvent::KeyPress, returnKey, 100);
    times_.note(QEvent::KeyRelease, returnKey, 110);
    times_.note(QEvent::KeyPress, spaceBar, 120);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar), 120U);
    EXPECT_EQ(timeOf(QEvent::KeyPress, returnKey), 0U);
}

TEST_F(KeyTimesTest, LeavesATimeThatIsThere) {
    times_.note(QEvent::KeyPress, spaceBar, 100);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar, 90), 90U);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar), 0U) << "its own was used up all the same";
}

TEST_F(KeyTimesTest, KeepsABoundedNumberOfTimes) {
    times_.note(QEvent::KeyPress, returnKey, 1);
    for (quint64 number = 0; number < 1000; ++number) {
        times_.note(QEvent::KeyPress, spaceBar, 100 + number);
    }
    EXPECT_EQ(timeOf(QEvent::KeyPress, returnKey), 0U);
    EXPECT_GT(timeOf(QEvent::KeyPress, spaceBar), 100U);
}

#ifdef Q_OS_LINUX
TEST_F(KeyTimesTest, ReadsTheEventsOfAnXServer) {
    xcb_key_press_event_t key{};
    key.response_type = XCB_KEY_PRESS;
    key.detail = spaceBar;
    key.time = 4'000'000'000;
    times_.noteNativeEvent("xcb_generic_event_t", &key);
    key.response_type = XCB_KEY_RELEASE | 0x80;
    key.time = 4'000'000'007;
    times_.noteNativeEvent("xcb_generic_event_t", &key);
    key.response_type = XCB_BUTTON_PRESS;
    times_.noteNativeEvent("xcb_generic_event_t", &key);
    times_.noteNativeEvent("another_event_t", nullptr);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar), 4'000'000'000U);
    EXPECT_EQ(timeOf(QEvent::KeyRelease, spaceBar), 4'000'000'007U);
    EXPECT_EQ(timeOf(QEvent::KeyPress, spaceBar), 0U);
}
#endif

} // namespace
} // namespace zentrill
