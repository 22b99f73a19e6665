#include "ui/InputGuard.h"

#include "support/EventLoop.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QStyleHints>
#include <gtest/gtest.h>

#include <memory>

namespace zentrill {
namespace {

using Surface = InputGuard::Surface;

class InputGuardTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<QKeyEvent> event(QEvent::Type type, int key, bool repeated = false) const {
        auto made = std::make_unique<QKeyEvent>(type, key, Qt::NoModifier, QString(), repeated);
        made->setTimestamp(now_);
        return made;
    }

    [[nodiscard]] bool key(QEvent::Type type, int key, bool repeated = false) {
        return guard_.admits(*event(type, key, repeated));
    }

    [[nodiscard]] bool isRepetition(int key, bool repeated = false) const {
        return guard_.isRepetition(*event(QEvent::KeyPress, key, repeated));
    }

    [[nodiscard]] bool press(int pressed) { return key(QEvent::KeyPress, pressed); }

    [[nodiscard]] bool repeat(int held) { return key(QEvent::KeyPress, held, true); }

    [[nodiscard]] bool release(int released) { return key(QEvent::KeyRelease, released); }

    /// Press and release, which share their fate.
    [[nodiscard]] bool type(int typed) {
        const bool admitted = press(typed);
        EXPECT_EQ(release(typed), admitted);
        return admitted;
    }

    [[nodiscard]] bool click(int x) {
        const QPointF place(x, 10);
        QMouseEvent made(QEvent::MouseButtonPress, place, place, Qt::LeftButton, Qt::LeftButton,
                         Qt::NoModifier);
        made.setTimestamp(now_);
        return guard_.admits(made);
    }

    void show(Surface surface) {
        guard_.setSurface(surface);
        guard_.noteFrame();
    }

    void pass(quint64 milliseconds) { now_ += milliseconds; }

    [[nodiscard]] static quint64 doubleClickTime() {
        return static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    }

    quint64 now_ = 1000;
    InputGuard guard_;
};

TEST_F(InputGuardTest, AdmitsEverythingInAWindowWithoutModals) {
    EXPECT_TRUE(guard_.isSettled());
    for (int times = 0; times < 3; ++times) {
        EXPECT_TRUE(type(Qt::Key_Return));
        EXPECT_TRUE(click(10));
    }
    EXPECT_TRUE(press(Qt::Key_Down));
    EXPECT_TRUE(repeat(Qt::Key_Down));
    EXPECT_TRUE(press(Qt::Key_Space));
    EXPECT_TRUE(release(Qt::Key_Down));
    EXPECT_TRUE(release(Qt::Key_Space));
}

TEST_F(InputGuardTest, DropsAKeyThatIsHeldUntilItIsPressedAnew) {
    show(Surface::confirmation);
    EXPECT_TRUE(press(Qt::Key_Return));
    show(Surface::window);
    EXPECT_FALSE(repeat(Qt::Key_Return));
    pass(doubleClickTime());
    EXPECT_FALSE(repeat(Qt::Key_Return));
    EXPECT_FALSE(release(Qt::Key_Return));
    pass(doubleClickTime());
    EXPECT_TRUE(press(Qt::Key_Return));
    EXPECT_TRUE(repeat(Qt::Key_Return));
    EXPECT_TRUE(release(Qt::Key_Return));
}

TEST_F(InputGuardTest, DropsTheKeyThatClosedAModalWhileItIsPressedAgainAtOnce) {
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Return));
    show(Surface::window);
    for (int times = 0; times < 5; ++times) {
        pass(doubleClickTime() / 2);
        EXPECT_FALSE(type(Qt::Key_Return));
    }
    EXPECT_TRUE(type(Qt::Key_Down)) << "another key is another matter";
}

TEST_F(InputGuardTest, TakesTheKeyThatClosedAModalAfterAPause) {
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Return));
    show(Surface::window);
    pass(doubleClickTime() / 2);
    EXPECT_FALSE(type(Qt::Key_Return));
    pass(doubleClickTime());
    EXPECT_TRUE(type(Qt::Key_Return));
    EXPECT_TRUE(type(Qt::Key_Return));
}

TEST_F(InputGuardTest, TakesNothingBeforeTheWindowWithoutTheModalIsShown) {
    show(Surface::confirmation);
    guard_.setSurface(Surface::window);
    EXPECT_FALSE(guard_.isSettled());
    EXPECT_FALSE(type(Qt::Key_Space));
    EXPECT_FALSE(click(10));
    QSignalSpy settled(&guard_, &InputGuard::settledChanged);
    guard_.noteFrame();
    guard_.noteFrame();
    EXPECT_EQ(settled.count(), 1);
    EXPECT_TRUE(type(Qt::Key_Space));
    EXPECT_TRUE(click(10));
}

