#include "platform/DirectoryHandle.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using testing::AnyOf;
using testing::Eq;
namespace fs = std::filesystem;

FileIdentity identityOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return {.device = status.st_dev, .inode = status.st_ino};
}

class DirectoryHandleTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(DirectoryHandle::open(folder.path(), FinalLink::refuse, handle), 0); }

    [[nodiscard]] std::set<std::string> names() const {
        DirectoryListing listing;
        bool atEnd = false;
        EXPECT_EQ(handle.readEntries(listing, SIZE_MAX, atEnd), 0);
        EXPECT_TRUE(atEnd);
        std::set<std::string> found;
        for (std::size_t index = 0; index < listing.size(); ++index) {
            found.emplace(listing.name(index));
        }
        return found;
    }

    test::TemporaryDirectory folder;
    DirectoryHandle handle;
};

TEST_F(DirectoryHandleTest, OpensAFolderAndKnowsWhichOneItIs) {
    EXPECT_TRUE(handle);
    EXPECT_EQ(handle.identity(), identityOf(folder.path()));
    handle.close();
    EXPECT_FALSE(handle);
}

TEST_F(DirectoryHandleTest, FollowsALinkAtTheEndOfAPathOnlyWhenAsked) {
    folder.makeDirectory("real");
    const std::string link = folder.makeLink("link", "real");
    DirectoryHandle opened;
    EXPECT_THAT(DirectoryHandle::open(link, FinalLink::refuse, opened), AnyOf(ENOTDIR, ELOOP));
    EXPECT_FALSE(opened);
    EXPECT_EQ(DirectoryHandle::open(link, FinalLink::follow, opened), 0);
    EXPECT_EQ(opened.identity(), identityOf(folder.path("real")));
}

TEST_F(DirectoryHandleTest, OpensChildrenButNeitherFilesNorLinks) {
    folder.makeDirectory("sub");
    folder.makeFile("file");
    folder.makeLink("link", "sub");
    for (const Mounts mounts : {Mounts::refuse, Mounts::enter}) {
        DirectoryHandle opened;
        EXPECT_EQ(handle.openChild("file", mounts, opened), ENOTDIR);
        EXPECT_THAT(handle.openChild("link", mounts, opened), AnyOf(ENOTDIR, ELOOP));
        EXPECT_EQ(handle.openChild("missing", mounts, opened), ENOENT);
        EXPECT_FALSE(opened);
        EXPECT_EQ(handle.openChild("sub", mounts, opened), 0);
        EXPECT_EQ(opened.identity(), identityOf(folder.path("sub")));
    }
    DirectoryHandle searched;
    EXPECT_EQ(handle.openForSearch("sub", searched), 0);
    EXPECT_THAT(handle.openForSearch("link", searched), AnyOf(ENOTDIR, ELOOP));
}

TEST_F(DirectoryHandleTest, StaysOnItsDirectoryWhenThatIsMovedAndAnotherTakesItsPlace) {
    folder.makeFile("sub/inside");
    DirectoryHandle opened;
    ASSERT_EQ(handle.openChild("sub", Mounts::refuse, opened), 0);
    fs::rename(folder.path("sub"), folder.path("moved"));
    folder.makeDirectory("sub");
    EntryStatus status;
    EXPECT_EQ(opened.lookUp("inside", status), 0);
    EXPECT_EQ(opened.identity(), identityOf(folder.path("moved")));
}

TEST_F(DirectoryHandleTest, TheParentIsWhateverItIsByNow) {
    folder.makeDirectory("a/sub");
    folder.makeDirectory("b");
    DirectoryHandle a;
    DirectoryHandle sub;
    DirectoryHandle parent;
    ASSERT_EQ(handle.openChild("a", Mounts::refuse, a), 0);
    ASSERT_EQ(a.openChild("sub", Mounts::refuse, sub), 0);
    EXPECT_EQ(sub.openParent(parent), 0);
    EXPECT_EQ(parent.identity(), a.identity());
    fs::rename(folder.path("a/sub"), folder.path("b/sub"));
    EXPECT_EQ(sub.openParent(parent), 0);
    EXPECT_EQ(parent.identity(), identityOf(folder.path("b")));
}

