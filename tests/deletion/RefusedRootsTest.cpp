#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/PathAliases.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace zentrill {
namespace {

using test::exists;
using test::newEngine;
using test::passesInChild;
using test::passesWithPrivateMounts;
using test::shielded;
using test::TemporaryDirectory;
using test::TemporaryHome;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;

/// Every removal is refused, so that a refusal that is missing harms nobody but the test.
SafeDeletionEngine harmlessEngine(bool& asked) {
    return newEngine([&asked](const std::string&) {
        asked = true;
        return false;
    });
}

void expectRefused(const std::string& path, const std::string& message) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        bool asked = false;
        const DeletionReport report = harmlessEngine(asked).deleteItem(path, options);
        EXPECT_THAT(report.failures, ElementsAre(message));
        EXPECT_THAT(report.removed, IsEmpty());
        EXPECT_THAT(report.preserved, IsEmpty());
        EXPECT_FALSE(asked) << path;
    }
    EXPECT_EQ(newEngine().deletionRefusal(path), message);
}

TEST(RefusedRoots, TheRootInEverySpelling) {
    for (const char* path : {"/", "//", "/.", "/..", "/a/..", "/./../"}) {
        expectRefused(path, "Refusing to delete the root folder: /");
    }
}

TEST(RefusedRoots, PathsThatAreNotAbsolute) {
    for (const std::string path : {"", "relative", "./relative", "../up", "~", "~/Library", " /tmp/x"}) {
        expectRefused(path, "Refusing to delete a path that is not absolute: " + path);
    }
}

TEST(RefusedRoots, TheHomeFolderInEverySpelling) {
    const TemporaryHome home;
    for (const char* suffix : {"", "/", "//", "/.", "/Library/..", "/./"}) {
        expectRefused(home.path() + suffix, "Refusing to delete the home folder: " + home.path());
    }
}

TEST(RefusedRoots, TheFoldersThatHoldTheHomeFolder) {
    const TemporaryDirectory folder;
    const std::string home = folder.makeDirectory("Users/u");
    EXPECT_TRUE(passesInChild([&] {
        ::setenv("HOME", home.c_str(), 1);
        expectRefused(folder.path("Users"),
                      "Refusing to delete a folder that holds the home folder: " + folder.path("Users"));
        expectRefused(folder.path() + "/",
                      "Refusing to delete a folder that holds the home folder: " + folder.path());
        const std::string top = folder.path().substr(0, folder.path().find('/', 1));
        expectRefused(top, "Refusing to delete a folder that holds the home folder: " + top);
    }));
}

TEST(RefusedRoots, TheHomeFolderBehindALink) {
    const TemporaryDirectory folder;
    const std::string real = folder.makeDirectory("disk/u");
    const std::string link = folder.makeLink("home", "disk/u");
    EXPECT_TRUE(passesInChild([&] {
        ::setenv("HOME", link.c_str(), 1);
        expectRefused(link, "Refusing to delete the home folder: " + link);
        expectRefused(real, "Refusing to delete the home folder: " + real);
        expectRefused(folder.path("disk"),
                      "Refusing to delete a folder that holds the home folder: " + folder.path("disk"));
    }));
    EXPECT_TRUE(exists(link) && exists(real));
}

TEST(RefusedRoots, TheHomeFolderInTheOtherFormOfAnAlias) {
    const TemporaryDirectory folder;
    const std::string other = aliasNormalized(folder.path());
    if (other == folder.path()) {
        GTEST_SKIP() << "needs its temporary folder below /tmp or /var";
    }
    EXPECT_TRUE(passesInChild([&] {
        ::setenv("HOME", folder.path().c_str(), 1);
        expectRefused(other, "Refusing to delete the home folder: " + other);
    }));
}

TEST(RefusedRoots, TheHomeFolderUnderAnotherName) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const TemporaryDirectory folder;
    const std::string home = folder.makeDirectory("Users/u");
    const std::string users = folder.makeDirectory("elsewhere/users");
    EXPECT_TRUE(passesWithPrivateMounts([&] {
        ::setenv("HOME", home.c_str(), 1);
        test::bindMount(folder.path("Users"), users);
        for (const std::string& path : {users, users + "/u"}) {
            for (const DeletionOptions& options : {unshielded, shielded}) {
                bool asked = false;
                EXPECT_THAT(
                    harmlessEngine(asked).deleteItem(path, options).failures,
                    ElementsAre("Refusing to delete a folder that is or holds the home folder: " + path));
                EXPECT_FALSE(asked);
            }
        }
    }));
}

