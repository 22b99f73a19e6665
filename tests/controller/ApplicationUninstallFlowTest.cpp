#include "controller/ApplicationUninstallFlow.h"

#include "ApplicationUninstallFlowFixture.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zentrill {
namespace {

using test::FakeCommandRunner;
using ::testing::Contains;
using ::testing::ElementsAre;

using ApplicationUninstallFlowTest = test::ApplicationUninstallFlowFixture;

constexpr const char* startLine = "=== Starting Application Uninstallation ===";
constexpr const char* emptySummary =
    "Scan completed: 0 applications, 0 models, 0 Docker containers, and 0 Docker images.";

TEST_F(ApplicationUninstallFlowTest, EndsWithoutAResultWhenNothingIsSelected) {
    home_.makeDirectory(support);
    startScanned();
    controller_->uninstallSelectedApps();
    EXPECT_TRUE(controller_->isBusy());
    EXPECT_TRUE(controller_->canCancelOperation());
    EXPECT_FALSE(controller_->isScanning());
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Preparing uninstallation…"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(messages(), ElementsAre(startLine, "No applications selected for uninstallation."));
    EXPECT_FALSE(controller_->canCancelOperation());
    EXPECT_EQ(controller_->operationDescription(), QString());
    EXPECT_FALSE(controller_->showResultAlert());
}

TEST_F(ApplicationUninstallFlowTest, IgnoresASelectionThatIsNotDetected) {
    startScanned();
    controller_->setAppSelected("VendorApp", true);
    home_.makeFile(std::string(caches) + "/file");
    controller_->uninstallSelectedApps();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(messages(), ElementsAre(startLine, "No applications selected for uninstallation."));
    EXPECT_TRUE(exists(caches));
}

TEST_F(ApplicationUninstallFlowTest, RemovesTheSelectionWithoutTheShield) {
    home_.makeFile(std::string(support) + "/settings.json");
    home_.makeFile(std::string(caches) + "/deep/file");
    home_.makeDirectory(".ollama");
    startScanned();
    controller_->setAppSelected("VendorApp", true);
    controller_->setPreserveCredentials(false);
    controller_->uninstallSelectedApps();
    ASSERT_TRUE(waitUntilIdle());

    EXPECT_FALSE(exists(support));
    EXPECT_FALSE(exists(caches));
    EXPECT_TRUE(exists(".ollama"));
    EXPECT_TRUE(controller_->showResultAlert());
    EXPECT_EQ(controller_->resultAlertTitle(), QStringLiteral("Uninstallation Completed"));
    EXPECT_EQ(controller_->resultAlertMessage(),
              QStringLiteral("Removed 2 filesystem items for 1 application(s)."));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::complete);
    EXPECT_EQ(controller_->resultAlertRetainedPathCount(), 0);
    EXPECT_THAT(controller_->resultAlertFreeSpace().toStdString(),
                ::testing::MatchesRegex("Free space: [0-9.]+ [GM]B \u2192 [0-9.]+ [GM]B"));
    EXPECT_FALSE(app("VendorApp").isDetected);
    EXPECT_FALSE(app("VendorApp").isSelected);
    EXPECT_THAT(
        messages(),
        ElementsAre(startLine, "Uninstalling: VendorApp",
                    "Found remaining configuration/data for Ollama; no installation executable was "
                    "detected.",
                    "Scan completed: 1 applications, 0 models, 0 Docker containers, and 0 Docker images."));
}

