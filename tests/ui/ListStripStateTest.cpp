#include "ui/ListStripState.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

/// The strips over the lists that a scan filled.
class ListStripStateTest : public test::UiFixture {
protected:
    [[nodiscard]] QStringList models() const { return texts(*state_.models(), "name"); }

    [[nodiscard]] QStringList dockerNames() const { return texts(*state_.dockerRows(), "name"); }

    [[nodiscard]] static QStringList texts(const QAbstractItemModel& model, const char* role) {
        QStringList found;
        for (int row = 0; row < model.rowCount(); ++row) {
            found.append(model.data(model.index(row, 0), model.roleNames().key(role)).toString());
        }
        return found;
    }

    void addModel(const std::string& name, std::size_t bytes) {
        home_.makeFile(".lmstudio/models/" + name, std::string(bytes, 'g'));
    }

    ContentViewState state_{*controller_};
    ListStripState& strip_{*state_.modelStrip()};
};

TEST_F(ListStripStateTest, IsNotThereWithoutAList) {
    EXPECT_FALSE(strip_.isShown());
    EXPECT_FALSE(state_.dockerStrip()->isShown());
    EXPECT_FALSE(strip_.findsNothing());
    addModel("a.gguf", 10);
    playDocker();
    ASSERT_TRUE(scan());
    EXPECT_TRUE(strip_.isShown());
    EXPECT_EQ(strip_.summary(), QStringLiteral("1 model · 0 MB"));
    EXPECT_TRUE(strip_.detail().startsWith(QLatin1String("LM Studio (GGUF): 1 model")))
        << strip_.detail().toStdString();
    EXPECT_EQ(state_.dockerStrip()->summary(), QStringLiteral("2 containers · 2 images"));
    EXPECT_EQ(state_.dockerStrip()->detail(), QString());
}

