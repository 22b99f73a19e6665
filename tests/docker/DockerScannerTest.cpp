#include "docker/DockerScanner.h"

#include "ImageID.h"
#include "support/FakeCommandRunner.h"
#include "support/FixedDockerLocator.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zentrill {
namespace {

using test::failed;
using test::FakeCommandRunner;
using test::FixedDockerLocator;
using test::imageID;
using test::ok;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* couldNotReadOneContainer =
    "Could not read 1 container record; image removal is disabled until the next successful scan.";

std::string containerLine(const std::string& id) {
    return R"({"ID":")" + id + R"(","Names":"name-)" + id +
           R"(","Image":"tool:one","Status":"Up 3 minutes"})" + "\n";
}

std::string imageLine(char digit, const std::string& tag) {
    return R"({"ID":")" + imageID(digit) + R"(","Repository":"tool","Tag":")" + tag +
           R"(","Size":"1.24GB"})" + "\n";
}

/// A daemon whose answers a test can change one by one.
class DockerScannerTest : public testing::Test {
protected:
    CommandResult context = ok("default\n");
    CommandResult inspectedContext = failed(1, "no configuration");
    CommandResult version = ok("28.2.2\n");
    CommandResult containers = ok();
    CommandResult images = ok();
    CommandResult usage = ok();
    Environment environment;
    std::shared_ptr<FakeCommandRunner> commands = std::make_shared<FakeCommandRunner>(
        [this](const FakeCommandRunner::Call& call) { return answer(call); });

    DockerAvailability scan() {
        return DockerScanner(commands, std::make_shared<FixedDockerLocator>("/opt/docker"), environment)
            .scan();
    }

    DockerAvailability::Available available() {
        const DockerAvailability result = scan();
        const auto* state = std::get_if<DockerAvailability::Available>(&result.state);
        EXPECT_NE(state, nullptr);
        return state != nullptr ? *state : DockerAvailability::Available{};
    }

    std::string unavailable() {
        const DockerAvailability result = scan();
        const auto* state = std::get_if<DockerAvailability::DaemonUnavailable>(&result.state);
        EXPECT_NE(state, nullptr);
        return state != nullptr ? state->message : std::string();
    }

    static std::vector<DockerImageUsage> usages(const DockerAvailability::Available& result) {
        std::vector<DockerImageUsage> all;
        for (const DockerImage& image : result.images) {
            all.push_back(image.usage);
        }
        return all;
    }

private:
    CommandResult answer(const FakeCommandRunner::Call& call) const {
        if (call.arguments.front() == "context" && call.arguments.at(1) == "inspect") {
            return inspectedContext;
        }
        for (const auto& [word, result] :
             {std::pair{"show", &context}, std::pair{"version", &version},
              std::pair{"container", &containers}, std::pair{"image", &images}}) {
            if (testing::Value(call.arguments, testing::Contains(word)) &&
                !testing::Value(call.arguments, testing::Contains("inspect"))) {
                return *result;
            }
        }
        return usage;
    }
};

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

TEST_F(DockerScannerTest, WithoutContainersEveryImageIsUnused) {
    images = ok(imageLine('a', "one"));
    EXPECT_THAT(usages(available()), ElementsAre(DockerImageUsage::unused));
    EXPECT_EQ(commands->calls().size(), 4U) << "there is nothing to inspect";
}

TEST_F(DockerScannerTest, AFailedImageListingKeepsTheContainers) {
    containers = ok(containerLine("c1"));
    images = failed(1, "disk on fire");
    usage = ok(imageID('a'));
    const DockerAvailability::Available result = available();
    EXPECT_EQ(result.containers.size(), 1U);
    EXPECT_THAT(result.images, IsEmpty());
    EXPECT_EQ(result.imageWarning, "Image inventory failed: disk on fire");
}

