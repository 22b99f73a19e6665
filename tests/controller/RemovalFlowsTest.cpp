#include "RemovalFlowsFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

using test::FakeCommandRunner;
using ::testing::Contains;
using ::testing::ElementsAre;

using RemovalFlowsTest = test::RemovalFlowsFixture;

constexpr const char* emptySummary =
    "Scan completed: 0 applications, 0 models, 0 Docker containers, and 0 Docker images.";

TEST_F(RemovalFlowsTest, DeletesAModelFile) {
    const std::string path = home_.makeFile(".lmstudio/models/pub/foo.gguf", std::string(1'500'000, 'x'));
    start();
    controller_->scanSystem();
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_EQ(controller_->localModels().size(), 1U);
    controller_->clearLogs();
    const LocalModel model = controller_->localModels().front();
    controller_->deleteModel(model);
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Deleting pub/foo.gguf"));
    EXPECT_FALSE(controller_->canCancelOperation());
    EXPECT_FALSE(controller_->isScanning());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(FileSystem::shared().fileExists(path));
    EXPECT_TRUE(controller_->localModels().empty());
    expectResult("Model Deleted", "Removed model pub/foo.gguf.", ResultOutcome::complete);
    EXPECT_THAT(
        messages(),
        ElementsAre("Deleting local model: pub/foo.gguf (LM Studio (GGUF), 1.5 MB)",
                    "Removed model pub/foo.gguf.",
                    "Found remaining configuration/data for LM Studio; no installation executable was "
                    "detected.",
                    "Scanning LM Studio models...",
                    "Scan completed: 1 applications, 0 models, 0 Docker containers, and 0 Docker images."));
}

TEST_F(RemovalFlowsTest, ReportsAModelThatCannotBeDeleted) {
    start();
    result_ = [](const auto&) { return test::failed(1, "Error: model 'llama3:latest' not found\n"); };
    controller_->deleteModel(
        {.name = "llama3:latest", .source = std::string(ollamaSource), .path = "/nowhere"});
    ASSERT_TRUE(waitUntilIdle());
    const std::string message =
        "Ollama could not remove llama3:latest: Error: model 'llama3:latest' not found";
    expectResult("Model Deletion Failed", message, ResultOutcome::errors);
    EXPECT_THAT(messages(), ElementsAre("Deleting local model: llama3:latest (Ollama, Unknown size)", message,
                                        emptySummary));
}

TEST_F(RemovalFlowsTest, StopsAContainerThroughItsOwnConnection) {
    locator_->set("/opt/docker");
    start();
    controller_->stopContainer(container("Up 3 minutes"));
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Stopping web"));
    EXPECT_FALSE(controller_->canCancelOperation());
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Container Stopped", "Stopped web.", ResultOutcome::complete);
    EXPECT_THAT(operationCalls(),
                ElementsAre(FakeCommandRunner::Call{
                    "/opt/docker", {"--context", "desktop", "container", "stop", "c0ffee"}, 30.0}));
    EXPECT_THAT(messages(),
                ElementsAre("Stopping Docker container: web (c0ffee)...", "Stopped web.", emptySummary));
}

