#pragma once

#include "DeletionCases.h"
#include "UninstallFixture.h"
#include "deletion/ApplicationUninstallPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace zentrill::test {

/// The plan, the report and the disk of one removal.
class ApplicationUninstallPlans : public UninstallFixture {
protected:
    [[nodiscard]] ApplicationUninstallPlan plan(const char* name, SafetyShield shield,
                                                const PlanOptions& options = {}) const {
        return quietService().plan(rule(name), shield, expander(), options);
    }

    static std::vector<std::string> itemPaths(const ApplicationUninstallPlan& plan) {
        std::vector<std::string> paths;
        for (const ApplicationUninstallPlan::Item& item : plan.items) {
            paths.push_back(item.path);
        }
        return paths;
    }

    static const ApplicationUninstallPlan::Item& item(const ApplicationUninstallPlan& plan,
                                                      const std::string& path) {
        const auto found = std::ranges::find(plan.items, path, &ApplicationUninstallPlan::Item::path);
        if (found == plan.items.end()) {
            throw std::out_of_range(path);
        }
        return *found;
    }

    /// Removes the tool, which must come out as planned.
    void expectForetold(const ApplicationUninstallPlan& plan, const char* name,
                        bool preserveCredentials) const {
        const ApplicationUninstallResult result = uninstall(name, preserveCredentials);
        std::vector<std::string> removed;
        std::vector<std::string> preserved;
        std::vector<std::string> failures;
        std::vector<std::string> remaining;
        for (const ApplicationUninstallPlan::Item& each : plan.items) {
            for (const std::string& path : pathsOf(each.plan.removed)) {
                EXPECT_FALSE(exists(path)) << path;
                if (preserveCredentials) {
                    removed.push_back(path);
                }
            }
            if (!preserveCredentials && each.plan.itemGoes) {
                removed.push_back(each.path);
            }
            for (const DeletionPlan::Items* kept :
                 {&each.plan.recognizedCredentials, &each.plan.listedCredentials, &each.plan.uncertainData}) {
                std::ranges::copy(pathsOf(*kept), std::back_inserter(preserved));
            }
            std::ranges::copy(each.plan.failures, std::back_inserter(failures));
            EXPECT_EQ(exists(each.path), !each.plan.itemGoes) << each.path;
            if (each.part != ApplicationUninstallPlan::Part::installation && !each.plan.itemGoes) {
                remaining.push_back(each.path);
            }
        }
        if (plan.staysInstalled) {
            failures.push_back(std::string(name) + " still has installed runtime evidence after cleanup.");
        }
        EXPECT_EQ(result.deletionReport.removed, removed) << name;
        EXPECT_THAT(result.deletionReport.preserved, testing::UnorderedElementsAreArray(preserved)) << name;
        EXPECT_EQ(result.deletionReport.failures, failures) << name;
        EXPECT_THAT(result.remainingDataPaths, testing::IsSubsetOf(remaining)) << name;
        EXPECT_EQ(result.presence == InstallationPresence::installed, plan.staysInstalled) << name;
    }
};

} // namespace zentrill::test
