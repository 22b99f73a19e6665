#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/DeletionDomain.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/MemoryFolder.h"
#include "support/SwapNames.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::deletionForm;
using test::exists;
using test::newEngine;
using test::shielded;
using test::unshielded;
namespace fs = std::filesystem;
using test::BackgroundLoop;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// A counter that the attacking child sees as well.
class SharedRound {
public:
    SharedRound()
        : value_(new(::mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                            0)) Value(0)) {}

    ~SharedRound() { ::munmap(static_cast<void*>(value_), sizeof(Value)); }

    SharedRound(const SharedRound&) = delete;
    SharedRound& operator=(const SharedRound&) = delete;
    SharedRound(SharedRound&&) = delete;
    SharedRound& operator=(SharedRound&&) = delete;

    [[nodiscard]] int get() const { return value_->load(); }

    void next() { value_->fetch_add(1); }

private:
    using Value = std::atomic<int>;
    Value* value_;
};

/// Looks first and opens by path afterwards, as an unsuspecting program does.
void deleteNaively(const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISDIR(status.st_mode)) {
        ::unlink(path.c_str());
        return;
    }
    DIR* directory = ::opendir(path.c_str());
    if (directory == nullptr) {
        return;
    }
    while (const dirent* entry = ::readdir(directory)) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            deleteNaively(path + "/" + name);
        }
    }
    ::closedir(directory);
    ::rmdir(path.c_str());
}

void deleteNaivelyAfterCheckingAncestors(const std::string& path) {
    if (!newEngine().deletionRefusal(path)) {
        deleteNaively(path);
    }
}

/// One file's worth of people's data, in the shape of the tree under attack, so that a misled deleter finds
/// there just what it is looking for.
class Attack {
public:
    enum class Target { folderInside, ancestor };

    explicit Attack(Target target) : target_(target) { restoreVictim(); }

    /// Runs `deleter` on a fresh tree again and again under attack; the seconds until the victim lost
    /// something, or nothing if it held for `limit`.
    std::optional<double> run(const std::function<void(const std::string&)>& deleter, double limit) {
        restoreVictim();
        const BackgroundLoop attacker([this] { exchange(round_.get()); });
        const Clock::time_point begin = Clock::now();
        while (secondsSince(begin) < limit) {
            prepare(round_.get() + 1);
            round_.next();
            deleter(roundPath(round_.get(), "upper/tree"));
            ++rounds;
            if (!victimIsWhole()) {
                return secondsSince(begin);
            }
        }
        return std::nullopt;
    }

    int rounds = 0;

private:
    static constexpr int fileCount = 8;

    [[nodiscard]] std::string roundPath(int round, const std::string& relative) const {
        return folder_.path("round" + std::to_string(round) + "/" + relative);
    }

    /// Makes the real folder and a link to the victim change places.
    void exchange(int round) const {
        const std::string link = roundPath(round, "link");
        const std::string real = roundPath(round, target_ == Target::ancestor ? "upper" : "upper/tree/sub");
        test::swapNames(link, real);
    }

    void prepare(int round) const {
        const std::string name = "round" + std::to_string(round);
        fillTree(name + "/upper/tree");
        folder_.makeLink(name + "/link", folder_.path(target_ == Target::ancestor ? "victim/upper"
                                                                                  : "victim/upper/tree/sub"));
    }

    void fillTree(const std::string& relative) const {
        for (int i = 0; i < fileCount; ++i) {
            folder_.makeFile(relative + "/sub/file" + std::to_string(i));
        }
    }

    void restoreVictim() const { fillTree("victim/upper/tree"); }

    [[nodiscard]] bool victimIsWhole() const {
        for (int i = 0; i < fileCount; ++i) {
            if (!exists(folder_.path("victim/upper/tree/sub/file" + std::to_string(i)))) {
                return false;
            }
        }
        return true;
    }

    Target target_;
    TemporaryDirectory folder_{test::memoryFolder()};
    SharedRound round_;
};

void expectToHoldWhereANaiveDeleterLoses(Attack::Target target,
                                         const std::function<void(const std::string&)>& naive) {
    Attack attack(target);
    const std::optional<double> lost = attack.run(naive, 60);
    ASSERT_TRUE(lost.has_value()) << "the attack is too weak to prove anything";
    const int naiveRounds = attack.rounds;
    attack.rounds = 0;
    const double limit = std::clamp(5 * *lost, 1.0, 15.0);
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const std::optional<double> oursLost = attack.run(
            [&options](const std::string& path) { (void)newEngine().deleteItem(path, options); }, limit);
        EXPECT_FALSE(oursLost.has_value()) << "lost after " << *oursLost << " s";
    }
    std::printf("naive deleter lost after %.3f s (%d rounds), ours held for %.1f s (%d rounds)\n", *lost,
                naiveRounds, 2 * limit, attack.rounds);
}

