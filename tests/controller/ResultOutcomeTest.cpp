#include "controller/ResultOutcome.h"

#include "controller/ResultAlert.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(ResultOutcomeTest, LabelsEveryOutcome) {
    EXPECT_EQ(statusLabel(ResultOutcome::complete), "COMPLETE");
    EXPECT_EQ(statusLabel(ResultOutcome::dataRemaining), "DATA REMAINS");
    EXPECT_EQ(statusLabel(ResultOutcome::errors), "ERRORS");
    EXPECT_EQ(statusLabel(ResultOutcome::unknown), "RESULT — REVIEW DETAILS");
}

TEST(ResultOutcomeTest, LetsFailuresOutweighRemainingData) {
    EXPECT_EQ(applicationOutcome({}, {}), ResultOutcome::complete);
    EXPECT_EQ(applicationOutcome({}, {{"Ollama", {"/a"}}}), ResultOutcome::dataRemaining);
    EXPECT_EQ(applicationOutcome({"/b: Permission denied"}, {{"Ollama", {"/a"}}}), ResultOutcome::errors);
    EXPECT_EQ(applicationOutcome({"/b: Permission denied"}, {}), ResultOutcome::errors);
}

TEST(ResultOutcomeTest, SummarisesWhatIsLeftToReview) {
    EXPECT_EQ(remainingSummary(ResultOutcome::dataRemaining, 1),
              "1 retained path — review before removing manually");
    EXPECT_EQ(remainingSummary(ResultOutcome::errors, 3),
              "3 retained paths — review before removing manually");
}

TEST(ResultOutcomeTest, HasNoSummaryWithoutPathsOrForOtherOutcomes) {
    EXPECT_EQ(remainingSummary(ResultOutcome::dataRemaining, 0), std::nullopt);
    EXPECT_EQ(remainingSummary(ResultOutcome::errors, -1), std::nullopt);
    EXPECT_EQ(remainingSummary(ResultOutcome::complete, 5), std::nullopt);
    EXPECT_EQ(remainingSummary(ResultOutcome::unknown, 5), std::nullopt);
}

TEST(ResultAlertTest, StartsUndecided) {
    EXPECT_EQ(ResultAlert(), (ResultAlert{"", "", ResultOutcome::unknown, 0}));
}

} // namespace
} // namespace zentrill
