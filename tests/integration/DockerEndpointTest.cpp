#include "DockerIntegrationFixture.h"
#include "docker/DockerScanner.h"
#include "platform/FileDescriptor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <variant>

#include <sys/socket.h>
#include <sys/un.h>

namespace zentrill {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

using DockerIntegrationTest = test::DockerIntegrationFixture;

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

} // namespace
} // namespace zentrill
