#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "platform/FileDescriptor.h"
#include "platform/SystemError.h"
#include "support/ChildProcess.h"
#include "support/MemoryFolder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <pthread.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::deletionForm;
using test::exists;
using test::newEngine;
using test::passesInChild;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;

/// Makes folders called `name` inside each other below the folder at `top`, and a file in the deepest one.
void makeChain(const std::string& top, const std::string& name, int levels, const std::string& file) {
    FileDescriptor current(::open(top.c_str(), O_DIRECTORY | O_CLOEXEC));
    for (int level = 0; level < levels; ++level) {
        ASSERT_EQ(::mkdirat(current.get(), name.c_str(), 0700), 0);
        current = FileDescriptor(::openat(current.get(), name.c_str(), O_DIRECTORY | O_CLOEXEC));
        ASSERT_TRUE(current);
    }
    ASSERT_TRUE(FileDescriptor(::openat(current.get(), file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600)));
}

void limitDescriptors(rlim_t count) {
    const rlimit limit{count, count};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

void* callFunction(void* function) {
    (*static_cast<const std::function<void()>*>(function))();
    return nullptr;
}

void runOnSmallStack(const std::function<void()>& body) {
    pthread_attr_t attributes;
    ASSERT_EQ(::pthread_attr_init(&attributes), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024), 0);
    std::function<void()> function = body;
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, &attributes, callFunction, &function), 0);
    ASSERT_EQ(::pthread_join(thread, nullptr), 0);
    ::pthread_attr_destroy(&attributes);
}

/// A line of /proc/self/status, in kilobytes.
long memoryFigure(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == name + ":") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

/// With Landlock, which may confine this program and hold the deletion, every step looks at all the folders
/// above: twenty thousand of them would take minutes.
int manyLevels() {
    const char* rung = std::getenv("ZENTRILL_CONFINED");
    const bool confined = rung != nullptr && std::string_view(rung) == "landlock";
    return confined || deletionForm().domain.enter ? 3000 : 20000;
}

TEST(ExtremeTrees, ThousandsOfLevelsNeedFewDescriptorsAndLittleStack) {
    const TemporaryDirectory folder(test::memoryFolder());
    const std::string tree = folder.makeDirectory("tree");
    makeChain(tree, "d", manyLevels(), "file");
    EXPECT_TRUE(passesInChild([&] {
        limitDescriptors(64);
        runOnSmallStack([&] {
            const DeletionReport report = newEngine().deleteItem(tree, unshielded);
            EXPECT_THAT(report.removed, ElementsAre(tree));
            EXPECT_THAT(report.failures, IsEmpty());
        });
    }));
    EXPECT_FALSE(exists(tree));
}

TEST(ExtremeTrees, ACredentialThousandsOfLevelsDownIsKept) {
    const TemporaryDirectory folder(test::memoryFolder());
    const std::string tree = folder.makeDirectory("tree");
    makeChain(tree, "d", manyLevels(), "auth.json");
    EXPECT_TRUE(passesInChild([&] {
        limitDescriptors(64);
        runOnSmallStack([&] {
            const DeletionReport report = newEngine().deleteItem(tree, shielded);
            ASSERT_EQ(report.preserved.size(), 1U);
            EXPECT_TRUE(report.preserved[0].ends_with("/d/d/auth.json"));
            EXPECT_EQ(report.preserved[0].size(),
                      tree.size() + (2 * static_cast<std::size_t>(manyLevels())) + 10);
            EXPECT_THAT(report.removed, IsEmpty());
            EXPECT_THAT(report.failures, IsEmpty());
        });
    }));
    EXPECT_THAT(newEngine().deleteItem(tree, unshielded).failures, IsEmpty());
    EXPECT_FALSE(exists(tree));
}

TEST(ExtremeTrees, PathsFarBeyondTheSystemsLimitAreWalkedAndReported) {
    const TemporaryDirectory folder(test::memoryFolder());
    const std::string tree = folder.makeDirectory("tree");
    const std::string name(255, 'n');
    makeChain(tree, name, 300, "file");
    const DeletionReport report = newEngine().deleteItem(tree, shielded);
    EXPECT_THAT(report.failures, IsEmpty());
    ASSERT_EQ(report.removed.size(), 302U);
    EXPECT_EQ(report.removed.front().size(), tree.size() + (300 * 256) + 5);
    EXPECT_EQ(report.removed.back(), tree);
    EXPECT_FALSE(exists(tree));
}

TEST(ExtremeTrees, AnItemWhoseOwnPathIsBeyondTheLimitIsRemoved) {
    const TemporaryDirectory folder(test::memoryFolder());
    std::string path = folder.makeDirectory("tree");
    const std::string name(255, 'n');
    makeChain(path, name, 40, "file");
    for (int level = 0; level < 40; ++level) {
        path += "/" + name;
    }
    const DeletionReport report = newEngine().deleteItem(path + "/file", unshielded);
    EXPECT_THAT(report.removed, ElementsAre(path + "/file"));
    EXPECT_THAT(newEngine().deleteItem(path + "/file", unshielded).removed, IsEmpty());
}

