#include "ui/items/ManualCodeTextView.h"

#include "UiFixture.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QQuickWindow>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class ManualCodeTextViewTest : public ::testing::Test {
protected:
    ManualCodeTextViewTest() : view_(new ManualCodeTextView(window_.contentItem())) {
        view_->setFocus(true);
        window_.show();
        window_.requestActivate();
        active_ = test::waitUntil([this] { return view_->hasActiveFocus(); });
    }

    void SetUp() override { ASSERT_TRUE(active_); }

    /// One key press through the window; whether the field took it.
    bool press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        event.ignore();
        QCoreApplication::sendEvent(&window_, &event);
        return event.isAccepted();
    }

    void type(const char* characters) {
        for (const char* character = characters; *character != '\0'; ++character) {
            press(Qt::Key_0 + (*character - '0'), QString(QLatin1Char(*character)));
        }
    }

    [[nodiscard]] std::string text() const { return view_->text().toStdString(); }

    QQuickWindow window_;
    ManualCodeTextView* view_;
    bool active_ = false;
};

TEST_F(ManualCodeTextViewTest, TakesDigitsOneByOne) {
    int changes = 0;
    QObject::connect(view_, &ManualCodeTextView::textChanged, view_, [&] { ++changes; });
    type("00412907");
    EXPECT_EQ(text(), "00412907");
    EXPECT_EQ(changes, 8);
    EXPECT_EQ(view_->cursorPosition(), 8);
}

TEST_F(ManualCodeTextViewTest, RefusesANinthDigit) {
    type("12345678");
    int changes = 0;
    QObject::connect(view_, &ManualCodeTextView::textChanged, view_, [&] { ++changes; });
    type("9");
    EXPECT_EQ(text(), "12345678");
    view_->moveCursor(0, false);
    type("9");
    EXPECT_EQ(text(), "12345678");
    EXPECT_EQ(view_->cursorPosition(), 0);
    EXPECT_EQ(changes, 0);
}

TEST_F(ManualCodeTextViewTest, RefusesEverythingButAsciiDigits) {
    type("12");
    press(Qt::Key_A, QStringLiteral("a"));
    press(Qt::Key_Space, QStringLiteral(" "));
    press(Qt::Key_Minus, QStringLiteral("-"));
    press(Qt::Key_1, QString::fromUtf8("\xEF\xBC\x91"));
    press(Qt::Key_1, QString::fromUtf8("\xD9\xA1"));
    press(Qt::Key_1, QString::fromUtf8("\xC2\xB9"));
    press(Qt::Key_1, QString());
    EXPECT_EQ(text(), "12");
}

TEST_F(ManualCodeTextViewTest, RefusesEventsOfSeveralCharacters) {
    press(Qt::Key_1, QStringLiteral("12"));
    press(Qt::Key_unknown, QStringLiteral("12345678"));
    press(Qt::Key_1, QStringLiteral("1a"));
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, TakesTheKeypadAndShiftedDigits) {
    press(Qt::Key_4, QStringLiteral("4"), Qt::KeypadModifier);
    press(Qt::Key_Ampersand, QStringLiteral("1"), Qt::ShiftModifier);
    EXPECT_EQ(text(), "41");
}

TEST_F(ManualCodeTextViewTest, RefusesDigitsOfShortcuts) {
    press(Qt::Key_1, QStringLiteral("1"), Qt::ControlModifier);
    press(Qt::Key_1, QStringLiteral("1"), Qt::AltModifier);
    press(Qt::Key_1, QStringLiteral("1"), Qt::MetaModifier);
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, RefusesEveryWayToPasteAndToUndo) {
    QGuiApplication::clipboard()->setText(QStringLiteral("98765432"));
    if (QGuiApplication::clipboard()->supportsSelection()) {
        QGuiApplication::clipboard()->setText(QStringLiteral("98765432"), QClipboard::Selection);
    }
    type("12");
    press(Qt::Key_Backspace);
    press(Qt::Key_V, QStringLiteral("\x16"), Qt::ControlModifier);
    press(Qt::Key_V, QStringLiteral("\x16"), Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Y, QStringLiteral("\x19"), Qt::ControlModifier);
    press(Qt::Key_Insert, QString(), Qt::ShiftModifier);
    press(Qt::Key_Paste);
    press(Qt::Key_Z, QStringLiteral("\x1A"), Qt::ControlModifier);
    press(Qt::Key_Undo);
    press(Qt::Key_Redo);
    EXPECT_EQ(text(), "1");
}

