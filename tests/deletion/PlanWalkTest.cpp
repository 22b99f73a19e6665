#include "deletion/PlanWalk.h"

#include "DeletionCases.h"
#include "deletion/ParentFolder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace zentrill {
namespace {

using test::pathsOf;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

/// A walk through a folder that changes meanwhile: each time it asks whether to go on, it may.
class PlanWalkTest : public testing::Test {
protected:
    DeletionPlan plan(const DeletionRules& rules, const PlanOptions& options) const {
        const std::string tree = folder_.path("tree");
        return PlanWalk(rules, options, tree, tree, std::move(ParentFolder::open(tree).handle)).run();
    }

    test::TemporaryDirectory folder_;
};

TEST_F(PlanWalkTest, ListsAFolderAfterWhatItHoldsWithTheSizeThatGoesWithIt) {
    const std::string file = folder_.makeFile("tree/outer/inner/file", "12345");
    const DeletionPlan plan = this->plan({}, {});
    EXPECT_THAT(pathsOf(plan.removed), ElementsAre(file, folder_.path("tree/outer/inner"),
                                                   folder_.path("tree/outer"), folder_.path("tree")));
    for (const DeletionPlan::Item& item : plan.removed.listed) {
        EXPECT_EQ(item.logicalBytes, 5) << item.path;
        EXPECT_EQ(item.isFolder, item.path != file);
    }
    EXPECT_EQ(plan.removed.logicalBytes, 5);
}

TEST_F(PlanWalkTest, GivesAFolderThatIsKeptWholeNoSize) {
    folder_.makeFile("tree/.ssh/known", "hosts");
    const CredentialMatcher matcher;
    const CredentialShield shield(matcher, {});
    const DeletionPlan plan = this->plan({.shield = &shield}, {});
    EXPECT_THAT(plan.recognizedCredentials.listed,
                ElementsAre(DeletionPlan::Item{.path = folder_.path("tree/.ssh"), .isFolder = true}));
}

TEST_F(PlanWalkTest, AsksNeitherForCredentialsNorForWhatTheyHold) {
    folder_.makeFile("tree/id.key");
    folder_.makeFile("tree/other");
    const CredentialMatcher matcher;
    const CredentialShield shield(matcher, {});
    std::vector<std::string> asked;
    (void)plan({.shield = &shield,
                .mayRemove =
                    [&asked](const std::string& path) {
                        asked.push_back(path);
                        return true;
                    }},
               {});
    EXPECT_THAT(asked, ElementsAre(folder_.path("tree"), folder_.path("tree/other")));
}

TEST_F(PlanWalkTest, CallsWhatGoesMeanwhileNothing) {
    const std::string file = folder_.makeFile("tree/file");
    const DeletionPlan plan = this->plan({}, {.shouldStop = [&file] {
                                             fs::remove(file);
                                             return false;
                                         }});
    EXPECT_THAT(pathsOf(plan.removed), ElementsAre(folder_.path("tree")));
    EXPECT_THAT(plan.failures, IsEmpty());
}

TEST_F(PlanWalkTest, TakesWhatIsPutInAFoldersPlaceForAFile) {
    folder_.makeFile("tree/folder/inside");
    const std::string outside = folder_.makeFile("outside/precious");
    const DeletionPlan plan =
        this->plan({}, {.shouldStop = [this] {
                       if (fs::is_directory(fs::symlink_status(folder_.path("tree/folder")))) {
                           fs::remove_all(folder_.path("tree/folder"));
                           folder_.makeLink("tree/folder", folder_.path("outside"));
                       }
                       return false;
                   }});
    EXPECT_THAT(pathsOf(plan.removed), ElementsAre(folder_.path("tree/folder"), folder_.path("tree")));
}

TEST_F(PlanWalkTest, SaysWhereSomebodyMovedAFolderAway) {
    // Deep enough that the folders around are closed, and sought again by ".." and by their names.
    std::string deep = "tree";
    for (int i = 0; i < 40; ++i) {
        deep += "/d";
    }
    folder_.makeFile(deep + "/file");
    int entries = 0;
    const DeletionPlan plan = this->plan({}, {.shouldStop = [this, &entries] {
                                             if (++entries == 41) {
                                                 fs::rename(folder_.path("tree/d/d/d"), folder_.path("away"));
                                                 fs::rename(folder_.path("tree/d"), folder_.path("tree/e"));
                                             }
                                             return false;
                                         }});
    ASSERT_EQ(plan.failures.size(), 1U);
    EXPECT_THAT(plan.failures[0], testing::HasSubstr(std::generic_category().message(ESTALE)));
    EXPECT_FALSE(plan.itemGoes);
    EXPECT_FALSE(plan.stopped);
}

} // namespace
} // namespace zentrill
