#include "deletion/DeletionPlan.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/PlanRecord.h"
#include "deletion/PlanTeller.h"
#include "deletion/SafeDeletionEngine.h"
#include "platform/SystemError.h"
#include "support/ChildProcess.h"
#include "support/FileFlags.h"
#include "support/MemoryFolder.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::exists;
using test::FileFlag;
using test::giveToOrdinaryUser;
using test::keepingAll;
using test::newEngine;
using test::passesAsOrdinaryUser;
using test::pathsOf;
using test::setFileFlag;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

const PlanOptions everything{.listedItems = SIZE_MAX};

std::int64_t occupied(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0);
    return std::int64_t{status.st_blocks} * 512;
}

class DeletionPlans : public testing::Test {
protected:
    [[nodiscard]] DeletionPlan plan(const DeletionOptions& options = unshielded) const {
        return engine_.plan(folder_.path("tree"), options, everything);
    }

    /// Deletes the tree as planned, which must come out as foretold.
    void expectForetold(const DeletionPlan& plan, const DeletionOptions& options) const {
        const std::string tree = folder_.path("tree");
        const DeletionReport report = engine_.deleteItem(tree, options);
        EXPECT_EQ(report.failures, plan.failures);
        EXPECT_EQ(exists(tree), !plan.itemGoes);
        if (options.preserveCredentials) {
            EXPECT_EQ(report.removed, pathsOf(plan.removed));
        }
        for (const std::string& path : pathsOf(plan.removed)) {
            EXPECT_FALSE(exists(path)) << path;
        }
    }

    TemporaryDirectory folder_;
    SafeDeletionEngine engine_ = newEngine();
};

TEST_F(DeletionPlans, ListEverythingAndTouchNothing) {
    const std::string file = folder_.makeFile("tree/sub/file", "content");
    const std::string link = folder_.makeLink("tree/link", "/etc/passwd");
    const std::string empty = folder_.makeDirectory("tree/empty");
    const DeletionPlan plan = this->plan();
    EXPECT_THAT(pathsOf(plan.removed),
                UnorderedElementsAre(file, folder_.path("tree/sub"), link, empty, folder_.path("tree")));
    EXPECT_EQ(plan.removed.listed.back(),
              (DeletionPlan::Item{.path = folder_.path("tree"), .logicalBytes = 7 + 11, .isFolder = true}));
    EXPECT_EQ(plan.removed.count, 5U);
    EXPECT_EQ(plan.removed.logicalBytes, 7 + 11);
    EXPECT_TRUE(plan.itemGoes);
    EXPECT_FALSE(plan.stopped);
    EXPECT_THAT(plan.failures, IsEmpty());
    EXPECT_TRUE(exists(file) && exists(link) && exists(empty));
    expectForetold(plan, unshielded);
}

TEST_F(DeletionPlans, SayThatAMissingItemIsNothingToDo) {
    EXPECT_EQ(plan(), DeletionPlan{});
    EXPECT_EQ(plan(shielded), DeletionPlan{});
    EXPECT_EQ(engine_.plan(std::string("/tmp/a\0b", 8), unshielded), DeletionPlan{});
}

TEST_F(DeletionPlans, SayWhatIsRefused) {
    const std::string file = folder_.makeFile("real/file");
    const std::string link = folder_.makeLink("link", "real");
    const std::vector<std::string> paths{"/", "relative", link + "/file"};
    for (const std::string& path : paths) {
        const DeletionPlan plan = engine_.plan(path, unshielded);
        EXPECT_THAT(plan.failures, ElementsAre(engine_.deletionRefusal(path).value_or("none"))) << path;
        EXPECT_EQ(plan.removed, DeletionPlan::Items{});
        EXPECT_FALSE(plan.itemGoes);
    }
    EXPECT_TRUE(engine_.plan(link, unshielded).itemGoes);
}

