#include "catalog/ApplicationDetectionRule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <unordered_set>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ApplicationDetectionRule, ScannedDataAreTheResidualPathsThenTheUninstallPathsThatAreNotInstalledOnes) {
    ApplicationDetectionRule rule;
    rule.installedPaths = {"/bin/a", "/bin/b"};
    rule.residualDataPaths = {"~/.z", "~/.a"};
    rule.uninstallPaths = {"~/.a", "/bin/b", "~/Caches/*", "/bin/a", "/bin/a/"};
    EXPECT_THAT(rule.scanResidualDataPaths(), ElementsAre("~/.z", "~/.a", "~/.a", "~/Caches/*", "/bin/a/"));
}

TEST(ApplicationDetectionRule, AnEmptyRuleScansNothing) {
    EXPECT_THAT(ApplicationDetectionRule().scanResidualDataPaths(), IsEmpty());
}

TEST(ApplicationDetectionRule, EveryFieldTakesPartInEqualityAndHash) {
    const std::vector<std::function<void(ApplicationDetectionRule&)>> changes{
        [](ApplicationDetectionRule& rule) { rule.name += "x"; },
        [](ApplicationDetectionRule& rule) { rule.installedPaths = {"x"}; },
        [](ApplicationDetectionRule& rule) { rule.residualDataPaths = {"x"}; },
        [](ApplicationDetectionRule& rule) { rule.uninstallPaths = {"x"}; },
        [](ApplicationDetectionRule& rule) { rule.credentialPaths = {"x"}; },
        [](ApplicationDetectionRule& rule) { rule.processNames = {"x"}; },
        [](ApplicationDetectionRule& rule) { rule.installedVia.emplace("x"); },
    };
    std::unordered_set<ApplicationDetectionRule> distinct{ApplicationDetectionRule()};
    std::unordered_set<std::size_t> hashes{std::hash<ApplicationDetectionRule>()({})};
    for (std::size_t field = 0; field < changes.size(); ++field) {
        ApplicationDetectionRule rule;
        changes[field](rule);
        EXPECT_TRUE(hashes.insert(std::hash<ApplicationDetectionRule>()(rule)).second) << "field " << field;
        EXPECT_TRUE(distinct.insert(rule).second) << "field " << field;
    }
}

} // namespace
} // namespace zentrill
