#include "docker/DockerListing.h"

#include "ImageID.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zentrill {
namespace {

using test::imageID;
using namespace std::string_view_literals;
using docker_listing::Containers;
using docker_listing::Images;
using testing::ElementsAre;
using testing::IsEmpty;

const DockerConnection connection{.arguments = {"--context", "default"}, .displayName = "default"};

std::string imageLine(const std::string& id, const std::string& repository, const std::string& tag) {
    return R"({"Containers":"N/A","Digest":"\u003cnone\u003e","ID":")" + id + R"(","Repository":")" +
           repository + R"(","Size":"1.98MB","Tag":")" + tag + R"("})" + "\n";
}

TEST(DockerListingLines, AreTrimmedAndNeverEmpty) {
    EXPECT_THAT(docker_listing::nonemptyLines("\n one \r\n\r\n\t two\t\n   \nthree"),
                ElementsAre("one", "two", "three"));
    EXPECT_THAT(docker_listing::nonemptyLines(""), IsEmpty());
    EXPECT_THAT(docker_listing::nonemptyLines(" \n\t\n\r"), IsEmpty());
    EXPECT_THAT(docker_listing::nonemptyLines("\0 \n"sv), ElementsAre("\0"sv));
}

TEST(DockerListingContainers, AreReadAsDockerPrintsThem) {
    const Containers read = docker_listing::containers(
        R"({"Command":"\"/bin/busybox sleep 600\"","CreatedAt":"2026-11-21 01:29:31 +0000 UTC","ID":"31e22a69391c",)"
        R"("Image":"tool:one","Labels":"","LocalVolumes":"0","Mounts":"","Names":"c1","Networks":"none",)"
        R"("Platform":null,"Ports":"","State":"running","Status":"Up 3 minutes"})"
        "\n",
        connection);
    EXPECT_THAT(read.records, ElementsAre(DockerRecord{.id = "31e22a69391c",
                                                       .name = "c1",
                                                       .image = "tool:one",
                                                       .status = "Up 3 minutes",
                                                       .connection = connection}));
    EXPECT_EQ(read.unreadableCount, 0U);
}

TEST(DockerListingContainers, NeedAnIDAndNothingElse) {
    const Containers read = docker_listing::containers("{\"ID\":\"a\",\"Names\":7,\"Image\":null}\n"
                                                       "{\"Names\":\"b\"}\n{\"ID\":\"\"}\n{\"ID\":3}\n{}\n",
                                                       connection);
    EXPECT_THAT(read.records,
                ElementsAre(DockerRecord{
                    .id = "a", .name = "", .image = "", .status = "", .connection = connection}));
    EXPECT_EQ(read.unreadableCount, 4U);
}

TEST(DockerListingContainers, LinesThatAreNoObjectAreCounted) {
    const std::vector<std::string_view> broken{
        "plain text",
        "null",
        "\"ID\"",
        "7",
        "[]",
        "[{\"ID\":\"a\"}]",
        "{\"ID\":\"a\"",
        "{\"ID\":\"a\"} trailing",
        "{\"ID\":\"a\"}{\"ID\":\"b\"}",
        "{\"ID\":\"a\",}",
        "{'ID':'a'}",
        "{\"ID\":\"a\",\"Labels\":\"cut",
        "{\"ID\":\"a\\ud800\"}",
        "{\"ID\":\"\xff\"}",
        "{\"ID\":\"\xed\xa0\x80\"}",
        "{\"ID\":\"a\",\"x\":01}",
        "{\"ID\":\"a\",\"x\":[}",
        "{\"ID\":\"a\x01\"}",
        "{\"ID\":\"a\"}\0"sv,
    };
    for (const std::string_view line : broken) {
        SCOPED_TRACE(line);
        const Containers read = docker_listing::containers(line, connection);
        EXPECT_THAT(read.records, IsEmpty());
        EXPECT_EQ(read.unreadableCount, 1U);
    }
}

TEST(DockerListingContainers, OnlyTheObjectsOwnMembersCount) {
    const Containers read =
        docker_listing::containers(R"({"Labels":{"ID":"inner"},"Ports":["ID",{"ID":"deeper"}],"ID":"outer"})"
                                   "\n"
                                   R"({"Labels":{"ID":"inner"},"Ports":[{"ID":"deeper"}]})"
                                   "\n"
                                   R"({"ID":{"ID":"inner"}})"
                                   "\n"
                                   R"({"ID":["inner"]})"
                                   "\n",
                                   connection);
    ASSERT_EQ(read.records.size(), 1U);
    EXPECT_EQ(read.records.front().id, "outer");
    EXPECT_EQ(read.unreadableCount, 3U);
}

TEST(DockerListingContainers, TheLastValueOfARepeatedKeyCounts) {
    const Containers read =
        docker_listing::containers("{\"ID\":\"a\",\"ID\":\"b\"}\n{\"ID\":\"a\",\"ID\":null}", connection);
    ASSERT_EQ(read.records.size(), 1U);
    EXPECT_EQ(read.records.front().id, "b");
    EXPECT_EQ(read.unreadableCount, 1U);
}

