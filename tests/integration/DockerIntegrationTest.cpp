#include "DockerIntegrationFixture.h"
#include "docker/DockerContainerCommands.h"
#include "docker/DockerScanner.h"
#include "support/DockerEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

using DockerIntegrationTest = test::DockerIntegrationFixture;

TEST_P(DockerIntegrationTest, AnEmptyEngineHasAnEmptyInventory) {
    environment["DOCKER_HOST"] = engine->host();
    const DockerConnection connection{.arguments = {"--host", engine->host()},
                                      .displayName = "DOCKER_HOST override"};
    EXPECT_EQ(scan(), (DockerAvailability{DockerAvailability::Available{
                          .connection = connection, .containers = {}, .images = {}, .imageWarning = {}}}));
}

TEST_P(DockerIntegrationTest, TheWholeInventoryThroughTheHostVariable) {
    const std::string running = engine->makeImage("tool:running");
    const std::string exited = engine->makeImage("tool:exited");
    const std::string twice = engine->makeImage("tool:second");
    engine->docker({"tag", twice, "another/tool:first"});
    const std::string unused = engine->makeImage("tool:unused");
    const std::string untagged = engine->makeImage();
    const std::string startedID = engine->startContainer("started", "tool:running");
    const std::string endedID = engine->runContainer("ended", "tool:exited");
    environment["DOCKER_HOST"] = engine->host();

    const DockerAvailability::Available inventory = available();
    EXPECT_EQ(inventory.imageWarning, std::nullopt);
    ASSERT_EQ(inventory.containers.size(), 2U);
    const DockerContainer started = containerNamed(inventory, "started");
    EXPECT_EQ(started.id, startedID);
    EXPECT_EQ(started.image, "tool:running");
    EXPECT_TRUE(started.isRunning()) << started.status;
    EXPECT_EQ(started.connection, inventory.connection);
    const DockerContainer ended = containerNamed(inventory, "ended");
    EXPECT_EQ(ended.id, endedID);
    EXPECT_FALSE(ended.isRunning()) << ended.status;
    EXPECT_THAT(ended.status, StartsWith("Exited (0)"));

    EXPECT_THAT(imageIDs(inventory), UnorderedElementsAre(running, exited, twice, unused, untagged));
    EXPECT_EQ(imageNamed(inventory, running).usage, DockerImageUsage::inUse);
    EXPECT_EQ(imageNamed(inventory, exited).usage, DockerImageUsage::inUse);
    EXPECT_EQ(imageNamed(inventory, unused).usage, DockerImageUsage::unused);
    EXPECT_THAT(imageNamed(inventory, unused).tags, ElementsAre("tool:unused"));
    EXPECT_EQ(imageNamed(inventory, untagged).usage, DockerImageUsage::unused);
    EXPECT_EQ(imageNamed(inventory, untagged).displayName(), "Untagged image");
    EXPECT_THAT(imageNamed(inventory, twice).tags, ElementsAre("another/tool:first", "tool:second"));
    EXPECT_EQ(imageNamed(inventory, unused).size,
              engine->docker({"image", "ls", "--format", "{{.Size}}", "tool:unused"}));
}

TEST_P(DockerIntegrationTest, RemovesAnUnusedImageWhateverTheUserSwitchesToMeanwhile) {
    createContext();
    const std::string kept = engine->makeImage("tool:kept");
    const std::string tagged = engine->makeImage("tool:tagged");
    const std::string untagged = engine->makeImage();
    environment["DOCKER_HOST"] = engine->host();
    const DockerAvailability::Available before = available();
    environment["DOCKER_HOST"] = "unix:///nonexistent/docker.sock";
    for (const std::string& id : {tagged, untagged}) {
        EXPECT_EQ(
            remove(imageNamed(before, id)),
            (DockerImageRemovalResult{.succeeded = true, .message = "Removed Docker image " + id + "."}));
    }
    environment["DOCKER_HOST"] = engine->host();
    EXPECT_THAT(imageIDs(available()), ElementsAre(kept));
}

TEST_P(DockerIntegrationTest, DockerRefusesAnImageTakenIntoUseSinceTheScan) {
    const std::string image = engine->makeImage("tool:one");
    environment["DOCKER_HOST"] = engine->host();
    const DockerImage listed = imageNamed(available(), image);
    ASSERT_EQ(listed.usage, DockerImageUsage::unused);
    engine->startContainer("meanwhile", "tool:one");
    const DockerImageRemovalResult result = remove(listed);
    EXPECT_FALSE(result.succeeded);
    EXPECT_THAT(result.message, StartsWith("Docker refused to remove " + image + ": "));
    EXPECT_THAT(result.message, HasSubstr("is being used by running container"));
    EXPECT_THAT(imageIDs(available()), ElementsAre(image));

    engine->docker({"rm", "--force", "meanwhile"});
    engine->runContainer("over", "tool:one");
    EXPECT_THAT(remove(listed).message, HasSubstr("is being used by stopped container"));
    EXPECT_THAT(imageIDs(available()), ElementsAre(image));
}

TEST_P(DockerIntegrationTest, DockerRefusesAnImageWithTwoTags) {
    const std::string image = engine->makeImage("tool:one");
    engine->docker({"tag", "tool:one", "tool:two"});
    environment["DOCKER_HOST"] = engine->host();
    const DockerImageRemovalResult result = remove(imageNamed(available(), image));
    EXPECT_FALSE(result.succeeded);
    EXPECT_THAT(result.message, HasSubstr("image is referenced in multiple repositories"));
    EXPECT_THAT(imageNamed(available(), image).tags, ElementsAre("tool:one", "tool:two"));
}

TEST_P(DockerIntegrationTest, AnImageThatIsGoneCannotBeRemoved) {
    const std::string image = engine->makeImage("tool:one");
    environment["DOCKER_HOST"] = engine->host();
    const DockerImage listed = imageNamed(available(), image);
    ASSERT_TRUE(remove(listed).succeeded);
    const DockerImageRemovalResult again = remove(listed);
    EXPECT_FALSE(again.succeeded);
    EXPECT_THAT(again.message, HasSubstr("No such image"));
}

TEST_P(DockerIntegrationTest, AContainerIsStoppedBeforeItIsRemoved) {
    engine->makeImage("tool:one");
    engine->startContainer("started", "tool:one");
    environment["DOCKER_HOST"] = engine->host();
    const DockerContainer container = containerNamed(available(), "started");
    const CommandResult refused = docker(docker_container_commands::remove(container));
    EXPECT_FALSE(refused.succeeded()) << "never by force";
    ASSERT_TRUE(docker(docker_container_commands::stop(container)).succeeded());
    EXPECT_FALSE(containerNamed(available(), "started").isRunning());
    ASSERT_TRUE(docker(docker_container_commands::remove(container)).succeeded());
    EXPECT_THAT(available().containers, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Clients, DockerIntegrationTest, testing::ValuesIn(test::DockerEngine::clients()),
                         [](const testing::TestParamInfo<std::string>& client) {
                             std::string name = client.param.substr(1);
                             std::ranges::replace(name, '/', '_');
                             return name;
                         });
// A machine without any `docker` says so through the missing engine, not through this suite.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DockerIntegrationTest);

} // namespace
} // namespace zentrill
