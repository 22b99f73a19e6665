#include "ViewFixture.h"
#include "ui/WarmPalette.h"

#include <QAccessible>
#include <gtest/gtest.h>

#include <algorithm>

namespace zentrill {
namespace {

/// The palette's colours drawn over each other: `above` at `opacity` on `ground`.
QColor over(const QColor& ground, const QColor& above, double opacity) {
    const auto mixed = [&](int below, int top) { return qRound(below + (top - below) * opacity); };
    return {mixed(ground.red(), above.red()), mixed(ground.green(), above.green()),
            mixed(ground.blue(), above.blue())};
}

int difference(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
           std::abs(one.blue() - other.blue());
}

class RowAppearanceTest : public test::ViewFixture {
protected:
    /// A running container, two that ended, one of them of a long image name, and an image of an unknown use.
    void playManyContainers() {
        playDocker();
        answer_ = [others = answer_](const test::FakeCommandRunner::Call& call) {
            const std::string command = ::testing::PrintToString(call.arguments);
            if (command.find("container") != std::string::npos &&
                command.find("inspect") == std::string::npos) {
                return test::ok(
                    R"({"ID":"c1","Names":"web","Image":"web:1","Status":"Up 3 minutes"})"
                    "\n"
                    R"({"ID":"c2","Names":"old","Image":"registry.example.org/organisation/service:1","Status":"Exited (0) 2 hours ago"})"
                    "\n"
                    R"({"ID":"c3","Names":"long","Image":"registry.example.org/a-long-organisation/a-service-with-a-very-long-name:2025.11.21-ubuntu22.04","Status":"Exited (137) 2 hours ago"})"
                    "\n");
            }
            return others(call);
        };
    }

    /// Once that text is there and everything has found its place.
    [[nodiscard]] bool drawn(const char* content) const {
        return test::waitUntil([&] { return text(QString::fromLatin1(content)) != nullptr; }) &&
               !view_->grabWindow().isNull();
    }

    [[nodiscard]] bool openModels() {
        home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
        return open("models") && drawn("pub/foo.gguf");
    }

    [[nodiscard]] bool openDocker(QSize size = {900, 650}) {
        playManyContainers();
        return open("containers", size) && drawn("long");
    }

    void expectTilesAndTagsToStandOut(std::size_t count) const {
        const std::vector<QQuickItem*> tiles = ofType("IconTile");
        const std::vector<QQuickItem*> tags = ofType("Tag");
        ASSERT_GE(tiles.size(), count);
        ASSERT_GE(tags.size(), count);
        // The row's own ground is beside them.
        for (std::size_t index = 0; index < count; ++index) {
            const QQuickItem& tile = *tiles[index];
            EXPECT_EQ(tile.size(), QSizeF(44, 44));
            EXPECT_EQ(pixel(tile, {6, 6}), palette_.row);
            EXPECT_GE(difference(pixel(tile, {-4, 22}), palette_.row), 30);
            const QQuickItem& tag = *tags[index];
            EXPECT_EQ(pixel(tag, {3, tag.height() / 2}), palette_.row);
            EXPECT_GE(difference(pixel(tag, {-4, tag.height() / 2}), palette_.row), 30);
        }
    }

