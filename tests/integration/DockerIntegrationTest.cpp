#include "docker/DockerContainerCommands.h"
#include "docker/DockerImageRemovalService.h"
#include "docker/DockerScanner.h"
#include "platform/FileDescriptor.h"
#include "support/DockerEngine.h"
#include "support/FixedDockerLocator.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// A real engine, seen through each `docker` tool of the machine by a user with a home folder of his own.
class DockerIntegrationTest : public testing::TestWithParam<std::string> {
protected:
    test::TemporaryDirectory home;
    std::optional<test::DockerEngine> engine;
    Environment environment;

    void SetUp() override {
        if (const std::optional<std::string> obstacle = test::DockerEngine::obstacle()) {
            GTEST_SKIP() << *obstacle;
        }
        engine.emplace();
        environment = ShellCommandRunner::defaultEnvironment();
        environment["HOME"] = home.path();
        for (const char* variable : {"DOCKER_HOST", "DOCKER_CONTEXT", "DOCKER_CONFIG"}) {
            environment.erase(variable);
        }
    }

    [[nodiscard]] std::shared_ptr<CommandExecuting> commands() const {
        return std::make_shared<ShellCommandRunner>(environment);
    }

    [[nodiscard]] DockerAvailability scan() const {
        return DockerScanner(commands(), std::make_shared<test::FixedDockerLocator>(GetParam()), environment)
            .scan();
    }

    [[nodiscard]] DockerAvailability::Available available() const {
        DockerAvailability result = scan();
        if (const auto* failure = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state)) {
            ADD_FAILURE() << failure->message;
        }
        auto* state = std::get_if<DockerAvailability::Available>(&result.state);
        return state != nullptr ? std::move(*state) : DockerAvailability::Available{};
    }

    [[nodiscard]] CommandResult docker(const std::vector<std::string>& arguments) const {
        return commands()->run(GetParam(), arguments, std::chrono::seconds(60));
    }

    /// Tells the tool about the engine under the name "mine"; it is not the active context yet.
    void createContext() const {
        const CommandResult created =
            docker({"context", "create", "mine", "--docker", "host=" + engine->host()});
        ASSERT_TRUE(created.succeeded()) << created.diagnostic();
    }

    [[nodiscard]] DockerImageRemovalResult remove(const DockerImage& image) const {
        return DockerImageRemovalService(commands()).remove(image, GetParam());
    }

    static DockerImage imageNamed(const DockerAvailability::Available& inventory, const std::string& id) {
        const auto found = std::ranges::find(inventory.images, id, &DockerImage::imageID);
        EXPECT_NE(found, inventory.images.end()) << id;
        return found == inventory.images.end() ? DockerImage{} : *found;
    }

    static DockerContainer containerNamed(const DockerAvailability::Available& inventory,
                                          const std::string& name) {
        const auto found = std::ranges::find(inventory.containers, name, &DockerContainer::name);
        EXPECT_NE(found, inventory.containers.end()) << name;
        return found == inventory.containers.end() ? DockerContainer{} : *found;
    }

    static std::vector<std::string> imageIDs(const DockerAvailability::Available& inventory) {
        std::vector<std::string> ids;
        for (const DockerImage& image : inventory.images) {
            ids.push_back(image.imageID);
        }
        return ids;
    }
};

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

TEST_P(DockerIntegrationTest, TheContextVariableNamesTheEndpoint) {
    createContext();
    engine->makeImage("tool:one");
    environment["DOCKER_CONTEXT"] = "mine";
    environment["DOCKER_HOST"] = "unix:///nonexistent/docker.sock";
    const DockerAvailability::Available inventory = available();
    EXPECT_EQ(inventory.connection,
              (DockerConnection{.arguments = {"--context", "mine"}, .displayName = "mine"}));
    EXPECT_EQ(inventory.images.size(), 1U);
}

TEST_P(DockerIntegrationTest, TheActiveContextNamesTheEndpoint) {
    createContext();
    ASSERT_TRUE(docker({"context", "use", "mine"}).succeeded());
    engine->makeImage("tool:one");
    const DockerAvailability::Available inventory = available();
    EXPECT_EQ(inventory.connection,
              (DockerConnection{.arguments = {"--context", "mine"}, .displayName = "mine"}));
    EXPECT_EQ(inventory.images.size(), 1U);
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

TEST_P(DockerIntegrationTest, AStoppedEngineIsUnavailable) {
    createContext();
    environment["DOCKER_CONTEXT"] = "mine";
    ASSERT_EQ(available().connection.displayName, "mine");
    engine->stop();
    const DockerAvailability result = scan();
    const auto* state = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state);
    ASSERT_NE(state, nullptr);
    EXPECT_THAT(
        state->message,
        StartsWith("Docker CLI is installed, but connection 'mine' is unavailable. Start Docker Desktop (or "
                   "restore that connection), then choose Scan System. "));
    EXPECT_THAT(state->message, HasSubstr("Cannot connect to the Docker daemon at " + engine->host()));
}

TEST_P(DockerIntegrationTest, AnActiveContextThatIsGoneIsUnavailable) {
    createContext();
    ASSERT_TRUE(docker({"context", "use", "mine"}).succeeded());
    std::filesystem::remove_all(home.path(".docker/contexts"));
    const DockerAvailability result = scan();
    const auto* state = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state);
    ASSERT_NE(state, nullptr);
    EXPECT_THAT(state->message, HasSubstr("mine"));
}

TEST_P(DockerIntegrationTest, AnUnknownContextIsUnavailable) {
    environment["DOCKER_CONTEXT"] = "nowhere";
    const DockerAvailability result = scan();
    const auto* state = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state);
    ASSERT_NE(state, nullptr);
    EXPECT_THAT(state->message,
                StartsWith("Docker CLI is installed, but connection 'nowhere' is unavailable. "));
    EXPECT_THAT(state->message, HasSubstr("context"));
}

TEST_P(DockerIntegrationTest, AnEngineThatNeverAnswersIsUnavailableInTime) {
    // It takes connections and leaves them at that.
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = home.path("deaf.sock");
    ASSERT_LT(path.size(), sizeof(address.sun_path));
    path.copy(address.sun_path, path.size());
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(::listen(socket.get(), 16), 0);
    environment["DOCKER_HOST"] = "unix://" + path;

    const auto start = std::chrono::steady_clock::now();
    const DockerAvailability result = scan();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(11));
    EXPECT_EQ(result,
              (DockerAvailability{DockerAvailability::DaemonUnavailable{
                  "Docker CLI is installed, but connection 'DOCKER_HOST override' is unavailable. Start "
                  "Docker Desktop (or restore that connection), then choose Scan System. Command timed "
                  "out."}}));
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
