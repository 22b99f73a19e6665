#include "ViewFixture.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class ModalAppearanceTest : public test::ViewFixture {
protected:
    /// The list of that accessible name in sight.
    [[nodiscard]] QQuickItem* list(const char* name) const {
        for (QQuickItem* item : ofType("LineListView")) {
            const QAccessibleInterface* element = QAccessible::queryAccessibleInterface(item);
            if (element != nullptr && element->text(QAccessible::Name) == QLatin1String(name)) {
                return item;
            }
        }
        return nullptr;
    }

    [[nodiscard]] QQuickItem* drawnText(const char* content) const {
        QQuickItem* found = nullptr;
        EXPECT_TRUE(test::waitUntil([&] {
            found = text(QString::fromLatin1(content));
            return found != nullptr;
        }));
        EXPECT_FALSE(view_->grabWindow().isNull());
        return found;
    }
};

TEST_F(ModalAppearanceTest, TheErrorsScrollBeyond290Points) {
    ASSERT_TRUE(open("console"));
    std::string message = "refused\nErrors:\n";
    for (int line = 0; line < 60; ++line) {
        message += "what went wrong with number " + std::to_string(line) + "\n";
    }
    ASSERT_TRUE(showResult(message));
    ASSERT_NE(drawnText("Could not stop web: refused"), nullptr);
    ASSERT_NE(list("Errors"), nullptr);
    EXPECT_EQ(list("Errors")->height(), 290);
    const std::vector<QQuickItem*> cards = ofType("ResultModalContents");
    ASSERT_FALSE(cards.empty());
    EXPECT_TRUE(QRectF(0, 0, 900, 650).contains(place(*cards.front())));
}

TEST_F(ModalAppearanceTest, ALongMessageLeavesTheErrorsTheirRoom) {
    ASSERT_TRUE(open("console"));
    std::string message;
    for (int line = 0; line < 60; ++line) {
        message += "a line of the message\n";
    }
    message += "Errors:\n";
    for (int line = 0; line < 60; ++line) {
        message += "what went wrong\n";
    }
    ASSERT_TRUE(showResult(message));
    ASSERT_NE(drawnText("a line of the message"), nullptr);
    EXPECT_EQ(list("Errors")->height(), 290);
    EXPECT_GE(list("Message")->height(), 60);
    EXPECT_TRUE(QRectF(0, 0, 900, 650).contains(place(*ofType("ResultModalContents").front())));
}

TEST_F(ModalAppearanceTest, AListIsSetOffFromItsHeading) {
    ASSERT_TRUE(open("console"));
    ASSERT_TRUE(showResult("summary\nWhat remains:\n/home/a/path\n/home/another/path"));
    const QQuickItem* const summary = drawnText("Could not stop web: summary");
    const QQuickItem* const heading = drawnText("What remains:");
    const QQuickItem* const first = drawnText("/home/a/path");
    const QQuickItem* const second = drawnText("/home/another/path");
    ASSERT_TRUE(summary != nullptr && heading != nullptr && first != nullptr && second != nullptr);
    EXPECT_EQ(place(*heading).left(), place(*summary).left());
    EXPECT_GE(place(*first).left(), place(*heading).left() + 12);
    EXPECT_EQ(place(*second).left(), place(*first).left());
    const qreal step = place(*second).top() - place(*first).top();
    EXPECT_GE(place(*heading).top() - place(*summary).top(), step + 6);
}

TEST_F(ModalAppearanceTest, TheOutcomesIconIsNamed) {
    ASSERT_TRUE(open("console"));
    ASSERT_TRUE(showResult("refused"));
    const std::vector<QQuickItem*> icons = ofType("zentrill::Icon", "name", QStringLiteral("xmark.circle"));
    ASSERT_FALSE(icons.empty());
    QAccessibleInterface* const icon = QAccessible::queryAccessibleInterface(icons.front());
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->text(QAccessible::Name), QStringLiteral("ERRORS"));
}

TEST_F(ModalAppearanceTest, ALongMessageOfAConfirmationScrolls) {
    std::string folders = ".lmstudio/models/org";
    for (int depth = 0; depth < 30; ++depth) {
        folders +=
            "/a-folder-with-quite-a-long-name-so-that-the-message-gets-long-as-well-" + std::to_string(depth);
    }
    home_.makeFile(folders + "/model.gguf", "123");
    ASSERT_TRUE(open("models"));
    state().requestModelDeletion(0);
    std::vector<QQuickItem*> messages;
    ASSERT_TRUE(test::waitUntil([&] {
        messages = ofType("ScrollingText");
        return !messages.empty();
    }));
    QQuickItem& message = *messages.front();
    ASSERT_FALSE(view_->grabWindow().isNull());
    EXPECT_TRUE(QRectF(0, 0, 900, 650).contains(place(*ofType("ConfirmationModal").front())));
    EXPECT_LT(message.height(), message.implicitHeight());
    EXPECT_TRUE(message.activeFocusOnTab());
    std::vector<QQuickItem*> bars = ofType("ThinScrollBar");
    std::erase_if(bars, [&](const QQuickItem* bar) { return bar->parentItem() != &message; });
    EXPECT_EQ(bars.size(), 1U);

    // From the code's field the keys that it has no use for scroll, too.
    const auto at = [&] {
        return text(state().confirmation()->message())->mapToItem(&message, QPointF()).y();
    };
    EXPECT_EQ(at(), 0);
    QTest::keyClick(view_.get(), Qt::Key_PageDown);
    EXPECT_LT(at(), -50);
    message.forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(view_.get(), Qt::Key_End);
    EXPECT_NEAR(at(), message.height() - message.implicitHeight(), 1);
    QTest::keyClick(view_.get(), Qt::Key_Home);
    EXPECT_EQ(at(), 0);
}

TEST_F(ModalAppearanceTest, AShortMessageOfAConfirmationIsNoTabStop) {
    ASSERT_TRUE(open("console"));
    state().requestSelfUninstall();
    std::vector<QQuickItem*> messages;
    ASSERT_TRUE(test::waitUntil([&] {
        messages = ofType("ScrollingText");
        return !messages.empty();
    }));
    ASSERT_FALSE(view_->grabWindow().isNull());
    EXPECT_EQ(messages.front()->height(), messages.front()->implicitHeight());
    EXPECT_FALSE(messages.front()->activeFocusOnTab());
}

TEST_F(ModalAppearanceTest, ANoticeOfSeveralLinesIsReadFromTheLeft) {
    locator_->set("/opt/docker");
    for (const auto& [answer, alignment] : {std::pair("no answer", Qt::AlignHCenter),
                                            std::pair("no answer\nUsage: something else", Qt::AlignLeft)}) {
        answer_ = [said = answer](const test::FakeCommandRunner::Call&) { return test::failed(1, said); };
        if (view_ == nullptr) {
            ASSERT_TRUE(open("containers"));
        } else {
            model_->scanSystem();
            ASSERT_TRUE(test::waitUntil([this] { return !model_->isBusy(); }));
        }
        QQuickItem* const detail = drawnText(model_->dockerStatusMessage().toUtf8().constData());
        ASSERT_NE(detail, nullptr);
        EXPECT_EQ(detail->property("horizontalAlignment").toInt(), alignment) << answer;
        // The block as a whole stands in the middle of its pane.
        const std::vector<QQuickItem*> notices = ofType("EmptyState");
        ASSERT_FALSE(notices.empty());
        EXPECT_NEAR(place(*detail).center().x(), place(*notices.front()).center().x(), 1);
    }
}

} // namespace
} // namespace zentrill