TEST_F(DeletionPlans, TellWhatTheShieldKeepsAndWhy) {
    const std::string key = folder_.makeFile("tree/sub/id.key", "secret");
    const std::string store = folder_.path("tree/.ssh");
    folder_.makeFile("tree/.ssh/known", "hosts");
    const std::string listed = folder_.makeFile("tree/sub/config.toml", "four");
    const std::string cache = folder_.makeFile("tree/cache/data", "ab");
    DeletionOptions options = shielded;
    options.explicitCredentialPaths = {listed};

    const DeletionPlan plan = this->plan(options);
    EXPECT_THAT(pathsOf(plan.recognizedCredentials), UnorderedElementsAre(key, store));
    EXPECT_EQ(plan.recognizedCredentials.logicalBytes, 6);
    EXPECT_THAT(pathsOf(plan.listedCredentials), ElementsAre(listed));
    EXPECT_EQ(plan.listedCredentials.logicalBytes, 4);
    EXPECT_THAT(pathsOf(plan.removed), ElementsAre(cache, folder_.path("tree/cache")));
    EXPECT_EQ(plan.freedBytes, occupied(cache));
    EXPECT_FALSE(plan.itemGoes);

    options.preserveUnrecognized = true;
    const DeletionPlan keeping = this->plan(options);
    EXPECT_THAT(pathsOf(keeping.uncertainData), ElementsAre(cache));
    EXPECT_EQ(keeping.uncertainData.logicalBytes, 2);
    EXPECT_EQ(keeping.removed.count, 0U);

    options = {.preserveUnrecognized = true};
    EXPECT_TRUE(this->plan(options).itemGoes) << "without the shield nothing is kept";
    expectForetold(plan, {.preserveCredentials = true, .explicitCredentialPaths = {listed}});
}

TEST_F(DeletionPlans, KeepAnItemThatIsACredentialItself) {
    const std::string key = folder_.makeFile("id.key", "secret");
    const DeletionPlan plan = engine_.plan(key, shielded);
    EXPECT_THAT(pathsOf(plan.recognizedCredentials), ElementsAre(key));
    EXPECT_EQ(plan.recognizedCredentials.logicalBytes, 6);
    EXPECT_FALSE(plan.itemGoes);
    const DeletionPlan listed = engine_.plan(
        folder_.makeFile("file"), {.preserveCredentials = true, .explicitCredentialPaths = {folder_.path()}});
    EXPECT_EQ(listed.listedCredentials.count, 1U);
}

TEST_F(DeletionPlans, LeaveWhatThePredicateRefuses) {
    const std::string refused = folder_.makeFile("tree/sub/refused");
    const std::string gone = folder_.makeFile("tree/gone");
    const SafeDeletionEngine engine = newEngine([&](const std::string& path) { return path != refused; });
    const DeletionPlan plan = engine.plan(folder_.path("tree"), unshielded);
    EXPECT_THAT(pathsOf(plan.refused), ElementsAre(refused));
    EXPECT_THAT(pathsOf(plan.removed), ElementsAre(gone));
    EXPECT_THAT(plan.failures, IsEmpty());
    EXPECT_FALSE(plan.itemGoes);
}

TEST_F(DeletionPlans, FreeAFileOnlyWithItsLastName) {
    const std::string inside = folder_.makeFile("tree/inside", std::string(5000, 'x'));
    fs::create_hard_link(inside, folder_.path("tree/again"));
    const std::int64_t freed = occupied(inside);
    ASSERT_GT(freed, 0);
    EXPECT_EQ(plan().freedBytes, freed);
    EXPECT_EQ(plan().removed.logicalBytes, 5000);

    fs::create_hard_link(inside, folder_.path("outside"));
    EXPECT_EQ(plan().freedBytes, 0) << "a name outside holds it";
    EXPECT_EQ(plan().removed.logicalBytes, 5000);
    fs::remove(folder_.path("outside"));

    fs::create_hard_link(inside, folder_.path("tree/id.key"));
    EXPECT_EQ(plan().freedBytes, freed);
    EXPECT_EQ(plan(shielded).freedBytes, 0) << "a kept name holds it";
    EXPECT_EQ(plan(shielded).recognizedCredentials.logicalBytes, 5000);
}

