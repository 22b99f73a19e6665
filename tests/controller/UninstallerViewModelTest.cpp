#include "ControllerFixture.h"

#include <QMetaProperty>
#include <QVariant>
#include <gtest/gtest.h>

#include <regex>
#include <thread>

namespace zentrill {
namespace {

using test::ControllerFixture;
using test::waitUntil;
using ::testing::ElementsAre;

class UninstallerViewModelTest : public ControllerFixture {};

TEST_F(UninstallerViewModelTest, StartsIdleWithTheWholeCatalogAndNothingFound) {
    start();
    ASSERT_EQ(controller_->apps().size(), 15U);
    EXPECT_EQ(controller_->apps().at(0).name, "Ollama");
    EXPECT_EQ(controller_->apps().at(1).name, "VendorApp");
    EXPECT_EQ(controller_->apps().at(14).name, "LM Studio");
    for (const AppInfo& app : controller_->apps()) {
        EXPECT_FALSE(app.isDetected || app.hasResidualData || app.isSelected) << app.name;
    }
    EXPECT_TRUE(controller_->localModels().empty());
    EXPECT_TRUE(controller_->containers().empty());
    EXPECT_TRUE(controller_->dockerImages().empty());
    EXPECT_FALSE(controller_->isScanning());
    EXPECT_FALSE(controller_->isBusy());
    EXPECT_EQ(controller_->operationDescription(), QString());
    EXPECT_TRUE(controller_->preserveCredentials());
    EXPECT_FALSE(controller_->showResultAlert());
    EXPECT_EQ(controller_->resultAlertTitle(), QString());
    EXPECT_EQ(controller_->resultAlertMessage(), QString());
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::unknown);
    EXPECT_EQ(controller_->resultAlertRetainedPathCount(), 0);
    EXPECT_FALSE(controller_->isDockerInstalled());
    EXPECT_FALSE(controller_->dockerDaemonRunning());
    EXPECT_EQ(controller_->dockerStatusMessage(), QStringLiteral("Docker has not been scanned yet."));
    EXPECT_TRUE(controller_->dockerImageWarning().isNull());
    EXPECT_FALSE(controller_->canCancelOperation());
    ASSERT_TRUE(settleLog());
    EXPECT_THAT(messages(), ElementsAre());
}

TEST_F(UninstallerViewModelTest, IsScanningAlreadyWhenItIsMadeWithAutoScan) {
    start(true);
    EXPECT_TRUE(controller_->isBusy());
    EXPECT_TRUE(controller_->isScanning());
    EXPECT_FALSE(controller_->canCancelOperation());
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Scanning system"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(controller_->isScanning());
    EXPECT_EQ(controller_->operationDescription(), QString());
    EXPECT_EQ(messages().at(0), "Starting system scan for applications, models, and containers...");
}

TEST_F(UninstallerViewModelTest, RefusesASecondOperationAndNamesTheRunningOne) {
    start();
    controller_->scanSystem();
    controller_->scanSystem();
    controller_->uninstallSelectedApps();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(
        messages(),
        ElementsAre("Starting system scan for applications, models, and containers...",
                    "Ignored request while another operation is running: Scanning system",
                    "Ignored request while another operation is running: Scanning system",
                    "Scan completed: 0 applications, 0 models, 0 Docker containers, and 0 Docker images."));
}

TEST_F(UninstallerViewModelTest, IgnoresACancellationWhileIdle) {
    start();
    controller_->cancelOperation();
    ASSERT_TRUE(settleLog());
    EXPECT_THAT(messages(), ElementsAre());
}

TEST_F(UninstallerViewModelTest, LetsAScanRunToItsEndThoughCancelled) {
    start();
    home_.makeDirectory(".ollama");
    controller_->scanSystem();
    controller_->cancelOperation();
    EXPECT_TRUE(controller_->isBusy());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(app("Ollama").isDetected);
    EXPECT_THAT(messages(), ::testing::Contains("Cancellation requested by user."));
}

TEST_F(UninstallerViewModelTest, StampsEveryLineAndKeepsTheOrderOfEachThread) {
    start();
    std::thread other([this] {
        for (int line = 0; line < 1000; ++line) {
            controller_->log(std::string("other ").append(std::to_string(line)));
        }
    });
    for (int line = 0; line < 1000; ++line) {
        controller_->log(std::string("main ").append(std::to_string(line)));
    }
    EXPECT_TRUE(controller_->logs().empty());
    ASSERT_TRUE(waitUntil([this] { return controller_->logs().size() == 2000; }));
    other.join();

    const std::regex form("\\[[0-2][0-9]:[0-5][0-9]:[0-6][0-9]\\] (main|other) [0-9]+");
    int nextOfMain = 0;
    int nextOfOther = 0;
    for (const std::string& entry : controller_->logs()) {
        ASSERT_TRUE(std::regex_match(entry, form)) << entry;
        int& next = entry.at(stampLength) == 'm' ? nextOfMain : nextOfOther;
        EXPECT_TRUE(entry.ends_with(std::string(" ").append(std::to_string(next++)))) << entry;
    }
}

TEST_F(UninstallerViewModelTest, AnnouncesExactlyTheLinesThatAreNew) {
    start();
    qsizetype announced = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::logsAppended,
                     [this, &announced](qsizetype first, qsizetype count) {
                         EXPECT_EQ(first, announced);
                         announced += count;
                         EXPECT_EQ(announced, static_cast<qsizetype>(controller_->logs().size()));
                     });
    int cleared = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::logsCleared, [&] {
        EXPECT_TRUE(controller_->logs().empty());
        announced = 0;
        ++cleared;
    });
    controller_->clearLogs();
    EXPECT_EQ(cleared, 0);
    controller_->log("a");
    controller_->log("b");
    ASSERT_TRUE(settleLog());
    EXPECT_EQ(announced, 3);
    controller_->clearLogs();
    EXPECT_EQ(cleared, 1);
    controller_->log("c");
    ASSERT_TRUE(settleLog());
    EXPECT_THAT(messages(), ElementsAre("c"));
}

