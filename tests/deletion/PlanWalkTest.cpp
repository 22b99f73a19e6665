#include "deletion/PlanWalk.h"

#include "DeletionCases.h"
#include "deletion/ParentFolder.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
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
        return record(rules, options).plan;
    }

    PlanRecord record(const DeletionRules& rules, const PlanOptions& options) const {
        const std::string tree = folder_.path("tree");
        PlanWalk walk(rules, options, tree, tree, std::move(ParentFolder::open(tree).handle));
        return walk.run();
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

/// A tree with much for several threads to do, with all that a plan can say of it.
class PlanWalkThreads : public PlanWalkTest {
protected:
    void SetUp() override {
        const std::string shared = folder_.makeFile("outside", "shared");
        for (int i = 0; i < 12; ++i) {
            const std::string top = "tree/" + std::to_string(i);
            folder_.makeFile(top + "/first", "1");
            folder_.makeFile(top + "/auth.json", "22");
            for (int j = 0; j < 6; ++j) {
                const std::string below = top + "/" + std::to_string(j);
                folder_.makeFile(below + "/deeper/still/file", "333");
                folder_.makeDirectory(below + "/empty");
                fs::create_hard_link(shared, folder_.path(below + "/name"));
                if (j % 2 == 0) {
                    folder_.makeFile(below + "/deeper/id.key");
                    folder_.makeLink(below + "/link", "file");
                }
            }
            fs::permissions(folder_.path(top + "/5"), fs::perms::owner_read | fs::perms::owner_exec);
        }
        fs::remove(shared);
        test::giveToOrdinaryUser(folder_.path());
    }

    static DeletionRules rules(const CredentialShield* shield, std::size_t threads) {
        return {.shield = shield, .concurrency = {.threads = threads, .afterEntries = 0}};
    }

    const CredentialMatcher matcher_;
    const CredentialShield shield_{matcher_, {}};
};

TEST_F(PlanWalkThreads, MakeTheSamePlanHoweverManyTheyAre) {
    EXPECT_TRUE(test::passesAsOrdinaryUser([this] {
        for (const CredentialShield* shield : {&shield_, static_cast<const CredentialShield*>(nullptr)}) {
            for (const std::size_t listed : {std::size_t{1000}, std::size_t{30}, std::size_t{0}}) {
                const PlanOptions options{.listedItems = listed};
                const PlanRecord alone = record(rules(shield, 1), options);
                EXPECT_EQ(alone.foldersOfOthers, 0U);
                EXPECT_GT(alone.plan.removed.count, 200U);
                EXPECT_EQ(alone.plan.failures.size(),
                          shield != nullptr ? std::min<std::size_t>(listed, 36) : 1);
                for (const std::size_t threads : {2U, 3U, 4U}) {
                    std::size_t foldersOfOthers = 0;
                    while (foldersOfOthers < 30) {
                        const PlanRecord several = record(rules(shield, threads), options);
                        foldersOfOthers += several.foldersOfOthers;
                        ASSERT_EQ(several.plan, alone.plan) << threads << " threads, " << listed << " listed";
                    }
                }
            }
        }
    }));
}

TEST_F(PlanWalkThreads, AllEndWhenOneIsToldTo) {
    for (int repetition = 0; repetition < 50; ++repetition) {
        std::atomic<int> asked = 0;
        const DeletionPlan plan =
            this->plan(rules(nullptr, 4),
                       {.shouldStop = [&asked, repetition] { return ++asked == 1 + repetition * 5; }});
        ASSERT_TRUE(plan.stopped);
        ASSERT_FALSE(plan.itemGoes);
        ASSERT_LE(asked, 1 + repetition * 5 + 3) << "each of the others may have been about to ask";
        ASSERT_NE(plan.removed.listed.empty() ? "" : plan.removed.listed.back().path, folder_.path("tree"));
    }
}

TEST_F(PlanWalkThreads, LeaveAPredicateToTheCallersThread) {
    DeletionRules several = rules(nullptr, 4);
    const std::thread::id caller = std::this_thread::get_id();
    several.mayRemove = [caller](const std::string& /*path*/) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        return true;
    };
    EXPECT_EQ(record(several, {}).foldersOfOthers, 0U);
}

} // namespace
} // namespace zentrill
