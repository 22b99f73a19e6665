#include "truth/InterruptedTrial.h"

#include "deletion/SelfUninstallService.h"
#include "support/TemporaryDirectory.h"
#include "truth/ExpectedReport.h"
#include "truth/KilledChild.h"
#include "truth/PlanComparison.h"
#include "truth/RandomTree.h"
#include "truth/ReportComparison.h"
#include "truth/TrialDeletion.h"
#include "truth/TrialRun.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <new>

#include <sys/mman.h>

namespace zentrill::test {

namespace {

/// Picks the moments of the kills from a stretch of time, which adapts so that most of them meet work.
class Moments {
public:
    std::chrono::nanoseconds pick(Random& random) const {
        return std::chrono::nanoseconds(
            begin_ + static_cast<std::int64_t>(random.below(static_cast<std::size_t>(end_ - begin_))));
    }

    void note(const DiskSnapshot& before, const DiskSnapshot& after, bool finished) {
        if (finished) {
            ++counts_.afterTheLastRemoval;
            move(begin_ * 97 / 100, end_ * 97 / 100);
        } else if (after == before) {
            ++counts_.beforeTheFirstRemoval;
            move((begin_ * 103 / 100) + step, (end_ * 101 / 100) + step);
        } else {
            ++counts_.midway;
            move(begin_ * 98 / 100, end_ * 102 / 100);
        }
    }

    [[nodiscard]] const InterruptionCounts& counts() const { return counts_; }

private:
    void move(std::int64_t begin, std::int64_t end) {
        begin_ = begin;
        end_ = std::max(end, begin + shortest);
    }