TEST_F(DeletionPlans, FreeOfASparseFileWhatItOccupies) {
    const std::string sparse = folder_.makeFile("tree/sparse", "begin");
    constexpr std::int64_t size = std::int64_t{64} * 1024 * 1024;
    ASSERT_EQ(::truncate(sparse.c_str(), size), 0);
    ASSERT_LT(occupied(sparse), size);
    EXPECT_EQ(plan().removed.logicalBytes, size);
    EXPECT_EQ(plan().freedBytes, occupied(sparse));
}

TEST_F(DeletionPlans, StayAtTheLargestSumThatThereIs) {
    const TemporaryDirectory memory(test::memoryFolder());
    for (const char* name : {"tree/a", "tree/b"}) {
        const std::string sparse = memory.makeFile(name);
        if (::truncate(sparse.c_str(), std::numeric_limits<off_t>::max()) != 0) {
            GTEST_SKIP() << "needs a file system with files of any size: " << std::strerror(errno);
        }
    }
    const DeletionPlan plan = engine_.plan(memory.path("tree"), unshielded, everything);
    EXPECT_EQ(plan.removed.logicalBytes, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(plan.removed.listed.back().logicalBytes, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(plan.logicalBytes(), std::numeric_limits<std::int64_t>::max());
}

TEST_F(DeletionPlans, ListNoMorePathsThanAskedForAndCountAll) {
    for (int i = 0; i < 6; ++i) {
        folder_.makeFile("tree/" + std::to_string(i), "x");
        folder_.makeFile("tree/" + std::to_string(i) + ".key", "x");
    }
    const DeletionPlan all = plan(shielded);
    const DeletionPlan some = engine_.plan(folder_.path("tree"), shielded, {.listedItems = 2});
    EXPECT_THAT(pathsOf(some.removed), ElementsAre(all.removed.listed[0].path, all.removed.listed[1].path));
    EXPECT_THAT(some.recognizedCredentials.listed, SizeIs(2));
    EXPECT_EQ(some.removed.count, 6U);
    EXPECT_EQ(some.recognizedCredentials.count, 6U);
    EXPECT_EQ(some.removed.logicalBytes, 6);
    EXPECT_EQ(some.freedBytes, all.freedBytes);
}

TEST_F(DeletionPlans, EndWhenTheyAreToldTo) {
    for (int i = 0; i < 10; ++i) {
        folder_.makeFile("tree/" + std::to_string(i));
    }
    int asked = 0;
    const SafeDeletionEngine alone = newEngine(DeletionConcurrency{});
    const DeletionPlan plan =
        alone.plan(folder_.path("tree"), unshielded, {.shouldStop = [&asked] { return ++asked > 4; }});
    EXPECT_TRUE(plan.stopped);
    EXPECT_FALSE(plan.itemGoes);
    EXPECT_EQ(plan.removed.count, 4U);
    EXPECT_EQ(asked, 5);
}

/// All that a plan told while it was made.
struct Told {
    std::vector<std::string> items;
    PlanRecord sum{.plan = {}, .listedItems = SIZE_MAX, .listedFailures = SIZE_MAX};

    [[nodiscard]] PlanOptions listening() {
        PlanOptions options = everything;
        options.progress = [this](const std::string& item, const DeletionPlan& news) {
            items.push_back(item);
            sum.append({.plan = news});
        };
        return options;
    }
};

TEST_F(DeletionPlans, TellWhileTheyAreMadeWhatAddsUpToThem) {
    for (int i = 0; i < 200; ++i) {
        const std::string folder = "tree/" + std::to_string(i % 20) + "/" + std::to_string(i);
        folder_.makeFile(folder + "/file", "four");
        folder_.makeFile(folder + "/id.key", "x");
    }
    fs::create_hard_link(folder_.path("tree/0/0/file"), folder_.path("tree/1/name"));
    const std::string tree = folder_.path("tree");
    Told told;
    const DeletionPlan plan = engine_.plan(tree, shielded, told.listening());
    EXPECT_EQ(plan, this->plan(shielded)); // Listening changes nothing.
    EXPECT_THAT(told.items, testing::Each(tree));
    EXPECT_GE(told.items.size(), 2U);
    EXPECT_EQ(told.sum.plan.removed.count, plan.removed.count);
    EXPECT_EQ(told.sum.plan.removed.logicalBytes, plan.removed.logicalBytes);
    EXPECT_EQ(told.sum.plan.freedBytes, plan.freedBytes);
    EXPECT_EQ(told.sum.plan.recognizedCredentials.count, plan.recognizedCredentials.count);
    EXPECT_THAT(told.sum.plan.recognizedCredentials.listed,
                testing::UnorderedElementsAreArray(plan.recognizedCredentials.listed));
    EXPECT_THAT(told.sum.plan.removed.listed, testing::UnorderedElementsAreArray(plan.removed.listed));
}

TEST_F(DeletionPlans, TellBeforeTheyHaveReadAnything) {
    folder_.makeFile("tree/file");
    PlanOptions options;
    bool asked = false;
    bool toldFirst = false;
    options.shouldStop = [&asked] {
        asked = true;
        return false;
    };
    options.progress = [&](const std::string& /*item*/, const DeletionPlan& /*news*/) {
        toldFirst = toldFirst || !asked;
    };
    EXPECT_TRUE(engine_.plan(folder_.path("tree"), unshielded, options).itemGoes);
    EXPECT_TRUE(toldFirst);
    toldFirst = false;
    asked = false;
    EXPECT_TRUE(engine_.plan(folder_.path("missing"), unshielded, options).isEmpty());
    EXPECT_FALSE(toldFirst);
}

TEST_F(DeletionPlans, TellAgainAfterAMomentHoweverLongTheyTake) {
    for (int i = 0; i < 100; ++i) {
        folder_.makeFile("tree/" + std::to_string(i));
    }
    std::vector<std::uint64_t> counts;
    PlanOptions options;
    options.progress = [&counts](const std::string& /*item*/, const DeletionPlan& news) {
        counts.push_back(news.removed.count);
    };
    // Slow enough that a stretch of entries takes longer than the interval.
    const SafeDeletionEngine alone = newEngine(DeletionConcurrency{});
    options.shouldStop = [until = std::chrono::steady_clock::now()]() mutable {
        until += PlanTeller::interval / PlanTeller::entriesBetween * 2;
        std::this_thread::sleep_until(until);
        return false;
    };
    EXPECT_EQ(alone.plan(folder_.path("tree"), unshielded, options).removed.count, 101U);
    EXPECT_THAT(counts, SizeIs(testing::Ge(4)));
    EXPECT_THAT(counts, testing::Each(testing::Le(2 * PlanTeller::entriesBetween)));
}

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

/// The most memory that this process ever held, in kibibytes.
long peakMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    long kibibytes = 0;
    while (status >> word) {
        if (word == "VmHWM:") {
            status >> kibibytes;
        }
    }
    return kibibytes;
}

TEST_F(DeletionPlans, NeedNoMemoryForEachEntry) {
    const TemporaryDirectory folder(test::memoryFolder());
    folder.makeDirectory("tree");
    constexpr int count = 100000;
    for (int i = 0; i < count; ++i) {
        const std::string path = folder.path("tree/" + std::string(150, 'n') + std::to_string(i));
        ASSERT_EQ(::mknod(path.c_str(), S_IFREG | 0600, 0), 0);
    }
    EXPECT_TRUE(test::passesInChild([&] {
        const long before = peakMemory();
        ASSERT_GT(before, 0);
        const DeletionPlan plan = engine_.plan(folder.path("tree"), unshielded);
        EXPECT_EQ(plan.removed.count, std::uint64_t{count} + 1);
        EXPECT_THAT(plan.removed.listed, SizeIs(PlanOptions{}.listedItems));
        // The names alone are 15 MB.
        EXPECT_LT(peakMemory() - before, 6 * 1024);
    }));
}

} // namespace
} // namespace zentrill
