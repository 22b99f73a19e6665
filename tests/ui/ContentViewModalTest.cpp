#include "ContentViewFixture.h"
#include "UiFixture.h"
#include "ui/items/ManualCodeTextView.h"

#include <QAccessible>
#include <QQuickItem>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

using ContentViewTest = test::ContentViewFixture;

TEST_F(ContentViewTest, AModalTakesTheFocusBack) {
    state().requestSelfUninstall();
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    button("Scan System")->forceActiveFocus();
    EXPECT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
}

TEST_F(ContentViewTest, DisablesEverythingUnderneathAModal) {
    const std::vector<QQuickItem*> underneath = buttons();
    ASSERT_GE(underneath.size(), 7U);
    QQuickItem* const scanButton = button("Scan System");
    ASSERT_NE(scanButton, nullptr);
    EXPECT_TRUE(scanButton->isEnabled());
    QAccessibleInterface* const ollama = find("Ollama");
    ASSERT_NE(ollama, nullptr);
    state().requestSelfUninstall();
    ASSERT_NE(find("Type the eight digit confirmation code manually"), nullptr);
    for (const QQuickItem* item : underneath) {
        EXPECT_FALSE(item->isEnabled()) << item->property("text").toString().toStdString();
    }
    // Nor can an assistive tool press what lies underneath.
    ASSERT_NE(ollama->actionInterface(), nullptr);
    ollama->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state().selectionCount(), QStringLiteral("0 selected"));
    // The modal's own: one is there for the taking, the other waits for the code.
    ASSERT_NE(button("Cancel"), nullptr);
    EXPECT_TRUE(button("Cancel")->isEnabled());
    EXPECT_FALSE(button("Uninstall Zentrill")->isEnabled());
    state().confirmation()->dismissModal();
    EXPECT_TRUE(scanButton->isEnabled());
    ollama->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state().selectionCount(), QStringLiteral("1 selected"));
}

TEST_F(ContentViewTest, TabNeverLeavesAModal) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    QSet<const QQuickItem*> visited;
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Tab, QStringLiteral("\t"));
        ASSERT_TRUE(focusIsInModal()) << step;
        visited.insert(view_->activeFocusItem());
    }
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Backtab, {}, Qt::ShiftModifier);
        ASSERT_TRUE(focusIsInModal()) << step;
        visited.insert(view_->activeFocusItem());
    }
    // The code field and "Cancel".
    EXPECT_EQ(visited.size(), 2);
}

TEST_F(ContentViewTest, StartsAConfirmationInTheCodeField) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil(
        [this] { return qobject_cast<ManualCodeTextView*>(view_->activeFocusItem()) != nullptr; }));
    press(Qt::Key_4, QStringLiteral("4"));
    press(Qt::Key_A, QStringLiteral("a"));
    press(Qt::Key_2, QStringLiteral("2"));
    EXPECT_EQ(state().confirmation()->confirmationInput(), QStringLiteral("42"));
}

TEST_F(ContentViewTest, LetsNoAssistiveToolWriteTheCode) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    QAccessibleInterface* const field = find("Type the eight digit confirmation code manually");
    ASSERT_NE(field, nullptr);
    press(Qt::Key_1, QStringLiteral("1"));
    ASSERT_EQ(field->text(QAccessible::Value), QStringLiteral("1"));
    field->setText(QAccessible::Value, state().confirmation()->confirmationCode());
    EXPECT_EQ(field->text(QAccessible::Value), QStringLiteral("1"));
    EXPECT_EQ(state().confirmation()->confirmationInput(), QStringLiteral("1"));
}

TEST_F(ContentViewTest, ConfirmsWithTheTypedCodeAndReturn) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_TRUE(state().confirmation()->isPending());
    for (const QChar digit : state().confirmation()->confirmationCode()) {
        press(digit.unicode(), QString(digit));
    }
    ASSERT_NE(button("Delete"), nullptr);
    EXPECT_TRUE(button("Delete")->isEnabled());
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_FALSE(state().confirmation()->isPending());
    ASSERT_TRUE(test::waitUntil([this] { return model_->showResultAlert(); }));
    EXPECT_NE(find("Container Removed"), nullptr);
    ASSERT_NE(button("OK"), nullptr);
    // What comes before the result can have been seen was meant for something else.
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_TRUE(model_->showResultAlert());
    ASSERT_TRUE(test::waitUntil([this] { return button("OK")->hasActiveFocus(); }));
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_FALSE(model_->showResultAlert());
}

TEST_F(ContentViewTest, DismissesAModalWithEscape) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    press(Qt::Key_1, QStringLiteral("1"));
    press(Qt::Key_Escape, QStringLiteral("\x1B"));
    EXPECT_FALSE(state().modalShown());
    EXPECT_FALSE(model_->isBusy());
    EXPECT_TRUE(test::waitUntil([this] { return view_->activeFocusItem() != nullptr && !focusIsInModal(); }));
    // The next one starts empty.
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    EXPECT_EQ(state().confirmation()->confirmationInput(), QString());
}

} // namespace
} // namespace zentrill
