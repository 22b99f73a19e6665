#include "catalog/ApplicationList.h"

#include "catalog/ApplicationDetectionRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;

TEST(ApplicationList, StandsInPresentationOrder) {
    std::vector<std::string> names;
    for (const AppInfo& app : applicationList()) {
        names.push_back(app.name);
    }
    EXPECT_THAT(names, ElementsAre("Ollama", "VendorApp", "Claude", "Claude Code", "ChatGPT", "LLM CLI",
                                   "vLLM", "OpenCode / VSCodium", "OpenCode CLI", "OpenAI CLI / Python",
                                   "OpenRouter CLI", "Hermes", "Gemini", "Codex Tooling", "LM Studio"));
}

TEST(ApplicationList, HasEveryRuleOnce) {
    std::set<std::string> ids;
    for (const AppInfo& app : applicationList()) {
        EXPECT_TRUE(ids.insert(app.id()).second) << app.id();
    }
    EXPECT_EQ(ids.size(), ApplicationDetectionRegistry::rules().size());
}

TEST(ApplicationList, TakesItsPathsFromTheRules) {
    for (const AppInfo& app : applicationList()) {
        const ApplicationDetectionRule& rule = ApplicationDetectionRegistry::rule(app.name);
        EXPECT_EQ(app.detectPaths, rule.installedPaths) << app.name;
        EXPECT_EQ(app.uninstallPaths, rule.uninstallPaths) << app.name;
        EXPECT_EQ(app.credentialPaths, rule.credentialPaths) << app.name;
        EXPECT_EQ(app.residualDataPaths, rule.residualDataPaths) << app.name;
        EXPECT_EQ(app.installedVia, rule.installedVia) << app.name;
    }
}

TEST(ApplicationList, IsNeitherFoundNorSelectedYet) {
    for (const AppInfo& app : applicationList()) {
        EXPECT_FALSE(app.isDetected) << app.name;
        EXPECT_FALSE(app.hasResidualData) << app.name;
        EXPECT_FALSE(app.isSelected) << app.name;
        EXPECT_FALSE(app.description.empty()) << app.name;
        EXPECT_FALSE(app.iconName.empty()) << app.name;
    }
}

TEST(ApplicationList, OnlyTheTwoClaudesHaveALabelOfTheirOwn) {
    std::vector<std::string> labels;
    for (const AppInfo& app : applicationList()) {
        if (app.displayName != app.name) {
            labels.push_back(app.displayName);
        }
    }
    EXPECT_THAT(labels, ElementsAre("Claude (desktop)", "Claude Code (CLI)"));
}

TEST(ApplicationList, AToolWithABundleIsADesktopApplication) {
    for (const AppInfo& app : applicationList()) {
        const bool hasBundle = app.detectPaths.front().ends_with(".app");
        EXPECT_EQ(app.category, hasBundle ? AppCategory::desktop : AppCategory::terminal) << app.name;
    }
}

} // namespace
} // namespace zentrill
