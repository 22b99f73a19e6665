#include "ui/ContentViewState.h"

#include "UiFixture.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <ostream>
#include <tuple>

namespace zentrill {
namespace {

class ContentViewStateTest : public test::UiFixture {
protected:
    ContentViewState state_{*controller_};
};

TEST_F(ContentViewStateTest, StartsWithTheApplications) {
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("apps"));
    EXPECT_EQ(state_.selectedRow(), 0);
    EXPECT_EQ(state_.applications()->rowCount(), 15);
    EXPECT_FALSE(state_.modalShown());
    EXPECT_TRUE(state_.acceptsRequests());
}

struct TabTexts {
    const char* tab;
    const char* pane;
    const char* title;
    const char* subtitle;

    /// By name: a case that is called by the addresses of its texts has another name in each build.
    friend std::ostream& operator<<(std::ostream& out, const TabTexts& texts) { return out << texts.tab; }
};

class ContentViewStateTabTest : public test::UiFixture, public ::testing::WithParamInterface<TabTexts> {};

TEST_P(ContentViewStateTabTest, TitlesItsPane) {
    ContentViewState state(*controller_);
    state.setSelectedTab(QString::fromUtf8(GetParam().tab));
    EXPECT_EQ(state.selectedPane(), QString::fromUtf8(GetParam().pane));
    EXPECT_EQ(state.title(), QString::fromUtf8(GetParam().title));
    EXPECT_EQ(state.subtitle(), QString::fromUtf8(GetParam().subtitle));
}

INSTANTIATE_TEST_SUITE_P(
    Tabs, ContentViewStateTabTest,
    ::testing::Values(
        TabTexts{"apps", "apps", "Applications", "Select tools for removal. Review before confirming."},
        TabTexts{"models", "models", "Clean Large Local Models",
                 "Free up gigabytes by deleting local LLM weights."},
        TabTexts{"containers", "containers", "Manage Docker",
                 "Inspect containers and remove individual Docker images safely."},
        TabTexts{"console", "console", "Execution Console Logs",
                 "View a real-time log of background processes."},
        TabTexts{"elsewhere", "console", "Execution Console Logs",
                 "View a real-time log of background processes."},
        TabTexts{"", "console", "Execution Console Logs", "View a real-time log of background processes."}),
    [](const auto& tab) {
        return tab.param.tab[0] == '\0' ? std::string("none") : std::string(tab.param.tab);
    });

TEST_F(ContentViewStateTest, ChoosesTabsByRowAndStopsAtBothEnds) {
    QSignalSpy changes(&state_, &ContentViewState::selectedTabChanged);
    state_.selectRow(2);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("containers"));
    EXPECT_EQ(state_.selectedRow(), 2);
    state_.selectRow(4);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("console"));
    state_.selectRow(-1);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("apps"));
    state_.selectRow(0);
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(ContentViewStateTest, CountsTheSelection) {
    EXPECT_EQ(state_.selectionCount(), QStringLiteral("0 selected"));
    home_.makeDirectory(".ollama");
    home_.makeDirectory(".lmstudio");
    ASSERT_TRUE(scan());
    const auto rowOf = [this](const std::string& name) {
        return static_cast<int>(std::ranges::find(controller_->apps(), name, &AppInfo::name) -
                                controller_->apps().begin());
    };
    EXPECT_FALSE(state_.canUninstall());
    QSignalSpy changes(&state_, &ContentViewState::canUninstallChanged);
    state_.toggleApplication(rowOf("Ollama"));
    EXPECT_GE(changes.count(), 1);
    EXPECT_TRUE(state_.canUninstall());
    state_.toggleApplication(rowOf("LM Studio"));
    EXPECT_EQ(state_.selectionCount(), QStringLiteral("2 selected"));
    state_.toggleApplication(rowOf("Ollama"));
    EXPECT_EQ(state_.selectionCount(), QStringLiteral("1 selected"));
    // What was not found cannot be selected, nor what is not there.
    state_.toggleApplication(rowOf("Claude"));
    state_.toggleApplication(-1);
    state_.toggleApplication(1000);
    EXPECT_EQ(state_.selectionCount(), QStringLiteral("1 selected"));
}

TEST_F(ContentViewStateTest, RefusesRequestsWhileAnOperationRuns) {
    home_.makeDirectory(".ollama");
    ASSERT_TRUE(scan());
    controller_->setAppSelected("Ollama", true);
    ASSERT_TRUE(state_.canUninstall());
    controller_->scanSystem();
    EXPECT_FALSE(state_.canUninstall());
    EXPECT_FALSE(state_.acceptsRequests());
    state_.requestUninstall();
    EXPECT_FALSE(state_.confirmation()->isPending());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(state_.canUninstall());
}

TEST_F(ContentViewStateTest, CaptionsTheShieldTheMomentItFlips) {
    EXPECT_EQ(state_.shieldCaption(),
              QString::fromUtf8("ON \u00B7 retains recognized credentials and uncertain data for review."));
    QSignalSpy changes(&state_, &ContentViewState::shieldCaptionChanged);
    controller_->setPreserveCredentials(false);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(
        state_.shieldCaption(),
        QString::fromUtf8("OFF \u00B7 selected targets, including nested credentials, may be removed."));
}