TEST(DockerListingContainers, DepthAndLengthDoNotMatter) {
    constexpr std::size_t size = std::size_t{64} * 1024 * 1024;
    for (const std::string& start : {std::string(), std::string("{\"ID\":")}) {
        const Containers read = docker_listing::containers(start + std::string(size, '['), connection);
        EXPECT_THAT(read.records, IsEmpty());
        EXPECT_EQ(read.unreadableCount, 1U);
    }
    constexpr std::size_t depth = 1'000'000;
    const std::string nested = std::string(depth, '[') + std::string(depth, ']');
    const Containers read = docker_listing::containers(R"({"ID":"deep","x":)" + nested + "}", connection);
    ASSERT_EQ(read.records.size(), 1U);
    EXPECT_EQ(read.records.front().id, "deep");
}

TEST(DockerListingImages, TagsOfOneImageAreAUnionInOrder) {
    const Images read = docker_listing::images(
        imageLine(imageID('b'), "tool", "two") + imageLine(imageID('a'), "other", "1") +
        imageLine(imageID('b'), "tool", "one") + imageLine(imageID('b'), "tool", "two") +
        imageLine(imageID('b'), "\\u003cnone\\u003e", "\\u003cnone\\u003e") +
        imageLine(imageID('b'), "Zed", "latest") + imageLine(imageID('b'), "élan", "latest"));
    EXPECT_THAT(
        read.records,
        ElementsAre(DockerImageRecord{.imageID = imageID('b'),
                                      .tags = {"Zed:latest", "tool:one", "tool:two", "élan:latest"},
                                      .size = "1.98MB"},
                    DockerImageRecord{.imageID = imageID('a'), .tags = {"other:1"}, .size = "1.98MB"}));
    EXPECT_EQ(read.malformedCount, 0U);
}

TEST(DockerListingImages, AMissingRepositoryOrTagMakesNoTag) {
    const Images read = docker_listing::images(imageLine(imageID('1'), "<none>", "<none>") +
                                               imageLine(imageID('2'), "tool", "<none>") +
                                               imageLine(imageID('3'), "<none>", "one"));
    ASSERT_EQ(read.records.size(), 3U);
    for (const DockerImageRecord& record : read.records) {
        EXPECT_THAT(record.tags, IsEmpty());
    }
}

TEST(DockerListingImages, EveryFieldMustBeThere) {
    const std::string good = imageID('a');
    const std::string noSize = R"({"ID":")" + good + R"(","Repository":"r","Tag":"t"})";
    const std::string noTag = R"({"ID":")" + good + R"(","Repository":"r","Size":"1MB"})";
    const std::string noRepository = R"({"ID":")" + good + R"(","Tag":"t","Size":"1MB"})";
    const Images read = docker_listing::images(noSize + "\n" + noTag + "\n" + noRepository + "\n[]\n");
    EXPECT_THAT(read.records, IsEmpty());
    EXPECT_EQ(read.malformedCount, 4U);
}

TEST(DockerListingImages, OnlyFullIDsCount) {
    const std::string digits(64, 'a');
    for (const std::string& id : {"sha256:" + digits.substr(1), "sha256:" + digits + "a", digits,
                                  "sha512:" + digits, "SHA256:" + digits, "sha256:" + digits.substr(1) + "g",
                                  digits.substr(0, 12), "sha256:" + digits.substr(2) + "é"}) {
        SCOPED_TRACE(id);
        const Images read = docker_listing::images(imageLine(id, "r", "t"));
        EXPECT_THAT(read.records, IsEmpty());
        EXPECT_EQ(read.malformedCount, 1U);
    }
    EXPECT_EQ(docker_listing::images(imageLine(imageID('F'), "r", "t")).records.size(), 1U);
}

TEST(DockerListingUsage, NeedsOneFullIDPerContainer) {
    const std::string two = imageID('a') + "\n" + imageID('B') + "\n";
    EXPECT_EQ(docker_listing::usedImageIDs(two, 2), (std::set<std::string>{imageID('a'), imageID('b')}));
    EXPECT_EQ(docker_listing::usedImageIDs(two, 1), std::nullopt);
    EXPECT_EQ(docker_listing::usedImageIDs(two, 3), std::nullopt);
    EXPECT_EQ(docker_listing::usedImageIDs(two + "sha256:short\n", 3), std::nullopt);
    EXPECT_EQ(docker_listing::usedImageIDs(two + "tool:one\n", 3), std::nullopt);
    EXPECT_EQ(docker_listing::usedImageIDs(imageID('a') + "\n" + imageID('a') + "\n", 2),
              std::set<std::string>{imageID('a')})
        << "two containers of one image";
}

} // namespace
} // namespace zentrill
