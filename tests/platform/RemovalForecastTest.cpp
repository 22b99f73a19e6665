#include "platform/RemovalForecast.h"

#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

namespace fs = std::filesystem;

/// What the forecast says of entries is compared with what their removal then gives.
class RemovalForecastTest : public testing::Test {
protected:
    static DirectoryHandle opened(const std::string& path) {
        DirectoryHandle handle;
        EXPECT_EQ(DirectoryHandle::open(path, FinalLink::refuse, handle), 0) << path;
        return handle;
    }

    static int forecastOf(const DirectoryHandle& directory, const char* name) {
        EntryStatus status;
        int removalError = -1;
        EXPECT_EQ(RemovalForecast(directory).lookUp(directory, name, status, removalError), 0) << name;
        return removalError;
    }

    /// Of an empty folder, as its own forecast tells it to the one around it.
    static int forecastOfFolder(const DirectoryHandle& directory, const char* name) {
        DirectoryHandle inner;
        EXPECT_EQ(directory.openChild(name, Mounts::enter, inner), 0) << name;
        return RemovalForecast(directory).removalError(RemovalForecast(inner));
    }

    test::TemporaryDirectory folder;
};

TEST_F(RemovalForecastTest, LooksAnEntryUpAsTheDirectoryDoes) {
    folder.makeFile("file", std::string(5000, 'x'));
    folder.makeLink("link", "nowhere");
    folder.makeDirectory("sub");
    fs::create_hard_link(folder.path("file"), folder.path("again"));
    const DirectoryHandle directory = opened(folder.path());
    const RemovalForecast forecast(directory);
    for (const char* name : {"file", "link", "sub"}) {
        EntryStatus expected;
        EntryStatus status;
        int removalError = -1;
        ASSERT_EQ(directory.lookUp(name, expected), 0);
        ASSERT_EQ(forecast.lookUp(directory, name, status, removalError), 0);
        EXPECT_EQ(removalError, 0) << name;
        EXPECT_EQ(status.kind, expected.kind) << name;
        EXPECT_EQ(status.identity, expected.identity) << name;
        EXPECT_EQ(status.size, expected.size) << name;
        EXPECT_EQ(status.allocatedSize, expected.allocatedSize) << name;
        EXPECT_EQ(status.linkCount, expected.linkCount) << name;
    }
    EntryStatus status;
    int removalError = -1;
    EXPECT_EQ(forecast.lookUp(directory, "missing", status, removalError), ENOENT);
    EXPECT_EQ(removalError, -1) << "set though nothing is known";
}

TEST_F(RemovalForecastTest, KnowsAFolderInWhichNothingMayChange) {
    folder.makeFile("locked/file");
    folder.makeDirectory("locked/empty");
    test::giveToOrdinaryUser(folder.path());
    fs::permissions(folder.path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_TRUE(test::passesAsOrdinaryUser([this] {
        const DirectoryHandle directory = opened(folder.path("locked"));
        EXPECT_EQ(forecastOf(directory, "file"), EACCES);
        EXPECT_EQ(directory.removeFile("file"), EACCES);
        EXPECT_EQ(forecastOfFolder(directory, "empty"), EACCES);
        EXPECT_EQ(directory.removeDirectory("empty"), EACCES);
    }));
}

TEST_F(RemovalForecastTest, KnowsWhoseEntriesAStickyFolderLetsGo) {
    if (const auto obstacle = test::twoUsersObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    folder.makeFile("shared/own");
    folder.makeFile("mine/foreign");
    folder.makeFile("mine/own");
    test::giveToOrdinaryUser(folder.path());
    const std::string foreign = folder.makeFile("shared/foreign");
    ASSERT_EQ(::lchown(folder.path("mine/foreign").c_str(), 0, 0), 0);
    ASSERT_EQ(::lchown(folder.path("shared").c_str(), 0, 0), 0);
    for (const char* sticky : {"shared", "mine"}) {
        ASSERT_EQ(::chmod(folder.path(sticky).c_str(), 01777), 0);
    }
    EXPECT_EQ(forecastOf(opened(folder.path("mine")), "own"), 0) << "root may remove anybody's";
    EXPECT_TRUE(test::passesAsOrdinaryUser([this] {
        const DirectoryHandle shared = opened(folder.path("shared"));
        EXPECT_EQ(forecastOf(shared, "own"), 0);
        EXPECT_EQ(shared.removeFile("own"), 0);
        EXPECT_EQ(forecastOf(shared, "foreign"), EPERM);
        EXPECT_EQ(shared.removeFile("foreign"), EPERM);
        const DirectoryHandle mine = opened(folder.path("mine"));
        EXPECT_EQ(forecastOf(mine, "foreign"), 0) << "a folder's owner may remove what is in it";
        EXPECT_EQ(mine.removeFile("foreign"), 0);
    }));
}

TEST_F(RemovalForecastTest, KnowsWhatSomethingIsMountedOn) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    EXPECT_TRUE(test::passesWithPrivateMounts([] {
        const test::TemporaryDirectory own;
        const std::string file = own.makeFile("file");
        const std::string outside = own.makeFile("outside");
        test::bindMount(outside, file);
        test::mountMemoryDisk(own.makeDirectory("disk"));
        const DirectoryHandle directory = opened(own.path());
        EXPECT_EQ(forecastOf(directory, "file"), EBUSY);
        EXPECT_EQ(directory.removeFile("file"), EBUSY);
        EXPECT_EQ(forecastOf(directory, "disk"), EBUSY);
        EXPECT_EQ(directory.removeDirectory("disk"), EBUSY);
        EXPECT_EQ(forecastOf(directory, "outside"), 0);
    }));
}

TEST_F(RemovalForecastTest, KnowsAFileSystemThatIsReadOnly) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    EXPECT_TRUE(test::passesWithPrivateMounts([] {
        const test::TemporaryDirectory own;
        const std::string disk = own.makeDirectory("disk");
        test::mountMemoryDisk(disk);
        own.makeFile("disk/file");
        test::remountReadOnly(disk);
        const DirectoryHandle directory = opened(disk);
        EXPECT_EQ(forecastOf(directory, "file"), EROFS);
        EXPECT_EQ(directory.removeFile("file"), EROFS);
    }));
}

} // namespace
} // namespace zentrill