TEST_F(ListStripStateTest, OrdersAndSearches) {
    addModel("b.gguf", 10);
    addModel("a.gguf", 1000);
    addModel("c.gguf", 5000);
    ASSERT_TRUE(scan());
    QAbstractItemModelTester tester(state_.models(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QStringList scanned = models();
    strip_.setOrder(1);
    EXPECT_EQ(models(),
              (QStringList{QStringLiteral("c.gguf"), QStringLiteral("a.gguf"), QStringLiteral("b.gguf")}));
    strip_.setOrder(2);
    EXPECT_EQ(models(),
              (QStringList{QStringLiteral("a.gguf"), QStringLiteral("b.gguf"), QStringLiteral("c.gguf")}));
    strip_.setSearching(true);
    strip_.setNeedle(QStringLiteral("B."));
    EXPECT_EQ(models(), QStringList{QStringLiteral("b.gguf")});
    EXPECT_EQ(strip_.summary(), QStringLiteral("1 of 3 shown"));
    strip_.setNeedle(QStringLiteral("zz"));
    EXPECT_TRUE(strip_.findsNothing());
    EXPECT_TRUE(strip_.isShown());
    strip_.setSearching(false);
    EXPECT_EQ(models().size(), 3);
    EXPECT_EQ(strip_.needle(), QString());
    strip_.setOrder(0);
    EXPECT_EQ(models(), scanned);
}

TEST_F(ListStripStateTest, HasNoOrderBeyondTheLast) {
    QSignalSpy changes(&strip_, &ListStripState::orderChanged);
    strip_.setOrder(-1);
    EXPECT_EQ(strip_.order(), 0);
    strip_.setOrder(7);
    EXPECT_EQ(strip_.order(), 2);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(ListStripState::orderNames().size(), 3);
}

TEST_F(ListStripStateTest, KeepsTheArrangementAcrossARescan) {
    addModel("b.gguf", 10);
    addModel("a.gguf", 1000);
    ASSERT_TRUE(scan());
    QAbstractItemModelTester tester(state_.models(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    strip_.setOrder(1);
    addModel("huge.gguf", 9000);
    ASSERT_TRUE(scan());
    EXPECT_EQ(models(),
              (QStringList{QStringLiteral("huge.gguf"), QStringLiteral("a.gguf"), QStringLiteral("b.gguf")}));
}

TEST_F(ListStripStateTest, ARowsButtonActsOnTheRecordThatTheRowShows) {
    for (int number = 0; number < 100; ++number) {
        addModel("model" + std::to_string(number) + ".gguf",
                 static_cast<std::size_t>((number * 37) % 101 + 1));
    }
    ASSERT_TRUE(scan());
    QAbstractItemModelTester tester(state_.models(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (const int order : {1, 2, 0, 2, 1}) {
        strip_.setOrder(order);
        for (const char* needle : {"", "7", "1"}) {
            strip_.setNeedle(QString::fromLatin1(needle));
            const QStringList names = models();
            ASSERT_GT(names.size(), 10);
            for (int row = 0; row < names.size(); ++row) {
                state_.requestModelDeletion(row);
                EXPECT_EQ(state_.confirmation()->title(), QStringLiteral("Delete %1?").arg(names[row]));
                state_.confirmation()->dismissModal();
            }
        }
    }
}

TEST_F(ListStripStateTest, AConfirmationKeepsItsRecordWhileTheOrderChanges) {
    addModel("a.gguf", 10);
    addModel("b.gguf", 5000);
    ASSERT_TRUE(scan());
    strip_.setOrder(2);
    ASSERT_EQ(models().front(), QStringLiteral("a.gguf"));
    state_.requestModelDeletion(0);
    const QString title = state_.confirmation()->title();
    ASSERT_EQ(title, QStringLiteral("Delete a.gguf?"));
    strip_.setOrder(1);
    strip_.setNeedle(QStringLiteral("b"));
    addModel("0.gguf", 9000);
    ASSERT_TRUE(scan());
    EXPECT_EQ(state_.confirmation()->title(), title);
    state_.confirmation()->setConfirmationInput(state_.confirmation()->confirmationCode());
    state_.confirmation()->confirm();
    ASSERT_TRUE(test::waitUntil([this] { return controller_->showResultAlert(); }));
    EXPECT_FALSE(std::filesystem::exists(home_.path(".lmstudio/models/a.gguf")));
    EXPECT_TRUE(std::filesystem::exists(home_.path(".lmstudio/models/b.gguf")));
    EXPECT_TRUE(std::filesystem::exists(home_.path(".lmstudio/models/0.gguf")));
}

TEST_F(ListStripStateTest, ArrangesDocker) {
    playDocker();
    ASSERT_TRUE(scan());
    QAbstractItemModelTester tester(state_.dockerRows(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    ListStripState& docker = *state_.dockerStrip();
    docker.setOrder(2);
    const QStringList names = dockerNames();
    EXPECT_LT(names.indexOf(QStringLiteral("Untagged image")), names.indexOf(QStringLiteral("web:1")));
    docker.setNeedle(QStringLiteral("old"));
    EXPECT_EQ(docker.summary(), QStringLiteral("1 of 4 shown"));
    const auto row = static_cast<int>(dockerNames().indexOf(QStringLiteral("old")));
    EXPECT_EQ(state_.dockerStop(0, 1), row);
    state_.requestContainerRemoval(row);
    EXPECT_TRUE(state_.confirmation()->message().contains(QLatin1String("old")))
        << state_.confirmation()->message().toStdString();
    state_.confirmation()->dismissModal();
    docker.setNeedle({});
    docker.setOrder(0);
    for (int image = 0; image < dockerNames().size(); ++image) {
        state_.requestImageRemoval(image);
        if (state_.confirmation()->isPending()) {
            EXPECT_TRUE(
                state_.confirmation()->message().startsWith(QLatin1String("Remove ") + dockerNames()[image]));
            state_.confirmation()->dismissModal();
        }
    }
}

} // namespace
} // namespace zentrill
