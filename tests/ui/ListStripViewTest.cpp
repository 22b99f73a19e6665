#include "ViewFixture.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

/// The strip and its list in the real window.
class ListStripViewTest : public test::ViewFixture {
protected:
    void addModels(int count) {
        for (int number = 0; number < count; ++number) {
            home_.makeFile(".lmstudio/models/model" + std::to_string(number) + ".gguf",
                           std::string(static_cast<std::size_t>((number * 37) % 211 + 1), 'g'));
        }
    }

    /// What the rows in sight say of themselves, from the top down.
    [[nodiscard]] QStringList rows() const {
        std::vector<QQuickItem*> found = ofType("LocalModelRowView");
        std::ranges::sort(found, {}, [](const QQuickItem* row) { return place(*row).y(); });
        QStringList names;
        for (const QQuickItem* row : found) {
            names.append(row->property("name").toString());
        }
        return names;
    }

    [[nodiscard]] QString modelName(int row) const {
        const QAbstractItemModel& model = *state().models();
        return model.data(model.index(row, 0), model.roleNames().key("name")).toString();
    }
};

TEST_F(ListStripViewTest, SearchesFromTheKeyboard) {
    addModels(30);
    ASSERT_TRUE(open("models"));
    ASSERT_TRUE(test::waitUntil([this] { return !rows().isEmpty(); }));
    EXPECT_TRUE(ofType("SearchField").empty()) << "nothing is loaded before it is wanted";
    QTest::keyClick(view_.get(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("SearchField").empty(); }));
    for (const char key : {'l', '2', '9'}) {
        QTest::keyClick(view_.get(), key);
    }
    EXPECT_EQ(state().modelStrip()->needle(), QStringLiteral("l29"));
    EXPECT_NE(text(QStringLiteral("1 of 30 shown")), nullptr);
    ASSERT_TRUE(test::waitUntil([this] { return rows() == QStringList{QStringLiteral("model29.gguf")}; }));
    QTest::keyClick(view_.get(), Qt::Key_Down);
    EXPECT_TRUE(test::waitUntil([this] {
        return view_->activeFocusItem()->property("name").toString() == QLatin1String("model29.gguf");
    }));
    QTest::keyClick(view_.get(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(view_.get(), 'z');
    EXPECT_NE(text(QStringLiteral("No model of that name.")), nullptr);
    EXPECT_EQ(text(QStringLiteral("No local models detected.")), nullptr);
    QTest::keyClick(view_.get(), Qt::Key_Escape);
    EXPECT_EQ(state().modelStrip()->needle(), QString());
    EXPECT_TRUE(test::waitUntil([this] { return rows().size() > 5; }));
    EXPECT_TRUE(ofType("SearchField").empty());
}

TEST_F(ListStripViewTest, EveryRowInSightActsOnWhatItShows) {
    addModels(200);
    ASSERT_TRUE(open("models"));
    ASSERT_TRUE(test::waitUntil([this] { return rows().size() > 5; }));
    for (const int order : {1, 2, 1, 0}) {
        state().modelStrip()->setOrder(order);
        ASSERT_TRUE(test::waitUntil([this] { return !rows().isEmpty() && rows().front() == modelName(0); }));
        for (QQuickItem* button : ofType("ActionButton", "text", QStringLiteral("Delete"))) {
            std::vector<QQuickItem*> around = ofType("LocalModelRowView");
            std::erase_if(around, [&](const QQuickItem* row) { return !row->isAncestorOf(button); });
            ASSERT_EQ(around.size(), 1U);
            const QString shown = around.front()->property("name").toString();
            ASSERT_TRUE(QMetaObject::invokeMethod(button, "click"));
            EXPECT_EQ(state().confirmation()->title(), QStringLiteral("Delete %1?").arg(shown));
            state().confirmation()->dismissModal();
        }
    }
}

TEST_F(ListStripViewTest, FitsTheSmallestWindow) {
    addModels(3);
    ASSERT_TRUE(open("models"));
    ASSERT_TRUE(test::waitUntil([this] { return !rows().isEmpty(); }));
    QTest::keyClick(view_.get(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("SearchField").empty(); }));
    const QQuickItem* const summary = text(state().modelStrip()->summary());
    ASSERT_NE(summary, nullptr);
    const QQuickItem* const showAll = ofType("ActionButton", "text", QStringLiteral("Show All")).front();
    // The line is laid out before the next frame.
    ASSERT_TRUE(test::waitUntil(
        [&] { return place(*ofType("SearchField").front()).right() < place(*showAll).left(); }));
    // Room for the longest of it.
    EXPECT_GE(place(*ofType("SearchField").front()).left() - place(*summary).left(), 170);
    EXPECT_LE(place(*showAll).right(), place(*ofType("OrderChoice").front()).left());
    EXPECT_LE(place(*ofType("OrderChoice").front()).right(), 880);
}

/// A desktop that tiles its windows does not ask for the smallest size.
TEST_F(ListStripViewTest, TakesTwoLinesWhereOneIsTooNarrow) {
    addModels(3);
    ASSERT_TRUE(open("models"));
    ASSERT_TRUE(test::waitUntil([this] { return !rows().isEmpty(); }));
    const double oneLine = place(*ofType("ListStrip").front()).height();
    QTest::keyClick(view_.get(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("SearchField").empty(); }));
    EXPECT_EQ(place(*ofType("ListStrip").front()).height(), oneLine);
    view_->setMinimumSize({});
    view_->resize(640, 650);
    const QQuickItem* const strip = ofType("ListStrip").front();
    ASSERT_TRUE(test::waitUntil([&] { return strip->height() > oneLine; }));
    const QRectF field = place(*ofType("SearchField").front());
    const QRectF summary = place(*text(state().modelStrip()->summary()));
    const QRectF orders = place(*ofType("OrderChoice").front());
    EXPECT_GE(field.left(), place(*strip).left());
    EXPECT_GE(field.width(), 180);
    EXPECT_LT(field.bottom(), orders.top());
    EXPECT_LT(summary.right(), orders.left());
    EXPECT_LE(orders.right(), 640);
    EXPECT_LE(place(*ofType("RecordList").front()).bottom(), place(*strip).top());
    state().modelStrip()->setSearching(false);
    EXPECT_TRUE(test::waitUntil([&] { return strip->height() == oneLine; }));
}

TEST_F(ListStripViewTest, SearchesTheLogWithoutLeavingThePane) {
    ASSERT_TRUE(open("console"));
    QTest::keyClick(view_.get(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(test::waitUntil([this] { return !ofType("SearchField").empty(); }));
    view_->setMinimumSize({});
    for (const int width : {640, 900, 950, 1200}) {
        view_->resize(width, 650);
        ASSERT_TRUE(test::waitUntil([&] { return view_->rootObject()->width() == width; }));
        state().logSearch()->setNeedle(QStringLiteral("scan"));
        ASSERT_TRUE(test::waitUntil([this] { return state().logSearch()->findsAny(); }));
        const QRectF field = place(*ofType("SearchField").front());
        const QQuickItem* const count = text(state().logSearch()->countText());
        ASSERT_NE(count, nullptr);
        EXPECT_GE(field.left(), place(*ofType("LineListView").front()).left()) << width;
        EXPECT_FALSE(count->property("truncated").toBool()) << width;
        EXPECT_FALSE(field.intersects(place(*count))) << width;
    }
}

} // namespace
} // namespace zentrill