TEST_F(UninstallerViewModelTest, GoesOnLoggingIntoAClearedConsole) {
    start();
    controller_->scanSystem();
    ASSERT_TRUE(waitUntil([this] { return !controller_->logs().empty(); }));
    controller_->clearLogs();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(messages().back(),
              "Scan completed: 0 applications, 0 models, 0 Docker containers, and 0 Docker images.");
}

TEST_F(UninstallerViewModelTest, ClearsALongLogAtOnceForWhoeverLooks) {
    constexpr std::size_t lineCount = 70'000;
    start();
    for (std::size_t line = 0; line < lineCount; ++line) {
        controller_->log("a line too long for a string to keep within itself");
    }
    ASSERT_TRUE(waitUntil([this] { return controller_->logs().size() == lineCount; }));
    controller_->clearLogs();
    EXPECT_TRUE(controller_->logs().empty());
    controller_->log("after");
    ASSERT_TRUE(settleLog());
    EXPECT_THAT(messages(), ElementsAre("after"));
}

TEST_F(UninstallerViewModelTest, SelectsApplicationsByName) {
    start();
    int changes = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::appsChanged, [&changes] { ++changes; });
    controller_->setAppSelected("Claude Code", true);
    EXPECT_TRUE(app("Claude Code").isSelected);
    EXPECT_FALSE(app("Claude").isSelected);
    controller_->setAppSelected("Claude Code", true);
    controller_->setAppSelected("no such tool", true);
    EXPECT_EQ(changes, 1);
    controller_->setAppSelected("Claude Code", false);
    EXPECT_FALSE(app("Claude Code").isSelected);
    EXPECT_EQ(changes, 2);
}

TEST_F(UninstallerViewModelTest, OffersItsScalarsAsProperties) {
    start();
    int changes = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::preserveCredentialsChanged,
                     [&] { ++changes; });
    EXPECT_TRUE(controller_->setProperty("preserveCredentials", false));
    EXPECT_TRUE(controller_->setProperty("preserveCredentials", false));
    EXPECT_FALSE(controller_->preserveCredentials());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(controller_->property("resultAlertOutcome").toInt(), static_cast<int>(ResultOutcome::unknown));
    EXPECT_EQ(controller_->property("dockerStatusMessage").toString(), controller_->dockerStatusMessage());
    for (const char* readOnly :
         {"isScanning", "isBusy", "operationDescription", "showResultAlert", "resultAlertTitle",
          "resultAlertMessage", "resultAlertOutcome", "resultAlertRetainedPathCount", "isDockerInstalled",
          "dockerDaemonRunning", "dockerStatusMessage", "dockerImageWarning", "canCancelOperation",
          "isCancelling"}) {
        const QMetaObject& meta = UninstallerViewModel::staticMetaObject;
        const int index = meta.indexOfProperty(readOnly);
        ASSERT_GE(index, 0) << readOnly;
        EXPECT_TRUE(meta.property(index).hasNotifySignal()) << readOnly;
        EXPECT_FALSE(meta.property(index).isWritable()) << readOnly;
    }
}

class UninstallerViewModelDeathTest : public ControllerFixture {
protected:
    UninstallerViewModelDeathTest() { ::testing::GTEST_FLAG(death_test_style) = "threadsafe"; }
};

TEST_F(UninstallerViewModelDeathTest, StopsTheProgramWhenAnOperationIsBegunOffTheMainThread) {
    EXPECT_DEATH(
        {
            start();
            std::thread([this] { controller_->scanSystem(); }).join();
        },
        "Zentrill: beginOperation must be called on the main thread");
}

TEST_F(UninstallerViewModelDeathTest, StopsTheProgramWhenItIsCancelledOffTheMainThread) {
    EXPECT_DEATH(
        {
            start();
            std::thread([this] { controller_->cancelOperation(); }).join();
        },
        "Zentrill: cancelOperation must be called on the main thread");
}

TEST_F(UninstallerViewModelDeathTest, StopsTheProgramWhenItIsShutDownOffTheMainThread) {
    EXPECT_DEATH(
        {
            start();
            std::thread([this] { controller_->shutDown(); }).join();
        },
        "Zentrill: shutDown must be called on the main thread");
}

} // namespace
} // namespace zentrill