TEST_F(ApplicationUninstallFlowTest, KeepsAndReportsWhatTheShieldProtects) {
    home_.makeFile(std::string(support) + "/settings.json");
    home_.makeFile(std::string(caches) + "/data.bin");
    startScanned();
    controller_->setAppSelected("VendorApp", true);
    controller_->uninstallSelectedApps();
    ASSERT_TRUE(waitUntilIdle());

    EXPECT_TRUE(exists(std::string(support) + "/settings.json"));
    EXPECT_TRUE(exists(std::string(caches) + "/data.bin"));
    EXPECT_EQ(controller_->resultAlertFreeSpace(), QString()); // Nothing went.
    EXPECT_THAT(messages(), Contains("[Safety Shield] Preserved: " + home_.path(support) + "/settings.json"));
    EXPECT_THAT(messages(), Contains("[Safety Shield] Preserved: " + home_.path(caches) + "/data.bin"));
    EXPECT_EQ(controller_->resultAlertTitle(),
              QStringLiteral("Uninstallation Completed with Data Remaining"));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::dataRemaining);
    EXPECT_EQ(controller_->resultAlertRetainedPathCount(), 2);
    EXPECT_THAT(controller_->resultRetainedPaths(), ElementsAre(home_.path(support), home_.path(caches)));
    EXPECT_EQ(controller_->resultAlertMessage().toStdString(),
              "Removed 0 filesystem items for 1 application(s).\n"
              "Remaining selected-app data (not deleted; review before removing manually):\n"
              "VendorApp: " +
                  home_.path(support) + "\nVendorApp: " + home_.path(caches));
    EXPECT_TRUE(app("VendorApp").isDetected);
    EXPECT_TRUE(app("VendorApp").isSelected);
}

TEST_F(ApplicationUninstallFlowTest, AddsUpWhatAllToolsLost) {
    home_.makeFile(std::string(support) + "/settings.json");
    home_.makeFile(std::string(caches) + "/file");
    home_.makeFile(".claude/history");
    startScanned();
    controller_->uninstallAppsFromConfirmation(targets({"VendorApp", "Claude Code"}), false);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(controller_->resultAlertMessage(),
              QStringLiteral("Removed 3 filesystem items for 2 application(s)."));
}

TEST_F(ApplicationUninstallFlowTest, OpensTheResultOverListsThatAreFresh) {
    home_.makeFile(std::string(caches) + "/file");
    startScanned();
    ASSERT_TRUE(app("VendorApp").isDetected);
    int opened = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::showResultAlertChanged, [this, &opened] {
        ++opened;
        EXPECT_FALSE(app("VendorApp").isDetected);
        EXPECT_FALSE(controller_->isBusy());
        EXPECT_FALSE(controller_->resultAlertMessage().isEmpty());
        EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::complete);
    });
    controller_->uninstallAppsFromConfirmation(targets({"VendorApp"}), false);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(opened, 1);
    controller_->dismissResultAlert();
    EXPECT_FALSE(controller_->showResultAlert());
}

TEST_F(ApplicationUninstallFlowTest, ActsOnTheConfirmedListAndChoiceAlone) {
    home_.makeFile(std::string(caches) + "/file");
    home_.makeFile(".openrouter/notes");
    startScanned();
    const std::vector<AppInfo> confirmed = targets({"VendorApp"});
    controller_->setAppSelected("VendorApp", false);
    controller_->setAppSelected("OpenRouter CLI", true);
    controller_->setPreserveCredentials(true);
    controller_->uninstallAppsFromConfirmation(confirmed, false);
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Uninstalling 1 application(s)"));
    EXPECT_TRUE(controller_->canCancelOperation());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(exists(caches));
    EXPECT_TRUE(exists(".openrouter/notes"));
    EXPECT_TRUE(controller_->preserveCredentials());
}

TEST_F(ApplicationUninstallFlowTest, RemovesTheNpmPackageOfClaudeCodeFirst) {
    home_.makeFile(".claude/history");
    startScanned();
    bool dataStillThere = false;
    answer_ = [&](const FakeCommandRunner::Call& call) {
        if (call.executable == "/usr/bin/env") {
            dataStillThere = exists(".claude/history");
        }
        return test::ok();
    };
    controller_->uninstallAppsFromConfirmation(targets({"Claude Code"}), false);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(dataStillThere);
    EXPECT_FALSE(exists(".claude"));
    EXPECT_THAT(commands_->calls(),
                Contains(FakeCommandRunner::Call{
                    "/usr/bin/env", {"npm", "uninstall", "-g", "@anthropic-ai/claude-code"}, 45.0}));
    EXPECT_THAT(messages(),
                ElementsAre(startLine, "Uninstalling: Claude Code",
                            "Running 'npm uninstall -g @anthropic-ai/claude-code'...", emptySummary));
}

