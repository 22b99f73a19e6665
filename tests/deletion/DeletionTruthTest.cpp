#include "truth/TruthTrial.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace zentrill {
namespace {

TEST(DeletionTruth, PlanReportAndDiskAgreeOnRandomTrees) {
    const std::optional<std::string> complaint = test::runTruthTrials(1, 1500);
    EXPECT_FALSE(complaint.has_value()) << *complaint;
}

} // namespace
} // namespace zentrill
