#include "platform/TreeVisit.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

class TreeVisitTest : public testing::Test {
protected:
    /// The entries' paths below `path` in the order of the visits; `during` is called in each.
    static std::vector<std::string> visits(const std::string& path,
                                           const std::function<void(const std::string&)>& during = {},
                                           const std::function<bool()>& shouldStop = {}) {
        std::vector<std::string> seen;
        visitTree(
            path,
            [&](const DirectoryStack& stack, const DirectoryStack::Entry& entry) {
                std::string name(stack.relativePath());
                name += (name.empty() ? "" : "/") + std::string(entry.name);
                seen.push_back(name);
                if (during) {
                    during(name);
                }
            },
            shouldStop);
        return seen;
    }

    test::TemporaryDirectory folder;
};

TEST_F(TreeVisitTest, VisitsAFolderBeforeWhatItHoldsAndLeavesLinksOut) {
    folder.makeFile("tree/sub/.hidden/file");
    folder.makeLink("tree/sub/link", folder.path());
    folder.makeLink("tree/sub/dangling", "nowhere");
    EXPECT_THAT(visits(folder.path("tree")), ElementsAre("sub", "sub/.hidden", "sub/.hidden/file"));
}

TEST_F(TreeVisitTest, FollowsALinkAtTheTopAlone) {
    folder.makeFile("tree/file");
    EXPECT_THAT(visits(folder.makeLink("link", "tree")), ElementsAre("file"));
}

TEST_F(TreeVisitTest, WhatIsNoFolderHasNothingToVisit) {
    EXPECT_THAT(visits(folder.makeFile("file")), IsEmpty());
    EXPECT_THAT(visits(folder.path("missing")), IsEmpty());
    EXPECT_THAT(visits(""), IsEmpty());
    EXPECT_THAT(visits(folder.path() + std::string("\0tail", 5)), IsEmpty());
}

TEST_F(TreeVisitTest, AsksBeforeEachFolderWhetherToStop) {
    folder.makeFile("a/file");
    folder.makeFile("b/file");
    int asked = 0;
    EXPECT_THAT(visits(folder.path(), {}, [&asked] { return ++asked > 2; }), testing::SizeIs(3));
    EXPECT_EQ(asked, 3);
    EXPECT_THAT(visits(folder.path(), {}, [] { return true; }), IsEmpty());
}

TEST_F(TreeVisitTest, NothingBehindALinkThatTakesAFoldersPlaceIsVisited) {
    folder.makeFile("victim/secret");
    folder.makeFile("tree/sub/file");
    EXPECT_THAT(visits(folder.path("tree"),
                       [&](const std::string& path) {
                           if (path == "sub") {
                               fs::rename(folder.path("tree/sub"), folder.path("moved"));
                               folder.makeLink("tree/sub", folder.path("victim"));
                           }
                       }),
                ElementsAre("sub"));
}

/// Deeper than the folders that stay open, so that the way back goes by "..". Some of the namesakes are still
/// to be visited then, whatever the order of the file system.
TEST_F(TreeVisitTest, NothingAroundAFolderThatIsMovedAwayIsVisited) {
    std::string path = "tree";
    std::string middle;
    for (int level = 0; level < 40; ++level) {
        path += "/d";
        if (level == 20) {
            middle = path;
        }
    }
    folder.makeFile(path + "/bottom");
    folder.makeFile("tree/e/file");
    const std::string around = fs::path(middle).parent_path().string();
    for (int number = 0; number < 40; ++number) {
        folder.makeDirectory(around + "/e" + std::to_string(number));
        folder.makeFile("outside/e" + std::to_string(number) + "/secret");
    }
    bool moved = false;
    const std::vector<std::string> seen = visits(folder.path("tree"), [&](const std::string& visited) {
        if (visited.ends_with("/bottom")) {
            fs::rename(folder.path(middle), folder.path("outside/moved"));
            moved = true;
        }
    });
    EXPECT_TRUE(moved);
    for (const std::string& visited : seen) {
        EXPECT_EQ(visited.find("secret"), std::string::npos) << visited;
    }
    EXPECT_THAT(seen, testing::Contains("e/file")) << "the walk goes on above";
}

} // namespace
} // namespace zentrill
