#include "truth/InterruptedTrial.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace zentrill {
namespace {

using Trials = std::optional<std::string> (*)(std::uint64_t firstSeed, std::uint64_t count,
                                              test::InterruptionCounts& counts);

/// Goes on until enough kills have met a removal at work, which a quick machine is soon done with.
void expectToHold(Trials trials) {
    constexpr std::uint64_t batch = 100;
    constexpr std::uint64_t mostTrials = 50 * batch;
    constexpr std::uint64_t enough = 10;
    std::uint64_t midway = 0;
    std::uint64_t seed = 1;
    while (midway < enough && seed < mostTrials) {
        test::InterruptionCounts counts;
        const std::optional<std::string> complaint = trials(seed, batch, counts);
        ASSERT_FALSE(complaint.has_value()) << *complaint;
        midway += counts.midway;
        seed += batch;
    }
    EXPECT_GE(midway, enough) << "hardly any kill met a removal at work";
}

TEST(InterruptedDeletion, LeavesWhatStaysAndIsFinishedByTheNextOne) {
    expectToHold(test::runInterruptedDeletions);
}

TEST(InterruptedDeletion, OfTheProgramItselfCanBeDoneAgainOrByHand) {
    expectToHold(test::runInterruptedSelfUninstalls);
}

} // namespace
} // namespace zentrill
