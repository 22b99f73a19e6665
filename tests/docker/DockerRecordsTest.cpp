#include "docker/DockerContainer.h"
#include "docker/DockerContainerCommands.h"
#include "docker/DockerImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

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

/// Applies each change to a copy of `sample` and expects it to differ from all others, by value and by hash.
template <typename Record>
void expectEveryFieldToCount(const Record& sample, const std::vector<std::function<void(Record&)>>& changes) {
    ASSERT_FALSE(changes.empty());
    std::unordered_set<Record> distinct{sample, Record(sample)};
    EXPECT_EQ(distinct.size(), 1U);
    std::unordered_set<std::size_t> hashes{std::hash<Record>()(sample)};
    for (std::size_t field = 0; field < changes.size(); ++field) {
        Record other = sample;
        changes[field](other);
        EXPECT_NE(other, sample) << "field " << field;
        EXPECT_TRUE(hashes.insert(std::hash<Record>()(other)).second) << "field " << field;
        distinct.insert(other);
        changes[field](other = sample);
        EXPECT_TRUE(distinct.contains(other)) << "field " << field;
    }
    EXPECT_EQ(distinct.size(), changes.size() + 1);
}

TEST(DockerConnection, EveryFieldTakesPartInEqualityAndHash) {
    expectEveryFieldToCount<DockerConnection>(
        {.arguments = {"--context", "a"}, .displayName = "name"},
        {[](DockerConnection& changed) { changed.arguments.emplace_back("x"); },
         [](DockerConnection& changed) { changed.arguments.front() += "x"; },
         [](DockerConnection& changed) { changed.displayName += "x"; }});
}

TEST(DockerContainer, EveryFieldTakesPartInEqualityAndHash) {
    expectEveryFieldToCount<DockerContainer>(
        {.id = "31e22a",
         .name = "name",
         .image = "tool:one",
         .status = "Up",
         .connection = {.arguments = {"--context", "a"}, .displayName = "a"}},
        {[](DockerContainer& container) { container.id += "x"; },
         [](DockerContainer& container) { container.name += "x"; },
         [](DockerContainer& container) { container.image += "x"; },
         [](DockerContainer& container) { container.status += "x"; },
         [](DockerContainer& container) { container.connection.arguments.back() += "x"; }});
}

TEST(DockerImage, EveryFieldTakesPartInEqualityAndHash) {
    expectEveryFieldToCount<DockerImage>(
        {.imageID = "sha256:0",
         .tags = {"tool:one"},
         .size = "1.24GB",
         .usage = DockerImageUsage::unknown,
         .connection = {.arguments = {"--context", "a"}, .displayName = "a"}},
        {[](DockerImage& image) { image.imageID += "x"; },
         [](DockerImage& image) { image.tags.emplace_back("x"); },
         [](DockerImage& image) { image.size += "x"; },
         [](DockerImage& image) { image.usage = DockerImageUsage::unused; },
         [](DockerImage& image) { image.usage = DockerImageUsage::inUse; },
         [](DockerImage& image) { image.connection.displayName += "x"; }});
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

TEST(DockerImage, ItsFullIDHasHexadecimalDigitsOnly) {
    const std::string most = "sha256:" + std::string(63, 'a');
    for (const char digit : {'0', '9', 'a', 'f', 'A', 'F'}) {
        EXPECT_TRUE(isFullImageID(most + digit)) << digit;
    }
    for (const char neighbour : {'/', ':', '`', 'g', '@', 'G'}) {
        EXPECT_FALSE(isFullImageID(most + neighbour)) << neighbour;
    }
}

TEST(DockerImageTest, ReadsTheSizeThatDockerWrote) {
    const auto bytes = [](const char* size) { return DockerImage{.size = size}.sizeBytes(); };
    EXPECT_EQ(bytes("0B"), 0);
    EXPECT_EQ(bytes("12B"), 12);
    EXPECT_EQ(bytes("1.5kB"), 1500);
    EXPECT_EQ(bytes("980MB"), 980e6);
    EXPECT_DOUBLE_EQ(bytes("1.24GB").value_or(0), 1.24e9);
    EXPECT_DOUBLE_EQ(bytes("2.001TB").value_or(0), 2.001e12);
    for (const char* other : {"", "N/A", "GB", "-1GB", "1.2.3GB", "1 GB", "12", "5XB"}) {
        EXPECT_EQ(bytes(other), std::nullopt) << other;
    }
}

} // namespace
} // namespace zentrill