TEST(ExtremeTrees, ManyBigFoldersOnOneWayDownAreNotReportedTwice) {
    const TemporaryDirectory folder(test::memoryFolder());
    std::string relative = "tree";
    const std::string filler(200, 'x');
    constexpr int levels = 24;          // More than are kept open.
    constexpr int filesPerLevel = 6000; // More than one reading takes.
    for (int level = 0; level < levels; ++level) {
        const FileDescriptor directory(
            ::open(folder.makeDirectory(relative).c_str(), O_DIRECTORY | O_CLOEXEC));
        for (int i = 0; i < filesPerLevel; ++i) {
            const std::string name = filler + std::to_string(i);
            ASSERT_EQ(::mknodat(directory.get(), name.c_str(), S_IFREG | 0600, 0), 0);
        }
        relative += "/sub";
    }
    DeletionReport report = newEngine().deleteItem(
        folder.path("tree"), {.preserveCredentials = true, .preserveUnrecognized = true});
    EXPECT_THAT(report.failures, IsEmpty());
    EXPECT_EQ(report.preserved.size(), std::size_t{levels} * filesPerLevel);
    std::ranges::sort(report.preserved);
    EXPECT_EQ(std::ranges::adjacent_find(report.preserved), report.preserved.end());
    EXPECT_THAT(newEngine().deleteItem(folder.path("tree"), unshielded).failures, IsEmpty());
}

TEST(ExtremeTrees, FourHundredThousandEntriesNeedLittleMemory) {
    const TemporaryDirectory folder(test::memoryFolder());
    const std::string tree = folder.makeDirectory("tree");
    const FileDescriptor directory(::open(tree.c_str(), O_DIRECTORY | O_CLOEXEC));
    for (int i = 0; i < 400000; ++i) {
        const std::string name = "entry-" + std::to_string(i);
        ASSERT_EQ(::mknodat(directory.get(), name.c_str(), S_IFREG | 0600, 0), 0);
    }
    EXPECT_TRUE(passesInChild([&] {
        std::ofstream("/proc/self/clear_refs") << "5"; // Makes the peak start over.
        const long before = memoryFigure("VmRSS");
        const DeletionReport report = newEngine().deleteItem(tree, unshielded);
        EXPECT_THAT(report.removed, ElementsAre(tree));
        EXPECT_LT(memoryFigure("VmHWM") - before, 16 * 1024);
    }));
    EXPECT_FALSE(exists(tree));
}

TEST(ExtremeTrees, OddNamesSurviveUnchangedIntoTheReport) {
    const TemporaryDirectory folder;
    const std::vector<std::string> names{"new\nline",
                                         "-rf",
                                         "--",
                                         "it's \"quoted\"",
                                         "\xff\xfe\x80",
                                         "...",
                                         " ",
                                         "\x01\x7f",
                                         "*?[a]{b}",
                                         "~",
                                         "$(reboot)",
                                         "a\\b",
                                         std::string(255, 'y'),
                                         "\xc3\x28"};
    std::vector<std::string> expected{folder.path("tree")};
    for (const std::string& name : names) {
        expected.push_back(folder.makeFile("tree/" + name));
    }
    const DeletionReport report = newEngine().deleteItem(folder.path("tree"), shielded);
    EXPECT_THAT(report.removed, testing::UnorderedElementsAreArray(expected));
    EXPECT_THAT(report.failures, IsEmpty());
    EXPECT_FALSE(exists(folder.path("tree")));
    for (const std::string& name : names) {
        const std::string file = folder.makeFile(name);
        EXPECT_THAT(newEngine().deleteItem(file, unshielded).removed, ElementsAre(file));
        EXPECT_FALSE(exists(file));
    }
}

TEST(ExtremeTrees, AlmostNoFreeDescriptorsAreEnough) {
    const TemporaryDirectory folder;
    const std::string tree = folder.makeDirectory("tree");
    makeChain(tree, "d", 100, "file");
    EXPECT_TRUE(passesInChild([&] {
        std::vector<FileDescriptor> occupied;
        limitDescriptors(64);
        while (FileDescriptor more{::open("/dev/null", O_RDONLY | O_CLOEXEC)}) {
            occupied.push_back(std::move(more));
        }
        occupied.resize(occupied.size() - 4);
        const DeletionReport report = newEngine().deleteItem(tree, unshielded);
        EXPECT_THAT(report.removed, ElementsAre(tree));
        EXPECT_THAT(report.failures, IsEmpty());
    }));
    EXPECT_FALSE(exists(tree));
}

TEST(ExtremeTrees, WithoutDescriptorsTheReportSaysSo) {
    const TemporaryDirectory folder;
    const std::string file = folder.makeFile("tree/file");
    EXPECT_TRUE(passesInChild([&] {
        // Made first: the undefined behaviour sanitizer needs a descriptor for its first look at a type.
        const std::string expected = folder.path("tree") + ": " + systemDescription(EMFILE);
        const SafeDeletionEngine engine = newEngine();
        EXPECT_TRUE(engine.deleteItem(folder.makeFile("other/file"), unshielded).succeeded());
        std::vector<FileDescriptor> occupied;
        limitDescriptors(64);
        while (FileDescriptor more{::open("/dev/null", O_RDONLY | O_CLOEXEC)}) {
            occupied.push_back(std::move(more));
        }
        const DeletionReport report = engine.deleteItem(folder.path("tree"), unshielded);
        occupied.clear(); // The expectation may need one.
        EXPECT_THAT(report.failures, ElementsAre(expected));
    }));
    EXPECT_TRUE(exists(file));
}

} // namespace
} // namespace zentrill
