#include "docker/DockerScanner.h"

#include "DockerScannerFixture.h"
#include "ImageID.h"
#include "support/FakeCommandRunner.h"
#include "support/FixedDockerLocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::containerLine;
using test::failed;
using test::FakeCommandRunner;
using test::FixedDockerLocator;
using test::imageID;
using test::imageLine;
using test::ok;
using testing::ElementsAre;
using testing::IsEmpty;

using DockerScannerTest = test::DockerScannerFixture;

TEST_F(DockerScannerTest, RunsNothingWithoutTheTool) {
    const DockerAvailability result =
        DockerScanner(commands, std::make_shared<FixedDockerLocator>(std::nullopt), {}).scan();
    EXPECT_EQ(result, DockerAvailability{DockerAvailability::MissingCLI{}});
    EXPECT_THAT(commands->calls(), IsEmpty());
}

TEST_F(DockerScannerTest, AsksInOrderEachWithItsTimeOut) {
    containers = ok(containerLine("c1") + containerLine("c2"));
    usage = ok(imageID('a') + "\n" + imageID('b') + "\n");
    static_cast<void>(available());
    using Call = FakeCommandRunner::Call;
    const std::string docker = "/opt/docker";
    EXPECT_THAT(
        commands->calls(),
        ElementsAre(
            Call{docker, {"context", "show"}, 5},
            Call{docker, {"--context", "default", "version", "--format", "{{.Server.Version}}"}, 8},
            Call{docker,
                 {"--context", "default", "container", "ls", "-a", "--no-trunc", "--format", "{{json .}}"},
                 10},
            Call{docker, {"--context", "default", "image", "ls", "--no-trunc", "--format", "{{json .}}"}, 10},
            Call{docker,
                 {"--context", "default", "inspect", "--type", "container", "--format", "{{.Image}}", "c1",
                  "c2"},
                 10}));
}

TEST_F(DockerScannerTest, TheContextVariableComesFirst) {
    environment = {{"DOCKER_CONTEXT", " my context "}, {"DOCKER_HOST", "tcp://ignored"}};
    EXPECT_EQ(available().connection,
              (DockerConnection{.arguments = {"--context", " my context "}, .displayName = " my context "}));
    EXPECT_EQ(commands->calls().size(), 3U) << "the active context is not asked for";
}

TEST_F(DockerScannerTest, AnEmptyContextVariableIsIgnored) {
    environment = {{"DOCKER_CONTEXT", ""}, {"DOCKER_HOST", "unix:///run/other.sock"}};
    const DockerAvailability::Available result = available();
    EXPECT_EQ(result.connection, (DockerConnection{.arguments = {"--host", "unix:///run/other.sock"},
                                                   .displayName = "DOCKER_HOST override"}));
    environment["DOCKER_HOST"] = "";
    EXPECT_EQ(available().connection.displayName, "default");
}

TEST_F(DockerScannerTest, AnUnknownActiveContextIsAFailure) {
    context = failed(1, " no configuration \n");
    EXPECT_EQ(unavailable(),
              "Docker CLI is installed, but its active context could not be resolved. no configuration");
    context = ok(" \n");
    EXPECT_EQ(unavailable(), "Docker CLI is installed, but it returned an empty active context.");
    EXPECT_EQ(commands->calls().size(), 3U) << "both ways to ask the first time, one the second time";
}

TEST_F(DockerScannerTest, AToolThatCannotShowItsContextIsAskedToInspectIt) {
    context = failed(1, "\nUsage:  docker context COMMAND\n");
    inspectedContext = ok("workshop\n");
    EXPECT_EQ(available().connection,
              (DockerConnection{.arguments = {"--context", "workshop"}, .displayName = "workshop"}));
    using Call = FakeCommandRunner::Call;
    const std::vector<Call> calls = commands->calls();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[0], (Call{"/opt/docker", {"context", "show"}, 5}));
    EXPECT_EQ(calls[1], (Call{"/opt/docker", {"context", "inspect", "--format", "{{.Name}}"}, 5}));
    EXPECT_EQ(calls[2].arguments.front(), "--context");
}

TEST_F(DockerScannerTest, AContextThatIsShownIsNotInspected) {
    inspectedContext = ok("another\n");
    EXPECT_EQ(available().connection.displayName, "default");
    context = ok("\n");
    EXPECT_EQ(unavailable(), "Docker CLI is installed, but it returned an empty active context.");
    for (const FakeCommandRunner::Call& call : commands->calls()) {
        EXPECT_NE(call.arguments.at(1), "inspect");
    }
}

TEST_F(DockerScannerTest, WhereNeitherWayGivesAContextTheFirstAnswerIsTold) {
    context = failed(1, "no configuration");
    for (const CommandResult& inspected : {failed(1, "another reason"), ok(" \n")}) {
        inspectedContext = inspected;
        EXPECT_EQ(unavailable(),
                  "Docker CLI is installed, but its active context could not be resolved. no configuration");
    }
}

TEST_F(DockerScannerTest, ADaemonThatDoesNotAnswerIsAFailure) {
    version = failed(1, "Cannot connect");
    version.timedOut = true;
    EXPECT_EQ(unavailable(),
              "Docker CLI is installed, but connection 'default' is unavailable. Start Docker "
              "Desktop (or restore that connection), then choose Scan System. Command timed out.");
    EXPECT_EQ(commands->calls().size(), 2U);
}

TEST_F(DockerScannerTest, AFailedContainerListingIsAFailure) {
    environment = {{"DOCKER_HOST", "unix:///run/other.sock"}};
    containers = failed(1);
    EXPECT_EQ(unavailable(),
              "Docker connection 'DOCKER_HOST override' responded, but its container inventory "
              "failed. Command exited with status 1.");
}

TEST_F(DockerScannerTest, EveryRecordKeepsTheConnection) {
    environment = {{"DOCKER_HOST", "tcp://127.0.0.1:1"}};
    containers = ok(containerLine("c1"));
    images = ok(imageLine('a', "one") + imageLine('b', "two"));
    usage = ok(imageID('a') + "\n");
    const DockerAvailability::Available result = available();
    ASSERT_EQ(result.containers.size(), 1U);
    EXPECT_EQ(result.containers.front().connection, result.connection);
    EXPECT_EQ(result.containers.front().name, "name-c1");
    EXPECT_TRUE(result.containers.front().isRunning());
    ASSERT_EQ(result.images.size(), 2U);
    EXPECT_EQ(result.images.front().connection, result.connection);
    EXPECT_EQ(result.images.front().size, "1.24GB");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::inUse, DockerImageUsage::unused));
    EXPECT_EQ(result.imageWarning, std::nullopt);
}

} // namespace
} // namespace zentrill
