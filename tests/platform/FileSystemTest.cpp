#include "platform/FileSystem.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace zentrill {
namespace {

using testing::Optional;
using testing::UnorderedElementsAre;

class FileSystemTest : public testing::Test {
protected:
    test::TemporaryDirectory folder;
    const FileSystem& files = FileSystem::shared();
};

TEST_F(FileSystemTest, TellsADanglingLinkFromAMissingItem) {
    const std::string link = folder.makeLink("link", "nowhere");
    EXPECT_FALSE(files.fileExists(link));
    EXPECT_TRUE(files.itemExistsWithoutFollowingSymlink(link));
    EXPECT_EQ(files.symbolicLinkDestination(link), "nowhere");
    EXPECT_FALSE(files.itemExistsWithoutFollowingSymlink(folder.path("missing")));
    EXPECT_EQ(files.symbolicLinkDestination(folder.makeFile("file")), std::nullopt);
}

TEST_F(FileSystemTest, ANameWithANulIsNotAShorterName) {
    const std::string path = folder.makeFile("file") + std::string("\0tail", 5);
    EXPECT_FALSE(files.fileExists(path));
    EXPECT_FALSE(files.itemExistsWithoutFollowingSymlink(path));
    EXPECT_EQ(files.attributes(path), std::nullopt);
    EXPECT_EQ(files.resolvingSymlinks(path), std::nullopt);
}

TEST_F(FileSystemTest, ListsHiddenEntries) {
    folder.makeFile(".hidden");
    folder.makeFile("plain");
    folder.makeFile("odd\n\xff");
    EXPECT_THAT(files.entryNames(folder.path()),
                Optional(UnorderedElementsAre(".hidden", "plain", "odd\n\xff")));
    EXPECT_EQ(files.entryNames(folder.path("missing")), std::nullopt);
    EXPECT_EQ(files.entryNames(folder.path("plain")), std::nullopt);
}

TEST_F(FileSystemTest, DescribesTheItemItself) {
    const auto file = files.attributes(folder.makeFile("file", "12345"));
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->isRegularFile);
    EXPECT_EQ(file->size, 5);
    const auto link = files.attributes(folder.makeLink("link", "file"));
    ASSERT_TRUE(link);
    EXPECT_TRUE(link->isSymbolicLink);
    EXPECT_FALSE(link->isRegularFile);
    const auto directory = files.attributes(folder.path());
    ASSERT_TRUE(directory);
    EXPECT_TRUE(directory->isDirectory);
    EXPECT_FALSE(directory->volumeIsReadOnly);
}

TEST_F(FileSystemTest, AFolderIsNoExecutableFile) {
    EXPECT_TRUE(
        files.isExecutableFile(folder.makeLink("link", folder.makeExecutable("tool", "#!/bin/sh\n"))));
    EXPECT_FALSE(files.isExecutableFile(folder.makeFile("plain")));
    EXPECT_FALSE(files.isExecutableFile(folder.path()));
    EXPECT_FALSE(files.isExecutableFile(folder.makeLink("dangling", "nowhere")));
}

TEST_F(FileSystemTest, ResolvesChainsOfLinks) {
    const std::string tool = folder.makeExecutable("cellar/1.0/tool", "");
    folder.makeLink("opt", "cellar/1.0");
    const std::string link = folder.makeLink("bin/tool", "../opt/tool");
    EXPECT_EQ(files.resolvingSymlinks(link), tool);
    EXPECT_EQ(files.resolvingSymlinks(folder.makeLink("dangling", "nowhere")), std::nullopt);
}

} // namespace
} // namespace zentrill
