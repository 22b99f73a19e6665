#include "DeletionCases.h"
#include "DeletionForm.h"
#include "DisturbedEngine.h"
#include "deletion/DeletionDomain.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/MemoryFolder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace zentrill {
namespace {

using test::deletionForm;
using test::engineDisturbedAt;
using test::exists;
using test::newEngine;
using test::shielded;
using test::unshielded;
namespace fs = std::filesystem;
using test::TemporaryDirectory;
using testing::IsEmpty;

/// Whether the kernel holds deletions to their items in this program.
bool isHeld() {
    return static_cast<bool>(deletionForm().domain.enter);
}

/// The lines of a report on the item `tree` that say of nothing but `folders` that they were moved.
std::vector<std::string> movedLines(const DeletionOptions& options, const std::string& tree,
                                    const std::vector<std::string>& folders) {
    const std::string words = ": Moved elsewhere during the deletion";
    std::vector<std::string> lines;
    for (const std::string& folder : folders) {
        lines.push_back(options.preserveCredentials ? folder + words : tree + words + " (at " + folder + ")");
    }
    return lines;
}

TEST(HostileChanges, AFolderMovedOutOfTheItemStaysWholeWhereTheKernelHoldsTheDeletion) {
    if (!isHeld()) {
        GTEST_SKIP() << "nothing holds deletions here";
    }
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        for (const char* name : {"a", "b", "c", "d/e/f", "d/g"}) {
            folder.makeFile(std::string("tree/sub/") + name);
        }
        const std::string other = folder.makeFile("tree/other/file");
        const std::string tree = folder.path("tree");
        const std::string sub = folder.path("tree/sub");
        bool moved = false;
        std::size_t leftWhenMoved = 0;
        const auto count = [&folder] {
            const fs::recursive_directory_iterator entries(folder.path("moved"));
            return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
        };
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            if (!moved && path.starts_with(sub + "/")) {
                fs::rename(sub, folder.path("moved"));
                moved = true;
                leftWhenMoved = count();
            }
            return true;
        });
        const DeletionReport report = engine.deleteItem(tree, options);
        EXPECT_EQ(report.failures, movedLines(options, tree, {sub}));
        EXPECT_EQ(leftWhenMoved, 7U);
        EXPECT_EQ(count(), leftWhenMoved);
        EXPECT_FALSE(exists(other)) << "the rest goes";
        EXPECT_TRUE(exists(tree)) << "a failure keeps the folders above it";
    }
}

TEST(HostileChanges, AFolderMovedAwayFromUnderSeveralThreadsIsOneLine) {
    if (!isHeld()) {
        GTEST_SKIP() << "nothing holds deletions here";
    }
    const SafeDeletionEngine engine = newEngine(DeletionConcurrency{.threads = 4, .afterEntries = 0});
    int caught = 0;
    for (int attempt = 0; attempt < 200 && caught < 20; ++attempt) {
        const TemporaryDirectory folder(test::memoryFolder());
        for (int number = 0; number < 40; ++number) {
            for (int file = 0; file < 50; ++file) {
                folder.makeFile("tree/sub/" + std::to_string(number) + "/deeper/f" + std::to_string(file));
            }
        }
        const std::string sub = folder.path("tree/sub");
        const std::string moved = folder.path("moved");
        std::thread mover([&] {
            // Begun, and not yet ended.
            while (exists(sub + "/0") && exists(sub + "/39")) {
                std::this_thread::yield();
            }
            std::error_code ignored;
            fs::rename(sub, moved, ignored);
        });
        const DeletionReport report = engine.deleteItem(folder.path("tree"), shielded);
        mover.join();
        if (!exists(moved) || fs::is_empty(moved)) {
            continue; // Emptied before it was moved.
        }
        ++caught;
        EXPECT_EQ(report.failures, movedLines(shielded, folder.path("tree"), {sub}));
        EXPECT_THAT(report.removed, testing::Not(testing::Contains(sub)));
        EXPECT_TRUE(exists(folder.path("tree")));
        for (const std::string& path : report.removed) {
            EXPECT_FALSE(exists(moved + path.substr(sub.size()))) << path;
        }
    }
    EXPECT_GT(caught, 0);
}

