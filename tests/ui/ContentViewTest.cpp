#include "ui/ContentView.h"

#include "ContentViewFixture.h"

#include <QKeyEvent>
#include <QQuickItem>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

using ContentViewTest = test::ContentViewFixture;

TEST_F(ContentViewTest, LoadsWithoutAWarning) {
    EXPECT_EQ(view_->status(), QQuickView::Ready);
    EXPECT_EQ(view_->minimumSize(), QSize(900, 650));
    EXPECT_EQ(&view_->controller(), model_);
}

TEST_F(ContentViewTest, ShowsEveryPane) {
    const std::pair<const char*, const char*> panes[] = {{"apps", "Ollama"},
                                                         {"models", "pub/foo.gguf"},
                                                         {"containers", "Stop web"},
                                                         {"console", "Activity log"}};
    for (const auto& [tab, element] : panes) {
        state().setSelectedTab(QString::fromLatin1(tab));
        EXPECT_NE(find(element), nullptr) << tab;
        EXPECT_NE(find(state().title().toStdString()), nullptr) << tab;
        EXPECT_FALSE(view_->grabWindow().isNull());
    }
    state().setSelectedTab(QStringLiteral("elsewhere"));
    EXPECT_NE(find("Execution Console Logs"), nullptr);
}

TEST_F(ContentViewTest, MovesBetweenTheTabsWithTheArrowKeys) {
    button("Applications")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    EXPECT_EQ(state().selectedTab(), QStringLiteral("models"));
    EXPECT_TRUE(button("Local Models")->hasActiveFocus());
    press(Qt::Key_Up);
    EXPECT_EQ(state().selectedTab(), QStringLiteral("apps"));
    EXPECT_TRUE(button("Applications")->property("visualFocus").toBool());
}

TEST_F(ContentViewTest, MarksTheFocusWhileTheKeyboardIsUsed) {
    QQuickItem* const scanButton = button("Scan System");
    const auto marked = [&] { return scanButton->property("visualFocus").toBool(); };
    // However the focus came there.
    scanButton->forceActiveFocus(Qt::OtherFocusReason);
    EXPECT_FALSE(marked());
    press(Qt::Key_Shift);
    EXPECT_TRUE(marked());
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, QPointF(300, 40), QPointF(300, 40), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(view_.get(), &event);
    }
    EXPECT_TRUE(scanButton->hasActiveFocus());
    EXPECT_FALSE(marked());
}

} // namespace
} // namespace zentrill