TEST_F(DockerScannerTest, MalformedImagesAreANoticeOnly) {
    images = ok(imageLine('a', "one") + "broken\n");
    DockerAvailability::Available result = available();
    EXPECT_EQ(result.imageWarning, "Ignored 1 malformed image record.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unused));
    images = ok("broken\n{}\n");
    result = available();
    EXPECT_EQ(result.imageWarning, "Ignored 2 malformed image records.");
}

TEST_F(DockerScannerTest, OneUnreadableContainerMakesEveryUsageUnknown) {
    containers = ok("broken\n");
    images = ok(imageLine('a', "one"));
    DockerAvailability::Available result = available();
    EXPECT_EQ(result.imageWarning,
              "Could not read 1 container record; image removal is disabled until the next successful scan.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));

    containers = ok("broken\n" + containerLine("c1") + "{}\n");
    usage = ok(imageID('a') + "\n");
    result = available();
    EXPECT_EQ(
        result.imageWarning,
        "Could not read 2 container records; image removal is disabled until the next successful scan.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AFailedInspectionMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1"));
    images = ok(imageLine('a', "one") + imageLine('b', "two"));
    usage = failed(1, "No such container");
    // What was printed before the failure proves nothing.
    usage.stdout = imageID('a') + "\n";
    const DockerAvailability::Available result = available();
    EXPECT_EQ(
        result.imageWarning,
        "Could not determine which images are in use; removal is disabled until the next successful scan.");
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown, DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AnIncompleteInspectionMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1") + containerLine("c2"));
    images = ok(imageLine('a', "one"));
    for (const std::string& output : {imageID('b') + "\n", imageID('b') + "\ntool:one\n", std::string(),
                                      imageID('b') + "\n" + imageID('c') + "\n" + imageID('d') + "\n"}) {
        usage = ok(output);
        const DockerAvailability::Available result = available();
        EXPECT_EQ(result.imageWarning,
                  "Docker returned incomplete container image IDs; image removal is disabled "
                  "until the next successful scan.");
        EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
    }
}

TEST_F(DockerScannerTest, AContainerListingThatIsNoTextMakesEveryUsageUnknown) {
    // As the runner gives it: nothing at all, which alone would read as "no containers".
    containers.stdoutIsWhole = false;
    images = ok(imageLine('a', "one"));
    const DockerAvailability::Available result = available();
    EXPECT_EQ(result.imageWarning, couldNotReadOneContainer);
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AContainerListingThatWasCutMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1"));
    containers.stdoutIsWhole = false;
    images = ok(imageLine('a', "one") + imageLine('b', "two"));
    usage = ok(imageID('a') + "\n");
    DockerAvailability::Available result = available();
    EXPECT_EQ(result.containers.size(), 1U);
    EXPECT_EQ(result.imageWarning, couldNotReadOneContainer);
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown, DockerImageUsage::unknown));

    // A line that the cut left half is the one that could not be read.
    containers.stdout += R"({"ID":"c)";
    result = available();
    EXPECT_EQ(result.imageWarning, couldNotReadOneContainer);
    EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown, DockerImageUsage::unknown));
}

TEST_F(DockerScannerTest, AnImageListingThatIsNotWholeOffersNothingForRemoval) {
    containers = ok(containerLine("c1"));
    usage = ok(imageID('b') + "\n");
    for (const std::string& output : {std::string(), imageLine('a', "one")}) {
        images = ok(output);
        images.stdoutIsWhole = false;
        const DockerAvailability::Available result = available();
        EXPECT_EQ(result.containers.size(), 1U);
        EXPECT_THAT(result.images, IsEmpty());
        EXPECT_EQ(result.imageWarning,
                  "Image inventory failed: Docker's answer could not be read as a whole.");
    }
}

TEST_F(DockerScannerTest, AnInspectionThatIsNotWholeMakesEveryUsageUnknown) {
    containers = ok(containerLine("c1"));
    images = ok(imageLine('a', "one"));
    for (const std::string& output : {std::string(), imageID('b') + "\n"}) {
        usage = ok(output);
        usage.stdoutIsWhole = false;
        const DockerAvailability::Available result = available();
        EXPECT_EQ(result.imageWarning,
                  "Docker returned incomplete container image IDs; image removal is disabled "
                  "until the next successful scan.");
        EXPECT_THAT(usages(result), ElementsAre(DockerImageUsage::unknown));
    }
}

/// A real program in the place of the tool, run by the real runner.
TEST(DockerScannerWithARealTool, OneByteThatIsNoTextMakesEveryUsageUnknown) {
    const test::TemporaryDirectory folder;
    const std::string tool =
        folder.makeFile("docker", "#!/bin/sh\ncase \"$*\" in\n"
                                  "*version*) echo 20.10.24 ;;\n"
                                  "*'container ls'*) printf '{\"ID\":\"c1\",\"Names\":\"caf\\351\"}\\n' ;;\n"
                                  "*'image ls'*) echo '" +
                                      imageLine('a', "one") +
                                      "' ;;\n"
                                      "*) exit 1 ;;\nesac\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const DockerAvailability result =
        DockerScanner(std::make_shared<ShellCommandRunner>(), std::make_shared<FixedDockerLocator>(tool),
                      {{"DOCKER_CONTEXT", "here"}})
            .scan();
    const auto* state = std::get_if<DockerAvailability::Available>(&result.state);
    ASSERT_NE(state, nullptr);
    ASSERT_EQ(state->images.size(), 1U);
    EXPECT_EQ(state->images.front().usage, DockerImageUsage::unknown);
    EXPECT_EQ(state->imageWarning, couldNotReadOneContainer);
}

TEST_F(DockerScannerTest, WarningsStandInOneLineInTheirOrder) {
    containers = ok("broken\n" + containerLine("c1"));
    images = ok("broken\n");
    usage = failed(1);
    EXPECT_EQ(available().imageWarning, "Ignored 1 malformed image record. Could not read 1 container "
                                        "record; image removal is disabled until "
                                        "the next successful scan. Could not determine which images are in "
                                        "use; removal is disabled until the "
                                        "next successful scan.");
}

TEST_F(DockerScannerTest, TheSpellingOfAnIDDoesNotHideItsUse) {
    containers = ok(containerLine("c1"));
    images = ok(imageLine('A', "one"));
    usage = ok(imageID('a') + "\n");
    EXPECT_THAT(usages(available()), ElementsAre(DockerImageUsage::inUse));
}

} // namespace
} // namespace zentrill