TEST(HostileChanges, AFolderInsideSwappedForALinkLeadsNowhere) {
    expectToHoldWhereANaiveDeleterLoses(Attack::Target::folderInside, deleteNaively);
}

TEST(HostileChanges, AnAncestorSwappedForALinkLeadsNowhere) {
    expectToHoldWhereANaiveDeleterLoses(Attack::Target::ancestor, deleteNaivelyAfterCheckingAncestors);
}

/// An engine that runs `before` when it is about to remove or enter the item at `path`, which is the moment
/// between its look at the item and its deed.
SafeDeletionEngine engineDisturbedAt(std::string path, std::function<void()> before) {
    return newEngine([path = std::move(path), before = std::move(before)](const std::string& asked) {
        if (asked == path) {
            before();
        }
        return true;
    });
}

/// Whether the kernel holds deletions to their items in this program.
bool isHeld() {
    return static_cast<bool>(deletionForm().domain.enter);
}

/// The lines of a report on the item `tree` that say of nothing but `folders` that they were moved.
std::vector<std::string> movedLines(const DeletionOptions& options, const std::string& tree,
                                    const std::vector<std::string>& folders) {
    const std::string words = ": Moved elsewhere during the deletion";
    std::vector<std::string> lines;
    for (const std::string& folder : folders) {
        lines.push_back(options.preserveCredentials ? folder + words : tree + words + " (at " + folder + ")");
    }
    return lines;
}

TEST(HostileChanges, AFolderMovedOutOfTheItemStaysWholeWhereTheKernelHoldsTheDeletion) {
    if (!isHeld()) {
        GTEST_SKIP() << "nothing holds deletions here";
    }
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        for (const char* name : {"a", "b", "c", "d/e/f", "d/g"}) {
            folder.makeFile(std::string("tree/sub/") + name);
        }
        const std::string other = folder.makeFile("tree/other/file");
        const std::string tree = folder.path("tree");
        const std::string sub = folder.path("tree/sub");
        bool moved = false;
        std::size_t leftWhenMoved = 0;
        const auto count = [&folder] {
            const fs::recursive_directory_iterator entries(folder.path("moved"));
            return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
        };
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            if (!moved && path.starts_with(sub + "/")) {
                fs::rename(sub, folder.path("moved"));
                moved = true;
                leftWhenMoved = count();
            }
            return true;
        });
        const DeletionReport report = engine.deleteItem(tree, options);
        EXPECT_EQ(report.failures, movedLines(options, tree, {sub}));
        EXPECT_EQ(leftWhenMoved, 7U);
        EXPECT_EQ(count(), leftWhenMoved);
        EXPECT_FALSE(exists(other)) << "the rest goes";
        EXPECT_TRUE(exists(tree)) << "a failure keeps the folders above it";
    }
}

TEST(HostileChanges, AFolderMovedAwayFromUnderSeveralThreadsIsOneLine) {
    if (!isHeld()) {
        GTEST_SKIP() << "nothing holds deletions here";
    }
    const SafeDeletionEngine engine = newEngine(DeletionConcurrency{.threads = 4, .afterEntries = 0});
    int caught = 0;
    for (int attempt = 0; attempt < 200 && caught < 20; ++attempt) {
        const TemporaryDirectory folder(test::memoryFolder());
        for (int number = 0; number < 40; ++number) {
            for (int file = 0; file < 50; ++file) {
                folder.makeFile("tree/sub/" + std::to_string(number) + "/deeper/f" + std::to_string(file));
            }
        }
        const std::string sub = folder.path("tree/sub");
        const std::string moved = folder.path("moved");
        std::thread mover([&] {
            // Begun, and not yet ended.
            while (exists(sub + "/0") && exists(sub + "/39")) {
                std::this_thread::yield();
            }
            std::error_code ignored;
            fs::rename(sub, moved, ignored);
        });
        const DeletionReport report = engine.deleteItem(folder.path("tree"), shielded);
        mover.join();
        if (!exists(moved) || fs::is_empty(moved)) {
            continue; // Emptied before it was moved.
        }
        ++caught;
        EXPECT_EQ(report.failures, movedLines(shielded, folder.path("tree"), {sub}));
        EXPECT_THAT(report.removed, testing::Not(testing::Contains(sub)));
        EXPECT_TRUE(exists(folder.path("tree")));
        for (const std::string& path : report.removed) {
            EXPECT_FALSE(exists(moved + path.substr(sub.size()))) << path;
        }
    }
    EXPECT_GT(caught, 0);
}

