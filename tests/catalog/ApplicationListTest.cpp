#include "catalog/ApplicationList.h"

#include "catalog/ApplicationDetectionRegistry.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace zentrill {
namespace {

/// Name, label, category, symbol and description of each row.
constexpr std::string_view expectedList = R"(
Ollama | Ollama | Desktop Application | circle.grid.3x3.fill | Local model runner for large language models
VendorApp | VendorApp | Desktop Application | shippingbox.fill | Synthetic third-party application used for uninstall testing
Claude | Claude (desktop) | Desktop Application | bubble.left.fill | Official Anthropic desktop assistant
Claude Code | Claude Code (CLI) | Terminal / CLI Tool | terminal.fill | Official CLI agent by Anthropic
ChatGPT | ChatGPT | Desktop Application | message.and.waveform.fill | Official OpenAI desktop client
LLM CLI | LLM CLI | Terminal / CLI Tool | chevron.left.forwardslash.chevron.right | CLI utility for running and managing models (by Marrowby)
vLLM | vLLM | Terminal / CLI Tool | cpu | Fast Python-based engine for LLM inference
OpenCode / VSCodium | OpenCode / VSCodium | Desktop Application | code.square.fill | Open-source codebase editor based on VS Code
OpenCode CLI | OpenCode CLI | Terminal / CLI Tool | terminal.fill | OpenCode command-line interface for AI coding
OpenAI CLI / Python | OpenAI CLI / Python | Terminal / CLI Tool | brain.head.profile | Official OpenAI libraries and command-line interfaces
OpenRouter CLI | OpenRouter CLI | Terminal / CLI Tool | network | Helpers and settings for OpenRouter API integrations
Hermes | Hermes | Desktop Application | lightbulb.fill | Hermes Desktop application and command-line runners
Gemini | Gemini | Desktop Application | bolt.shield.fill | Gemini Desktop application and advanced command-line interfaces
Codex Tooling | Codex Tooling | Terminal / CLI Tool | curlybraces | Extensions and workspace caches for OpenAI Codex
LM Studio | LM Studio | Desktop Application | cube.box.fill | Local model runner and model management UI
)";

TEST(ApplicationList, ShowsWhatIsWrittenHereAndNothingElse) {
    std::string list = "\n";
    for (const AppInfo& app : applicationList()) {
        list += app.name + " | " + app.displayName + " | " + std::string(rawValue(app.category)) + " | " +
                app.iconName + " | " + app.description + "\n";
    }
    EXPECT_EQ(list, expectedList);
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
    }
}

TEST(ApplicationList, AToolWithABundleIsADesktopApplication) {
    for (const AppInfo& app : applicationList()) {
        const bool hasBundle = app.detectPaths.front().ends_with(".app");
        EXPECT_EQ(app.category, hasBundle ? AppCategory::desktop : AppCategory::terminal) << app.name;
    }
}

} // namespace
} // namespace zentrill