TEST_F(ManualCodeTextViewTest, RefusesMiddleClicks) {
    for (const QEvent::Type kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(kind, QPointF(5, 5), QPointF(5, 5), Qt::MiddleButton, Qt::MiddleButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&window_, &event);
    }
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, RefusesInputMethods) {
    EXPECT_FALSE(view_->flags().testFlag(QQuickItem::ItemAcceptsInputMethod));
    EXPECT_FALSE(view_->inputMethodQuery(Qt::ImEnabled).toBool());
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("1"));
    QCoreApplication::sendEvent(view_, &event);
    EXPECT_FALSE(event.isAccepted());
    QInputMethodEvent throughTheWindow;
    throughTheWindow.setCommitString(QStringLiteral("12345678"));
    QCoreApplication::sendEvent(&window_, &throughTheWindow);
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, RefusesDrops) {
    view_->setSize({200, 30});
    EXPECT_FALSE(view_->flags().testFlag(QQuickItem::ItemAcceptsDrops));
    QMimeData data;
    data.setText(QStringLiteral("12345678"));
    QDragEnterEvent entered(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_, &entered);
    EXPECT_FALSE(entered.isAccepted());
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_, &dropped);
    EXPECT_FALSE(dropped.isAccepted());
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, DeletesAroundTheCaret) {
    type("1234");
    press(Qt::Key_Backspace, QStringLiteral("\b"));
    EXPECT_EQ(text(), "123");
    press(Qt::Key_Home);
    press(Qt::Key_Backspace, QStringLiteral("\b"));
    EXPECT_EQ(text(), "123");
    press(Qt::Key_Delete, QStringLiteral("\x7F"));
    EXPECT_EQ(text(), "23");
    EXPECT_EQ(view_->cursorPosition(), 0);
    press(Qt::Key_End);
    press(Qt::Key_Delete, QStringLiteral("\x7F"));
    EXPECT_EQ(text(), "23");
    press(Qt::Key_Backspace, QString(), Qt::ControlModifier);
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, ReplacesTheSelectedDigits) {
    type("12345678");
    view_->moveCursor(2, false);
    view_->moveCursor(5, true);
    EXPECT_EQ(view_->selectionStart(), 2);
    EXPECT_EQ(view_->selectionEnd(), 5);
    type("9");
    EXPECT_EQ(text(), "129678");
    EXPECT_EQ(view_->cursorPosition(), 3);
    EXPECT_EQ(view_->selectionStart(), view_->selectionEnd());
}

TEST_F(ManualCodeTextViewTest, DeletesTheSelectedDigits) {
    type("12345678");
    view_->moveCursor(5, false);
    view_->moveCursor(2, true);
    press(Qt::Key_Backspace, QStringLiteral("\b"));
    EXPECT_EQ(text(), "12678");
    press(Qt::Key_A, QStringLiteral("\x01"), Qt::ControlModifier);
    press(Qt::Key_Delete, QStringLiteral("\x7F"));
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, CollapsesASelectionThatIsReplacedByTheSameDigit) {
    type("1234");
    view_->moveCursor(1, false);
    view_->moveCursor(2, true);
    type("2");
    EXPECT_EQ(text(), "1234");
    EXPECT_EQ(view_->cursorPosition(), 2);
    EXPECT_EQ(view_->selectionStart(), view_->selectionEnd());
}

TEST_F(ManualCodeTextViewTest, MovesAndSelectsWithTheArrowKeys) {
    type("1234");
    press(Qt::Key_Left, QString(), Qt::ShiftModifier);
    press(Qt::Key_Left, QString(), Qt::ShiftModifier);
    EXPECT_EQ(view_->selectionStart(), 2);
    EXPECT_EQ(view_->selectionEnd(), 4);
    press(Qt::Key_Left);
    EXPECT_EQ(view_->cursorPosition(), 2);
    EXPECT_EQ(view_->selectionEnd(), 2);
    press(Qt::Key_Right, QString(), Qt::ShiftModifier);
    EXPECT_EQ(view_->selectionEnd(), 3);
    press(Qt::Key_Right);
    EXPECT_EQ(view_->cursorPosition(), 3);
    press(Qt::Key_Home, QString(), Qt::ShiftModifier);
    EXPECT_EQ(view_->selectionStart(), 0);
    EXPECT_EQ(view_->selectionEnd(), 3);
    press(Qt::Key_End);
    press(Qt::Key_Right);
    EXPECT_EQ(view_->cursorPosition(), 4);
    press(Qt::Key_Home);
    press(Qt::Key_Left);
    EXPECT_EQ(view_->cursorPosition(), 0);
}

TEST_F(ManualCodeTextViewTest, LeavesOtherKeysToTheWindow) {
    EXPECT_FALSE(press(Qt::Key_Escape));
    EXPECT_FALSE(press(Qt::Key_F1));
    EXPECT_FALSE(press(Qt::Key_A, QStringLiteral("a")));
    EXPECT_TRUE(press(Qt::Key_1, QStringLiteral("1")));
}

TEST_F(ManualCodeTextViewTest, AnnouncesReturnAndEnter) {
    int accepted = 0;
    QObject::connect(view_, &ManualCodeTextView::accepted, view_, [&] { ++accepted; });
    press(Qt::Key_Return, QStringLiteral("\r"));
    press(Qt::Key_Enter, QStringLiteral("\r"), Qt::KeypadModifier);
    EXPECT_EQ(accepted, 2);
    EXPECT_EQ(text(), "");
}

TEST_F(ManualCodeTextViewTest, TakesOverAFilteredTextFromOutside) {
    view_->setText(QStringLiteral("12a3 4-5678 9"));
    EXPECT_EQ(text(), "12345678");
    view_->setText(QString());
    EXPECT_EQ(text(), "");
    EXPECT_EQ(view_->cursorPosition(), 0);
}

} // namespace
} // namespace zentrill