TEST_F(ApplicationUninstallFlowTest, GoesOnWhenTheNpmPackageCannotBeRemoved) {
    home_.makeFile(".claude/history");
    startScanned();
    answer_ = [](const FakeCommandRunner::Call& call) {
        return call.executable == "/usr/bin/env" ? test::failed(127, "env: npm: No such file or directory\n")
                                                 : test::ok();
    };
    controller_->uninstallAppsFromConfirmation(targets({"Claude Code"}), false);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(exists(".claude"));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::complete);
    EXPECT_THAT(messages(), ElementsAre(startLine, "Uninstalling: Claude Code",
                                        "Running 'npm uninstall -g @anthropic-ai/claude-code'...",
                                        "Claude Code package cleanup: env: npm: No such file or directory",
                                        emptySummary));
}

TEST_F(ApplicationUninstallFlowTest, RunsNpmForNoOtherTool) {
    home_.makeFile("Library/Application Support/Claude/file");
    startScanned();
    controller_->uninstallAppsFromConfirmation(targets({"Claude"}), false);
    ASSERT_TRUE(waitUntilIdle());
    for (const FakeCommandRunner::Call& call : commands_->calls()) {
        EXPECT_NE(call.executable, "/usr/bin/env");
    }
}

TEST_F(ApplicationUninstallFlowTest, ReportsAToolThatIsRunningAndTouchesNothingOfIt) {
    home_.makeFile("Library/Application Support/Claude/file");
    home_.makeFile(std::string(caches) + "/file");
    startScanned();
    answer_ = [](const FakeCommandRunner::Call& call) {
        return test::ok(call.executable == "/bin/ps" ? "/Applications/Claude.app/Contents/MacOS/Claude\n"
                                                     : "");
    };
    controller_->uninstallAppsFromConfirmation(targets({"Claude", "VendorApp"}), false);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(exists("Library/Application Support/Claude/file"));
    EXPECT_FALSE(exists(caches));
    EXPECT_EQ(controller_->resultAlertTitle(), QStringLiteral("Uninstallation Completed with Errors"));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::errors);
    EXPECT_EQ(controller_->resultAlertMessage(),
              QStringLiteral("Removed 1 filesystem items for 2 application(s).\nErrors:\n"
                             "Claude is currently running. Quit Claude before removing it."));
}

TEST_F(ApplicationUninstallFlowTest, LogsEveryPathOfAManyFileToolWhileTheEventLoopLives) {
    constexpr int fileCount = 50'000;
    for (int file = 0; file < fileCount; ++file) {
        home_.makeFile(std::string(caches) + "/" + std::to_string(file));
    }
    startScanned();
    std::size_t longestAppend = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::logsAppended,
                     [&longestAppend](qsizetype, qsizetype count) {
                         longestAppend = std::max(longestAppend, static_cast<std::size_t>(count));
                     });
    controller_->uninstallAppsFromConfirmation(targets({"VendorApp"}), true);
    ASSERT_TRUE(waitUntilIdle());
    const std::vector<std::string> lines = messages();
    EXPECT_EQ(
        std::ranges::count_if(
            lines, [](const std::string& line) { return line.starts_with("[Safety Shield] Preserved: "); }),
        fileCount);
    EXPECT_EQ(controller_->resultAlertRetainedPathCount(), 1);
    EXPECT_LE(longestAppend, 4096U);
}

} // namespace
} // namespace zentrill
