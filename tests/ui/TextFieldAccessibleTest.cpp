#include "ViewFixture.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

/// The fields of the real window as assistive tools have them.
class TextFieldAccessibleTest : public test::ViewFixture {
protected:
    /// The line that a search is typed into, once the keyboard has opened it.
    [[nodiscard]] QAccessibleInterface* openSearch(const char* tab) {
        home_.makeFile(".lmstudio/models/one.gguf", "1");
        home_.makeFile(".lmstudio/models/two.gguf", "22");
        if (!open(tab)) {
            return nullptr;
        }
        QTest::keyClick(view_.get(), Qt::Key_F, Qt::ControlModifier);
        const auto line = [this] { return view_->activeFocusItem(); };
        return test::waitUntil([&] { return line()->inherits("QQuickTextInput"); })
                   ? QAccessible::queryAccessibleInterface(line())
                   : nullptr;
    }
};

TEST_F(TextFieldAccessibleTest, SearchesForWhatIsWritten) {
    QAccessibleInterface* const field = openSearch("models");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->role(), QAccessible::EditableText);
    EXPECT_EQ(field->text(QAccessible::Name), QStringLiteral("Search local models"));
    EXPECT_TRUE(field->state().editable);
    EXPECT_TRUE(field->state().focused);
    QAccessibleEditableTextInterface* const editing = field->editableTextInterface();
    ASSERT_NE(editing, nullptr);
    editing->replaceText(0, 100, QStringLiteral("one"));
    EXPECT_EQ(state().modelStrip()->needle(), QStringLiteral("one"));
    EXPECT_EQ(state().models()->rowCount(), 1);
    editing->insertText(0, QStringLiteral("tw"));
    editing->deleteText(3, -1);
    EXPECT_EQ(state().modelStrip()->needle(), QStringLiteral("two"));
    EXPECT_EQ(field->text(QAccessible::Value), QStringLiteral("two"));
    state().modelStrip()->setNeedle(QStringLiteral("one"));
    EXPECT_EQ(field->text(QAccessible::Value), QStringLiteral("one")) << "the field still follows";
}

TEST_F(TextFieldAccessibleTest, SearchesTheLogForWhatIsWritten) {
    QAccessibleInterface* const field = openSearch("console");
    ASSERT_NE(field, nullptr);
    ASSERT_NE(field->editableTextInterface(), nullptr);
    field->editableTextInterface()->replaceText(0, 0, QStringLiteral("scan"));
    EXPECT_EQ(state().logSearch()->needle(), QStringLiteral("scan"));
}

TEST_F(TextFieldAccessibleTest, TellsTextCaretAndSelection) {
    QAccessibleInterface* const field = openSearch("models");
    ASSERT_NE(field, nullptr);
    QAccessibleTextInterface* const text = field->textInterface();
    ASSERT_NE(text, nullptr);
    field->editableTextInterface()->insertText(0, QStringLiteral("gamma"));
    EXPECT_EQ(text->characterCount(), 5);
    EXPECT_EQ(text->cursorPosition(), 5);
    EXPECT_EQ(text->text(1, 3), QStringLiteral("am"));
    EXPECT_EQ(text->text(3, -1), QStringLiteral("ma"));
    EXPECT_EQ(text->text(3, 1), QString());
    EXPECT_EQ(text->selectionCount(), 0);
    text->setSelection(0, 1, 4);
    EXPECT_EQ(text->selectionCount(), 1);
    int start = -1;
    int end = -1;
    text->selection(0, &start, &end);
    EXPECT_EQ(start, 1);
    EXPECT_EQ(end, 4);
    text->removeSelection(0);
    EXPECT_EQ(text->selectionCount(), 0);
    text->setCursorPosition(2);
    EXPECT_EQ(text->cursorPosition(), 2);
    const QRect second = text->characterRect(1);
    EXPECT_GT(second.width(), 0);
    EXPECT_TRUE(field->rect().contains(second));
    EXPECT_EQ(text->offsetAtPoint(second.center()), 1);
    EXPECT_EQ(text->offsetAtPoint(field->rect().bottomRight() + QPoint(50, 50)), -1);
}

TEST_F(TextFieldAccessibleTest, StaysAsItIsBelowAModal) {
    QAccessibleInterface* const field = openSearch("models");
    ASSERT_NE(field, nullptr);
    state().requestModelDeletion(0);
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("zentrill::ManualCodeTextView").empty(); }));
    field->editableTextInterface()->replaceText(0, 0, QStringLiteral("one"));
    EXPECT_EQ(state().modelStrip()->needle(), QString());
    QAccessibleInterface* const code =
        QAccessible::queryAccessibleInterface(ofType("zentrill::ManualCodeTextView").front());
    ASSERT_NE(code, nullptr);
    EXPECT_EQ(code->editableTextInterface(), nullptr) << "only keys write into the code's field";
}

} // namespace
} // namespace zentrill
