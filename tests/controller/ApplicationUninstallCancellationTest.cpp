#include "ApplicationUninstallFlowFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

namespace zentrill {
namespace {

using test::FakeCommandRunner;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

using ApplicationUninstallFlowTest = test::ApplicationUninstallFlowFixture;

TEST_F(ApplicationUninstallFlowTest, StopsBetweenTwoStepsWhenCancelled) {
    home_.makeFile(".claude/history");
    home_.makeFile(std::string(caches) + "/file");
    startScanned();
    test::Gate gate;
    answer_ = [&gate](const FakeCommandRunner::Call& call) {
        if (call.executable == "/usr/bin/env") {
            gate.pass();
        }
        return test::ok();
    };
    controller_->uninstallAppsFromConfirmation(targets({"Claude Code", "VendorApp"}), false);
    ASSERT_TRUE(gate.waitForArrival());
    EXPECT_FALSE(controller_->isCancelling());
    controller_->cancelOperation();
    EXPECT_TRUE(controller_->isCancelling());
    gate.open();
    ASSERT_TRUE(waitUntilIdle());

    EXPECT_FALSE(controller_->isCancelling());
    EXPECT_TRUE(exists(".claude/history"));
    EXPECT_TRUE(exists(caches));
    const std::vector<std::string> lines = messages();
    EXPECT_EQ(std::ranges::count(lines, "Operation cancelled."), 1);
    EXPECT_THAT(lines, Contains("Cancellation requested by user."));
    EXPECT_THAT(lines, Not(Contains("Uninstalling: VendorApp")));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::errors);
    EXPECT_EQ(controller_->resultAlertMessage().toStdString(),
              "Removed 0 filesystem items for 1 application(s).\n"
              "Remaining selected-app data (not deleted; review before removing manually):\n"
              "Claude Code: " +
                  home_.path(".claude") + "\nErrors:\nOperation cancelled.");
}

TEST_F(ApplicationUninstallFlowTest, SaysSoWhenApplicationsWereNotEvenBegun) {
    home_.makeFile(std::string(caches) + "/file");
    startScanned();
    std::vector<std::string> lines;
    OperationContext cancelled = context([&lines](std::string line) { lines.push_back(std::move(line)); });
    cancelled.isCancelled = [] { return true; };
    const ResultAlert alert = uninstallApps(cancelled, targets({"VendorApp"}), false);
    EXPECT_TRUE(exists(caches));
    EXPECT_THAT(lines, ElementsAre("Operation cancelled."));
    EXPECT_EQ(alert,
              (ResultAlert{"Uninstallation Completed with Errors",
                           "Removed 0 filesystem items for 0 application(s).\nErrors:\nOperation cancelled.",
                           ResultOutcome::errors, 0}));
}

TEST_F(ApplicationUninstallFlowTest, CompletesWhenTheCancellationComesAfterTheLastTool) {
    const std::string settings = home_.makeFile(std::string(support) + "/settings.json");
    home_.makeFile(std::string(caches) + "/file.log");
    startScanned();
    bool isCancelled = false;
    std::vector<std::string> lines;
    // What the shield kept is told when the tool is done.
    OperationContext late = context([&](std::string line) {
        isCancelled = isCancelled || line.starts_with("[Safety Shield]");
        lines.push_back(std::move(line));
    });
    late.isCancelled = [&isCancelled] { return isCancelled; };
    const ResultAlert alert = uninstallApps(late, targets({"VendorApp"}), true);
    EXPECT_TRUE(isCancelled);
    EXPECT_THAT(lines, Contains("[Safety Shield] Preserved: " + settings));
    EXPECT_THAT(lines, Not(Contains("Operation cancelled.")));
    EXPECT_EQ(alert.title, "Uninstallation Completed with Data Remaining");
    EXPECT_EQ(alert.outcome, ResultOutcome::dataRemaining);
    EXPECT_THAT(alert.message, Not(::testing::HasSubstr("cancelled")));
}

TEST_F(ApplicationUninstallFlowTest, GivesTheNextOperationAFreshToken) {
    home_.makeFile(".claude/history");
    startScanned();
    test::Gate gate;
    bool first = true;
    answer_ = [&](const FakeCommandRunner::Call& call) {
        if (call.executable == "/usr/bin/env" && std::exchange(first, false)) {
            gate.pass();
        }
        return test::ok();
    };
    controller_->uninstallAppsFromConfirmation(targets({"Claude Code"}), false);
    ASSERT_TRUE(gate.waitForArrival());
    controller_->cancelOperation();
    gate.open();
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_TRUE(exists(".claude/history"));
    controller_->uninstallAppsFromConfirmation(targets({"Claude Code"}), false);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(exists(".claude"));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::complete);
}

TEST_F(ApplicationUninstallFlowTest, DoesNotReportAsRemainingWhatTheNextToolRemoved) {
    home_.makeFile(".codex/history");
    home_.makeFile("Library/Application Support/com.openai.chat/file");
    startScanned();
    // The folder that both tools share cannot go with the first one.
    std::atomic<bool> isHeld = true;
    engine_ = std::make_shared<SafeDeletionEngine>(
        FileSystem::shared(), CredentialMatcher(), [&isHeld, home = home_.path()](const std::string& path) {
            return path.starts_with(home + "/") && !(isHeld && path.starts_with(home + "/.codex"));
        });
    bool wasLeftByTheFirst = false;
    const ResultAlert alert = uninstallApps(context([&](const std::string& line) {
                                                if (line == "Uninstalling: Codex Tooling") {
                                                    wasLeftByTheFirst = exists(".codex/history");
                                                    isHeld = false;
                                                }
                                            }),
                                            targets({"ChatGPT", "Codex Tooling"}), false);
    EXPECT_TRUE(wasLeftByTheFirst);
    EXPECT_FALSE(exists(".codex"));
    EXPECT_EQ(alert.message, "Removed 1 filesystem items for 2 application(s).\n"
                             "Remaining selected-app data (not deleted; review before removing manually):\n"
                             "ChatGPT: " +
                                 home_.path("Library/Application Support/com.openai.chat"));
    EXPECT_EQ(alert.retainedPathCount, 1);
    EXPECT_EQ(alert.outcome, ResultOutcome::dataRemaining);
}

TEST_F(ApplicationUninstallFlowTest, ReportsCompleteWhenTheNextToolRemovedAllThatWasLeft) {
    home_.makeFile(".codex/history");
    startScanned();
    std::atomic<bool> isHeld = true;
    engine_ = std::make_shared<SafeDeletionEngine>(FileSystem::shared(), CredentialMatcher(),
                                                   [&isHeld, home = home_.path()](const std::string& path) {
                                                       return path.starts_with(home + "/") && !isHeld;
                                                   });
    const ResultAlert alert = uninstallApps(context([&isHeld](const std::string& line) {
                                                isHeld = isHeld && line != "Uninstalling: Codex Tooling";
                                            }),
                                            targets({"ChatGPT", "Codex Tooling"}), false);
    EXPECT_FALSE(exists(".codex"));
    EXPECT_EQ(alert,
              (ResultAlert{"Uninstallation Completed", "Removed 1 filesystem items for 2 application(s).",
                           ResultOutcome::complete, 0}));
}

} // namespace
} // namespace zentrill
