// Plan, report and disk on many random trees, and deletions that are killed at a random moment.
//
//     bench_truth [--long | <number of trees>] [<first seed>]
//     bench_truth --kill [<number of kills>] [<first seed>]

#include "truth/InterruptedTrial.h"
#include "truth/TruthTrial.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace {

using Trials = std::function<std::optional<std::string>(std::uint64_t first, std::uint64_t count)>;

/// Runs trials in portions; whether none of them complained.
bool agree(const std::string& what, std::uint64_t first, std::uint64_t count, const Trials& trials) {
    const auto begin = std::chrono::steady_clock::now();
    constexpr std::uint64_t portion = 10000;
    for (std::uint64_t done = 0; done < count; done += portion) {
        if (const auto complaint = trials(first + done, std::min(portion, count - done))) {
            std::printf("%s\n", complaint->c_str());
            return false;
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    std::printf("%llu %s from seed %llu: all agree, %.1f s\n", static_cast<unsigned long long>(count),
                what.c_str(), static_cast<unsigned long long>(first), seconds);
    return true;
}

bool surviveKills(const std::string& what, std::uint64_t first, std::uint64_t count,
                  const std::function<decltype(zentrill::test::runInterruptedDeletions)>& trials) {
    zentrill::test::InterruptionCounts total;
    const bool passed = agree(what, first, count, [&](std::uint64_t from, std::uint64_t some) {
        zentrill::test::InterruptionCounts counts;
        std::optional<std::string> complaint = trials(from, some, counts);
        total.beforeTheFirstRemoval += counts.beforeTheFirstRemoval;
        total.midway += counts.midway;
        total.afterTheLastRemoval += counts.afterTheLastRemoval;
        return complaint;
    });
    std::printf("  killed before the first removal %llu, midway %llu, done before the kill %llu\n",
                static_cast<unsigned long long>(total.beforeTheFirstRemoval),
                static_cast<unsigned long long>(total.midway),
                static_cast<unsigned long long>(total.afterTheLastRemoval));
    return passed;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    const bool kill = argc > 1 && arguments[1] == "--kill";
    const auto number = [&](std::size_t index, std::uint64_t otherwise) {
        return index < arguments.size() ? std::strtoull(argv[index], nullptr, 10) : otherwise;
    };
    if (kill) {
        const std::uint64_t count = number(2, 1000);
        const std::uint64_t first = number(3, 1);
        const bool deletions =
            surviveKills("killed deletions", first, count, zentrill::test::runInterruptedDeletions);
        const bool own = surviveKills("killed removals of the program itself", first, count,
                                      zentrill::test::runInterruptedSelfUninstalls);
        return deletions && own ? 0 : 1;
    }
    const std::uint64_t count = argc > 1 && arguments[1] == "--long" ? 1000000 : number(1, 100000);
    return agree("trees", number(2, 1), count, zentrill::test::runTruthTrials) ? 0 : 1;
}