    const WarmPalette palette_;
};

TEST_F(RowAppearanceTest, TilesAndTagsOfModelsStandOutFromTheirRows) {
    ASSERT_TRUE(openModels());
    expectTilesAndTagsToStandOut(1);
}

TEST_F(RowAppearanceTest, TilesAndTagsOfDockerStandOutFromTheirRows) {
    ASSERT_TRUE(openDocker());
    expectTilesAndTagsToStandOut(3);
}

TEST_F(RowAppearanceTest, TheDeleteButtonIsTintedByAQuarter) {
    ASSERT_TRUE(openModels());
    const std::vector<QQuickItem*> buttons = ofType("ActionButton", "text", QStringLiteral("Delete"));
    ASSERT_FALSE(buttons.empty());
    const QColor ground = pixel(*buttons.front(), {-4, 15});
    const QColor wanted = over(ground, palette_.danger, 0.25);
    EXPECT_LE(difference(pixel(*buttons.front(), {6, 15}), wanted), 3);
}

TEST_F(RowAppearanceTest, TheStatesOfAllContainersStandInOneColumn) {
    ASSERT_TRUE(openDocker());
    const QQuickItem* const running = text(QStringLiteral("Up 3 minutes"));
    ASSERT_NE(running, nullptr);
    for (const char* state : {"Exited (0) 2 hours ago", "Exited (137) 2 hours ago"}) {
        const QQuickItem* const other = text(QString::fromLatin1(state));
        ASSERT_NE(other, nullptr) << state;
        EXPECT_EQ(place(*other).left(), place(*running).left()) << state;
        EXPECT_FALSE(other->property("truncated").toBool()) << state;
    }
    const QQuickItem* const image = text(QStringLiteral("web:1"));
    ASSERT_NE(image, nullptr);
    EXPECT_GE(image->width(), 150);
}

TEST_F(RowAppearanceTest, TheStateOfARunningContainerStandsBeforeItsButtonsInANarrowWindow) {
    ASSERT_TRUE(openDocker({640, 450}));
    const QQuickItem* const running = text(QStringLiteral("Up 3 minutes"));
    const std::vector<QQuickItem*> stops = ofType("ActionButton", "text", QStringLiteral("Stop"));
    ASSERT_NE(running, nullptr);
    ASSERT_FALSE(stops.empty());
    EXPECT_LT(place(*running->parentItem()).right(), place(*stops.front()).left());
    EXPECT_GT(running->width(), 30);
    const QQuickItem* const ended = text(QStringLiteral("Exited (0) 2 hours ago"));
    ASSERT_NE(ended, nullptr);
    EXPECT_EQ(place(*ended).left(), place(*running).left());
}

TEST_F(RowAppearanceTest, TheEndOfAListHasItsMargin) {
    for (int number = 0; number < 40; ++number) {
        home_.makeFile(".lmstudio/models/pub/foo" + std::to_string(number) + ".gguf", "123");
    }
    ASSERT_TRUE(open("models") && drawn("LM Studio (GGUF)"));
    const std::vector<QQuickItem*> lists = ofType("RecordList");
    ASSERT_EQ(lists.size(), 1U);
    lists.front()->forceActiveFocus();
    QTest::keyClick(view_.get(), Qt::Key_End);
    const auto lowest = [&] {
        qreal bottom = 0;
        for (const QQuickItem* row : ofType("LocalModelRowView")) {
            bottom = std::max(bottom, place(*row).bottom());
        }
        return bottom;
    };
    const qreal end = place(*lists.front()).bottom();
    EXPECT_TRUE(test::waitUntil([&] { return lowest() > end - 20; }));
    EXPECT_NEAR(end - lowest(), lists.front()->property("bottomMargin").toReal(), 1);
}

TEST_F(RowAppearanceTest, AnElidedImageNameFillsItsColumn) {
    ASSERT_TRUE(openDocker());
    const QQuickItem* const image = text(QStringLiteral(
        "registry.example.org/a-long-organisation/a-service-with-a-very-long-name:2025.11.21-ubuntu22.04"));
    const QQuickItem* const status = text(QStringLiteral("Exited (137) 2 hours ago"));
    ASSERT_NE(image, nullptr);
    ASSERT_NE(status, nullptr);
    ASSERT_TRUE(image->property("truncated").toBool());
    // The next character would not have fitted any more, and the tag follows at the distance of the columns.
    EXPECT_GE(image->property("contentWidth").toReal(), image->width() - 12);
    EXPECT_NEAR(place(*status->parentItem()).left() - place(*image).right(), 10, 0.5);
}

TEST_F(RowAppearanceTest, TheButtonsOfARowAreOfOneWeight) {
    ASSERT_TRUE(openDocker());
    const std::vector<QQuickItem*> stops = ofType("ActionButton", "text", QStringLiteral("Stop"));
    const std::vector<QQuickItem*> deletes = ofType("ActionButton", "text", QStringLiteral("Delete"));
    ASSERT_FALSE(stops.empty());
    ASSERT_FALSE(deletes.empty());
    EXPECT_EQ(stops.front()->property("font"), deletes.front()->property("font"));
    EXPECT_EQ(stops.front()->property("iconSize").toReal(), 12);
    EXPECT_EQ(deletes.front()->property("iconSize").toReal(), 12);
}

TEST_F(RowAppearanceTest, AButtonThatCannotBePressedIsDimmed) {
    ASSERT_TRUE(openDocker());
    const std::vector<QQuickItem*> stops = ofType("ActionButton", "text", QStringLiteral("Stop"));
    ASSERT_FALSE(stops.empty());
    QQuickItem& stop = *stops.front();
    EXPECT_EQ(pixel(stop, {6, 15}), palette_.copper);
    const QColor ground = pixel(stop, {-4, 15});
    stop.setProperty("enabled", false);
    EXPECT_LE(difference(pixel(stop, {6, 15}), over(ground, palette_.copper, 0.45)), 3);
}

TEST_F(RowAppearanceTest, TheWarningsIconIsOfTheSizeOfItsText) {
    playDocker();
    answer_ = [others = answer_](const test::FakeCommandRunner::Call& call) {
        const std::string command = ::testing::PrintToString(call.arguments);
        return command.find("inspect") != std::string::npos ? test::failed(1, "no") : others(call);
    };
    ASSERT_TRUE(open("containers"));
    std::vector<QQuickItem*> signs;
    ASSERT_TRUE(test::waitUntil([&] {
        signs = ofType("zentrill::Icon", "name", QStringLiteral("exclamationmark.triangle.fill"));
        return !signs.empty();
    }));
    EXPECT_EQ(signs.front()->property("size").toReal(), 12);
}

TEST_F(RowAppearanceTest, AnApplicationsValueSaysWhetherItIsSelected) {
    home_.makeDirectory(".ollama");
    ASSERT_TRUE(open("apps"));
    QQuickItem* row = nullptr;
    ASSERT_TRUE(test::waitUntil([&] {
        const std::vector<QQuickItem*> rows = ofType("AppRowView", "displayName", QStringLiteral("Ollama"));
        row = rows.empty() ? nullptr : rows.front();
        return row != nullptr;
    }));
    QAccessibleInterface* const element = QAccessible::queryAccessibleInterface(row);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(element->text(QAccessible::Value), QStringLiteral("Not selected"));
    model_->setAppSelected("Ollama", true);
    EXPECT_EQ(element->text(QAccessible::Value), QStringLiteral("Selected"));
    // Other buttons have no value.
    const std::vector<QQuickItem*> tabs = ofType("SidebarItem");
    ASSERT_FALSE(tabs.empty());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(tabs.front())->text(QAccessible::Value), QString());
}

} // namespace
} // namespace zentrill
