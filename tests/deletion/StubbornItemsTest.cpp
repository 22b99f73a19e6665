#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/FileFlags.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::exists;
using test::FileFlag;
using test::newEngine;
using test::setFileFlag;
using test::shielded;
using test::unshielded;
namespace fs = std::filesystem;
using test::giveToOrdinaryUser;
using test::passesAsOrdinaryUser;
using test::passesWithPrivateMounts;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class StubbornItems : public testing::Test {
protected:
    TemporaryDirectory folder_;
};

TEST_F(StubbornItems, AnUnreadableFullFolderIsOneFailureAndSiblingsGo) {
    const std::string inside = folder_.makeFile("tree/sealed/inside");
    const std::string sibling = folder_.makeFile("tree/sibling");
    const std::string tree = folder_.path("tree");
    giveToOrdinaryUser(folder_.path());
    fs::permissions(tree + "/sealed", fs::perms::none);
    EXPECT_TRUE(passesAsOrdinaryUser([&] {
        const DeletionReport report = newEngine().deleteItem(tree, shielded);
        EXPECT_THAT(report.failures, ElementsAre(tree + "/sealed: Permission denied"));
        EXPECT_THAT(report.removed, ElementsAre(sibling));
    }));
    EXPECT_FALSE(exists(sibling));
    folder_.makeFile("tree/sibling");
    giveToOrdinaryUser(folder_.path());
    EXPECT_TRUE(passesAsOrdinaryUser([&] {
        const DeletionReport report = newEngine().deleteItem(tree, unshielded);
        EXPECT_THAT(report.failures, ElementsAre(tree + ": Permission denied (at " + tree + "/sealed)"));
        EXPECT_THAT(report.removed, IsEmpty());
    }));
    EXPECT_FALSE(exists(sibling));
    EXPECT_EQ(fs::status(tree + "/sealed").permissions(), fs::perms::none);
    fs::permissions(tree + "/sealed", fs::perms::owner_all);
    EXPECT_TRUE(exists(inside));
}

TEST_F(StubbornItems, AFolderThatMayBeSearchedButNotReadLeadsToItsItem) {
    const std::string file = folder_.makeFile("upper/file");
    giveToOrdinaryUser(folder_.path());
    fs::permissions(folder_.path("upper"), fs::perms::owner_write | fs::perms::owner_exec);
    EXPECT_TRUE(passesAsOrdinaryUser(
        [&] { EXPECT_THAT(newEngine().deleteItem(file, unshielded).removed, ElementsAre(file)); }));
    EXPECT_FALSE(exists(file));
}

