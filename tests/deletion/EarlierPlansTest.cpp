#include "deletion/EarlierPlans.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::keepingAll;
using test::newEngine;
using test::pathsOf;
using test::shielded;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(EarlierPlans, CoverTheirItemsAndWhatThoseHold) {
    EarlierPlans earlier;
    EXPECT_FALSE(earlier.covers("/a"));
    earlier.add("/a/stays", false);
    earlier.add("/a/goes/", true);
    for (const char* path : {"/a/stays", "/a/stays/inside", "/a/goes", "/a/./goes/deep/inside"}) {
        EXPECT_TRUE(earlier.covers(path)) << path;
    }
    for (const char* path : {"/a", "/a/go", "/a/goesnot", "/goes"}) {
        EXPECT_FALSE(earlier.covers(path)) << path;
        EXPECT_FALSE(earlier.removes(path)) << path;
    }
    EXPECT_TRUE(earlier.removes("/a/goes/inside"));
    EXPECT_FALSE(earlier.removes("/a/stays/inside"));
}

TEST(EarlierPlans, KnowTheirItemsByFolder) {
    EarlierPlans earlier;
    earlier.add("/a/stays", false);
    earlier.add("/a/goes", true);
    earlier.add("/a/b/deeper", true);
    const std::vector<EarlierPlans::Item> items = earlier.itemsIn("/a");
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].name, "stays");
    EXPECT_FALSE(items[0].goes);
    EXPECT_EQ(items[1].name, "goes");
    EXPECT_TRUE(items[1].goes);
    EXPECT_THAT(earlier.itemsIn("/"), IsEmpty());
}

/// Plans made one after the other, and then the deletions.
class PlansInOrder : public testing::Test {
protected:
    DeletionPlan plan(const std::string& relative, const DeletionOptions& options) {
        return engine_.plan(folder_.path(relative), options, {.earlier = &earlier_});
    }

    [[nodiscard]] DeletionReport remove(const std::string& relative, const DeletionOptions& options) const {
        return engine_.deleteItem(folder_.path(relative), options);
    }

    test::TemporaryDirectory folder_;
    SafeDeletionEngine engine_ = newEngine();
    EarlierPlans earlier_;
};

TEST_F(PlansInOrder, CountAnItemOnceThatTwoOfThemHold) {
    const std::string tool = folder_.makeFile("data/bin/tool", "four");
    const std::string other = folder_.makeFile("data/other", "ab");
    EXPECT_THAT(pathsOf(plan("data/bin/tool", unshielded).removed), ElementsAre(tool));
    const DeletionPlan data = plan("data", unshielded);
    EXPECT_THAT(pathsOf(data.removed),
                UnorderedElementsAre(folder_.path("data/bin"), other, folder_.path("data")));
    EXPECT_EQ(data.removed.logicalBytes, 2);
    EXPECT_TRUE(data.itemGoes);
    EXPECT_TRUE(plan("data", unshielded).isEmpty());
    EXPECT_TRUE(plan("data/bin", unshielded).isEmpty());
}

TEST_F(PlansInOrder, TakeAFolderForEmptyOnceAllThatItHeldGoes) {
    const std::string tool = folder_.makeFile("data/bin/tool");
    const std::string kept = folder_.makeFile("data/kept");
    (void)plan("data/bin/tool", shielded);
    const DeletionPlan data = plan("data", keepingAll);
    EXPECT_THAT(pathsOf(data.removed), ElementsAre(folder_.path("data/bin")));
    EXPECT_THAT(pathsOf(data.uncertainData), ElementsAre(kept));
    (void)remove("data/bin/tool", shielded);
    EXPECT_EQ(remove("data", keepingAll).removed, pathsOf(data.removed));
}

TEST_F(PlansInOrder, LeaveAFolderInWhichAnEarlierOneLeftSomething) {
    const std::string key = folder_.makeFile("data/app/id.key");
    const std::string cache = folder_.makeFile("data/cache");
    EXPECT_THAT(pathsOf(plan("data/app", shielded).recognizedCredentials), ElementsAre(key));
    const DeletionPlan data = plan("data", shielded);
    EXPECT_THAT(pathsOf(data.recognizedCredentials), IsEmpty()) << "told already";
    EXPECT_THAT(pathsOf(data.removed), ElementsAre(cache));
    EXPECT_FALSE(data.itemGoes);
    (void)remove("data/app", shielded);
    EXPECT_EQ(remove("data", shielded).removed, pathsOf(data.removed));
    EXPECT_TRUE(test::exists(key));
}

TEST_F(PlansInOrder, FreeAFileWithTheLastOfItsNames) {
    const std::string first = folder_.makeFile("first", std::string(5000, 'x'));
    std::filesystem::create_hard_link(first, folder_.path("second"));
    const DeletionPlan one = plan("first", unshielded);
    const DeletionPlan two = plan("second", unshielded);
    EXPECT_EQ(one.freedBytes, 0);
    EXPECT_GT(two.freedBytes, 0);
    EXPECT_EQ(one.removed.logicalBytes + two.removed.logicalBytes, 5000);
}

} // namespace
} // namespace zentrill
