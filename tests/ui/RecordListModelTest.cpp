#include "ui/models/RecordListModel.h"

#include <QAbstractItemModelTester>
#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace zentrill {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Item {
    std::string key;
    int value = 0;

    bool operator==(const Item&) const = default;
};

using ItemModel = RecordListModel<Item>;

class RecordListModelTest : public ::testing::Test {
protected:
    RecordListModelTest() {
        const auto note = [this](const char* what) {
            return [this, what](const QModelIndex&, int first, int last) {
                events_.push_back(std::string(what) + " " + std::to_string(first) + "-" +
                                  std::to_string(last));
            };
        };
        QObject::connect(&model_, &QAbstractItemModel::rowsInserted, &model_, note("inserted"));
        QObject::connect(&model_, &QAbstractItemModel::rowsRemoved, &model_, note("removed"));
        QObject::connect(&model_, &QAbstractItemModel::dataChanged, &model_,
                         [this](const QModelIndex& first, const QModelIndex& last) {
                             events_.push_back("changed " + std::to_string(first.row()) + "-" +
                                               std::to_string(last.row()));
                         });
        QObject::connect(&model_, &QAbstractItemModel::modelReset, &model_,
                         [this] { events_.emplace_back("reset"); });
    }

    /// Takes in `items` and tells what was announced.
    std::vector<std::string> set(const std::vector<Item>& items) {
        events_.clear();
        model_.setRecords(items);
        return events_;
    }

    ItemModel model_{[](const Item& item) { return item.key; },
                     {{"key", [](const Item& item) { return QString::fromStdString(item.key); }},
                      {"value", [](const Item& item) { return item.value; }}}};
    QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
    std::vector<std::string> events_;
};

TEST_F(RecordListModelTest, NamesItsRolesAndAnswersByThem) {
    set({{"a", 1}, {"b", 2}});
    const QHash<int, QByteArray> names = model_.roleNames();
    EXPECT_EQ(names.size(), 2);
    EXPECT_EQ(model_.data(model_.index(1), names.key("key")), QVariant(QStringLiteral("b")));
    EXPECT_EQ(model_.data(model_.index(1), names.key("value")), QVariant(2));
}

TEST_F(RecordListModelTest, AnswersNothingForOtherRolesAndRows) {
    set({{"a", 1}});
    EXPECT_FALSE(model_.data(model_.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(model_.data(model_.index(0), Qt::UserRole + 2).isValid());
    EXPECT_FALSE(model_.data({}, Qt::UserRole).isValid());
    EXPECT_EQ(model_.record(-1), nullptr);
    EXPECT_EQ(model_.record(1), nullptr);
    EXPECT_EQ(model_.record(0)->value, 1);
}

TEST_F(RecordListModelTest, AnnouncesNothingWhenNothingChanged) {
    set({{"a", 1}, {"b", 2}});
    EXPECT_THAT(set({{"a", 1}, {"b", 2}}), IsEmpty());
}

TEST_F(RecordListModelTest, AnnouncesOneChangedRowOnce) {
    set({{"a", 1}, {"b", 2}, {"c", 3}});
    EXPECT_THAT(set({{"a", 1}, {"b", 20}, {"c", 3}}), ElementsAre("changed 1-1"));
    EXPECT_EQ(model_.record(1)->value, 20);
}

TEST_F(RecordListModelTest, AnnouncesARunOfChangedRowsOnce) {
    set({{"a", 1}, {"b", 2}, {"c", 3}, {"d", 4}});
    EXPECT_THAT(set({{"a", 9}, {"b", 9}, {"c", 3}, {"d", 9}}), ElementsAre("changed 0-1", "changed 3-3"));
}

TEST_F(RecordListModelTest, InsertsAndRemovesOnlyWhatIsNewOrGone) {
    EXPECT_THAT(set({{"a", 1}, {"b", 2}, {"c", 3}}), ElementsAre("inserted 0-2"));
    EXPECT_THAT(set({{"a", 1}, {"c", 3}, {"d", 4}}), ElementsAre("removed 1-1", "inserted 2-2"));
    EXPECT_THAT(set({}), ElementsAre("removed 0-2"));
}

TEST_F(RecordListModelTest, HoldsRandomListsWithoutEverResetting) {
    std::mt19937 random(99);
    for (int round = 0; round < 300; ++round) {
        std::vector<Item> items(random() % 12);
        for (Item& item : items) {
            item = {std::string(1, static_cast<char>('a' + random() % 10)), static_cast<int>(random() % 3)};
        }
        EXPECT_THAT(set(items), ::testing::Not(::testing::Contains("reset")));
        ASSERT_EQ(model_.records(), items);
    }
}

TEST_F(RecordListModelTest, TakesAShuffledListAsAWhole) {
    std::vector<Item> items;
    for (int value = 0; value < 1000; ++value) {
        items.push_back({std::to_string(value), value});
    }
    set(items);
    std::ranges::shuffle(items, std::mt19937(5));
    EXPECT_THAT(set(items), ElementsAre("reset"));
    EXPECT_EQ(model_.records(), items);
    std::erase_if(items, [](const Item& item) { return item.value % 2 == 0; });
    EXPECT_THAT(set(items), ElementsAre("reset"));
    EXPECT_EQ(model_.records(), items);
}

} // namespace
} // namespace zentrill
