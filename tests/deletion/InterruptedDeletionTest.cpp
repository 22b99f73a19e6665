#include "truth/InterruptedTrial.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace zentrill {
namespace {

TEST(InterruptedDeletion, LeavesWhatStaysAndIsFinishedByTheNextOne) {
    test::InterruptionCounts counts;
    const std::optional<std::string> complaint = test::runInterruptedDeletions(1, 500, counts);
    EXPECT_FALSE(complaint.has_value()) << *complaint;
    EXPECT_GT(counts.midway, 25U) << "hardly any kill met a deletion at work";
}

TEST(InterruptedDeletion, OfTheProgramItselfCanBeDoneAgainOrByHand) {
    test::InterruptionCounts counts;
    const std::optional<std::string> complaint = test::runInterruptedSelfUninstalls(1, 300, counts);
    EXPECT_FALSE(complaint.has_value()) << *complaint;
    EXPECT_GT(counts.midway, 30U) << "hardly any kill met a removal at work";
}

} // namespace
} // namespace zentrill