TEST_F(StubbornItems, AReadOnlyFolderKeepsItsEntriesAndEachIsAFailure) {
    const std::string one = folder_.makeFile("tree/locked/one");
    const std::string two = folder_.makeFile("tree/locked/two");
    const std::string key = folder_.makeFile("tree/locked/id.key");
    giveToOrdinaryUser(folder_.path());
    fs::permissions(folder_.path("tree/locked"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_TRUE(passesAsOrdinaryUser([&] {
        const DeletionReport report = newEngine().deleteItem(folder_.path("tree"), shielded);
        EXPECT_THAT(report.failures,
                    UnorderedElementsAre(one + ": Permission denied", two + ": Permission denied"));
        EXPECT_THAT(report.preserved, ElementsAre(key));
        EXPECT_THAT(report.removed, IsEmpty());
    }));
    EXPECT_TRUE(exists(one) && exists(two) && exists(key));
}

TEST_F(StubbornItems, AStickyFolderKeepsWhatBelongsToOthers) {
    if (const auto obstacle = test::twoUsersObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const std::string own = folder_.makeFile("tree/own");
    giveToOrdinaryUser(folder_.path());
    const std::string foreign = folder_.makeFile("tree/foreign");
    ASSERT_EQ(::chown(folder_.path("tree").c_str(), 0, 0), 0);
    ASSERT_EQ(::chmod(folder_.path("tree").c_str(), 01777), 0);
    EXPECT_TRUE(passesAsOrdinaryUser([&] {
        const DeletionReport report = newEngine().deleteItem(folder_.path("tree"), shielded);
        EXPECT_THAT(report.failures, ElementsAre(foreign + ": Operation not permitted"));
        EXPECT_THAT(report.removed, ElementsAre(own));
    }));
    EXPECT_TRUE(exists(foreign));
    EXPECT_FALSE(exists(own));
}

TEST_F(StubbornItems, AnImmutableFileIsAFailure) {
    const std::string file = folder_.makeFile("tree/immutable");
    const std::string sibling = folder_.makeFile("tree/sibling");
    if (!setFileFlag(file, FileFlag::immutable)) {
        GTEST_SKIP() << "needs an immutable file: " << std::strerror(errno);
    }
    const DeletionReport report = newEngine().deleteItem(folder_.path("tree"), shielded);
    const DeletionReport whole = newEngine().deleteItem(folder_.path("tree"), unshielded);
    const bool stands = exists(file);
    ASSERT_TRUE(setFileFlag(file, FileFlag::none));
    EXPECT_TRUE(stands);
    EXPECT_THAT(report.failures, ElementsAre(file + ": Operation not permitted"));
    EXPECT_THAT(report.removed, ElementsAre(sibling));
    EXPECT_THAT(whole.failures,
                ElementsAre(folder_.path("tree") + ": Operation not permitted (at " + file + ")"));
}

TEST_F(StubbornItems, AReadOnlyMountKeepsEverything) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const std::string volume = folder_.makeDirectory("volume");
    EXPECT_TRUE(passesWithPrivateMounts([&] {
        test::mountMemoryDisk(volume);
        const std::string file = folder_.makeFile("volume/tree/file");
        test::remountReadOnly(volume);
        const DeletionReport report = newEngine().deleteItem(volume + "/tree", shielded);
        EXPECT_THAT(report.failures, ElementsAre(file + ": Read-only file system"));
        EXPECT_THAT(newEngine().deleteItem(volume + "/tree", unshielded).failures,
                    ElementsAre(volume + "/tree: Read-only file system (at " + file + ")"));
        EXPECT_TRUE(exists(file));
    }));
}

TEST_F(StubbornItems, AFileWithOtherNamesLosesOneNameAndNothingElse) {
    const std::string outside = folder_.makeFile("outside", "content");
    fs::permissions(outside, fs::perms::owner_read);
    for (const DeletionOptions& options : {unshielded, shielded}) {
        folder_.makeDirectory("tree");
        fs::create_hard_link(outside, folder_.path("tree/name"));
        struct stat before{};
        ASSERT_EQ(::lstat(outside.c_str(), &before), 0);
        const auto modified = fs::last_write_time(outside);
        EXPECT_TRUE(newEngine().deleteItem(folder_.path("tree"), options).succeeded());
        struct stat after{};
        ASSERT_EQ(::lstat(outside.c_str(), &after), 0);
        EXPECT_EQ(after.st_nlink, before.st_nlink - 1);
        EXPECT_EQ(after.st_mode, before.st_mode);
        EXPECT_EQ(after.st_size, before.st_size);
        EXPECT_EQ(fs::last_write_time(outside), modified);
        EXPECT_EQ(contentOf(outside), "content");
    }
}

TEST_F(StubbornItems, EntriesWithoutATypeAreLookedUp) {
    if (std::system("command -v mkfs.ext4 >/dev/null") != 0) { // NOLINT(cert-env33-c): a fixed text
        GTEST_SKIP() << "needs mkfs.ext4 to make a file system that stores no entry types";
    }
    const std::string image = folder_.makeFile("image");
    fs::resize_file(image, 8 << 20);
    const std::string volume = folder_.makeDirectory("volume");
    const std::string make = "mkfs.ext4 -q -F -O ^filetype,^has_journal " + image;
    ASSERT_EQ(std::system(make.c_str()), 0); // NOLINT(cert-env33-c): a name of the test's own
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const std::string obstacle = folder_.path("obstacle");
    const std::string mount = "mount -o loop " + image + " " + volume + " 2>" + obstacle;
    EXPECT_TRUE(passesWithPrivateMounts([&] {
        if (std::system(mount.c_str()) != 0) { // NOLINT(cert-env33-c): names of the test's own
            return;
        }
        fs::remove(obstacle);
        const std::string victim = folder_.makeFile("volume/victim/file");
        const std::string file = folder_.makeFile("volume/tree/sub/file");
        const std::string link = folder_.makeLink("volume/tree/sub/link", "../../victim");
        const std::string key = folder_.makeFile("volume/tree/sub/id.key");
        const std::string tree = folder_.path("volume/tree");
        const DeletionReport report = newEngine().deleteItem(tree, shielded);
        EXPECT_THAT(report.removed, UnorderedElementsAre(file, link));
        EXPECT_THAT(report.preserved, ElementsAre(key));
        EXPECT_THAT(newEngine().deleteItem(tree, unshielded).removed, ElementsAre(tree));
        EXPECT_FALSE(exists(tree));
        EXPECT_TRUE(exists(victim));
    }));
    if (exists(obstacle)) {
        GTEST_SKIP() << "needs a loop device to mount an image: " << contentOf(obstacle);
    }
}

} // namespace
} // namespace zentrill
