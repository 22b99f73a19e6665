#include "PropertyListFixture.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>

#include <sys/stat.h>

namespace zentrill {
namespace {

using test::binaryForm;
using test::contentOf;
using test::infoList;
using test::xmlList;
using testing::HasSubstr;
using testing::StartsWith;

using PropertyListTest = test::PropertyListFixture;

TEST_F(PropertyListTest, MakesAFileWithItsFoldersForItsOwnerAlone) {
    const std::string path = folder.path("home/Library/Preferences/com.user.Zentrill.plist");
    const mode_t previous = ::umask(0);
    const bool written = setPropertyListString(path, "NSWindow Frame MainWindow", "1 2 3 4 <&> \xC3\xA4");
    ::umask(previous);
    ASSERT_TRUE(written);
    EXPECT_EQ(propertyListString(path, "NSWindow Frame MainWindow"), "1 2 3 4 <&> \xC3\xA4");
    EXPECT_THAT(contentOf(path), StartsWith("<?xml"));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::filesystem::status(folder.path("home")).permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(std::filesystem::status(folder.path("home/Library/Preferences")).permissions(),
              std::filesystem::perms(0700));
}

TEST_F(PropertyListTest, KeepsAllOtherKeysOfBothForms) {
    for (const std::string& before : {infoList(), binaryForm(infoList())}) {
        const std::string path = folder.makeFile("list.plist", before);
        ASSERT_TRUE(setPropertyListString(path, "Frame", "10 20"));
        ASSERT_TRUE(setPropertyListString(path, "Frame", "30 40"));
        EXPECT_EQ(propertyListString(path, "Frame"), "30 40");
        EXPECT_EQ(propertyListString(path, "CFBundleName"), "A & B");
        const std::string after = contentOf(path);
        EXPECT_THAT(after, StartsWith("<?xml"));
        for (const char* kept : {"<integer>7</integer>", "<date>2024-05-06T07:08:09Z</date>", "AAEC",
                                 "<key>On</key>\n\t<true/>", "<string>x</string>"}) {
            EXPECT_THAT(after, HasSubstr(kept));
        }
        EXPECT_THAT(after, testing::Not(HasSubstr("10 20")));
    }
}

TEST_F(PropertyListTest, ReplacesAValueOfAnotherKind) {
    const std::string path = folder.makeFile("list.plist", infoList());
    ASSERT_TRUE(setPropertyListString(path, "Count", "seven"));
    EXPECT_EQ(propertyListString(path, "Count"), "seven");
}

TEST_F(PropertyListTest, ReplacesAFileThatHoldsNoDictionary) {
    for (const std::string& content : {std::string(), std::string("garbage"), xmlList("<array/>"),
                                       infoList().substr(0, infoList().size() / 2)}) {
        const std::string path = folder.makeFile("list.plist", content);
        ASSERT_TRUE(setPropertyListString(path, "K", "v")) << content;
        EXPECT_EQ(propertyListString(path, "K"), "v") << content;
    }
}

TEST_F(PropertyListTest, LeavesNoTemporaryFileBehind) {
    const std::string path = folder.path("made/list.plist");
    ASSERT_TRUE(setPropertyListString(path, "K", "v"));
    ASSERT_TRUE(setPropertyListString(path, "K", "w"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("made")), {}), 1);
}

TEST_F(PropertyListTest, WritesNeitherOverALinkNorThroughIt) {
    const std::string target = folder.makeFile("elsewhere/list.plist", infoList());
    const std::string dangling = folder.makeLink("dangling", folder.path("elsewhere/new.plist"));
    for (const std::string& link : {folder.makeLink("link", target), dangling}) {
        EXPECT_FALSE(setPropertyListString(link, "K", "v"));
        EXPECT_TRUE(std::filesystem::is_symlink(link));
    }
    EXPECT_EQ(contentOf(target), infoList());
    EXPECT_FALSE(std::filesystem::exists(folder.path("elsewhere/new.plist")));
}

TEST_F(PropertyListTest, WritesOverNothingButRegularFiles) {
    const std::string directory = folder.makeDirectory("folder");
    EXPECT_FALSE(setPropertyListString(directory, "K", "v"));
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(setPropertyListString(pipe, "K", "v"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_FALSE(setPropertyListString(folder.makeFile("file") + "/list.plist", "K", "v"));
    EXPECT_FALSE(setPropertyListString(folder.path("folder/"), "K", "v"));
    EXPECT_FALSE(setPropertyListString("list.plist", "K", "v"));
    EXPECT_FALSE(setPropertyListString("", "K", "v"));
}

TEST_F(PropertyListTest, TextsWithANulAreRefused) {
    const std::string path = folder.path("list.plist");
    const std::string nul("a\0b", 3);
    EXPECT_FALSE(setPropertyListString(path, nul, "v"));
    EXPECT_FALSE(setPropertyListString(path, "K", nul));
    EXPECT_FALSE(setPropertyListString(path + nul, "K", "v"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(PropertyListTest, AFolderWithoutWritePermissionKeepsTheOldFile) {
    const std::string path = folder.makeFile("closed/list.plist", infoList());
    const std::string unreadable = folder.makeFile("open/list.plist", infoList());
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms(0555));
    std::filesystem::permissions(folder.path("open"), std::filesystem::perms::all);
    std::filesystem::permissions(unreadable, std::filesystem::perms::none);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_FALSE(setPropertyListString(path, "K", "v"));
        EXPECT_FALSE(setPropertyListString(folder.path("closed/new/list.plist"), "K", "v"));
        // Its keys cannot be kept, so the file is.
        EXPECT_FALSE(setPropertyListString(unreadable, "K", "v"));
    }));
    EXPECT_EQ(contentOf(path), infoList());
    std::filesystem::permissions(unreadable, std::filesystem::perms::owner_read);
    EXPECT_EQ(contentOf(unreadable), infoList());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("closed")), {}), 1);
}

TEST_F(PropertyListTest, AFullDiskKeepsTheOldFileAndNoTemporaryOne) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const std::string mountPoint = folder.makeDirectory("disk");
    EXPECT_TRUE(test::passesInChild([&] {
        test::enterPrivateMountNamespace();
        test::mountMemoryDisk(mountPoint, "size=16k");
        const std::string path = folder.makeFile("disk/list.plist", infoList());
        EXPECT_FALSE(setPropertyListString(path, "K", std::string(100'000, 'x')));
        EXPECT_EQ(contentOf(path), infoList());
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mountPoint), {}), 1);
        EXPECT_TRUE(setPropertyListString(path, "K", "fits"));
    }));
}

} // namespace
} // namespace zentrill
