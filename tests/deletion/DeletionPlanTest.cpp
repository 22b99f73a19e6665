#include "deletion/DeletionPlan.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "DeletionPlanFixture.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/MemoryFolder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::DeletionPlans;
using test::everything;
using test::exists;
using test::newEngine;
using test::pathsOf;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

std::int64_t occupied(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0);
    return std::int64_t{status.st_blocks} * 512;
}

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
