#include "ui/models/LogListModel.h"

#include "UiFixture.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class LogListModelTest : public test::UiFixture {
protected:
    LogListModelTest() : model_(*controller_), tester_(&model_, Tester::FailureReportingMode::Fatal) {}

    using Tester = QAbstractItemModelTester;

    /// Logs the lines and waits until they are in the controller's log.
    [[nodiscard]] bool log(const std::vector<std::string>& lines) {
        const std::size_t wanted = controller_->logs().size() + lines.size();
        for (const std::string& line : lines) {
            controller_->log(line);
        }
        return test::waitUntil([&] { return controller_->logs().size() >= wanted; });
    }

    [[nodiscard]] std::vector<std::string> shown() const {
        std::vector<std::string> lines;
        for (int row = 0; row < model_.rowCount(); ++row) {
            lines.push_back(model_.data(model_.index(row), TextLinesModel::entryRole)
                                .toString()
                                .mid(stampLength)
                                .toStdString());
        }
        return lines;
    }

    LogListModel model_;
    Tester tester_;
};

TEST_F(LogListModelTest, AppendsLinesInOrder) {
    EXPECT_EQ(model_.rowCount(), 0);
    ASSERT_TRUE(log({"one", "two"}));
    ASSERT_TRUE(log({"three"}));
    EXPECT_THAT(shown(), ::testing::ElementsAre("one", "two", "three"));
}

TEST_F(LogListModelTest, ShowsIdenticalLinesOncePerOccurrence) {
    ASSERT_TRUE(log({"same", "same", "same"}));
    EXPECT_THAT(shown(), ::testing::ElementsAre("same", "same", "same"));
}

TEST_F(LogListModelTest, StartsWithWhatWasLoggedBefore) {
    ASSERT_TRUE(log({"before"}));
    const LogListModel late(*controller_);
    EXPECT_EQ(late.rowCount(), 1);
    EXPECT_TRUE(late.entry(0).endsWith(QLatin1String("before")));
}

TEST_F(LogListModelTest, TakesNewLinesAfterItWasCleared) {
    ASSERT_TRUE(log({"one", "two"}));
    controller_->log("still on its way");
    controller_->clearLogs();
    EXPECT_EQ(model_.rowCount(), 0);
    ASSERT_TRUE(log({"three"}));
    EXPECT_THAT(shown(), ::testing::ElementsAre("still on its way", "three"));
}

TEST_F(LogListModelTest, SurvivesBeingReadWhileItIsCleared) {
    ASSERT_TRUE(log({"one", "two"}));
    QStringList read;
    QObject::connect(&model_, &QAbstractItemModel::modelAboutToBeReset, &model_,
                     [&] { read.append(model_.entry(1)); });
    controller_->clearLogs();
    EXPECT_EQ(read, QStringList(QString()));
}

TEST_F(LogListModelTest, AnnouncesEachBatchAsOneInsertion) {
    QList<std::pair<int, int>> insertions;
    QObject::connect(&model_, &QAbstractItemModel::rowsInserted, &model_,
                     [&](const QModelIndex&, int first, int last) { insertions.append({first, last}); });
    ASSERT_TRUE(log({"one", "two", "three"}));
    ASSERT_FALSE(insertions.isEmpty());
    EXPECT_EQ(insertions.front().first, 0);
    EXPECT_EQ(insertions.back().second, 2);
    EXPECT_LE(insertions.size(), 3);
}

TEST_F(LogListModelTest, EscapesWhatWouldMisleadAndAnswersNothingBeyondItsRows) {
    ASSERT_TRUE(log({"bad \xFF name\x1B[31m"}));
    EXPECT_THAT(shown(), ::testing::ElementsAre("bad \\xFF name\\x1B[31m"));
    EXPECT_TRUE(model_.entry(-1).isNull());
    EXPECT_TRUE(model_.entry(1).isNull());
}

} // namespace
} // namespace zentrill
