#include "support/EventLoop.h"
#include "ui/ContentView.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

constexpr QSizeF windowSize{900, 650};
constexpr qreal edge = 8;

/// A window with one thing in it that wants its tooltip.
class TooltipTest : public ::testing::Test {
protected:
    TooltipTest() {
        view_.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
        view_.setResizeMode(QQuickView::SizeRootObjectToView);
        view_.resize(windowSize.toSize());
        QQmlComponent component(view_.engine());
        component.setData("import QtQuick\n"
                          "import Zentrill\n"
                          "Item {\n"
                          "    Rectangle {\n"
                          "        objectName: \"owner\"\n"
                          "        TipLoader { objectName: \"tip\"; text: \"\"; wanted: false }\n"
                          "    }\n"
                          "}\n",
                          QUrl(QStringLiteral("qrc:/qt/qml/Zentrill/TooltipTest.qml")));
        QObject* const root = component.create();
        EXPECT_NE(root, nullptr) << component.errorString().toStdString();
        view_.setContent({}, &component, root);
        owner_ = view_.rootObject()->findChild<QQuickItem*>(QStringLiteral("owner"));
        loader_ = view_.rootObject()->findChild<QQuickItem*>(QStringLiteral("tip"));
        view_.show();
    }

    /// Shows the tooltip of something at that place and returns what draws its text.
    QQuickItem* show(const QRectF& place, const QString& text) {
        owner_->setPosition(place.topLeft());
        owner_->setSize(place.size());
        loader_->setProperty("wanted", false);
        loader_->setProperty("text", text);
        loader_->setProperty("wanted", true);
        QQuickItem* label = nullptr;
        EXPECT_TRUE(test::waitUntil([&] {
            label = find(view_.contentItem(), text);
            return label != nullptr;
        }));
        return label;
    }

    /// The plate lies in the window, away from its owner, and holds the whole of the text.
    void expectInPlace(const QQuickItem& label) const {
        const QRectF plate = place(*label.parentItem());
        const QRectF text = place(label);
        EXPECT_TRUE(plate.contains(text)) << label.property("text").toString().left(40).toStdString();
        EXPECT_GE(label.height(), label.property("contentHeight").toReal());
        EXPECT_GE(label.width(), label.property("contentWidth").toReal());
        EXPECT_TRUE(QRectF({}, windowSize).adjusted(edge, edge, -edge, -edge).contains(plate));
        EXPECT_FALSE(plate.intersects(place(*owner_)));
    }

    /// Whether that text goes out of sight, which takes no longer than a frame or two.
    [[nodiscard]] bool goes(const QString& text) {
        return test::waitUntil(
            [&] {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                return find(view_.contentItem(), text) == nullptr;
            },
            std::chrono::seconds(5));
    }

    [[nodiscard]] static QRectF place(const QQuickItem& item) {
        return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
    }

    static QQuickItem* find(QQuickItem* item, const QString& text) {
        if (!item->isVisible()) {
            return nullptr;
        }
        if (item->inherits("QQuickText") && item->property("text").toString() == text) {
            return item;
        }
        for (QQuickItem* child : item->childItems()) {
            if (QQuickItem* const found = find(child, text)) {
                return found;
            }
        }
        return nullptr;
    }

    QQuickView view_;
    QQuickItem* owner_ = nullptr;
    QQuickItem* loader_ = nullptr;
};

const QRectF middle(300, 200, 120, 30);

TEST_F(TooltipTest, HoldsAShortText) {
    const QQuickItem* const label = show(middle, QStringLiteral("Remove this exact image ID without force."));
    ASSERT_NE(label, nullptr);
    expectInPlace(*label);
    EXPECT_EQ(label->property("lineCount").toInt(), 1);
    // A line of its own height and some room above and below.
    EXPECT_GE(place(*label->parentItem()).height(), 24);
}

TEST_F(TooltipTest, BreaksALongText) {
    const QQuickItem* const label = show(middle, QStringLiteral("a name without any space ").repeated(12));
    ASSERT_NE(label, nullptr);
    expectInPlace(*label);
    EXPECT_GT(label->property("lineCount").toInt(), 2);
    EXPECT_FALSE(label->property("truncated").toBool());
}

TEST_F(TooltipTest, BreaksATextWithoutSpaces) {
    const QQuickItem* const label = show(middle, QStringLiteral("ab/").repeated(100));
    ASSERT_NE(label, nullptr);
    expectInPlace(*label);
    EXPECT_FALSE(label->property("truncated").toBool());
}

TEST_F(TooltipTest, ShowsEveryLineOfAText) {
    const QQuickItem* const label = show(middle, QStringLiteral("one\ntwo\nthree\nfour"));
    ASSERT_NE(label, nullptr);
    expectInPlace(*label);
    EXPECT_EQ(label->property("lineCount").toInt(), 4);
    EXPECT_LT(place(*label->parentItem()).width(), 60);
}

TEST_F(TooltipTest, CutsATextForWhichThereIsNoRoom) {
    for (const QString& text :
         {QStringLiteral("word ").repeated(4000), QStringLiteral("line\n").repeated(500)}) {
        const QQuickItem* const label = show(middle, text);
        ASSERT_NE(label, nullptr);
        expectInPlace(*label);
        EXPECT_TRUE(label->property("truncated").toBool());
        EXPECT_GT(label->property("lineCount").toInt(), 10);
    }
}

TEST_F(TooltipTest, StaysInTheWindowAndOffItsOwner) {
    const QString texts[] = {QStringLiteral("short"), QStringLiteral("a longer text ").repeated(20)};
    const QRectF places[] = {{2, 2, 60, 20},     {838, 2, 60, 20},   {2, 628, 60, 20},
                             {838, 628, 60, 20}, {20, 300, 860, 20}, {400, 590, 100, 40}};
    for (const QRectF& place : places) {
        for (const QString& text : texts) {
            SCOPED_TRACE(testing::Message() << place.x() << ' ' << place.y() << ' ' << text.size());
            const QQuickItem* const label = show(place, text);
            ASSERT_NE(label, nullptr);
            expectInPlace(*label);
        }
    }
}

TEST_F(TooltipTest, GoesWithWhatItBelongsTo) {
    const QString text = QStringLiteral("short");
    ASSERT_NE(show(middle, text), nullptr);
    owner_->setVisible(false);
    EXPECT_TRUE(goes(text));
    owner_->setVisible(true);
    ASSERT_NE(show(middle, text), nullptr);
    owner_->setEnabled(false);
    EXPECT_TRUE(goes(text));
}

} // namespace
} // namespace zentrill
