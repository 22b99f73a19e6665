#include "platform/DirectoryStack.h"

#include "platform/FileDescriptor.h"
#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>

namespace zentrill {
namespace {

using testing::AnyOf;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

std::string chain(int depth) {
    std::string path = "d";
    for (int level = 1; level < depth; ++level) {
        path += "/d";
    }
    return path;
}

class DirectoryStackTest : public testing::Test {
protected:
    [[nodiscard]] DirectoryStack stackAt(const std::string& relative, Mounts mounts = Mounts::refuse,
                                         std::size_t openDirectories = 2) const {
        DirectoryHandle base;
        EXPECT_EQ(DirectoryHandle::open(folder.path(relative), FinalLink::refuse, base), 0);
        return DirectoryStack(std::move(base), mounts, openDirectories);
    }

    /// Goes through all that is left, entering what is a folder; the paths of all entries below the base.
    /// `visit` is called at each entry before it is entered.
    static std::multiset<std::string> walk(DirectoryStack& stack,
                                           const std::function<void(const std::string&)>& visit = {}) {
        std::multiset<std::string> seen;
        while (true) {
            if (const auto entry = stack.nextEntry()) {
                std::string path(stack.relativePath());
                path += (path.empty() ? "" : "/") + std::string(entry->name);
                if (visit) {
                    visit(path);
                }
                seen.insert(std::move(path));
                EntryKind kind = entry->kind;
                if (kind == EntryKind::unknown) {
                    EntryStatus status;
                    kind = stack.directory().lookUp(entry->name, status) == 0 ? status.kind : kind;
                }
                if (kind == EntryKind::directory) {
                    (void)stack.enter(entry->name);
                }
            } else if (stack.depth() == 1) {
                return seen;
            } else {
                stack.leave();
            }
        }
    }

