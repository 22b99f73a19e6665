#include "DeletionCases.h"
#include "DeletionForm.h"
#include "DisturbedEngine.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::engineDisturbedAt;
using test::exists;
using test::newEngine;
using test::shielded;
using test::unshielded;
namespace fs = std::filesystem;
using test::BackgroundLoop;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(HostileChanges, AFileThatVanishesIsNoFailureAndNotOurs) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string file = folder.makeFile("tree/file");
        const std::string tree = folder.path("tree");
        const DeletionReport report =
            engineDisturbedAt(file, [&] { fs::remove(file); }).deleteItem(tree, options);
        EXPECT_THAT(report.removed, ElementsAre(tree));
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(tree));
    }
}

TEST(HostileChanges, ATreeThatVanishesWholeIsNoFailure) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string sub = folder.makeDirectory("tree/sub");
        const DeletionReport report = engineDisturbedAt(sub, [&] {
                                          fs::remove_all(folder.path("tree"));
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_EQ(report, DeletionReport{});
    }
}

TEST(HostileChanges, AFileThatBecomesAFolderIsRemovedAsAFolder) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string item = folder.makeFile("tree/item");
        bool done = false;
        const DeletionReport report = engineDisturbedAt(item, [&] {
                                          if (!std::exchange(done, true)) {
                                              fs::remove(item);
                                              folder.makeFile("tree/item/inside");
                                          }
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(folder.path("tree")));
    }
}

TEST(HostileChanges, AFolderThatBecomesALinkIsRemovedAsALink) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string victim = folder.makeFile("victim/file");
        const std::string item = folder.makeDirectory("tree/item");
        bool done = false;
        const DeletionReport report = engineDisturbedAt(item, [&] {
                                          if (!std::exchange(done, true)) {
                                              fs::remove(item);
                                              folder.makeLink("tree/item", folder.path("victim"));
                                          }
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(folder.path("tree")));
        EXPECT_TRUE(exists(victim));
    }
}

TEST(HostileChanges, AnItemThatNeverStopsChangingIsOneFailure) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string item = folder.makeFile("tree/item");
        const DeletionReport report = engineDisturbedAt(item, [&] {
                                          const bool wasFolder = fs::is_directory(item);
                                          fs::remove(item);
                                          if (wasFolder) {
                                              folder.makeFile("tree/item");
                                          } else {
                                              folder.makeDirectory("tree/item");
                                          }
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_EQ(report.failures.size(), 1U);
        EXPECT_THAT(report.removed, IsEmpty());
        EXPECT_TRUE(exists(item));
    }
}

TEST(HostileChanges, AFolderThatIsAlwaysRefilledIsAFailureAfterAWhile) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        folder.makeFile("tree/full/file0");
        const std::string full = folder.path("tree/full");
        int made = 0;
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            if (path.starts_with(full + "/")) {
                folder.makeFile("tree/full/file" + std::to_string(++made));
            }
            return true;
        });
        const DeletionReport report = engine.deleteItem(folder.path("tree"), options);
        ASSERT_EQ(report.failures.size(), 1U);
        EXPECT_THAT(report.failures[0], testing::HasSubstr("Directory not empty"));
        EXPECT_GT(made, 1);
        EXPECT_TRUE(exists(full));
    }
}

TEST(HostileChanges, EachFolderIsGoneThroughAgainWhateverItTookBefore) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        std::map<std::string, int> refills;
        for (const char* name : {"tree/one", "tree/two"}) {
            refills[folder.path(name)] = 5;
            folder.makeFile(std::string(name) + "/file");
        }
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            const auto left = refills.find(path.substr(0, path.rfind('/')));
            if (left != refills.end() && left->second > 0) {
                folder.makeFile(left->first.substr(folder.path().size() + 1) + "/file" +
                                std::to_string(left->second--));
            }
            return true;
        });
        EXPECT_THAT(engine.deleteItem(folder.path("tree"), options).failures, IsEmpty());
        EXPECT_FALSE(exists(folder.path("tree")));
        EXPECT_EQ(refills,
                  (std::map<std::string, int>{{folder.path("tree/one"), 0}, {folder.path("tree/two"), 0}}));
    }
}

TEST(HostileChanges, AFolderThatAnotherProcessKeepsFillingEndsOneWayOrTheOther) {
    const TemporaryDirectory folder;
    const std::string tree = folder.makeDirectory("tree");
    int number = 0;
    const BackgroundLoop filler([&] {
        const std::string file = tree + "/file" + std::to_string(++number);
        ::close(::open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    });
    while (!exists(tree + "/file100")) {
        std::this_thread::yield();
    }
    const DeletionReport report = newEngine().deleteItem(tree, unshielded);
    EXPECT_EQ(report.removed.empty(), exists(tree));
    EXPECT_EQ(report.failures.empty(), !exists(tree));
}

} // namespace
} // namespace zentrill