TEST(RefusedRoots, WhatLiesInTheHomeFolderIsNotRefused) {
    const TemporaryHome home;
    const std::string file = home.makeFile("Library/file");
    EXPECT_THAT(newEngine().deleteItem(file, unshielded).removed, ElementsAre(file));
    EXPECT_FALSE(exists(file));
}

/// A machine of its own in which /tmp is a link into /private, as the Mac has it.
class AliasedMachine : public testing::Test {
protected:
    void SetUp() override {
        if (const auto obstacle = test::rootFolderObstacle()) {
            GTEST_SKIP() << *obstacle;
        }
    }

    static void enter(const TemporaryDirectory& folder) {
        test::changeRootFolder(folder.path());
        ::setenv("HOME", "/Users/u", 1);
    }

    TemporaryDirectory folder_;
};

TEST_F(AliasedMachine, BothFormsReachTheSameItemAndEachIsReportedAsGiven) {
    folder_.makeLink("tmp", "private/tmp");
    folder_.makeFile("private/tmp/one/sub/file");
    folder_.makeFile("private/tmp/one/data");
    folder_.makeFile("private/tmp/two/file");
    EXPECT_TRUE(passesInChild([&] {
        enter(folder_);
        const DeletionOptions options{.preserveCredentials = true,
                                      .explicitCredentialPaths = {"/private/tmp/one/data"}};
        const DeletionReport report = newEngine().deleteItem("/tmp/one", options);
        EXPECT_THAT(report.removed, ElementsAre("/tmp/one/sub/file", "/tmp/one/sub"));
        EXPECT_THAT(report.preserved, ElementsAre("/tmp/one/data"));
        EXPECT_THAT(newEngine().deleteItem("/private/tmp/two", unshielded).removed,
                    ElementsAre("/private/tmp/two"));
        EXPECT_FALSE(exists("/private/tmp/two"));
        EXPECT_EQ(newEngine().deleteItem("/tmp/missing", shielded), DeletionReport{});
    }));
}

TEST_F(AliasedMachine, AnAliasThatLeadsElsewhereIsRefused) {
    folder_.makeLink("tmp", "/evil");
    const std::string file = folder_.makeFile("evil/tree/file");
    folder_.makeDirectory("private/tmp/tree");
    EXPECT_TRUE(passesInChild([&] {
        enter(folder_);
        EXPECT_THAT(newEngine().deleteItem("/tmp/tree", shielded).failures,
                    ElementsAre("Refusing to traverse symlink ancestor: /tmp"));
    }));
    EXPECT_TRUE(exists(file));
    EXPECT_TRUE(exists(folder_.path("private/tmp/tree")));
}

TEST_F(AliasedMachine, ALinkBehindAnAliasIsRefused) {
    folder_.makeLink("tmp", "private/tmp");
    folder_.makeLink("private/tmp/link", "/elsewhere");
    const std::string file = folder_.makeFile("elsewhere/file");
    EXPECT_TRUE(passesInChild([&] {
        enter(folder_);
        EXPECT_THAT(newEngine().deleteItem("/tmp/link/file", shielded).failures,
                    ElementsAre("Refusing to traverse symlink ancestor: /tmp/link"));
    }));
    EXPECT_TRUE(exists(file));
}

TEST_F(AliasedMachine, WhereItIsAFolderItIsReachedAsAFolder) {
    folder_.makeFile("tmp/tree/file");
    folder_.makeFile("private/tmp/tree/file");
    EXPECT_TRUE(passesInChild([&] {
        enter(folder_);
        EXPECT_THAT(newEngine().deleteItem("/tmp/tree", unshielded).removed, ElementsAre("/tmp/tree"));
    }));
    EXPECT_FALSE(exists(folder_.path("tmp/tree")));
    EXPECT_TRUE(exists(folder_.path("private/tmp/tree/file")));
}

} // namespace
} // namespace zentrill
