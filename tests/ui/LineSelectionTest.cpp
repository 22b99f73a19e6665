#include "ui/models/LineSelection.h"

#include "UiFixture.h"
#include "ui/models/FixedLinesModel.h"
#include "ui/models/LogListModel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class LineSelectionTest : public ::testing::Test {
protected:
    LineSelectionTest() {
        lines_.setLines({QStringLiteral("first line"), QString(), QStringLiteral("third"),
                         QStringLiteral("the fourth line")});
    }

    FixedLinesModel lines_;
    LineSelection selection_{lines_};
};

TEST_F(LineSelectionTest, IsEmptyAtFirst) {
    EXPECT_TRUE(selection_.isEmpty());
    EXPECT_EQ(selection_.text(), QString());
    EXPECT_EQ(selection_.startIn(0), selection_.endIn(0));
}

TEST_F(LineSelectionTest, ReachesAcrossRows) {
    selection_.begin(0, 6);
    selection_.extend(3, 3);
    EXPECT_EQ(selection_.text(), QStringLiteral("line\n\nthird\nthe"));
    EXPECT_EQ(selection_.startIn(0), 6);
    EXPECT_EQ(selection_.endIn(0), 10);
    EXPECT_EQ(selection_.startIn(2), 0);
    EXPECT_EQ(selection_.endIn(2), 5);
    EXPECT_EQ(selection_.startIn(3), 0);
    EXPECT_EQ(selection_.endIn(3), 3);
}

TEST_F(LineSelectionTest, ReachesBackwards) {
    selection_.begin(3, 3);
    selection_.extend(2, 2);
    EXPECT_EQ(selection_.text(), QStringLiteral("ird\nthe"));
    EXPECT_EQ(selection_.startIn(0), selection_.endIn(0));
    selection_.extend(3, 10);
    EXPECT_EQ(selection_.text(), QStringLiteral(" fourth"));
}

TEST_F(LineSelectionTest, SelectsTheWordUnderThePointer) {
    selection_.selectWord(3, 6);
    EXPECT_EQ(selection_.text(), QStringLiteral("fourth"));
    selection_.selectWord(0, 0);
    EXPECT_EQ(selection_.text(), QStringLiteral("first"));
}

TEST_F(LineSelectionTest, SelectsTheLastWordBeyondTheEndOfALine) {
    selection_.selectWord(0, 1000);
    EXPECT_EQ(selection_.text(), QStringLiteral("line"));
}

TEST_F(LineSelectionTest, SelectsNoWordWhereThereIsNone) {
    selection_.selectWord(1, 0);
    EXPECT_TRUE(selection_.isEmpty());
    selection_.selectWord(17, 0);
    EXPECT_TRUE(selection_.isEmpty());
}

TEST_F(LineSelectionTest, SelectsEverything) {
    selection_.selectAll();
    EXPECT_EQ(selection_.text(), QStringLiteral("first line\n\nthird\nthe fourth line"));
}

TEST_F(LineSelectionTest, TakesPlacesBeyondTheTextForItsEnd) {
    selection_.begin(2, 1);
    selection_.extend(99, 99);
    EXPECT_EQ(selection_.text(), QStringLiteral("hird\nthe fourth line"));
    selection_.begin(-5, -5);
    selection_.extend(0, 5);
    EXPECT_EQ(selection_.text(), QStringLiteral("first"));
}

TEST_F(LineSelectionTest, CopiesToTheClipboard) {
    selection_.begin(2, 0);
    selection_.extend(2, 3);
    selection_.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("thi"));
}

TEST_F(LineSelectionTest, LeavesTheClipboardAloneWithoutASelection) {
    QGuiApplication::clipboard()->setText(QStringLiteral("kept"));
    selection_.begin(2, 3);
    selection_.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));
    // Pressed below the last line and drawn to that line's end: still nothing.
    selection_.begin(3, 1'000'000);
    selection_.extend(3, 15);
    EXPECT_TRUE(selection_.isEmpty());
    selection_.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));
}

TEST_F(LineSelectionTest, TellsOfEachChangeOnce) {
    int changes = 0;
    QObject::connect(&selection_, &LineSelection::changed, &selection_, [&] { ++changes; });
    const int revision = selection_.revision();
    selection_.begin(0, 1);
    selection_.extend(0, 4);
    selection_.extend(0, 4);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(selection_.revision(), revision + 2);
}

TEST_F(LineSelectionTest, IsGoneWithItsLines) {
    selection_.selectAll();
    lines_.setLines({QStringLiteral("other")});
    EXPECT_TRUE(selection_.isEmpty());
}

class LogSelectionTest : public test::UiFixture {};

TEST_F(LogSelectionTest, IsClearedWithTheLogAndKeptWhileItGrows) {
    const LogListModel log(*controller_);
    LineSelection selection(log);
    ASSERT_TRUE(settleLog());
    selection.selectAll();
    const QString selected = selection.text();
    EXPECT_FALSE(selected.isEmpty());
    ASSERT_TRUE(settleLog());
    EXPECT_EQ(selection.text(), selected);
    controller_->clearLogs();
    EXPECT_TRUE(selection.isEmpty());
}

} // namespace
} // namespace zentrill