TEST_F(InputGuardTest, LeavesAConfirmationByTheKeyThatLeftTheOneBefore) {
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Escape));
    show(Surface::window);
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Escape));
}

TEST_F(InputGuardTest, TakesTheFirstDigitOfACodeAtOnce) {
    guard_.setSurface(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_4));
}

TEST_F(InputGuardTest, ShowsAResultBeforeItCanBeDismissed) {
    guard_.setSurface(Surface::result);
    EXPECT_FALSE(type(Qt::Key_Return));
    guard_.noteFrame();
    for (const int any : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) {
        EXPECT_FALSE(type(any));
    }
    EXPECT_FALSE(click(10));
    EXPECT_FALSE(guard_.isSettled());
    ASSERT_TRUE(test::waitUntil([this] { return guard_.isSettled(); }));
    EXPECT_TRUE(type(Qt::Key_Return));
}

TEST_F(InputGuardTest, WaitsWithAResultUntilTheKeyOfTheConfirmationRests) {
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Return));
    show(Surface::window);
    show(Surface::result);
    EXPECT_FALSE(type(Qt::Key_Return));
    ASSERT_TRUE(test::waitUntil([this] { return guard_.isSettled(); }));
    EXPECT_TRUE(type(Qt::Key_Return));
}

TEST_F(InputGuardTest, DropsTheSecondOfTwoClicks) {
    show(Surface::confirmation);
    EXPECT_TRUE(click(10));
    show(Surface::window);
    pass(doubleClickTime() / 2);
    EXPECT_FALSE(click(11));
    EXPECT_TRUE(click(200)) << "somewhere else";
    show(Surface::confirmation);
    EXPECT_TRUE(click(300));
    show(Surface::window);
    pass(doubleClickTime());
    EXPECT_TRUE(click(300));
}

TEST_F(InputGuardTest, KnowsARepetitionByTheReleaseOfTheSameInstant) {
    EXPECT_TRUE(type(Qt::Key_Space));
    EXPECT_TRUE(isRepetition(Qt::Key_Space));
    EXPECT_FALSE(isRepetition(Qt::Key_Return)) << "another key";
    EXPECT_FALSE(isRepetition(Qt::Key_Space, true)) << "the toolkit knows it";
    pass(1);
    EXPECT_FALSE(isRepetition(Qt::Key_Space)) << "a later instant";
}

TEST_F(InputGuardTest, TakesEventsWithoutATimeForPresses) {
    now_ = 0;
    EXPECT_TRUE(type(Qt::Key_1));
    EXPECT_FALSE(isRepetition(Qt::Key_1));
}

TEST_F(InputGuardTest, GoesByItsOwnClockWhereEventsTellNoTime) {
    now_ = 0;
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Return));
    show(Surface::window);
    EXPECT_FALSE(type(Qt::Key_Return));
    QElapsedTimer sinceThen;
    sinceThen.start();
    ASSERT_TRUE(
        test::waitUntil([&] { return sinceThen.elapsed() > static_cast<qint64>(doubleClickTime()); }));
    EXPECT_TRUE(type(Qt::Key_Return));
}

TEST_F(InputGuardTest, AKeyWhoseReleaseWasReadByItselfIsStillHeld) {
    EXPECT_TRUE(type(Qt::Key_Down));
    EXPECT_TRUE(repeat(Qt::Key_Down));
    EXPECT_TRUE(release(Qt::Key_Down));
    pass(1);
    EXPECT_FALSE(repeat(Qt::Key_Down)) << "a later instant";
}

TEST_F(InputGuardTest, AStaleKeyStaysStaleWhenItsReleaseIsReadByItself) {
    show(Surface::confirmation);
    EXPECT_TRUE(press(Qt::Key_Return));
    show(Surface::window);
    EXPECT_FALSE(release(Qt::Key_Return));
    EXPECT_FALSE(repeat(Qt::Key_Return));
    EXPECT_FALSE(release(Qt::Key_Return));
}

TEST_F(InputGuardTest, AModalThatClosesBetweenTheHalvesOfARepetitionEndsIt) {
    show(Surface::confirmation);
    EXPECT_TRUE(type(Qt::Key_Return));
    show(Surface::window);
    EXPECT_FALSE(repeat(Qt::Key_Return));
}

TEST_F(InputGuardTest, ForgetsKeysThatMayBeLetGoUnseen) {
    EXPECT_TRUE(press(Qt::Key_Space));
    guard_.forgetHeldKeys();
    EXPECT_FALSE(repeat(Qt::Key_Space));
    EXPECT_TRUE(press(Qt::Key_Space));
    EXPECT_TRUE(repeat(Qt::Key_Space));
}

} // namespace
} // namespace zentrill
