#include "ui/models/LineSearch.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"
#include "ui/models/FixedLinesModel.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class LineSearchTest : public ::testing::Test {
protected:
    void search(const char* needle) {
        search_.setNeedle(QString::fromUtf8(needle));
        ASSERT_TRUE(test::waitUntil([this] { return search_.countText() != QStringLiteral("Searching…"); }));
    }

    FixedLinesModel lines_;
    LineSelection selection_{lines_};
    LineSearch search_{lines_, selection_};
};

TEST_F(LineSearchTest, StepsThroughTheLinesInBothDirections) {
    lines_.setLines({QStringLiteral("Found software"), QStringLiteral("none"),
                     QStringLiteral("software: found"), QStringLiteral("FOUND")});
    QSignalSpy shown(&search_, &LineSearch::shown);
    search("found");
    EXPECT_EQ(search_.countText(), QStringLiteral("1 of 3 lines"));
    EXPECT_EQ(selection_.text(), QStringLiteral("Found"));
    search_.next();
    EXPECT_EQ(selection_.text(), QStringLiteral("found"));
    EXPECT_EQ(search_.countText(), QStringLiteral("2 of 3 lines"));
    search_.next();
    search_.next();
    EXPECT_EQ(search_.countText(), QStringLiteral("1 of 3 lines"));
    search_.previous();
    EXPECT_EQ(selection_.text(), QStringLiteral("FOUND"));
    std::vector<int> rows;
    for (const QList<QVariant>& arguments : shown) {
        rows.push_back(arguments.front().toInt());
    }
    EXPECT_EQ(rows, (std::vector<int>{0, 2, 3, 0, 3}));
}

TEST_F(LineSearchTest, SaysWhenThereIsNothing) {
    lines_.setLines({QStringLiteral("one")});
    EXPECT_EQ(search_.countText(), QString());
    search("two");
    EXPECT_EQ(search_.countText(), QStringLiteral("No line found"));
    EXPECT_FALSE(search_.findsAny());
    search_.next();
    search_.previous();
    EXPECT_TRUE(selection_.isEmpty());
    search("one");
    EXPECT_EQ(search_.countText(), QStringLiteral("1 of 1 line"));
    search_.setSearching(true);
    search_.setSearching(false);
    EXPECT_EQ(search_.needle(), QString());
    EXPECT_FALSE(search_.findsAny());
}

TEST_F(LineSearchTest, ReadsALongListBitByBit) {
    QStringList lines;
    for (int line = 0; line < 30'000; ++line) {
        lines.append(line % 3 == 0 ? QStringLiteral("kept") : QStringLiteral("gone"));
    }
    lines_.setLines(lines);
    QString atFirst;
    QObject::connect(&search_, &LineSearch::shown, &search_, [&] { atFirst = search_.countText(); });
    search_.setNeedle(QStringLiteral("kept"));
    EXPECT_EQ(search_.countText(), QStringLiteral("Searching…"));
    ASSERT_TRUE(test::waitUntil([&] { return !atFirst.isEmpty(); }));
    EXPECT_NE(atFirst, QStringLiteral("1 of 10,000 lines")) << "all of them in one turn";
    ASSERT_TRUE(
        test::waitUntil([this] { return search_.countText() == QStringLiteral("1 of 10,000 lines"); }));
    search_.setNeedle(QStringLiteral("gone"));
    ASSERT_TRUE(
        test::waitUntil([this] { return search_.countText() == QStringLiteral("1 of 20,000 lines"); }));
}

TEST_F(LineSearchTest, StartsAnewWithOtherLines) {
    lines_.setLines({QStringLiteral("a"), QStringLiteral("a")});
    search("a");
    search_.next();
    lines_.setLines({QStringLiteral("b"), QStringLiteral("a")});
    ASSERT_TRUE(test::waitUntil([this] { return search_.countText() == QStringLiteral("1 of 1 line"); }));
    lines_.setLines({});
    ASSERT_TRUE(test::waitUntil([this] { return search_.countText() == QStringLiteral("No line found"); }));
}

class LogSearchTest : public test::UiFixture {
protected:
    ContentViewState state_{*controller_};
};

TEST_F(LogSearchTest, TakesInWhatIsAppendedAndStaysWhereItIs) {
    ASSERT_TRUE(scan());
    LineSearch& search = *state_.logSearch();
    search.setNeedle(QStringLiteral("scan completed"));
    ASSERT_TRUE(test::waitUntil([&] { return search.countText() == QStringLiteral("1 of 1 line"); }));
    ASSERT_TRUE(scan());
    EXPECT_TRUE(test::waitUntil([&] { return search.countText() == QStringLiteral("1 of 2 lines"); }));
    state_.perform(ShortcutAction::findNext);
    EXPECT_EQ(search.countText(), QStringLiteral("2 of 2 lines"));
    state_.perform(ShortcutAction::findPrevious);
    EXPECT_EQ(search.countText(), QStringLiteral("1 of 2 lines"));
    controller_->clearLogs();
    EXPECT_TRUE(test::waitUntil([&] { return search.countText() == QStringLiteral("No line found"); }));
}

} // namespace
} // namespace zentrill
