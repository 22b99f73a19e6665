#include "controller/SelfUninstallFlow.h"

#include "ControllerFixture.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

using test::ControllerFixture;
using test::waitUntil;
using ::testing::ElementsAre;

class SelfUninstallFlowTest : public ControllerFixture {
protected:
    void install(const char* identifier) {
        bundle_ = home_.makeDirectory("Applications/Zentrill.app");
        home_.makeFile("Applications/Zentrill.app/Contents/Info.plist",
                       std::string(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>CFBundleIdentifier</key><string>)") +
                           identifier + "</string></dict></plist>\n");
        home_.makeFile("Library/Preferences/com.user.Zentrill.plist");
    }
};

TEST_F(SelfUninstallFlowTest, EndsTheProcessOnceEverythingIsGone) {
    install("com.user.Zentrill");
    start();
    controller_->performSelfUninstall();
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Uninstalling Zentrill"));
    EXPECT_FALSE(controller_->canCancelOperation());
    EXPECT_THAT(events_, ElementsAre("window state forgotten"));
    ASSERT_TRUE(waitUntil([this] { return events_.size() == 2; }));
    EXPECT_EQ(events_.at(1), "exit");
    EXPECT_FALSE(FileSystem::shared().fileExists(bundle_));
    EXPECT_FALSE(FileSystem::shared().fileExists(home_.path("Library/Preferences/com.user.Zentrill.plist")));
    EXPECT_FALSE(controller_->showResultAlert());
    ASSERT_TRUE(settleLog());
    EXPECT_THAT(messages(), ElementsAre("Removing Zentrill bundle and owned application data..."));
}

TEST_F(SelfUninstallFlowTest, RemovesWhatElseBelongsToTheProgram) {
    install("com.user.Zentrill");
    ownedData_ = {home_.makeFile("menu/entry"), home_.path("menu/icon")};
    start();
    controller_->performSelfUninstall();
    ASSERT_TRUE(waitUntil([this] { return events_.size() == 2; }));
    EXPECT_FALSE(FileSystem::shared().fileExists(ownedData_.front()));
    EXPECT_TRUE(FileSystem::shared().fileExists(home_.path("menu")));
}

TEST_F(SelfUninstallFlowTest, StaysAndSaysWhyWhenItFails) {
    install("com.user.other");
    home_.makeDirectory(".ollama");
    start();
    controller_->performSelfUninstall();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(events_, ElementsAre("window state forgotten"));
    EXPECT_TRUE(controller_->showResultAlert());
    EXPECT_EQ(controller_->resultAlertTitle(), QStringLiteral("Self-Uninstall Failed"));
    EXPECT_EQ(controller_->resultAlertOutcome(), ResultOutcome::errors);
    EXPECT_EQ(controller_->resultAlertMessage().toStdString(),
              "Self-uninstall failed: The app bundle identifier does not match com.user.Zentrill.\n"
              "Still present: " +
                  bundle_ + ", " + home_.path("Library/Preferences/com.user.Zentrill.plist"));
    EXPECT_EQ(controller_->operationDescription(), QString());
    // No rescan follows.
    EXPECT_FALSE(app("Ollama").isDetected);
    EXPECT_THAT(messages(), ElementsAre("Removing Zentrill bundle and owned application data..."));
    controller_->scanSystem();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(app("Ollama").isDetected);
}

TEST(SelfUninstallFailureTest, TellsWhatIsGoneAndWhatIsStillThere) {
    const ResultAlert alert = selfUninstallFailure({.removedPaths = {"/a", "/b"},
                                                    .failures = {"/c: Permission denied", "/d: Device busy"},
                                                    .remainingPaths = {"/c", "/d"}});
    EXPECT_EQ(alert, (ResultAlert{"Self-Uninstall Failed",
                                  "Self-uninstall failed: /c: Permission denied; /d: Device busy\n"
                                  "Removed before failure: /a, /b\nStill present: /c, /d",
                                  ResultOutcome::errors, 0}));
}

TEST(SelfUninstallFailureTest, LeavesOutWhatThereIsNot) {
    EXPECT_EQ(selfUninstallFailure({.removedPaths = {}, .failures = {"No."}, .remainingPaths = {}}).message,
              "Self-uninstall failed: No.");
}

} // namespace
} // namespace zentrill
