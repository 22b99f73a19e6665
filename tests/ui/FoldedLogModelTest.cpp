#include "ui/models/FoldedLogModel.h"

#include "UiFixture.h"
#include "ui/models/LineSearch.h"
#include "ui/models/LineSelection.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class FoldedLogModelTest : public test::UiFixture {
protected:
    /// Lines of their own kind, as many as that.
    void logPreserved(int count, const char* folder = "a") {
        for (int line = 0; line < count; ++line) {
            controller_->log(std::string("[Safety Shield] Preserved: /").append(folder).append("/") +
                             std::to_string(line));
        }
    }

    /// The rows without their times.
    [[nodiscard]] QStringList rows() const {
        QStringList texts;
        for (int row = 0; row < model_.rowCount(); ++row) {
            texts.append(model_.entry(row).mid(static_cast<qsizetype>(stampLength)));
        }
        return texts;
    }

    [[nodiscard]] bool settle(int lines) {
        return test::waitUntil([&] { return lines_.rowCount() == lines; });
    }

    LogListModel lines_{*controller_};
    FoldedLogModel model_{lines_};
    QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(FoldedLogModelTest, LeavesAFewLinesAsTheyAre) {
    controller_->log("before");
    logPreserved(9);
    controller_->log("after");
    ASSERT_TRUE(settle(11));
    EXPECT_EQ(model_.rowCount(), 11);
    EXPECT_EQ(model_.fold(1), TextLinesModel::Fold::none);
    EXPECT_FALSE(model_.isListed(1));
}

TEST_F(FoldedLogModelTest, FoldsManyIntoOneRow) {
    controller_->log("before");
    logPreserved(30'000);
    controller_->log("after");
    ASSERT_TRUE(settle(30'002));
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("before"),
                                   QStringLiteral("[Safety Shield] 30,000 paths preserved…"),
                                   QStringLiteral("after")}));
    EXPECT_TRUE(model_.entry(1).startsWith(QLatin1Char('['))); // With the time of its first line.
    EXPECT_EQ(model_.firstLine(1), 1);
    EXPECT_EQ(model_.lastLine(1), 30'000);
    EXPECT_EQ(model_.firstLine(2), 30'001);
    EXPECT_EQ(lines_.rowCount(), 30'002);
}

TEST_F(FoldedLogModelTest, FoldsLinesThatComeOneByOne) {
    for (int line = 1; line <= 12; ++line) {
        logPreserved(1);
        ASSERT_TRUE(settle(line));
        EXPECT_EQ(model_.rowCount(), line < FoldedLogModel::fewestFolded ? line : 1);
    }
    model_.toggle(0);
    EXPECT_EQ(model_.rowCount(), 13);
    logPreserved(2); // What is open stays so, and grows.
    ASSERT_TRUE(settle(14));
    EXPECT_EQ(model_.rowCount(), 15);
    EXPECT_EQ(rows().constFirst(), QStringLiteral("[Safety Shield] 14 paths preserved…"));
    controller_->log("after");
    logPreserved(9, "b");
    ASSERT_TRUE(settle(24));
    EXPECT_EQ(model_.rowCount(), 25);
    logPreserved(1, "b");
    ASSERT_TRUE(settle(25));
    EXPECT_EQ(model_.rowCount(), 17);
    EXPECT_EQ(rows().constLast(), QStringLiteral("[Safety Shield] 10 paths preserved…"));
}

TEST_F(FoldedLogModelTest, OpensAndCloses) {
    logPreserved(10);
    controller_->log("between");
    logPreserved(20, "b");
    ASSERT_TRUE(settle(31));
    ASSERT_EQ(model_.rowCount(), 3);
    EXPECT_EQ(model_.fold(0), TextLinesModel::Fold::closed);
    model_.toggle(0);
    EXPECT_EQ(model_.fold(0), TextLinesModel::Fold::open);
    ASSERT_EQ(model_.rowCount(), 13);
    EXPECT_EQ(rows().at(1), QStringLiteral("[Safety Shield] Preserved: /a/0"));
    EXPECT_EQ(rows().at(10), QStringLiteral("[Safety Shield] Preserved: /a/9"));
    EXPECT_TRUE(model_.isListed(1));
    EXPECT_FALSE(model_.isListed(11));
    EXPECT_EQ(rows().at(11), QStringLiteral("between"));
    model_.toggle(5); // A line is nothing that opens.
    EXPECT_EQ(model_.rowCount(), 13);
    model_.toggle(12);
    EXPECT_EQ(model_.rowCount(), 33);
    model_.toggle(0);
    EXPECT_EQ(model_.rowCount(), 23);
}

TEST_F(FoldedLogModelTest, ForgetsItsFoldsWithTheLog) {
    logPreserved(15);
    ASSERT_TRUE(settle(15));
    controller_->clearLogs();
    EXPECT_EQ(model_.rowCount(), 0);
    logPreserved(5);
    ASSERT_TRUE(settle(5));
    EXPECT_EQ(model_.rowCount(), 5);
}

TEST_F(FoldedLogModelTest, FoldsWhatIsThereAlready) {
    logPreserved(15);
    ASSERT_TRUE(settle(15));
    const FoldedLogModel later(lines_);
    EXPECT_EQ(later.rowCount(), 1);
}

TEST_F(FoldedLogModelTest, UnfoldsWhatASearchFinds) {
    LineSelection selection(lines_);
    LineSearch search(lines_, selection);
    const QSignalSpy shown(&search, &LineSearch::shown);
    logPreserved(5'000);
    ASSERT_TRUE(settle(5'000));
    search.setNeedle(QStringLiteral("/a/4321"));
    ASSERT_TRUE(test::waitUntil([&] { return shown.count() == 1; }));
    EXPECT_EQ(model_.reveal(shown.first().first().toInt()), 4'322);
    EXPECT_EQ(model_.rowCount(), 5'001);
    EXPECT_EQ(selection.text(), QStringLiteral("/a/4321"));
    EXPECT_EQ(model_.reveal(0), 1); // Open already.
}

TEST_F(FoldedLogModelTest, KeepsTheLinesForWhoCopies) {
    LineSelection selection(lines_);
    logPreserved(12);
    ASSERT_TRUE(settle(12));
    selection.selectAll();
    EXPECT_EQ(selection.text().count(QLatin1Char('\n')), 11);
}

} // namespace
} // namespace zentrill
