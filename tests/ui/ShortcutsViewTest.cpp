#include "ViewFixture.h"
#include "ui/Shortcuts.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

/// The shortcuts as keys of the real window.
class ShortcutsViewTest : public test::ViewFixture {
protected:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(view_.get(), key, modifiers);
    }

    [[nodiscard]] QString focusedType() const {
        const QQuickItem* focused = view_->activeFocusItem();
        return focused == nullptr ? QString() : QString::fromLatin1(focused->metaObject()->className());
    }
};

TEST_F(ShortcutsViewTest, LeadIntoThePanes) {
    home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
    ASSERT_TRUE(open("apps"));
    ofType("SidebarItem").front()->forceActiveFocus();
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(state().selectedTab(), QStringLiteral("models"));
    EXPECT_TRUE(test::waitUntil([this] {
        return focusedType().startsWith(QLatin1String("LocalModelRowView"));
    })) << focusedType().toStdString();
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_TRUE(test::waitUntil([this] { return focusedType().startsWith(QLatin1String("LineListView")); }))
        << focusedType().toStdString();
}

TEST_F(ShortcutsViewTest, LeaveToALogWhatItTakesItself) {
    home_.makeDirectory(".ollama");
    ASSERT_TRUE(open("console"));
    ASSERT_TRUE(test::waitUntil([this] { return focusedType().startsWith(QLatin1String("LineListView")); }));
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(state().logSelection()->isEmpty());
    EXPECT_EQ(state().selectionCount(), QStringLiteral("0 selected"));
    press(Qt::Key_1, Qt::ControlModifier);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(state().selectionCount(), QStringLiteral("1 selected"));
}

TEST_F(ShortcutsViewTest, AreListedUntilTheyAreNotLookedAt) {
    ASSERT_TRUE(open("apps"));
    QQuickItem* const before = ofType("ActionButton", "text", QStringLiteral("Scan System")).front();
    before->forceActiveFocus();
    press(Qt::Key_Question, Qt::ShiftModifier);
    ASSERT_TRUE(test::waitUntil([this] { return text(QStringLiteral("Keyboard Shortcuts")) != nullptr; }));
    for (const QString& line : Shortcuts::purposes() + Shortcuts::keyTexts()) {
        EXPECT_NE(text(line), nullptr) << line.toStdString();
    }
    const QRectF card = place(*ofType("ModalCard").front());
    EXPECT_TRUE(QRectF(0, 0, 900, 650).contains(card)) << card.width() << " × " << card.height();
    press(Qt::Key_Escape);
    EXPECT_TRUE(test::waitUntil([this] { return ofType("ShortcutsPanel").empty(); }));
    EXPECT_TRUE(before->hasActiveFocus()) << "the focus is where it was";
    press(Qt::Key_F1);
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("ShortcutsPanel").empty(); }));
    QTest::mouseClick(view_.get(), Qt::LeftButton, {}, {450, 600});
    EXPECT_FALSE(state().shortcutsShown());
}

TEST_F(ShortcutsViewTest, DoNothingBelowAModal) {
    ASSERT_TRUE(open("apps"));
    state().requestSelfUninstall();
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("ConfirmationModal").empty(); }));
    QSignalSpy closing(&state(), &ContentViewState::closeRequested);
    for (const Shortcut& shortcut : Shortcuts::all()) {
        for (const QKeySequence& key : shortcut.keys) {
            press(key[0].key(), key[0].keyboardModifiers());
        }
    }
    EXPECT_EQ(state().selectedTab(), QStringLiteral("apps"));
    EXPECT_TRUE(state().confirmation()->isPending());
    EXPECT_EQ(state().confirmation()->confirmationInput(), QString());
    EXPECT_FALSE(model_->isBusy());
    EXPECT_EQ(closing.count(), 0);
    EXPECT_FALSE(state().shortcutsShown());
}

TEST_F(ShortcutsViewTest, CloseTheWindow) {
    ASSERT_TRUE(open("apps"));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(test::waitUntil([this] { return !view_->isVisible(); }));
}

} // namespace
} // namespace zentrill
