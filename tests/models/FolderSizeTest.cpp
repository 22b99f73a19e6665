#include "models/FolderSize.h"

#include "OwnSize.h"
#include "support/ChildProcess.h"
#include "support/MemoryFolder.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::ownSize;

class FolderSizeTest : public testing::Test {
protected:
    /// Makes `depth` nested folders of the name `name` and a file of five bytes in each.
    void makeChain(int depth, const char* name) const {
        int current = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int level = 0; level < depth; ++level) {
            ASSERT_GE(current, 0);
            ASSERT_EQ(::mkdirat(current, name, 0700), 0);
            const int child = ::openat(current, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            ::close(current);
            current = child;
            const int file = ::openat(current, "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
            ASSERT_EQ(::write(file, "12345", 5), 5);
            ::close(file);
        }
        ::close(current);
    }

    test::TemporaryDirectory folder;
};

TEST_F(FolderSizeTest, CountsFilesAndSubfoldersButNotTheFolderItself) {
    folder.makeFile("one", "1");
    folder.makeFile("sub/two", "22");
    folder.makeFile("sub/.hidden/three", "333");
    EXPECT_EQ(folderSize(folder.path()),
              6 + ownSize(folder.path("sub")) + ownSize(folder.path("sub/.hidden")));
}

TEST_F(FolderSizeTest, SymbolicLinksAddNothing) {
    const test::TemporaryDirectory elsewhere;
    elsewhere.makeFile("big", std::string(1000, 'x'));
    folder.makeFile("file", "12345");
    folder.makeLink("to-file", "file");
    folder.makeLink("to-folder", elsewhere.path());
    folder.makeLink("dangling", "nowhere");
    folder.makeLink("loop", ".");
    EXPECT_EQ(folderSize(folder.path()), 5);
}

TEST_F(FolderSizeTest, ALinkAsTheFolderItselfIsFollowed) {
    folder.makeFile("real/file", "12345");
    EXPECT_EQ(folderSize(folder.makeLink("link", "real")), 5);
}

TEST_F(FolderSizeTest, CountsLogicalBytesNotBlocks) {
    const std::string sparse = folder.makeFile("sparse");
    std::filesystem::resize_file(sparse, 10'000'000'000);
    EXPECT_EQ(folderSize(folder.path()), 10'000'000'000);
}

TEST_F(FolderSizeTest, CountsAHardLinkAsOftenAsItIsListed) {
    const std::string file = folder.makeFile("file", "12345");
    ASSERT_EQ(::link(file.c_str(), folder.path("again").c_str()), 0);
    EXPECT_EQ(folderSize(folder.path()), 10);
}

TEST_F(FolderSizeTest, MissingAndEmptyFoldersAndFilesAreZero) {
    EXPECT_EQ(folderSize(folder.path()), 0);
    EXPECT_EQ(folderSize(folder.path("missing")), 0);
    EXPECT_EQ(folderSize(folder.makeFile("file", "12345")), 0);
    EXPECT_EQ(folderSize(""), 0);
    EXPECT_EQ(folderSize(folder.path() + std::string("\0tail", 5)), 0);
}

TEST_F(FolderSizeTest, SpecialFilesAreNeitherOpenedNorInTheWay) {
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    folder.makeFile("file", "12345");
    EXPECT_EQ(folderSize(folder.path()), 5);
}

// Needs more than one buffer of the system's listing.
TEST_F(FolderSizeTest, CountsEveryEntryOfALargeFolder) {
    constexpr int count = 5000;
    for (int index = 0; index < count; ++index) {
        folder.makeFile("a-rather-long-name-for-a-small-file-" + std::to_string(index), "123");
    }
    EXPECT_EQ(folderSize(folder.path()), 3 * count);
}

TEST_F(FolderSizeTest, AnUnreadableFolderCountsAsEmpty) {
    folder.makeFile("closed/inside", std::string(1000, 'x'));
    folder.makeFile("open/inside", "12345");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(folder.path("closed").c_str(), 0), 0);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_EQ(folderSize(folder.path()),
                  5 + ownSize(folder.path("closed")) + ownSize(folder.path("open")));
    }));
}

