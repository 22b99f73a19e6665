#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/MemoryFolder.h"
#include "support/SwapNames.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <system_error>

#include <dirent.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::BackgroundLoop;
using test::exists;
using test::newEngine;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
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
            clearEarlierRound();
            if (!victimIsWhole()) {
                return secondsSince(begin);
            }
        }
        return std::nullopt;
    }

    int rounds = 0;

private:
    static constexpr int fileCount = 8;
    /// The attacker may still be at a round that has just ended, but no longer at one so far back.
    static constexpr int roundsKept = 1000;

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

    /// What is left of a round would fill the memory in a long race.
    void clearEarlierRound() const {
        std::error_code ignored;
        std::filesystem::remove_all(folder_.path("round" + std::to_string(round_.get() - roundsKept)),
                                    ignored);
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

/// How long ours has to hold, in seconds: some multiple of the time that the naive deleter took to lose, or
/// what ZENTRILL_RACE_SECONDS says.
double secondsToHold(double naiveLost) {
    const char* wanted = std::getenv("ZENTRILL_RACE_SECONDS");
    return wanted != nullptr ? std::strtod(wanted, nullptr) : std::clamp(5 * naiveLost, 1.0, 15.0);
}

void expectToHoldWhereANaiveDeleterLoses(Attack::Target target,
                                         const std::function<void(const std::string&)>& naive) {
    Attack attack(target);
    const std::optional<double> lost = attack.run(naive, 60);
    ASSERT_TRUE(lost.has_value()) << "the attack is too weak to prove anything";
    const int naiveRounds = attack.rounds;
    attack.rounds = 0;
    const double limit = secondsToHold(*lost);
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

} // namespace
} // namespace zentrill