TEST_F(RemovalFlowsTest, ReportsAContainerThatCannotBeStopped) {
    locator_->set("/opt/docker");
    start();
    result_ = [](const auto&) {
        CommandResult result;
        result.timedOut = true;
        return result;
    };
    controller_->stopContainer(container("Up 3 minutes"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Stop Failed", "Could not stop web: Command timed out.", ResultOutcome::errors);
}

TEST_F(RemovalFlowsTest, RemovesAStoppedContainerWithOneCommand) {
    locator_->set("/opt/docker");
    start();
    controller_->removeContainer(container("Exited (0) 2 hours ago"));
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Removing web"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Container Removed", "Removed web.", ResultOutcome::complete);
    EXPECT_THAT(operationCalls(),
                ElementsAre(FakeCommandRunner::Call{
                    "/opt/docker", {"--context", "desktop", "container", "rm", "c0ffee"}, 30.0}));
    EXPECT_THAT(messages(),
                ElementsAre("Removing Docker container: web (c0ffee)...", "Removed web.", emptySummary));
}

TEST_F(RemovalFlowsTest, StopsARunningContainerBeforeItRemovesIt) {
    locator_->set("/opt/docker");
    start();
    controller_->removeContainer(container("Up 3 minutes"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Container Removed", "Removed web.", ResultOutcome::complete);
    ASSERT_EQ(operationCalls().size(), 2U);
    EXPECT_THAT(operationCalls().at(0).arguments, Contains("stop"));
    EXPECT_THAT(operationCalls().at(1).arguments, Contains("rm"));
}

TEST_F(RemovalFlowsTest, KeepsARunningContainerThatCannotBeStopped) {
    locator_->set("/opt/docker");
    start();
    result_ = [](const FakeCommandRunner::Call& call) {
        return ::testing::Value(call.arguments, Contains("stop")) ? test::failed(1, "permission denied\n")
                                                                  : test::ok();
    };
    controller_->removeContainer(container("Up 3 minutes"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Removal Failed", "Could not stop web: permission denied", ResultOutcome::errors);
    EXPECT_EQ(operationCalls().size(), 1U);
    EXPECT_EQ(controller_->resultAlertFreeSpace(), QString());
}

TEST_F(RemovalFlowsTest, ReportsAContainerThatCannotBeRemoved) {
    locator_->set("/opt/docker");
    start();
    result_ = [](const auto&) { return test::failed(3); };
    controller_->removeContainer(container("Created"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Removal Failed", "Could not remove web: Command exited with status 3.",
                 ResultOutcome::errors);
}

TEST_F(RemovalFlowsTest, RemovesAnUnusedImageByItsFullID) {
    locator_->set("/opt/docker");
    start();
    const DockerImage unused = image(DockerImageUsage::unused);
    controller_->removeDockerImage(unused);
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Removing Docker image 0123456789ab"));
    ASSERT_TRUE(waitUntilIdle());
    const std::string message = "Removed Docker image " + unused.imageID + ".";
    expectResult("Docker Image Removed", message, ResultOutcome::complete);
    EXPECT_THAT(operationCalls(),
                ElementsAre(FakeCommandRunner::Call{
                    "/opt/docker", {"--context", "desktop", "image", "rm", "--", unused.imageID}, 45.0}));
    EXPECT_THAT(messages(),
                ElementsAre("Removing Docker image: 0123456789ab from desktop", message, emptySummary));
}

TEST_F(RemovalFlowsTest, RunsNothingForAnImageThatIsInUse) {
    locator_->set("/opt/docker");
    start();
    const DockerImage used = image(DockerImageUsage::inUse);
    controller_->removeDockerImage(used);
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Image Removal Failed",
                 "Image " + used.imageID + " is used by a container; it was not removed.",
                 ResultOutcome::errors);
    EXPECT_TRUE(operationCalls().empty());
}

TEST_F(RemovalFlowsTest, ShowsAnIdentifierThatIsNoDigestAsItStands) {
    start();
    DockerImage odd = image(DockerImageUsage::unused);
    odd.imageID = "an-identifier-longer-than-twelve";
    controller_->removeDockerImage(odd);
    EXPECT_EQ(controller_->operationDescription(),
              QStringLiteral("Removing Docker image an-identifier-longer-than-twelve"));
    ASSERT_TRUE(waitUntilIdle());
}

TEST_F(RemovalFlowsTest, NoticesThatDockerIsGoneByNow) {
    start();
    const std::string gone = "Docker CLI is no longer available.";
    controller_->stopContainer(container("Up 3 minutes"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Stop Failed", gone, ResultOutcome::errors);
    controller_->removeContainer(container("Up 3 minutes"));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Removal Failed", gone, ResultOutcome::errors);
    controller_->removeDockerImage(image(DockerImageUsage::unused));
    ASSERT_TRUE(waitUntilIdle());
    expectResult("Image Removal Failed", gone, ResultOutcome::errors);
    EXPECT_TRUE(commands_->calls().empty());
    EXPECT_THAT(messages(),
                ElementsAre("Stopping Docker container: web (c0ffee)...", gone, emptySummary,
                            "Removing Docker container: web (c0ffee)...", gone, emptySummary,
                            "Removing Docker image: 0123456789ab from desktop", gone, emptySummary));
}

TEST_F(RemovalFlowsTest, RefusesEveryOperationWhileOneRuns) {
    locator_->set("/opt/docker");
    start();
    controller_->stopContainer(container("Up 3 minutes"));
    controller_->stopContainer(container("Up 3 minutes"));
    controller_->removeContainer(container("Up 3 minutes"));
    controller_->removeDockerImage(image(DockerImageUsage::unused));
    controller_->deleteModel({.name = "m", .source = std::string(ollamaSource), .path = "/nowhere"});
    controller_->uninstallAppsFromConfirmation(controller_->apps(), false);
    controller_->uninstallSelectedApps();
    controller_->performSelfUninstall();
    ASSERT_TRUE(waitUntilIdle());
    const std::vector<std::string> lines = messages();
    EXPECT_EQ(std::ranges::count(lines, "Ignored request while another operation is running: Stopping web"),
              7);
    EXPECT_EQ(operationCalls().size(), 1U);
    EXPECT_TRUE(events_.empty());
}

} // namespace
} // namespace zentrill