    test::TemporaryDirectory folder;
};

TEST_F(DirectoryStackTest, GoesDownAndUpAndKnowsWhereItIs) {
    folder.makeFile("one/two/file");
    DirectoryStack stack = stackAt("");
    EXPECT_EQ(stack.depth(), 1U);
    EXPECT_EQ(stack.relativePath(), "");
    ASSERT_EQ(stack.enter("one"), 0);
    ASSERT_EQ(stack.enter("two"), 0);
    EXPECT_EQ(stack.depth(), 3U);
    EXPECT_EQ(stack.relativePath(), "one/two");
    EXPECT_EQ(stack.nameOfTop(), "two");
    const auto entry = stack.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_STREQ(entry->name, "file");
    EXPECT_FALSE(stack.nextEntry());
    EXPECT_EQ(stack.takeListingError(), 0);
    ASSERT_TRUE(stack.openDirectoryAround());
    EntryStatus status;
    EXPECT_EQ(stack.directoryAround().lookUp("two", status), 0);
    EXPECT_TRUE(stack.leave());
    EXPECT_EQ(stack.relativePath(), "one");
    EXPECT_TRUE(stack.leave());
    EXPECT_EQ(stack.depth(), 1U);
    EXPECT_EQ(stack.relativePath(), "");
}

TEST_F(DirectoryStackTest, StaysWhereItIsWhenAFolderCannotBeEntered) {
    folder.makeFile("file");
    folder.makeDirectory("elsewhere");
    folder.makeLink("link", "elsewhere");
    DirectoryStack stack = stackAt("");
    EXPECT_EQ(stack.enter("file"), ENOTDIR);
    EXPECT_THAT(stack.enter("link"), AnyOf(ENOTDIR, ELOOP));
    EXPECT_EQ(stack.enter("missing"), ENOENT);
    EXPECT_EQ(stack.depth(), 1U);
    EXPECT_EQ(stack.relativePath(), "");
}

TEST_F(DirectoryStackTest, ListsAgainAfterARewind) {
    folder.makeFile("sub/a");
    DirectoryStack stack = stackAt("");
    ASSERT_EQ(stack.enter("sub"), 0);
    EXPECT_TRUE(stack.nextEntry());
    EXPECT_FALSE(stack.nextEntry());
    folder.makeFile("sub/b");
    EXPECT_FALSE(stack.nextEntry());
    ASSERT_EQ(stack.rewind(), 0);
    EXPECT_TRUE(stack.nextEntry());
    EXPECT_TRUE(stack.nextEntry());
    EXPECT_FALSE(stack.nextEntry());
}

TEST_F(DirectoryStackTest, TellsAListingErrorOnce) {
    folder.makeFile("sub/a");
    // What was opened for looking up names alone cannot be listed.
    DirectoryHandle base;
    DirectoryHandle search;
    ASSERT_EQ(DirectoryHandle::open(folder.path(), FinalLink::refuse, base), 0);
    ASSERT_EQ(base.openForSearch("sub", search), 0);
    DirectoryStack stack(std::move(search));
    EXPECT_FALSE(stack.nextEntry());
    EXPECT_NE(stack.takeListingError(), 0);
    EXPECT_EQ(stack.takeListingError(), 0);
    EXPECT_FALSE(stack.nextEntry());
}

TEST_F(DirectoryStackTest, ADeepTreeTakesFewDescriptorsAndIsSeenWholeOnce) {
    constexpr int depth = 100;
    std::multiset<std::string> made;
    for (int level = 1; level <= depth; ++level) {
        made.insert(chain(level));
        for (const char* name : {"a", "z"}) {
            made.insert(chain(level) + "/" + name);
            folder.makeFile("tree/" + chain(level) + "/" + name);
        }
    }
    EXPECT_TRUE(test::passesInChild([&] {
        const rlimit few{.rlim_cur = 20, .rlim_max = 20};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        for (const std::size_t openDirectories : {1U, 2U, 16U, 1000U}) {
            DirectoryStack stack = stackAt("tree", Mounts::refuse, openDirectories);
            EXPECT_EQ(walk(stack), made) << openDirectories;
        }
    }));
}

// The oldest directories have the highest numbers, so that none of the first ones to be closed makes room.
TEST_F(DirectoryStackTest, ClosesAsManyDirectoriesAsItTakesToEnterOne) {
    folder.makeFile("a/b/c/d/file");
    EXPECT_TRUE(test::passesInChild([&] {
        DirectoryStack stack = stackAt(".", Mounts::refuse, DirectoryStack::usualOpenDirectories);
        std::vector<FileDescriptor> taken;
        for (int count = 0; count < 3; ++count) {
            taken.emplace_back(::open("/", O_RDONLY | O_CLOEXEC));
        }
        ASSERT_EQ(stack.enter("a"), 0);
        const auto highest = static_cast<rlim_t>(stack.directory().descriptor());
        taken.pop_back();
        ASSERT_EQ(stack.enter("b"), 0);
        taken.pop_back();
        ASSERT_EQ(stack.enter("c"), 0);
        const rlimit few{.rlim_cur = highest, .rlim_max = highest};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        ASSERT_EQ(::open("/", O_RDONLY | O_CLOEXEC), -1);
        EXPECT_EQ(stack.enter("d"), 0);
        for (const char* path : {"a/b/c", "a/b", "a", ""}) {
            EXPECT_TRUE(stack.leave());
            EXPECT_EQ(stack.relativePath(), path);
        }
    }));
}

TEST_F(DirectoryStackTest, AFolderWithManyEntriesIsNeitherCutNorRepeatedWhenItIsClosedMeanwhile) {
    std::multiset<std::string> made;
    for (int index = 0; index < 3000; ++index) {
        const std::string name = "a-rather-long-name-for-a-small-file-" + std::to_string(index);
        made.insert(name);
        folder.makeFile("tree/sub/" + name);
    }
    folder.makeDirectory("tree/sub/deep/deep/deep/deep");
    DirectoryStack stack = stackAt("tree");
    std::multiset<std::string> expected{"sub", "sub/deep", "sub/deep/deep", "sub/deep/deep/deep",
                                        "sub/deep/deep/deep/deep"};
    for (const std::string& name : made) {
        expected.insert("sub/" + name);
    }
    EXPECT_EQ(walk(stack), expected);
}

TEST_F(DirectoryStackTest, AFolderSwappedForALinkFromWithinTheVisitIsNotEntered) {
    folder.makeFile("victim/inside");
    folder.makeFile("tree/sub/file");
    DirectoryStack stack = stackAt("tree");
    EXPECT_THAT(walk(stack,
                     [&](const std::string& path) {
                         if (path == "sub") {
                             fs::rename(folder.path("tree/sub"), folder.path("moved"));
                             folder.makeLink("tree/sub", folder.path("victim"));
                         }
                     }),
                UnorderedElementsAre("sub"));
}

TEST_F(DirectoryStackTest, AnEnteredFolderSwappedForALinkIsStillTheSameFolder) {
    folder.makeFile("victim/inside");
    folder.makeFile("tree/sub/file");
    DirectoryStack stack = stackAt("tree");
    ASSERT_EQ(stack.enter("sub"), 0);
    fs::rename(folder.path("tree/sub"), folder.path("moved"));
    folder.makeLink("tree/sub", folder.path("victim"));
    const auto entry = stack.nextEntry();
    ASSERT_TRUE(entry);
    EXPECT_STREQ(entry->name, "file");
}

/// The new surroundings have the names of the old ones, so that whoever goes by ".." alone finds there what
/// it is looking for.
TEST_F(DirectoryStackTest, AFolderMovedAwayIsNotClimbedIntoItsNewSurroundings) {
    folder.makeFile("tree/" + chain(30) + "/bottom");
    folder.makeFile("tree/" + chain(14) + "/e/inside");
    folder.makeFile("tree/z");
    folder.makeFile("outside/e/secret");
    DirectoryStack stack = stackAt("tree");
    for (int level = 0; level < 30; ++level) {
        ASSERT_EQ(stack.enter("d"), 0);
    }
    fs::rename(folder.path("tree/" + chain(15)), folder.path("outside/d"));
    while (stack.depth() - 1 > 14) {
        EXPECT_TRUE(stack.leave()) << "it is reached from above";
    }
    EXPECT_EQ(stack.relativePath(), chain(14));
    const std::multiset<std::string> seen = walk(stack);
    for (const std::string& path : seen) {
        EXPECT_FALSE(path.ends_with("secret")) << path;
    }
    // Each folder above still lists the one that was entered by name.
    EXPECT_GE(seen.count(chain(14) + "/e/inside"), 1U);
    EXPECT_EQ(seen.count("z"), 1U);
}

TEST_F(DirectoryStackTest, AFolderOutOfReachIsClosedAndHasNoFurtherEntries) {
    folder.makeFile("tree/" + chain(30) + "/bottom");
    folder.makeFile("tree/z");
    DirectoryStack stack = stackAt("tree");
    for (int level = 0; level < 30; ++level) {
        ASSERT_EQ(stack.enter("d"), 0);
    }
    fs::rename(folder.path("tree/" + chain(20)), folder.path("lower"));
    fs::rename(folder.path("tree/" + chain(10)), folder.path("upper"));
    // Another chain of the same names takes the place of the upper part.
    folder.makeFile("tree/" + chain(30) + "/secret");
    while (stack.depth() - 1 > 20) {
        EXPECT_TRUE(stack.leave());
    }
    EXPECT_FALSE(stack.leave()) << "neither \"..\" nor the names lead to the folder around it";
    EXPECT_EQ(stack.relativePath(), chain(19));
    EXPECT_FALSE(stack.directory());
    EXPECT_FALSE(stack.nextEntry());
    EXPECT_NE(stack.rewind(), 0);
    while (stack.depth() - 1 > 10) {
        EXPECT_FALSE(stack.leave());
        EXPECT_FALSE(stack.nextEntry());
    }
    EXPECT_TRUE(stack.leave());
    EXPECT_EQ(stack.relativePath(), chain(9));
    EXPECT_TRUE(stack.directory());
}

TEST_F(DirectoryStackTest, EntersMountPointsOnlyWhereTold) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    folder.makeDirectory("tree/mount");
    EXPECT_TRUE(test::passesWithPrivateMounts([&] {
        test::mountMemoryDisk(folder.path("tree/mount"));
        folder.makeFile("tree/mount/sub/sub/sub/sub/file");
        DirectoryStack refusing = stackAt("tree");
        EXPECT_EQ(refusing.enter("mount"), EXDEV);
        DirectoryStack entering = stackAt("tree", Mounts::enter);
        EXPECT_EQ(walk(entering).count("mount/sub/sub/sub/sub/file"), 1U);
    }));
}

} // namespace
} // namespace zentrill
