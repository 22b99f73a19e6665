#include "controller/review/ReviewRows.h"

#include "ControllerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zentrill {
namespace {

using Item = ApplicationUninstallPlan::Item;
using Fate = ReviewRow::Fate;
using Kind = ReviewRow::Kind;
using testing::ElementsAre;

std::vector<ReviewRow> rowsOf(const Item& item, ReviewStage stage = ReviewStage::complete) {
    std::vector<ReviewRow> rows;
    review_rows::append(rows, "Tool", item, stage);
    return rows;
}

std::vector<std::string> texts(const std::vector<ReviewRow>& rows) {
    std::vector<std::string> found;
    for (const ReviewRow& row : rows) {
        found.push_back((row.text + "|" + row.reason + "|" + row.size).toStdString());
    }
    return found;
}

DeletionPlan::Items items(std::uint64_t count, std::int64_t bytes, std::vector<DeletionPlan::Item> listed) {
    return {.count = count, .logicalBytes = bytes, .listed = std::move(listed)};
}

TEST(ReviewRows, WriteSizesInUnitsThatFit) {
    EXPECT_EQ(review_rows::sizeText(0), QStringLiteral("0 bytes"));
    EXPECT_EQ(review_rows::sizeText(1), QStringLiteral("1 byte"));
    EXPECT_EQ(review_rows::sizeText(999), QStringLiteral("999 bytes"));
    EXPECT_EQ(review_rows::sizeText(1000), QStringLiteral("1 KB"));
    EXPECT_EQ(review_rows::sizeText(1250), QStringLiteral("1.3 KB"));
    EXPECT_EQ(review_rows::sizeText(999'949), QStringLiteral("999.9 KB"));
    EXPECT_EQ(review_rows::sizeText(999'950), QStringLiteral("1 MB"));
    EXPECT_EQ(review_rows::sizeText(4'660'000'000), QStringLiteral("4.66 GB"));
}

TEST(ReviewRows, ListWhatIsKeptBeforeWhatGoes) {
    DeletionPlan plan;
    plan.removed = items(2, 6, {{.path = "/h/d/sub/a", .logicalBytes = 6}});
    plan.recognizedCredentials = items(1, 3, {{.path = "/h/d/key\n.pem", .logicalBytes = 3}});
    plan.failing = items(1, 1, {{.path = "/h/d/fixed", .logicalBytes = 1}});
    plan.failures = {"/h/d/fixed: Operation not permitted"};
    const Item item{.path = "/h/d", .logicalBytes = 10, .sharedWith = {"Other"}, .plan = plan};
    EXPECT_THAT(texts(rowsOf(item)), ElementsAre("/h/d|Goes in part · shared with Other|10 bytes",
                                                 "key\\n.pem|Kept: recognized credential|3 bytes",
                                                 "fixed|Would fail: Operation not permitted|1 byte",
                                                 "sub/a|Goes|6 bytes", "and 1 more|Goes|"));
    // While it is computed nobody knows what becomes of the whole, nor how large it is.
    EXPECT_EQ(rowsOf(item, ReviewStage::underWay).front().fate, Fate::none);
    EXPECT_TRUE(rowsOf(item, ReviewStage::underWay).front().size.isNull());
}

TEST(ReviewRows, GiveTheItemItselfOneLineAlone) {
    DeletionPlan whole;
    whole.itemGoes = true;
    whole.removed = items(1, 6, {{.path = "/h/f", .logicalBytes = 6}});
    EXPECT_THAT(texts(rowsOf({.path = "/h/f", .logicalBytes = 6, .plan = whole})),
                ElementsAre("/h/f|Goes|6 bytes"));
    whole.removed = items(4, 6, {{.path = "/h/f/a", .logicalBytes = 6}});
    EXPECT_THAT(texts(rowsOf({.path = "/h/f", .logicalBytes = 6, .plan = whole})),
                ElementsAre("/h/f|Goes|6 bytes", "a|Goes|6 bytes", "and 2 more|Goes|"));
}

TEST(ReviewRows, SayWhyAnItemStays) {
    EXPECT_EQ(rowsOf({.path = "/h/r", .part = ApplicationUninstallPlan::Part::remainingData}).front().reason,
              QStringLiteral("Stays: not part of the removal"));
    DeletionPlan refused;
    refused.itemRefused = true;
    refused.failures = {"Refusing to traverse symlink ancestor: /h"};
    EXPECT_EQ(rowsOf({.path = "/h/x", .plan = refused}).front().reason,
              QStringLiteral("Refused: Refusing to traverse symlink ancestor: /h"));
    DeletionPlan several;
    several.listedCredentials = items(1, 0, {{.path = "/h/s/c"}});
    several.uncertainData = items(1, 0, {{.path = "/h/s/d"}});
    EXPECT_EQ(rowsOf({.path = "/h/s", .plan = several}).front().reason, QStringLiteral("Kept"));
    several.failing = items(1, 0, {{.path = "/h/s/e"}});
    EXPECT_EQ(rowsOf({.path = "/h/s", .plan = several}).front().reason, QStringLiteral("Stays"));
    DeletionPlan listed;
    listed.listedCredentials = items(1, 0, {{.path = "/h/c", .isFolder = true}});
    EXPECT_THAT(texts(rowsOf({.path = "/h/c", .logicalBytes = 5, .plan = listed})),
                ElementsAre("/h/c|Kept: listed credential|5 bytes"));
}

TEST(ReviewRows, NameTheModelsThatShareABlobAndWhatLiesElsewhere) {
    ModelDeletionPlan plan;
    plan.files.itemGoes = true;
    plan.files.removed = items(1, 4, {{.path = "/m/manifest", .logicalBytes = 4}});
    plan.sharedBlobs = {{.path = "/m/blob", .logicalBytes = 2000, .models = {"a:b", "c:d"}}};
    plan.bytesElsewhere = 9'000'000'000;
    EXPECT_THAT(texts(review_rows::ofModel("/m/manifest", plan, ReviewStage::complete)),
                ElementsAre("/m/manifest|Goes|4 bytes", "/m/blob|Kept: shared with a:b, c:d|2 KB",
                            "9 GB lie elsewhere, behind links in this folder. They stay, and nothing of them "
                            "comes free.||"));
}

TEST(ReviewRows, SayOfDockerWhatItsRemovalDoes) {
    const DockerContainer running{.id = "c", .name = "web", .image = "w:1", .status = "Up 3 minutes"};
    EXPECT_EQ(review_rows::ofContainer(running).front().reason, QStringLiteral("Goes, once it is stopped"));
    DockerImage image{.imageID = "sha256:" + std::string(64, 'a'), .tags = {"w:1"}, .size = "10MB"};
    EXPECT_EQ(review_rows::ofImage(image).front().fate, Fate::stays);
    image.usage = DockerImageUsage::inUse;
    EXPECT_EQ(review_rows::ofImage(image).front().reason, QStringLiteral("Refused: a container uses it"));
    image.usage = DockerImageUsage::unused;
    EXPECT_EQ(review_rows::ofImage(image).front().fate, Fate::goes);
    EXPECT_EQ(review_rows::ofImage(image).back().kind, Kind::remark);
}

} // namespace
} // namespace zentrill