TEST_F(ContentViewStateTest, SaysWhyDockerCannotBeShown) {
    ASSERT_TRUE(scan());
    EXPECT_EQ(state_.dockerNoticeIcon(), QStringLiteral("shippingbox.and.arrow.backward"));
    EXPECT_EQ(state_.dockerNoticeHeading(), QStringLiteral("Docker CLI Not Found"));

    locator_->set("/opt/docker");
    answer_ = [](const auto&) { return test::failed(1, "no context\n"); };
    ASSERT_TRUE(scan());
    EXPECT_EQ(state_.dockerNoticeIcon(), QStringLiteral("exclamationmark.triangle"));
    EXPECT_EQ(state_.dockerNoticeHeading(), QStringLiteral("Docker Daemon Unavailable"));

    QSignalSpy changes(&state_, &ContentViewState::dockerStateChanged);
    playDocker();
    ASSERT_TRUE(scan());
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(state_.dockerNoticeIcon(), QString());
    EXPECT_EQ(state_.dockerNoticeHeading(), QString());
    QStringList kinds;
    for (int row = 0; row < state_.dockerRows()->rowCount(); ++row) {
        kinds.append(
            state_.dockerRows()
                ->data(state_.dockerRows()->index(row, 0), state_.dockerRows()->roleNames().key("view"))
                .toString());
    }
    EXPECT_EQ(kinds.join(QLatin1Char(' ')),
              QStringLiteral("heading container container heading notice image image"));
    // The keyboard stops at containers and images.
    for (const auto& [from, step, stop] :
         {std::tuple(0, 1, 1), std::tuple(1, 1, 1), std::tuple(1, -1, 1), std::tuple(0, -1, -1),
          std::tuple(3, 1, 5), std::tuple(4, -1, 2), std::tuple(7, 1, -1), std::tuple(-1, 1, -1)}) {
        EXPECT_EQ(state_.dockerStop(from, step), stop) << from << " by " << step;
    }
}

TEST_F(ContentViewStateTest, CountsTheLinesOfTheLog) {
    EXPECT_EQ(state_.logCountText(), QStringLiteral("0 lines"));
    QSignalSpy changes(&state_, &ContentViewState::logCountChanged);
    ASSERT_TRUE(settleLog());
    EXPECT_EQ(state_.logCountText(), QStringLiteral("1 line"));
    ASSERT_TRUE(settleLog());
    EXPECT_EQ(state_.logCountText(), QStringLiteral("2 lines"));
    controller_->clearLogs();
    EXPECT_EQ(state_.logCountText(), QStringLiteral("0 lines"));
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(ContentViewStateTest, RequestsTheUninstallOfTheSelection) {
    home_.makeDirectory(".ollama");
    ASSERT_TRUE(scan());
    state_.requestUninstall();
    EXPECT_FALSE(state_.modalShown());
    controller_->setAppSelected("Ollama", true);
    QSignalSpy changes(&state_, &ContentViewState::modalChanged);
    state_.requestUninstall();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(state_.modalShown());
    EXPECT_FALSE(state_.canUninstall());
    EXPECT_TRUE(state_.confirmation()->message().startsWith(QLatin1String("Selected: Ollama. Known app")));
    controller_->setAppSelected("Ollama", false);
    EXPECT_TRUE(state_.confirmation()->message().startsWith(QLatin1String("Selected: Ollama. Known app")));
}

TEST_F(ContentViewStateTest, RequestsTheDeletionOfTheModelOfARow) {
    home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
    ASSERT_TRUE(scan());
    state_.requestModelDeletion(1);
    state_.requestModelDeletion(-1);
    EXPECT_FALSE(state_.modalShown());
    state_.requestModelDeletion(0);
    EXPECT_EQ(state_.confirmation()->title(), QStringLiteral("Delete pub/foo.gguf?"));
}

TEST_F(ContentViewStateTest, RequestsRemovalsByTheRowsOfTheList) {
    playDocker();
    ASSERT_TRUE(scan());
    // No row, or one of another kind: headings, a remark, an image, a container.
    for (const int row : {-1, 0, 3, 4, 5, 6, 7}) {
        state_.requestContainerRemoval(row);
        state_.stopContainer(row);
    }
    for (const int row : {-1, 0, 1, 2, 3, 4, 7}) {
        state_.requestImageRemoval(row);
    }
    EXPECT_FALSE(controller_->isBusy());
    EXPECT_FALSE(state_.modalShown());
    state_.requestContainerRemoval(2);
    EXPECT_TRUE(state_.confirmation()->message().contains(QLatin1String("container old?")));
    state_.confirmation()->dismissModal();
    state_.requestImageRemoval(6);
    EXPECT_TRUE(state_.confirmation()->message().startsWith(
        QLatin1String("Remove Untagged image (bbbbbbbbbbbb, 10MB) from Docker connection 'desktop'?")));
}

TEST_F(ContentViewStateTest, RequestsTheSelfUninstall) {
    state_.requestSelfUninstall();
    EXPECT_EQ(state_.confirmation()->title(), QStringLiteral("Self-Uninstall Zentrill?"));
    state_.confirmation()->dismissModal();
    EXPECT_TRUE(events_.empty());
    EXPECT_FALSE(controller_->isBusy());
}

TEST_F(ContentViewStateTest, StopsAContainerWithoutACode) {
    playDocker();
    ASSERT_TRUE(scan());
    state_.stopContainer(1);
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Stopping web"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(state_.modalShown());
    state_.confirmation()->dismissModal();
    EXPECT_FALSE(state_.modalShown());
}

TEST_F(ContentViewStateTest, SaysWhenNothingWasFound) {
    EXPECT_FALSE(state_.nothingFound()) << "nobody has looked yet";
    ASSERT_TRUE(scan());
    EXPECT_TRUE(state_.nothingFound());
    home_.makeDirectory(".ollama");
    controller_->scanSystem();
    EXPECT_TRUE(state_.nothingFound()) << "what is known holds until the scan is done";
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(state_.nothingFound());
}

} // namespace
} // namespace zentrill
