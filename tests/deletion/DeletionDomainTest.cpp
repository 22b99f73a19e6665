#include "deletion/DeletionDomain.h"

#include "DeletionCases.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/MemoryFolder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace zentrill {
namespace {

namespace fs = std::filesystem;
using test::exists;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;

std::ptrdiff_t entriesOf(const char* folder) {
    const fs::directory_iterator entries(folder);
    return std::distance(begin(entries), end(entries));
}

/// The sanitizers keep what was freed for a while, and look for leaks themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool freedMemoryIsKept = true;
#elif defined(__has_feature)
constexpr bool freedMemoryIsKept = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool freedMemoryIsKept = false;
#endif

/// In pages.
long residentMemory() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident;
}

/// Whether this thread can gain no rights any more; the tests' own confinement may see to that.
bool mayGainNoRights() {
#ifdef __linux__
    return ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) != 0;
#else
    return false;
#endif
}

TEST(DeletionDomain, HoldsTheThreadThatEntersItAndNoOther) {
    const DeletionDomain domain = DeletionDomain::ofThisMachine();
    if (!domain.enter) {
        GTEST_SKIP() << "nothing holds deletions here";
    }
    const TemporaryDirectory folder;
    const std::string inside = folder.makeFile("item/sub/file");
    const std::string outside = folder.makeFile("outside/file");
    DirectoryHandle item;
    ASSERT_EQ(DirectoryHandle::open(folder.path("item"), FinalLink::refuse, item), 0);
    const bool restricted = mayGainNoRights();
    std::thread([&] {
        ASSERT_EQ(domain.enter(item), 0);
        std::error_code error;
        EXPECT_FALSE(fs::remove(outside, error));
        EXPECT_EQ(error.value(), EACCES);
        fs::rename(outside, folder.path("item/taken"), error);
        EXPECT_TRUE(error);
        fs::create_directory(folder.path("made"), error);
        EXPECT_EQ(error.value(), EACCES);
        fs::create_hard_link(outside, folder.path("item/linked"), error);
        EXPECT_TRUE(error);
        EXPECT_FALSE(std::ofstream(outside));
        EXPECT_FALSE(std::ofstream(folder.path("item/made")));
        std::thread([&] { EXPECT_FALSE(fs::remove(outside, error)); }).join();
        EXPECT_TRUE(fs::remove(inside));
        EXPECT_TRUE(fs::remove(folder.path("item/sub")));
        EXPECT_FALSE(fs::remove(folder.path("item"), error));
    }).join();
    EXPECT_EQ(mayGainNoRights(), restricted);
    EXPECT_TRUE(fs::remove(outside));
    EXPECT_TRUE(fs::remove(folder.path("item")));
}

TEST(DeletionDomain, WhatHappensDoesNotDependOnIt) {
    const DeletionDomain unavailable{.enter = [](const DirectoryHandle&) { return ENOSYS; }};
    for (const DeletionDomain& domain : {DeletionDomain::ofThisMachine(), DeletionDomain{}, unavailable}) {
        for (const DeletionOptions& options : {unshielded, shielded}) {
            const TemporaryDirectory folder;
            folder.makeFile("tree/sub/file");
            const std::string file = folder.makeFile("file");
            const std::string tree = folder.path("tree");
            const SafeDeletionEngine engine(FileSystem::shared(), {}, {}, {}, domain);
            const DeletionReport report = engine.deleteItem(tree, options);
            if (options.preserveCredentials) {
                EXPECT_THAT(report.removed, ElementsAre(tree + "/sub/file", tree + "/sub", tree));
            } else {
                EXPECT_THAT(report.removed, ElementsAre(tree));
            }
            EXPECT_TRUE(report.failures.empty());
            EXPECT_FALSE(exists(tree));
            EXPECT_THAT(engine.deleteItem(file, options).removed, ElementsAre(file));
        }
    }
}

TEST(DeletionDomain, ThePredicateIsAskedOnTheCallersThread) {
    const TemporaryDirectory folder;
    folder.makeFile("tree/sub/file");
    int asked = 0;
    const SafeDeletionEngine engine(FileSystem::shared(), {},
                                    [&, caller = std::this_thread::get_id()](const std::string&) {
                                        EXPECT_EQ(std::this_thread::get_id(), caller);
                                        ++asked;
                                        return true;
                                    });
    EXPECT_TRUE(engine.deleteItem(folder.path("tree"), unshielded).succeeded());
    EXPECT_EQ(asked, 3);
}

TEST(DeletionDomain, TenThousandDeletionsLeaveNothingBehind) {
    if (!fs::exists("/proc/self/task")) {
        GTEST_SKIP() << "needs /proc to count what is left";
    }
    const TemporaryDirectory folder(test::memoryFolder());
    const SafeDeletionEngine engine(FileSystem::shared(), {}, {}, {.threads = 3, .afterEntries = 1});
    const auto deleteOften = [&](int times) {
        for (int time = 0; time < times; ++time) {
            folder.makeFile("tree/a/b/file");
            folder.makeFile("tree/c/file");
            ASSERT_TRUE(engine.deleteItem(folder.path("tree"), unshielded).succeeded());
        }
    };
    deleteOften(1000);
    const std::ptrdiff_t descriptors = entriesOf("/proc/self/fd");
    const std::ptrdiff_t threads = entriesOf("/proc/self/task");
    const long memory = residentMemory();
    deleteOften(10'000);
    EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
    EXPECT_EQ(entriesOf("/proc/self/task"), threads);
    // A leak of a hundred bytes for each would be a megabyte.
    if (!freedMemoryIsKept) {
        EXPECT_LT(residentMemory(), memory + 200);
    }
}

} // namespace
} // namespace zentrill
