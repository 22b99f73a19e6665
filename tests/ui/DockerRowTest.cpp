#include "ui/DockerRow.h"

#include <gmock/gmock.h>

#include <set>

namespace zentrill {
namespace {

using Kind = DockerRow::Kind;

constexpr const char* sizeNotice =
    "Image sizes are virtual and layers may be shared. Their sum is not guaranteed "
    "reclaimable disk space.";

std::vector<std::pair<Kind, std::string>> lines(const std::vector<DockerRow>& rows) {
    std::vector<std::pair<Kind, std::string>> result;
    for (const DockerRow& row : rows) {
        result.emplace_back(row.kind, row.text);
    }
    return result;
}

DockerImage image(std::vector<std::string> tags, DockerImageUsage usage, char digit = 'a') {
    return {.imageID = "sha256:" + std::string(64, digit),
            .tags = std::move(tags),
            .size = "1.24GB",
            .usage = usage};
}

TEST(DockerRowTest, saysWhenThereIsNothing) {
    EXPECT_THAT(lines(dockerRows({}, {}, std::nullopt)),
                ::testing::ElementsAre(std::pair(Kind::heading, "Containers (0)"),
                                       std::pair(Kind::empty, "No Docker containers detected."),
                                       std::pair(Kind::heading, "Images (0)"),
                                       std::pair(Kind::notice, sizeNotice),
                                       std::pair(Kind::empty, "No Docker images detected.")));
}

TEST(DockerRowTest, listsContainersAndImagesUnderTheirCounts) {
    const std::vector<DockerRow> rows =
        dockerRows({{.id = "1", .name = "web", .image = "nginx", .status = "Up 3 minutes"},
                    {.id = "2", .name = "old", .image = "redis", .status = "Exited (0) 2 hours ago"}},
                   {image({"web:1", "web:2"}, DockerImageUsage::inUse)}, "Usage is uncertain.");
    EXPECT_THAT(lines(rows),
                ::testing::ElementsAre(
                    std::pair(Kind::heading, "Containers (2)"), std::pair(Kind::container, "web"),
                    std::pair(Kind::container, "old"), std::pair(Kind::heading, "Images (1)"),
                    std::pair(Kind::notice, sizeNotice), std::pair(Kind::warning, "Usage is uncertain."),
                    std::pair(Kind::image, "web:1, web:2")));
    EXPECT_EQ(rows[1].detail, "nginx");
    EXPECT_EQ(rows[1].status, "Up 3 minutes");
    EXPECT_TRUE(rows[1].isActive);
    EXPECT_FALSE(rows[2].isActive);
    EXPECT_EQ(rows[6].detail, "aaaaaaaaaaaa");
    EXPECT_EQ(rows[6].status, "1.24GB");
    EXPECT_EQ(rows[6].recordID, "sha256:" + std::string(64, 'a'));
}

TEST(DockerRowTest, wordsTheUseOfAnImage) {
    const auto row = [](DockerImageUsage usage) {
        return dockerRows({}, {image({}, usage)}, std::nullopt).back();
    };
    EXPECT_EQ(row(DockerImageUsage::unused).usage, "Not used by a container");
    EXPECT_EQ(row(DockerImageUsage::inUse).usage, "In use");
    EXPECT_EQ(row(DockerImageUsage::unknown).usage, "Usage unknown");
    EXPECT_FALSE(row(DockerImageUsage::unused).isActive);
    EXPECT_TRUE(row(DockerImageUsage::inUse).isActive);
    EXPECT_FALSE(row(DockerImageUsage::unknown).isActive);
    EXPECT_EQ(row(DockerImageUsage::unknown).text, "Untagged image");
}

TEST(DockerRowTest, cutsAnIDWithoutPrefixAsItIs) {
    const DockerImage bare{.imageID = "0123456789abcdef"};
    EXPECT_EQ(dockerRows({}, {bare}, std::nullopt).back().detail, "0123456789ab");
}

TEST(DockerRowTest, givesEveryLineAnIDOfItsOwn) {
    // A container and an image of the same ID stay apart.
    DockerImage twin = image({}, DockerImageUsage::unused);
    const std::vector<DockerRow> rows =
        dockerRows({{.id = twin.imageID}}, {twin, image({}, DockerImageUsage::unused, 'b')}, "warning");
    std::set<std::string> ids;
    for (const DockerRow& row : rows) {
        ids.insert(row.id());
    }
    EXPECT_EQ(ids.size(), rows.size());
}

TEST(DockerRowTest, keepsTheIDOfAHeadingWhoseCountChanges) {
    const std::vector<DockerRow> before = dockerRows({}, {}, std::nullopt);
    const std::vector<DockerRow> after = dockerRows({{.id = "1"}}, {}, std::nullopt);
    EXPECT_EQ(before.front().id(), after.front().id());
    EXPECT_NE(before.front(), after.front());
}

} // namespace
} // namespace zentrill