TEST_F(FolderSizeTest, AFolderThatMayOnlyBeListedDoesNotEndTheWalk) {
    for (const char* name : {"a", "b", "c"}) {
        folder.makeFile(std::string(name) + "/listed/inner/file", "12345");
        folder.makeFile(std::string(name) + "/listed/file", "12345");
        folder.makeFile(std::string(name) + "/file", "12345");
        ASSERT_EQ(::chmod(folder.path(std::string(name) + "/listed").c_str(), 0444), 0);
    }
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_EQ(folderSize(folder.path()),
                  3 * (5 + ownSize(folder.path("a")) + ownSize(folder.path("a/listed"))));
    }));
}

TEST_F(FolderSizeTest, ATreeDeeperThanAnyPathIsCountedWhole) {
    constexpr int depth = 300;
    const std::string name(100, 'd');
    makeChain(depth, name.c_str());
    const std::int64_t perLevel = ownSize(folder.path(name)) + 5;
    // The innermost folder holds one entry less, which some file systems count in its size.
    const test::TemporaryDirectory sample;
    sample.makeFile("innermost/file");
    const std::int64_t expected = ((depth - 1) * perLevel) + ownSize(sample.path("innermost")) + 5;
    EXPECT_TRUE(test::passesInChild([&] {
        // Far fewer descriptors than folders.
        const rlimit few{.rlim_cur = 32, .rlim_max = 32};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(folderSize(folder.path()), expected);
    }));
}

// On the way up from each branch the folders above it are found again.
TEST_F(FolderSizeTest, BranchesAtEveryDepthOfADeepTreeAreCounted) {
    std::string path;
    std::int64_t expected = 0;
    for (int level = 0; level < 40; ++level) {
        folder.makeFile(path + "a/deep/er/file", "1");
        folder.makeFile(path + "z/file", "22");
        path += "m/";
        folder.makeDirectory(path);
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        expected += ownSize(entry.path());
    }
    EXPECT_EQ(folderSize(folder.path()), expected);
}

#ifdef __linux__
TEST(FolderSizeOnMemoryFileSystemTest, ASumPast64BitsStaysAtTheLargestValue) {
    const test::TemporaryDirectory memory(test::memoryFolder());
    for (const char* name : {"a", "b", "c"}) {
        const std::string file = memory.makeFile(name);
        ASSERT_EQ(::truncate(file.c_str(), std::numeric_limits<off_t>::max()), 0);
    }
    EXPECT_EQ(folderSize(memory.path()), std::numeric_limits<std::int64_t>::max());
}
#endif

TEST_F(FolderSizeTest, SizesOfManyFoldersKeepTheirOrder) {
    std::vector<std::string> paths;
    std::vector<std::int64_t> expected;
    for (int index = 0; index < 300; ++index) {
        const std::string name = "folder" + std::to_string(index);
        folder.makeFile(name + "/file", std::string(static_cast<std::size_t>(index), 'x'));
        paths.push_back(folder.path(name));
        expected.push_back(index);
    }
    paths.push_back(folder.path("missing"));
    expected.push_back(0);
    EXPECT_EQ(folderSizes(paths), expected);
    EXPECT_TRUE(folderSizes({}).empty());
}

TEST_F(FolderSizeTest, StopsBeforeTheNextFolder) {
    for (int index = 0; index < 100; ++index) {
        folder.makeFile("folder" + std::to_string(index) + "/file", "x");
    }
    int asked = 0;
    EXPECT_EQ(folderSize(folder.path(), [&] { return ++asked > 0; }), 0);
    EXPECT_EQ(asked, 1);
    asked = 0;
    const std::int64_t all = folderSize(folder.path());
    const std::int64_t some = folderSize(folder.path(), [&] { return ++asked > 10; });
    EXPECT_EQ(asked, 11);
    EXPECT_GT(some, 0);
    EXPECT_LT(some, all);

    const std::vector<std::string> paths(1000, folder.path());
    std::atomic<int> askedByAll = 0;
    static_cast<void>(folderSizes(paths, [&] { return ++askedByAll > 5; }));
    EXPECT_LE(askedByAll, 5 + 1000);
}

} // namespace
} // namespace zentrill
