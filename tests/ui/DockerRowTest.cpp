#include "ui/models/DockerRow.h"

#include <gmock/gmock.h>

#include <set>
#include <utility>

namespace zentrill {
namespace {

using Section = DockerHeading::Section;
using Kind = DockerRemark::Kind;
using testing::ElementsAre;

DockerRow heading(Section section, std::size_t count) {
    return DockerHeading{.section = section, .count = count};
}

DockerRow remark(Kind kind, QString text) {
    return DockerRemark{.kind = kind, .text = std::move(text)};
}

DockerRow sizeNotice() {
    return remark(Kind::notice,
                  QStringLiteral("Image sizes are virtual and layers may be shared. Their sum is not "
                                 "guaranteed reclaimable disk space."));
}

DockerImage image(std::vector<std::string> tags, DockerImageUsage usage, char digit = 'a') {
    return {.imageID = "sha256:" + std::string(64, digit),
            .tags = std::move(tags),
            .size = "1.24GB",
            .usage = usage};
}

TEST(DockerRowTest, SaysWhenThereIsNothing) {
    EXPECT_THAT(dockerRows({}, {}, QString()),
                ElementsAre(heading(Section::containers, 0),
                            remark(Kind::noContainers, QStringLiteral("No Docker containers detected.")),
                            heading(Section::images, 0), sizeNotice(),
                            remark(Kind::noImages, QStringLiteral("No Docker images detected."))));
}

TEST(DockerRowTest, ListsContainersAndImagesUnderTheirCounts) {
    const DockerContainer web{.id = "1", .name = "web", .image = "nginx", .status = "Up 3 minutes"};
    const DockerContainer old{.id = "2", .name = "old", .image = "redis", .status = "Exited (0) 2 hours ago"};
    const DockerImage used = image({"web:1", "web:2"}, DockerImageUsage::inUse);
    EXPECT_THAT(dockerRows({web, old}, {used}, QStringLiteral("Usage is uncertain.")),
                ElementsAre(heading(Section::containers, 2), DockerRow(web), DockerRow(old),
                            heading(Section::images, 1), sizeNotice(),
                            remark(Kind::warning, QStringLiteral("Usage is uncertain.")), DockerRow(used)));
}

TEST(DockerRowTest, CountsInItsHeadings) {
    EXPECT_EQ((DockerHeading{.section = Section::containers, .count = 12}.text()),
              QStringLiteral("Containers (12)"));
    EXPECT_EQ((DockerHeading{.section = Section::images, .count = 0}.text()), QStringLiteral("Images (0)"));
}

TEST(DockerRowTest, StopsAtRecordsAlone) {
    EXPECT_TRUE(isDockerStop(DockerContainer{.id = "1"}));
    EXPECT_TRUE(isDockerStop(image({}, DockerImageUsage::unused)));
    EXPECT_FALSE(isDockerStop(heading(Section::images, 1)));
    EXPECT_FALSE(isDockerStop(sizeNotice()));
}

TEST(DockerRowTest, GivesEveryLineAKeyOfItsOwn) {
    // A container and an image of the same ID stay apart.
    DockerImage twin = image({}, DockerImageUsage::unused);
    const std::vector<DockerRow> rows = dockerRows(
        {{.id = twin.imageID}}, {twin, image({}, DockerImageUsage::unused, 'b')}, QStringLiteral("warning"));
    ASSERT_EQ(rows.size(), 7U);
    std::set<std::string> keys;
    for (const DockerRow& row : rows) {
        keys.insert(dockerRowKey(row));
    }
    EXPECT_EQ(keys.size(), rows.size());
}

TEST(DockerRowTest, KeepsTheKeyOfAHeadingWhoseCountChanges) {
    const std::vector<DockerRow> before = dockerRows({}, {}, QString());
    const std::vector<DockerRow> after = dockerRows({{.id = "1"}}, {}, QString());
    EXPECT_EQ(dockerRowKey(before.front()), dockerRowKey(after.front()));
    EXPECT_NE(before.front(), after.front());
}

} // namespace
} // namespace zentrill
