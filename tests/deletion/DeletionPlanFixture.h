#pragma once

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/DeletionPlan.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace zentrill::test {

/// As many items and failures as there are.
inline const PlanOptions everything{.listedItems = SIZE_MAX};

/// A tree, its plans, and the deletion that has to come out as planned.
class DeletionPlans : public testing::Test {
protected:
    [[nodiscard]] DeletionPlan plan(const DeletionOptions& options = unshielded) const {
        return engine_.plan(folder_.path("tree"), options, everything);
    }

    /// Deletes the tree as planned, which must come out as foretold.
    void expectForetold(const DeletionPlan& plan, const DeletionOptions& options) const {
        const std::string tree = folder_.path("tree");
        const DeletionReport report = engine_.deleteItem(tree, options);
        EXPECT_EQ(report.failures, plan.failures);
        EXPECT_EQ(exists(tree), !plan.itemGoes);
        if (options.preserveCredentials) {
            EXPECT_EQ(report.removed, pathsOf(plan.removed));
        }
        for (const std::string& path : pathsOf(plan.removed)) {
            EXPECT_FALSE(exists(path)) << path;
        }
    }

    TemporaryDirectory folder_;
    SafeDeletionEngine engine_ = newEngine();
};

} // namespace zentrill::test
