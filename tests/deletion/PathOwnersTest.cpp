#include "deletion/PathOwners.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ApplicationDetectionRule ruleOf(std::string name, std::vector<std::string> uninstallPaths,
                                std::vector<std::string> residualDataPaths = {}) {
    ApplicationDetectionRule rule;
    rule.name = std::move(name);
    rule.uninstallPaths = std::move(uninstallPaths);
    rule.residualDataPaths = std::move(residualDataPaths);
    return rule;
}

TEST(PathOwners, AreAllToolsThatListThePathOrOneAroundItOrInIt) {
    const PathExpander underHome = [](const std::string& path) { return "/home" + path.substr(1); };
    const PathOwners owners({ruleOf("A", {"~/.shared"}), ruleOf("B", {"~/.shared/inner"}),
                             ruleOf("C", {}, {"~/.shared"}), ruleOf("D", {"~/.sharednot", "~/other"})},
                            underHome);
    EXPECT_THAT(owners.othersThan("A", "/home/.shared"), ElementsAre("B", "C"));
    EXPECT_THAT(owners.othersThan("B", "/home/.shared/inner/"), ElementsAre("A", "C"));
    EXPECT_THAT(owners.othersThan("D", "/home/other"), IsEmpty());
    EXPECT_THAT(owners.othersThan("unknown", "/home/.shared/else"), ElementsAre("A", "C"));
}

TEST(PathOwners, KnowWhatPatternsStandFor) {
    const test::TemporaryDirectory folder;
    const std::string match = folder.makeDirectory("Caches/x-claude");
    const PathOwners owners({ruleOf("A", {"~/Caches/*claude*"})},
                            [&](const std::string& path) { return folder.path() + path.substr(1); });
    EXPECT_THAT(owners.othersThan("B", match), ElementsAre("A"));
    EXPECT_THAT(owners.othersThan("B", folder.path("Caches/other")), IsEmpty());
}

} // namespace
} // namespace zentrill