TEST(HostileChanges, AFolderMovedWithinTheItemIsRemovedThere) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string bottom = folder.makeFile("tree/a/sub/file");
        const DeletionReport report = engineDisturbedAt(bottom, [&] {
                                          fs::rename(folder.path("tree/a/sub"), folder.path("tree/moved"));
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_FALSE(exists(folder.path("tree/moved/file")));
        EXPECT_THAT(report.failures, testing::Each(testing::Not(testing::HasSubstr("Moved"))));
    }
}

TEST(HostileChanges, AFileThatVanishesIsNoFailureAndNotOurs) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string file = folder.makeFile("tree/file");
        const std::string tree = folder.path("tree");
        const DeletionReport report =
            engineDisturbedAt(file, [&] { fs::remove(file); }).deleteItem(tree, options);
        EXPECT_THAT(report.removed, ElementsAre(tree));
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(tree));
    }
}

TEST(HostileChanges, ATreeThatVanishesWholeIsNoFailure) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string sub = folder.makeDirectory("tree/sub");
        const DeletionReport report = engineDisturbedAt(sub, [&] {
                                          fs::remove_all(folder.path("tree"));
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_EQ(report, DeletionReport{});
    }
}

TEST(HostileChanges, AFileThatBecomesAFolderIsRemovedAsAFolder) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string item = folder.makeFile("tree/item");
        bool done = false;
        const DeletionReport report = engineDisturbedAt(item, [&] {
                                          if (!std::exchange(done, true)) {
                                              fs::remove(item);
                                              folder.makeFile("tree/item/inside");
                                          }
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(folder.path("tree")));
    }
}

TEST(HostileChanges, AFolderThatBecomesALinkIsRemovedAsALink) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string victim = folder.makeFile("victim/file");
        const std::string item = folder.makeDirectory("tree/item");
        bool done = false;
        const DeletionReport report = engineDisturbedAt(item, [&] {
                                          if (!std::exchange(done, true)) {
                                              fs::remove(item);
                                              folder.makeLink("tree/item", folder.path("victim"));
                                          }
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(folder.path("tree")));
        EXPECT_TRUE(exists(victim));
    }
}

TEST(HostileChanges, AnEnteredFolderReplacedByALinkLosesOnlyTheLink) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string victim = folder.makeFile("victim/file");
        const std::string inside = folder.makeFile("tree/item/file");
        const DeletionReport report = engineDisturbedAt(inside, [&] {
                                          fs::rename(folder.path("tree/item"), folder.path("moved"));
                                          folder.makeLink("tree/item", folder.path("victim"));
                                      }).deleteItem(folder.path("tree"), options);
        if (isHeld()) {
            EXPECT_EQ(report.failures, movedLines(options, folder.path("tree"), {folder.path("tree/item")}));
            EXPECT_TRUE(exists(folder.path("moved/file")));
        } else {
            EXPECT_THAT(report.failures, IsEmpty());
            EXPECT_FALSE(exists(folder.path("tree")));
        }
        EXPECT_TRUE(exists(victim));
    }
}

TEST(HostileChanges, AnItemThatNeverStopsChangingIsOneFailure) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string item = folder.makeFile("tree/item");
        const DeletionReport report = engineDisturbedAt(item, [&] {
                                          const bool wasFolder = fs::is_directory(item);
                                          fs::remove(item);
                                          if (wasFolder) {
                                              folder.makeFile("tree/item");
                                          } else {
                                              folder.makeDirectory("tree/item");
                                          }
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_EQ(report.failures.size(), 1U);
        EXPECT_THAT(report.removed, IsEmpty());
        EXPECT_TRUE(exists(item));
    }
}

/// A folder deeper than the directories held open is climbed by "..", which leads out of the tree once
/// somebody moves it.
TEST(HostileChanges, AFolderMovedAwayIsNotClimbedIntoItsNewSurroundings) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        std::string relative = "tree";
        std::string middle;
        for (int level = 0; level < 60; ++level) {
            relative += "/d";
            if (level == 20) {
                middle = relative;
            }
        }
        const std::string bottom = folder.makeFile(relative + "/file");
        const std::string innocent = folder.makeFile("outside/innocent");
        const std::string emptyNamesake = folder.makeDirectory("outside/x/d");
        const DeletionReport report = engineDisturbedAt(bottom, [&] {
                                          fs::rename(folder.path(middle), folder.path("outside/d"));
                                      }).deleteItem(folder.path("tree"), options);
        EXPECT_TRUE(exists(innocent));
        EXPECT_TRUE(exists(emptyNamesake));
        EXPECT_TRUE(exists(folder.path("outside")));
        if (isHeld()) {
            EXPECT_EQ(report.failures, movedLines(options, folder.path("tree"), {folder.path(middle)}));
            EXPECT_TRUE(exists(folder.path("outside/d") + bottom.substr(folder.path(middle).size())));
        } else {
            EXPECT_FALSE(exists(folder.path("tree"))) << "what was still inside can go";
            EXPECT_THAT(report.failures, IsEmpty());
        }
    }
}

