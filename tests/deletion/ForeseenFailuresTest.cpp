#include "DeletionCases.h"
#include "DeletionPlanFixture.h"
#include "deletion/SafeDeletionEngine.h"
#include "platform/SystemError.h"
#include "support/ChildProcess.h"
#include "support/FileFlags.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::DeletionPlans;
using test::FileFlag;
using test::giveToOrdinaryUser;
using test::keepingAll;
using test::passesAsOrdinaryUser;
using test::pathsOf;
using test::setFileFlag;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

TEST_F(DeletionPlans, ForeseeWhatPermissionsForbid) {
    folder_.makeFile("tree/locked/file", "four");
    folder_.makeFile("tree/locked/sub/inside");
    folder_.makeFile("tree/unreadable/inside");
    folder_.makeFile("tree/names/file");
    folder_.makeFile("tree/names/sub/file");
    folder_.makeFile("tree/gone");
    giveToOrdinaryUser(folder_.path());
    for (const DeletionOptions& options : {keepingAll, shielded, unshielded}) {
        fs::permissions(folder_.path("tree/locked"), fs::perms::owner_read | fs::perms::owner_exec);
        fs::permissions(folder_.path("tree/unreadable"), fs::perms::none);
        fs::permissions(folder_.path("tree/names"), fs::perms::owner_read);
        EXPECT_TRUE(passesAsOrdinaryUser([&] {
            const DeletionPlan plan = this->plan(options);
            EXPECT_THAT(pathsOf(plan.failing), testing::Contains(folder_.path("tree/unreadable")));
            EXPECT_THAT(pathsOf(plan.failing), testing::Contains(folder_.path("tree/names/file")));
            EXPECT_THAT(plan.failing.listed, SizeIs(options.preserveUnrecognized ? 3 : 5));
            EXPECT_EQ(plan.failing.logicalBytes, options.preserveUnrecognized ? 0 : 4);
            expectForetold(plan, options);
        }));
        for (const char* sealed : {"tree/locked", "tree/unreadable", "tree/names"}) {
            fs::permissions(folder_.path(sealed), fs::perms::owner_all);
        }
    }
}

TEST_F(DeletionPlans, ForeseeWhatAStickyFolderKeeps) {
    if (const auto obstacle = test::twoUsersObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    folder_.makeFile("tree/own");
    folder_.makeDirectory("tree/ownfolder");
    giveToOrdinaryUser(folder_.path());
    const std::string foreign = folder_.makeFile("tree/foreign");
    const std::string foreignFolder = folder_.makeDirectory("tree/foreignfolder");
    ASSERT_EQ(::chown(folder_.path("tree").c_str(), 0, 0), 0);
    ASSERT_EQ(::chmod(folder_.path("tree").c_str(), 01777), 0);
    EXPECT_TRUE(passesAsOrdinaryUser([&] {
        const DeletionPlan plan = this->plan(shielded);
        EXPECT_THAT(pathsOf(plan.failing), UnorderedElementsAre(foreign, foreignFolder));
        EXPECT_EQ(plan.removed.count, 2U);
        expectForetold(plan, shielded);
    }));
}

TEST_F(DeletionPlans, ForeseeWhyAFolderThatMustNotBeReadStays) {
    if (const auto obstacle = test::twoUsersObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    folder_.makeFile("tree/closed/file");
    giveToOrdinaryUser(folder_.path());
    for (const char* foreign : {"tree", "tree/closed"}) {
        ASSERT_EQ(::chown(folder_.path(foreign).c_str(), 0, 0), 0);
    }
    ASSERT_EQ(::chmod(folder_.path("tree").c_str(), 01777), 0);
    ASSERT_EQ(::chmod(folder_.path("tree/closed").c_str(), 0700), 0);
    EXPECT_TRUE(passesAsOrdinaryUser([&] {
        const DeletionPlan plan = this->plan();
        EXPECT_THAT(plan.failures, ElementsAre(testing::HasSubstr(systemDescription(EPERM))));
        expectForetold(plan, unshielded);
    }));
}

TEST_F(DeletionPlans, ForeseeWhatIsImmutable) {
    const std::vector<std::string> fixed{folder_.makeFile("tree/file"), folder_.makeDirectory("tree/empty"),
                                         folder_.path("tree/full")};
    const std::string inside = folder_.makeFile("tree/full/inside");
    for (const FileFlag flag : {FileFlag::immutable, FileFlag::appendOnly}) {
        folder_.makeFile("tree/gone");
        bool set = true;
        for (const std::string& path : fixed) {
            set = set && setFileFlag(path, flag);
        }
        const int error = errno;
        if (set) {
            const DeletionPlan plan = this->plan(shielded);
            EXPECT_THAT(pathsOf(plan.failing), UnorderedElementsAre(fixed[0], fixed[1], inside));
            EXPECT_EQ(plan.removed.count, 1U);
            expectForetold(plan, shielded);
        }
        for (const std::string& path : fixed) {
            (void)setFileFlag(path, FileFlag::none);
        }
        if (!set) {
            GTEST_SKIP() << "needs immutable files: " << std::strerror(error);
        }
    }
}

TEST_F(DeletionPlans, ForeseeMountPointsAndDoNotEnterThem) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    EXPECT_TRUE(test::passesWithPrivateMounts([this] {
        const TemporaryDirectory folder;
        const std::string disk = folder.makeDirectory("tree/disk");
        const std::string file = folder.makeFile("tree/file");
        const std::string gone = folder.makeFile("tree/gone");
        const std::string outside = folder.makeFile("outside", "content");
        test::mountMemoryDisk(disk);
        folder.makeFile("tree/disk/inside");
        test::bindMount(outside, file);
        const DeletionPlan plan = engine_.plan(folder.path("tree"), shielded);
        EXPECT_THAT(pathsOf(plan.failing), UnorderedElementsAre(disk, file));
        EXPECT_THAT(pathsOf(plan.removed), ElementsAre(gone));
        EXPECT_EQ(plan.failures, engine_.deleteItem(folder.path("tree"), shielded).failures);
    }));
}

} // namespace
} // namespace zentrill
