#include "RemovalFlowsFixture.h"
#include "docker/DockerDataRoot.h"

#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

using ::testing::Contains;

using RemovalFlowsTest = test::RemovalFlowsFixture;

constexpr const char* freeSpace = "Free space: [0-9.]+ [GM]B \u2192 [0-9.]+ [GM]B";

TEST_F(RemovalFlowsTest, MeasuresTheFreeSpaceAroundAModel) {
    home_.makeFile(".lmstudio/models/pub/foo.gguf", std::string(1'500'000, 'x'));
    start();
    controller_->scanSystem();
    ASSERT_TRUE(waitUntilIdle());
    controller_->deleteModel(controller_->localModels().front());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(controller_->resultAlertFreeSpace().toStdString(), testing::MatchesRegex(freeSpace));
    controller_->deleteModel({.name = "gone", .source = "LM Studio (GGUF)", .path = home_.path("gone")});
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(controller_->resultAlertFreeSpace(), QString());
}

TEST_F(RemovalFlowsTest, MeasuresTheFreeSpaceOfTheEngineOfThisMachine) {
    const DockerConnection own{.arguments = {"--context", "default"}, .displayName = "default"};
    if (!localDockerDataRoot(own)) {
        GTEST_SKIP() << "needs the folder of a Docker Engine";
    }
    locator_->set("/opt/docker");
    start();
    DockerImage unused = image(DockerImageUsage::unused);
    unused.connection = own;
    controller_->removeDockerImage(unused);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(controller_->resultAlertFreeSpace().toStdString(), testing::MatchesRegex(freeSpace));
    DockerContainer created = container("Created");
    created.connection = own;
    controller_->stopContainer(created);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(controller_->resultAlertFreeSpace(), QString());
    controller_->removeContainer(created);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_THAT(controller_->resultAlertFreeSpace().toStdString(), testing::MatchesRegex(freeSpace));
}

/// Nor is anything asked for it before the removal.
TEST_F(RemovalFlowsTest, MeasuresNoFreeSpaceOfAnotherEngine) {
    locator_->set("/opt/docker");
    start();
    controller_->removeContainer(container("Created"));
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_FALSE(commands_->calls().empty());
    EXPECT_THAT(commands_->calls().front().arguments, Contains("rm"));
    EXPECT_EQ(controller_->resultAlertFreeSpace(), QString());
}

} // namespace
} // namespace zentrill