TEST(HostileChanges, AFolderOutOfReachIsAFailureAndTheWalkGoesOnAbove) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        std::vector<std::string> chain{"tree"};
        for (int level = 1; level <= 60; ++level) {
            chain.push_back(chain.back() + "/d");
        }
        const std::string& upper = chain[11];
        const std::string& lower = chain[21];
        const std::string bottom = folder.makeFile(chain.back() + "/file");
        const std::string sibling = folder.makeFile("tree/sibling");
        // The lower one leaves the tree, and another folder takes the place of one between it and the top. It
        // has the same names in it: whoever looks at nothing else takes it for the one that was there.
        const DeletionReport report = engineDisturbedAt(bottom, [&] {
                                          fs::rename(folder.path(lower), folder.path("lower"));
                                          fs::rename(folder.path(upper), folder.path("upper"));
                                          folder.makeFile(upper + "/new");
                                          folder.makeDirectory(lower);
                                      }).deleteItem(folder.path("tree"), options);
        // With a shield, each folder whose entries nobody can reach any more; otherwise the first one.
        std::vector<std::string> failures;
        if (isHeld()) {
            failures = movedLines(options, folder.path("tree"), {folder.path(lower)});
        }
        if (options.preserveCredentials) {
            for (std::size_t level = 20; level >= 11; --level) {
                failures.push_back(folder.path(chain[level]) + ": " + std::strerror(ESTALE));
            }
        } else if (!isHeld()) {
            failures.push_back(folder.path("tree") + ": " + std::strerror(ESTALE) + " (at " +
                               folder.path(chain[20]) + ")");
        }
        EXPECT_EQ(report.failures, failures);
        EXPECT_TRUE(exists(folder.path(upper + "/new")));
        EXPECT_TRUE(exists(folder.path(lower)));
        EXPECT_TRUE(exists(folder.path("upper")));
        EXPECT_FALSE(exists(sibling));
    }
}

TEST(HostileChanges, AFolderThatIsAlwaysRefilledIsAFailureAfterAWhile) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        folder.makeFile("tree/full/file0");
        const std::string full = folder.path("tree/full");
        int made = 0;
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            if (path.starts_with(full + "/")) {
                folder.makeFile("tree/full/file" + std::to_string(++made));
            }
            return true;
        });
        const DeletionReport report = engine.deleteItem(folder.path("tree"), options);
        ASSERT_EQ(report.failures.size(), 1U);
        EXPECT_THAT(report.failures[0], testing::HasSubstr("Directory not empty"));
        EXPECT_GT(made, 1);
        EXPECT_TRUE(exists(full));
    }
}

TEST(HostileChanges, EachFolderIsGoneThroughAgainWhateverItTookBefore) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        std::map<std::string, int> refills;
        for (const char* name : {"tree/one", "tree/two"}) {
            refills[folder.path(name)] = 5;
            folder.makeFile(std::string(name) + "/file");
        }
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            const auto left = refills.find(path.substr(0, path.rfind('/')));
            if (left != refills.end() && left->second > 0) {
                folder.makeFile(left->first.substr(folder.path().size() + 1) + "/file" +
                                std::to_string(left->second--));
            }
            return true;
        });
        EXPECT_THAT(engine.deleteItem(folder.path("tree"), options).failures, IsEmpty());
        EXPECT_FALSE(exists(folder.path("tree")));
        EXPECT_EQ(refills,
                  (std::map<std::string, int>{{folder.path("tree/one"), 0}, {folder.path("tree/two"), 0}}));
    }
}

TEST(HostileChanges, AFolderThatAnotherProcessKeepsFillingEndsOneWayOrTheOther) {
    const TemporaryDirectory folder;
    const std::string tree = folder.makeDirectory("tree");
    int number = 0;
    const BackgroundLoop filler([&] {
        const std::string file = tree + "/file" + std::to_string(++number);
        ::close(::open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    });
    while (!exists(tree + "/file100")) {
        std::this_thread::yield();
    }
    const DeletionReport report = newEngine().deleteItem(tree, unshielded);
    EXPECT_EQ(report.removed.empty(), exists(tree));
    EXPECT_EQ(report.failures.empty(), !exists(tree));
}

} // namespace
} // namespace zentrill