TEST_F(DirectoryHandleTest, DescribesEntriesWithoutFollowingThem) {
    const std::string file = folder.makeFile("file", "12345");
    fs::resize_file(folder.makeFile("sparse"), 1'000'000'000);
    folder.makeDirectory("sub");
    folder.makeLink("link", "sub");
    ASSERT_EQ(::link(file.c_str(), folder.path("again").c_str()), 0);
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EntryStatus status;
    ASSERT_EQ(handle.lookUp("file", status), 0);
    EXPECT_EQ(status.kind, EntryKind::other);
    EXPECT_EQ(status.identity, identityOf(file));
    EXPECT_EQ(status.size, 5);
    EXPECT_EQ(status.linkCount, 2U);
    ASSERT_EQ(handle.lookUp("sparse", status), 0);
    EXPECT_EQ(status.size, 1'000'000'000);
    EXPECT_LT(status.allocatedSize, 1'000'000);
    ASSERT_EQ(handle.lookUp("sub", status), 0);
    EXPECT_EQ(status.kind, EntryKind::directory);
    ASSERT_EQ(handle.lookUp("link", status), 0);
    EXPECT_EQ(status.kind, EntryKind::link);
    ASSERT_EQ(handle.lookUp("pipe", status), 0);
    EXPECT_EQ(status.kind, EntryKind::other);
    EXPECT_EQ(handle.lookUp("missing", status), ENOENT);
}

TEST_F(DirectoryHandleTest, LooksUpTheKindThatAListingLeftUnknown) {
    folder.makeFile("file");
    folder.makeDirectory("sub");
    folder.makeLink("link", "sub");
    for (const auto& [name, expected] :
         {std::pair("file", EntryKind::other), std::pair("sub", EntryKind::directory),
          std::pair("link", EntryKind::link)}) {
        EntryKind kind = EntryKind::unknown;
        EXPECT_EQ(handle.completeKind(name, kind), 0);
        EXPECT_EQ(kind, expected) << name;
    }
    EntryKind missing = EntryKind::unknown;
    EXPECT_EQ(handle.completeKind("missing", missing), ENOENT);
    EXPECT_EQ(missing, EntryKind::unknown);
    // What the listing told is not looked up again.
    EntryKind told = EntryKind::directory;
    EXPECT_EQ(handle.completeKind("missing", told), 0);
    EXPECT_EQ(told, EntryKind::directory);
}

TEST_F(DirectoryHandleTest, WhatAFileOccupiesIsCountedInBytes) {
    const std::string file = folder.makeFile("file", std::string(100'000, 'x'));
    struct stat expected{};
    ASSERT_EQ(::stat(file.c_str(), &expected), 0);
    EntryStatus status;
    ASSERT_EQ(handle.lookUp("file", status), 0);
    EXPECT_EQ(status.allocatedSize, expected.st_blocks * 512);
}

TEST_F(DirectoryHandleTest, TellsWhereALinkPoints) {
    folder.makeLink("link", "to/nowhere");
    folder.makeFile("file");
    EXPECT_EQ(handle.linkDestination("link"), "to/nowhere");
    EXPECT_EQ(handle.linkDestination("file"), std::nullopt);
    EXPECT_EQ(handle.linkDestination("missing"), std::nullopt);
}

TEST_F(DirectoryHandleTest, RemovesFilesLinksAndEmptyFoldersThemselves) {
    folder.makeFile("sub/file");
    folder.makeLink("link", "sub");
    EXPECT_THAT(handle.removeFile("sub"), AnyOf(EISDIR, EPERM));
    EXPECT_THAT(handle.removeDirectory("sub"), AnyOf(ENOTEMPTY, EEXIST));
    EXPECT_EQ(handle.removeDirectory("link"), ENOTDIR);
    EXPECT_EQ(handle.removeFile("link"), 0);
    EXPECT_TRUE(fs::exists(folder.path("sub/file")));
    fs::remove(folder.path("sub/file"));
    EXPECT_EQ(handle.removeDirectory("sub"), 0);
    EXPECT_EQ(handle.removeFile("missing"), ENOENT);
    EXPECT_EQ(names(), std::set<std::string>());
}

TEST_F(DirectoryHandleTest, ListsInBatchesAndAgainFromTheStart) {
    std::set<std::string> made;
    for (int index = 0; index < 3000; ++index) {
        const std::string name = "a-rather-long-name-for-a-small-file-" + std::to_string(index);
        folder.makeFile(name);
        made.insert(name);
    }
    std::set<std::string> found;
    [[maybe_unused]] int batches = 0;
    for (bool atEnd = false; !atEnd; ++batches) {
        DirectoryListing listing;
        ASSERT_EQ(handle.readEntries(listing, 1, atEnd), 0);
        for (std::size_t index = 0; index < listing.size(); ++index) {
            EXPECT_TRUE(found.emplace(listing.name(index)).second) << listing.name(index);
        }
    }
    EXPECT_EQ(found, made);
#ifdef __linux__
    EXPECT_GT(batches, 2);
#endif
    ASSERT_EQ(handle.rewind(), 0);
    EXPECT_EQ(names(), made);
}

TEST_F(DirectoryHandleTest, TheListingTellsTheKinds) {
    folder.makeDirectory("directory");
    folder.makeFile("other");
    folder.makeLink("link", "directory");
    DirectoryListing listing;
    bool atEnd = false;
    ASSERT_EQ(handle.readEntries(listing, SIZE_MAX, atEnd), 0);
    ASSERT_EQ(listing.size(), 3U);
    for (std::size_t index = 0; index < listing.size(); ++index) {
        const std::string name = listing.name(index);
        const EntryKind kind = name == "directory" ? EntryKind::directory
                               : name == "link"    ? EntryKind::link
                                                   : EntryKind::other;
        EXPECT_THAT(listing.kind(index), AnyOf(Eq(kind), Eq(EntryKind::unknown))) << name;
    }
}

TEST_F(DirectoryHandleTest, ACopyIsAHandleOfItsOwnOnTheSameDirectory) {
    folder.makeFile("file");
    DirectoryHandle copy;
    ASSERT_EQ(handle.duplicate(copy), 0);
    EXPECT_EQ(copy.identity(), handle.identity());
    handle.close();
    EXPECT_EQ(copy.removeFile("file"), 0);
    EXPECT_FALSE(fs::exists(folder.path("file")));
}

TEST_F(DirectoryHandleTest, IsOpenToNoProgramThatIsStarted) {
    folder.makeDirectory("inner");
    std::array<DirectoryHandle, 7> handles;
    ASSERT_EQ(DirectoryHandle::openRoot(handles[0]), 0);
    ASSERT_EQ(DirectoryHandle::open(folder.path(), FinalLink::follow, handles[1]), 0);
    ASSERT_EQ(handle.openForSearch("inner", handles[2]), 0);
    ASSERT_EQ(handle.openChild("inner", Mounts::refuse, handles[3]), 0);
    ASSERT_EQ(handle.openChild("inner", Mounts::enter, handles[4]), 0);
    ASSERT_EQ(handle.openParent(handles[5]), 0);
    ASSERT_EQ(handle.duplicate(handles[6]), 0);
    for (const DirectoryHandle& opened : handles) {
        EXPECT_EQ(::fcntl(opened.descriptor(), F_GETFD), FD_CLOEXEC) << &opened - handles.data();
    }
}

} // namespace
} // namespace zentrill