TEST(HostileChanges, AFolderMovedWithinTheItemIsRemovedThere) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string bottom = folder.makeFile("tree/a/sub/file");
        const DeletionReport report = engineDisturbedAt(bottom, [&] {
                                          fs::rename(folder.path("tree/a/sub"), folder.path("tree/moved"));
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_FALSE(exists(folder.path("tree/moved/file")));
        EXPECT_THAT(report.failures, testing::Each(testing::Not(testing::HasSubstr("Moved"))));
    }
}

TEST(HostileChanges, AnEnteredFolderReplacedByALinkLosesOnlyTheLink) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string victim = folder.makeFile("victim/file");
        const std::string inside = folder.makeFile("tree/item/file");
        const DeletionReport report = engineDisturbedAt(inside, [&] {
                                          fs::rename(folder.path("tree/item"), folder.path("moved"));
                                          folder.makeLink("tree/item", folder.path("victim"));
                                      }).deleteItem(folder.path("tree"), options);
        if (isHeld()) {
            EXPECT_EQ(report.failures, movedLines(options, folder.path("tree"), {folder.path("tree/item")}));
            EXPECT_TRUE(exists(folder.path("moved/file")));
        } else {
            EXPECT_THAT(report.failures, IsEmpty());
            EXPECT_FALSE(exists(folder.path("tree")));
        }
        EXPECT_TRUE(exists(victim));
    }
}

/// A folder deeper than the directories held open is climbed by "..", which leads out of the tree once
/// somebody moves it.
TEST(HostileChanges, AFolderMovedAwayIsNotClimbedIntoItsNewSurroundings) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        std::string relative = "tree";
        std::string middle;
        for (int level = 0; level < 60; ++level) {
            relative += "/d";
            if (level == 20) {
                middle = relative;
            }
        }
        const std::string bottom = folder.makeFile(relative + "/file");
        const std::string innocent = folder.makeFile("outside/innocent");
        const std::string emptyNamesake = folder.makeDirectory("outside/x/d");
        const DeletionReport report = engineDisturbedAt(bottom, [&] {
                                          fs::rename(folder.path(middle), folder.path("outside/d"));
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_TRUE(exists(innocent));
        EXPECT_TRUE(exists(emptyNamesake));
        EXPECT_TRUE(exists(folder.path("outside")));
        if (isHeld()) {
            EXPECT_EQ(report.failures, movedLines(options, folder.path("tree"), {folder.path(middle)}));
            EXPECT_TRUE(exists(folder.path("outside/d") + bottom.substr(folder.path(middle).size())));
        } else {
            EXPECT_FALSE(exists(folder.path("tree"))) << "what was still inside can go";
            EXPECT_THAT(report.failures, IsEmpty());
        }
    }
}

TEST(HostileChanges, AFolderOutOfReachIsAFailureAndTheWalkGoesOnAbove) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        std::vector<std::string> chain{"tree"};
        for (int level = 1; level <= 60; ++level) {
            chain.push_back(chain.back() + "/d");
        }
        const std::string& upper = chain[11];
        const std::string& lower = chain[21];
        const std::string bottom = folder.makeFile(chain.back() + "/file");
        const std::string sibling = folder.makeFile("tree/sibling");
        // The lower one leaves the tree, and another folder takes the place of one between it and the top. It
        // has the same names in it: whoever looks at nothing else takes it for the one that was there.
        const DeletionReport report = engineDisturbedAt(bottom, [&] {
                                          fs::rename(folder.path(lower), folder.path("lower"));
                                          fs::rename(folder.path(upper), folder.path("upper"));
                                          folder.makeFile(upper + "/new");
                                          folder.makeDirectory(lower);
                                      }).deleteItem(folder.path("tree"), options);
        // With a shield, each folder whose entries nobody can reach any more; otherwise the first one.
        std::vector<std::string> failures;
        if (isHeld()) {
            failures = movedLines(options, folder.path("tree"), {folder.path(lower)});
        }
        if (options.preserveCredentials) {
            for (std::size_t level = 20; level >= 11; --level) {
                failures.push_back(folder.path(chain[level]) + ": " + std::strerror(ESTALE));
            }
        } else if (!isHeld()) {
            failures.push_back(folder.path("tree") + ": " + std::strerror(ESTALE) + " (at " +
                               folder.path(chain[20]) + ")");
        }
        EXPECT_EQ(report.failures, failures);
        EXPECT_TRUE(exists(folder.path(upper + "/new")));
        EXPECT_TRUE(exists(folder.path(lower)));
        EXPECT_TRUE(exists(folder.path("upper")));
        EXPECT_FALSE(exists(sibling));
    }
}

} // namespace
} // namespace zentrill
