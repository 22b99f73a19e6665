#include "support/confinement/EmptyFolder.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using confinement::emptyFolder;
namespace fs = std::filesystem;

TEST(EmptyFolderTest, LeavesTheFolderAndWhatLinksPointAt) {
    const test::TemporaryDirectory folder;
    const std::string outside = folder.makeFile("outside/file");
    folder.makeFile("inside/file");
    folder.makeFile("inside/sub/file");
    folder.makeLink("inside/link", folder.path("outside"));
    folder.makeLink("inside/sub/file-link", outside);
    ASSERT_EQ(::mkfifo(folder.path("inside/pipe").c_str(), 0600), 0);
    emptyFolder(folder.path("inside"));
    EXPECT_TRUE(fs::is_directory(folder.path("inside")));
    EXPECT_TRUE(fs::is_empty(folder.path("inside")));
    EXPECT_TRUE(fs::exists(outside));
}

TEST(EmptyFolderTest, OpensWhatTestsHaveLocked) {
    const test::TemporaryDirectory folder;
    folder.makeFile("inside/closed/sub/file");
    folder.makeFile("inside/read-only/file");
    fs::permissions(folder.path("inside/closed/sub"), fs::perms::none);
    fs::permissions(folder.path("inside/closed"), fs::perms::none);
    fs::permissions(folder.path("inside/read-only"), fs::perms(0555));
    fs::permissions(folder.path("inside"), fs::perms(0500));
    emptyFolder(folder.path("inside"));
    EXPECT_TRUE(fs::is_empty(folder.path("inside")));
}

TEST(EmptyFolderTest, GoesDeeperThanAPathCanBeLong) {
    const test::TemporaryDirectory folder;
    const std::string inside = folder.makeDirectory("inside");
    const std::string name(200, 'd');
    int deepest = ::open(inside.c_str(), O_DIRECTORY | O_CLOEXEC);
    for (int depth = 0; depth < 300; ++depth) {
        ASSERT_EQ(::mkdirat(deepest, name.c_str(), 0700), 0);
        const int next = ::openat(deepest, name.c_str(), O_DIRECTORY | O_CLOEXEC);
        ::close(deepest);
        deepest = next;
    }
    ::close(deepest);
    emptyFolder(inside);
    EXPECT_TRUE(fs::is_empty(inside));
}

TEST(EmptyFolderTest, AMissingFolderIsEmpty) {
    const test::TemporaryDirectory folder;
    emptyFolder(folder.path("missing"));
    EXPECT_FALSE(fs::exists(folder.path("missing")));
}

} // namespace
} // namespace zentrill
