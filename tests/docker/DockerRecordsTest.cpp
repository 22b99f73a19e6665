#include "docker/DockerContainer.h"
#include "docker/DockerContainerCommands.h"
#include "docker/DockerImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

using testing::ElementsAre;

TEST(DockerConnection, BothFieldsMakeItWhatItIs) {
    const DockerConnection one{.arguments = {"--context", "a"}, .displayName = "name"};
    DockerConnection other = one;
    EXPECT_EQ(one, other);
    other.arguments = {"--host", "a"};
    EXPECT_NE(one, other);
    other = one;
    other.displayName = "another";
    EXPECT_NE(one, other);
}

TEST(DockerContainer, RunsWhenItsStatusSaysSo) {
    DockerContainer container;
    for (const char* status : {"Up 3 minutes", "Up Less than a second", "running", "is running now"}) {
        container.status = status;
        EXPECT_TRUE(container.isRunning()) << status;
    }
    for (const char* status : {"Exited (0) 2 hours ago", "Created", "", "up", "Running", "Dead"}) {
        container.status = status;
        EXPECT_FALSE(container.isRunning()) << status;
    }
}

TEST(DockerContainerCommands, NameTheEndpointAndTheContainerAndNothingElse) {
    const DockerContainer container{.id = "31e22a",
                                    .name = "name",
                                    .image = "tool:one",
                                    .status = "Up",
                                    .connection = {.arguments = {"--context", "far"}, .displayName = "far"}};
    EXPECT_THAT(docker_container_commands::stop(container),
                ElementsAre("--context", "far", "container", "stop", "31e22a"));
    EXPECT_THAT(docker_container_commands::remove(container),
                ElementsAre("--context", "far", "container", "rm", "31e22a"));
    EXPECT_EQ(docker_container_commands::timeout.count(), 30.0);
}

TEST(DockerImage, ShowsItsTagsOrThatItHasNone) {
    DockerImage image;
    EXPECT_EQ(image.displayName(), "Untagged image");
    image.tags = {"tool:one"};
    EXPECT_EQ(image.displayName(), "tool:one");
    image.tags = {"tool:one", "tool:two"};
    EXPECT_EQ(image.displayName(), "tool:one, tool:two");
}

TEST(DockerImage, ItsShortIDIsTwelveDigits) {
    DockerImage image;
    image.imageID = "sha256:0123456789abcdef" + std::string(48, '0');
    EXPECT_EQ(image.shortID(), "0123456789ab");
    image.imageID = "0123456789abcdef";
    EXPECT_EQ(image.shortID(), "0123456789ab");
    image.imageID = "sha256:short";
    EXPECT_EQ(image.shortID(), "short");
}

TEST(DockerImageUsage, HasItsRawValues) {
    EXPECT_EQ(rawValue(DockerImageUsage::unused), "unused");
    EXPECT_EQ(rawValue(DockerImageUsage::inUse), "inUse");
    EXPECT_EQ(rawValue(DockerImageUsage::unknown), "unknown");
}

} // namespace
} // namespace zentrill
