#include "deletion/UndeletableFolders.h"

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include <sys/stat.h>

namespace zentrill {
namespace {

using test::TemporaryDirectory;

FileIdentity identityOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return {.device = status.st_dev, .inode = status.st_ino};
}

/// A home folder that is reached through a link: `/…/link/u`, which is `/…/Users/u`.
class UndeletableFoldersTest : public testing::Test {
protected:
    UndeletableFoldersTest() {
        folder_.makeDirectory("Users/u/Library");
        folder_.makeLink("link", "Users");
    }

    /// Runs `body` in a process whose home folder is at that path.
    template <typename Body>
    static void withHome(const std::string& home, const Body& body) {
        EXPECT_TRUE(test::passesInChild([&] {
            ::setenv("HOME", home.c_str(), 1);
            body(UndeletableFolders());
        }));
    }

    TemporaryDirectory folder_;
};

TEST_F(UndeletableFoldersTest, RefuseTheHomeFolderUnderBothOfItsNames) {
    withHome(folder_.path("link/u"), [this](const UndeletableFolders& folders) {
        for (const char* home : {"link/u", "Users/u"}) {
            EXPECT_EQ(folders.refusal(folder_.path(home)),
                      "Refusing to delete the home folder: " + folder_.path(home));
        }
    });
}

TEST_F(UndeletableFoldersTest, RefuseTheFoldersAboveItAndNoOther) {
    withHome(folder_.path("link/u"), [this](const UndeletableFolders& folders) {
        for (const char* above : {"Users", "link"}) {
            EXPECT_EQ(folders.refusal(folder_.path(above)),
                      "Refusing to delete a folder that holds the home folder: " + folder_.path(above));
        }
        EXPECT_EQ(folders.refusal("/"), "Refusing to delete the root folder: /");
        for (const char* other : {"Users/u/Library", "Users/u2", "Users/u.old", "Other"}) {
            EXPECT_EQ(folders.refusal(folder_.path(other)), std::nullopt) << other;
        }
    });
}

TEST_F(UndeletableFoldersTest, KnowThemByTheirIdentity) {
    withHome(folder_.path("link/u"), [this](const UndeletableFolders& folders) {
        EXPECT_TRUE(folders.contains(identityOf(folder_.path("Users/u"))));
        EXPECT_TRUE(folders.contains(identityOf(folder_.path("Users"))));
        EXPECT_TRUE(folders.contains(identityOf(folder_.path())));
        EXPECT_FALSE(folders.contains(identityOf(folder_.path("Users/u/Library"))));
        EXPECT_FALSE(folders.contains(identityOf(folder_.path("link"))));
    });
}

TEST_F(UndeletableFoldersTest, RefuseTheNameOfAHomeFolderThatIsNotThere) {
    withHome(folder_.path("gone"), [this](const UndeletableFolders& folders) {
        EXPECT_EQ(folders.refusal(folder_.path("gone")),
                  "Refusing to delete the home folder: " + folder_.path("gone"));
        EXPECT_FALSE(folders.contains(identityOf(folder_.path())));
    });
}

} // namespace
} // namespace zentrill