    // In nanoseconds.
    static constexpr std::int64_t step = 500;
    static constexpr std::int64_t shortest = 20'000;
    std::int64_t begin_ = 0;
    std::int64_t end_ = 500'000;
    InterruptionCounts counts_;
};

/// Runs trials, perhaps in another process, which share one choice of moments.
std::optional<std::string>
runShared(std::uint64_t firstSeed, std::uint64_t count, InterruptionCounts& counts,
          const std::function<std::optional<std::string>(std::uint64_t seed, const std::string& folder,
                                                         Moments& moments)>& trial) {
    void* memory =
        ::mmap(nullptr, sizeof(Moments), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    auto* moments = new (memory) Moments;
    std::optional<std::string> complaint =
        runTrials(firstSeed, count, [&](std::uint64_t seed, const std::string& folder) {
            return trial(seed, folder, *moments);
        });
    counts = moments->counts();
    ::munmap(memory, sizeof(Moments));
    return complaint;
}

/// Another sequence than the tree's own.
Random randomMoment(std::uint64_t seed) {
    return Random(~seed);
}

/// What is missing, new or different in `after`, though only what `mayGo` names may be missing.
std::optional<std::string> unexpectedChange(const DiskSnapshot& before, const DiskSnapshot& after,
                                            const std::function<bool(const std::string& path)>& mayGo) {
    for (const auto& [path, item] : after) {
        const auto found = before.find(path);
        if (found == before.end()) {
            return "appeared: " + path;
        }
        if (found->second != item) {
            return "changed: " + path;
        }
    }
    for (const auto& [path, item] : before) {
        if (!after.contains(path) && !mayGo(path)) {
            return "is missing: " + path;
        }
    }
    return std::nullopt;
}

std::optional<std::string> interruptDeletion(std::uint64_t seed, const std::string& folder,
                                             Moments& moments) {
    const TemporaryDirectory base(folder);
    TrialDeletion trial(seed, base.path(), TrialDeletion::Kind::longAndShielded);
    const DiskSnapshot before = trial.before();
    const std::set<std::string> removable = expectedReport(trial).removed;
    Random random = randomMoment(seed);
    const bool finished = finishesWithin(moments.pick(random), [&trial] { trial.deleteOnce(); });
    trial.beginAnew();
    if (!removable.empty()) {
        moments.note(before, trial.before(), finished);
    }
    const auto mayGo = [&removable](const std::string& path) { return removable.contains(path); };
    if (const auto complaint = unexpectedChange(before, trial.before(), mayGo)) {
        return "after the kill " + *complaint + "\n  " + trial.description();
    }
    trial.run();
    std::optional<std::string> complaint = compareReport(trial);
    if (!complaint) {
        complaint = comparePlan(trial);
    }
    if (!complaint) {
        complaint = unexpectedChange(before, trial.after(), mayGo);
    }
    if (!complaint && trial.after().size() + removable.size() != before.size()) {
        complaint = "the work is not finished";
    }
    return complaint ? std::optional("after the second deletion " + *complaint + "\n  " + trial.description())
                     : std::nullopt;
}

/// An installed copy of the program with data of every kind, and things that are none of its business.
class OwnProgram {
public:
    OwnProgram(Random& random, const TemporaryDirectory& base)
        : applications(base.makeDirectory("Applications")),
          home(base.makeDirectory("home")),
          bundle(applications + "/Zentrill.app"),
          service(SelfUninstallService::defaultBundleIdentifier, std::vector{applications}) {
        const std::string outside = base.makeDirectory("outside");
        for (int i = 0; i < 4; ++i) {
            base.makeFile("outside/file" + std::to_string(i), "content");
        }
        base.makeFile("Applications/Other.app/Contents/Info.plist", "other");
        base.makeFile("home/Library/Caches/other/file", "other");
        base.makeFile("Applications/Zentrill.app/Contents/Info.plist",
                      "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.user.Zentrill"
                      "</string></dict></plist>");
        base.makeFile("Applications/Zentrill.app/Contents/MacOS/Zentrill", "program");
        (void)RandomTree(random, base.makeDirectory("Applications/Zentrill.app/Contents/Resources"), outside);
        for (const std::string& path : service.ownedDataURLs(home)) {
            const std::string relative = path.substr(base.path().size() + 1);
            if (path.ends_with(".plist")) {
                base.makeFile(relative, "frame");
            } else if (random.percent(70)) {
                (void)RandomTree(random, base.makeDirectory(relative), outside);
            }
        }
    }

    [[nodiscard]] bool isOwn(const std::string& path) const { return isOfBundle(path) || isData(path); }

    [[nodiscard]] bool isOfBundle(const std::string& path) const { return isAtOrBelow(path, bundle); }

    [[nodiscard]] bool isData(const std::string& path) const {
        return std::ranges::any_of(service.ownedDataURLs(home),
                                   [&path](const std::string& data) { return isAtOrBelow(path, data); });
    }

    const std::string applications;
    const std::string home;
    const std::string bundle;
    const SelfUninstallService service;
};

std::optional<std::string> interruptSelfUninstall(std::uint64_t seed, const std::string& folder,
                                                  Moments& moments) {
    const TemporaryDirectory base(folder);
    Random random(seed);
    const OwnProgram program(random, base);
    const auto isOwn = [&program](const std::string& path) { return program.isOwn(path); };
    const DiskSnapshot before = takeSnapshot(base.path());
    Random moment = randomMoment(seed);
    const bool finished = finishesWithin(
        moments.pick(moment), [&program] { (void)program.service.uninstall(program.bundle, program.home); });
    const DiskSnapshot killed = takeSnapshot(base.path());
    moments.note(before, killed, finished);
    if (const auto complaint = unexpectedChange(before, killed, isOwn)) {
        return "after the kill " + *complaint;
    }
    const auto ofBundle = [&program](const auto& entry) { return program.isOfBundle(entry.first); };
    const auto ofData = [&program](const auto& entry) { return program.isData(entry.first); };
    const bool bundleIsWhole =
        std::ranges::count_if(before, ofBundle) == std::ranges::count_if(killed, ofBundle);
    const bool hasData = std::ranges::any_of(killed, ofData);
    if (!bundleIsWhole && hasData) {
        return "the bundle goes before the data";
    }
    const SelfUninstallResult again = program.service.uninstall(program.bundle, program.home);
    const DiskSnapshot after = takeSnapshot(base.path());
    if (bundleIsWhole && !again.succeeded()) {
        return "removing again fails: " + (again.failures.empty() ? "" : again.failures.front());
    }
    if (!again.succeeded()) {
        if (after != killed) {
            return "a removal that was refused changed something";
        }
        std::filesystem::remove_all(program.bundle);
    }
    const DiskSnapshot end = takeSnapshot(base.path());
    if (const auto left = std::ranges::find_if(end, [&](const auto& entry) { return isOwn(entry.first); });
        left != end.end()) {
        return "is left in the end: " + left->first;
    }
    return unexpectedChange(before, end, isOwn);
}

} // namespace

std::optional<std::string> runInterruptedDeletions(std::uint64_t firstSeed, std::uint64_t count,
                                                   InterruptionCounts& counts) {
    return runShared(firstSeed, count, counts, interruptDeletion);
}

std::optional<std::string> runInterruptedSelfUninstalls(std::uint64_t firstSeed, std::uint64_t count,
                                                        InterruptionCounts& counts) {
    return runShared(firstSeed, count, counts, interruptSelfUninstall);
}

} // namespace zentrill::test
