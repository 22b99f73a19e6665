#include "ui/items/Pressable.h"

#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

/// Two of them in a window: one in its upper left corner, one below.
class PressableTest : public ::testing::Test {
protected:
    PressableTest() {
        window_.resize(200, 200);
        for (Pressable* item : {&first_, &second_}) {
            item->setParentItem(window_.contentItem());
            item->setSize({100, 40});
        }
        second_.setY(100);
        window_.show();
        window_.requestActivate();
    }

    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&window_)); }

    static constexpr QPoint inside{50, 20};
    static constexpr QPoint outside{150, 80};

    QQuickWindow window_;
    Pressable first_;
    Pressable second_;
    QSignalSpy clicks_{&first_, &Pressable::clicked};
};

TEST_F(PressableTest, IsPressedByAClick) {
    QTest::mousePress(&window_, Qt::LeftButton, {}, inside);
    EXPECT_TRUE(first_.down());
    EXPECT_EQ(clicks_.count(), 0);
    QTest::mouseRelease(&window_, Qt::LeftButton, {}, inside);
    EXPECT_FALSE(first_.down());
    EXPECT_EQ(clicks_.count(), 1);
    QTest::mouseClick(&window_, Qt::RightButton, {}, inside);
    EXPECT_EQ(clicks_.count(), 1);
}

TEST_F(PressableTest, IsNotPressedWhenTheButtonIsLetGoElsewhere) {
    QTest::mousePress(&window_, Qt::LeftButton, {}, inside);
    QTest::mouseMove(&window_, outside);
    EXPECT_FALSE(first_.down());
    QTest::mouseMove(&window_, inside);
    EXPECT_TRUE(first_.down());
    QTest::mouseMove(&window_, outside);
    QTest::mouseRelease(&window_, Qt::LeftButton, {}, outside);
    EXPECT_EQ(clicks_.count(), 0);
}

TEST_F(PressableTest, IsPressedByTheKeyboard) {
    first_.forceActiveFocus();
    QTest::keyPress(&window_, Qt::Key_Space);
    EXPECT_TRUE(first_.down());
    EXPECT_EQ(clicks_.count(), 0);
    QTest::keyRelease(&window_, Qt::Key_Space);
    EXPECT_FALSE(first_.down());
    EXPECT_EQ(clicks_.count(), 1);
    QTest::keyClick(&window_, Qt::Key_Return);
    EXPECT_EQ(clicks_.count(), 2);
    QTest::keyClick(&window_, Qt::Key_Enter);
    EXPECT_EQ(clicks_.count(), 3);
    QTest::keyClick(&window_, Qt::Key_A);
    EXPECT_EQ(clicks_.count(), 3);
}

TEST_F(PressableTest, IsPressedOnceByAKeyThatIsHeld) {
    first_.forceActiveFocus();
    for (const int key : {Qt::Key_Return, Qt::Key_Space}) {
        clicks_.clear();
        QTest::keyPress(&window_, static_cast<Qt::Key>(key));
        for (int repeat = 0; repeat < 3; ++repeat) {
            for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::KeyPress}) {
                QKeyEvent event(type, key, Qt::NoModifier, QString(), true);
                QCoreApplication::sendEvent(&window_, &event);
            }
        }
        QTest::keyRelease(&window_, static_cast<Qt::Key>(key));
        EXPECT_EQ(clicks_.count(), 1) << key;
    }
}

TEST_F(PressableTest, ForgetsAHeldSpaceWhenTheFocusGoes) {
    first_.forceActiveFocus();
    QTest::keyPress(&window_, Qt::Key_Space);
    second_.forceActiveFocus();
    EXPECT_FALSE(first_.down());
    const QSignalSpy others(&second_, &Pressable::clicked);
    QTest::keyRelease(&window_, Qt::Key_Space);
    EXPECT_EQ(clicks_.count(), 0);
    EXPECT_EQ(others.count(), 0);
}

TEST_F(PressableTest, DoesNothingWhileDisabled) {
    QTest::mousePress(&window_, Qt::LeftButton, {}, inside);
    first_.setEnabled(false);
    EXPECT_FALSE(first_.down());
    QTest::mouseRelease(&window_, Qt::LeftButton, {}, inside);
    QTest::mouseClick(&window_, Qt::LeftButton, {}, inside);
    first_.click();
    EXPECT_EQ(clicks_.count(), 0);
    first_.setEnabled(true);
    first_.click();
    EXPECT_EQ(clicks_.count(), 1);
}

TEST_F(PressableTest, KnowsWhetherThePointerIsOverIt) {
    QTest::mouseMove(&window_, outside);
    QTest::mouseMove(&window_, inside);
    EXPECT_TRUE(first_.hovered());
    EXPECT_FALSE(second_.hovered());
    QTest::mouseMove(&window_, outside);
    EXPECT_FALSE(first_.hovered());
    QTest::mouseMove(&window_, inside);
    first_.setEnabled(false);
    EXPECT_FALSE(first_.hovered());
}

TEST_F(PressableTest, KeepsTheFocusButTakesNoPressWhileNotAvailable) {
    QSignalSpy changes(&first_, &Pressable::availableChanged);
    first_.setAvailable(false);
    first_.setAvailable(false);
    EXPECT_EQ(changes.count(), 1);
    QTest::mouseClick(&window_, Qt::LeftButton, {}, inside);
    EXPECT_TRUE(first_.hasActiveFocus());
    QTest::keyClick(&window_, Qt::Key_Return);
    QTest::keyClick(&window_, Qt::Key_Space);
    first_.click();
    EXPECT_EQ(clicks_.count(), 0);
    first_.setAvailable(true);
    QTest::keyClick(&window_, Qt::Key_Space);
    EXPECT_EQ(clicks_.count(), 1);
}

} // namespace
} // namespace zentrill
