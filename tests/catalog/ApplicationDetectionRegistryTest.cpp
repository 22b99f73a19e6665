#include "catalog/ApplicationDetectionRegistry.h"

#include "catalog/ApplicationDetectionCatalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Not;

namespace Registry = ApplicationDetectionRegistry;

TEST(ApplicationDetectionRegistry, HoldsTheWholeCatalogBuiltOnce) {
    EXPECT_EQ(Registry::rules(), applicationDetectionCatalog());
    EXPECT_EQ(&Registry::rules(), &Registry::rules());
    EXPECT_EQ(&Registry::rule("Claude"), &Registry::rules()[1]);
}

TEST(ApplicationDetectionRegistry, EveryPathIsAbsoluteOrInTheHomeFolder) {
    for (const ApplicationDetectionRule& rule : Registry::rules()) {
        for (const auto* list :
             {&rule.installedPaths, &rule.residualDataPaths, &rule.uninstallPaths, &rule.credentialPaths}) {
            EXPECT_THAT(*list, Each(testing::AnyOf(testing::StartsWith("/"), testing::StartsWith("~/"))))
                << rule.name;
            EXPECT_EQ(std::set(list->begin(), list->end()).size(), list->size()) << rule.name;
            // One level below the home folder or the root is the least that a deletion may reach for.
            EXPECT_THAT(*list, Each(testing::MatchesRegex("(~|/[^/]+)/[^/].*[^/]"))) << rule.name;
        }
    }
}

TEST(ApplicationDetectionRegistry, WildcardsStandOnlyInTheLastPartOfUninstallPaths) {
    std::vector<std::string> patterns;
    for (const ApplicationDetectionRule& rule : Registry::rules()) {
        for (const auto* list : {&rule.installedPaths, &rule.residualDataPaths, &rule.credentialPaths}) {
            EXPECT_THAT(*list, Each(Not(testing::ContainsRegex("[*?{]")))) << rule.name;
        }
        std::ranges::copy_if(rule.uninstallPaths, std::back_inserter(patterns), [](const std::string& path) {
            return path.find_first_of("*?[{") != std::string::npos;
        });
    }
    EXPECT_THAT(patterns, ElementsAre("~/Library/Caches/*claude*", "~/Library/Preferences/*claude*.plist",
                                      "~/Library/WebKit/*claude*"));
}

TEST(ApplicationDetectionRegistry, AnUninstallationRemovesEveryInstalledPath) {
    for (const ApplicationDetectionRule& rule : Registry::rules()) {
        for (const std::string& path : rule.installedPaths) {
            EXPECT_THAT(rule.uninstallPaths, Contains(path)) << rule.name;
        }
    }
}

TEST(ApplicationDetectionRegistry, ScannedDataOfClaudeLeaveOutTheBundle) {
    EXPECT_THAT(Registry::rule("Claude").scanResidualDataPaths(),
                ElementsAre("~/Library/Application Support/Claude", "~/Library/Application Support/Claude",
                            "~/Library/Caches/*claude*", "~/Library/Preferences/*claude*.plist",
                            "~/Library/WebKit/*claude*"));
}

TEST(ApplicationDetectionRegistry, ScannedDataOfChatGptNameTheCodexFolderTwice) {
    const std::vector<std::string> paths = Registry::rule("ChatGPT").scanResidualDataPaths();
    EXPECT_THAT(paths, Not(Contains("/Applications/ChatGPT.app")));
    EXPECT_EQ(std::ranges::count(paths, "~/.codex"), 2);
}

TEST(ApplicationDetectionRegistry, ScannedDataOfOllamaKeepTheirDuplicates) {
    EXPECT_THAT(Registry::rule("Ollama").scanResidualDataPaths(),
                ElementsAre("~/.ollama", "~/Library/Application Support/Ollama", "~/.ollama",
                            "~/Library/Application Support/Ollama", "~/Library/Caches/com.github.ollama",
                            "~/Library/Preferences/com.github.ollama.plist"));
}

TEST(ApplicationDetectionRegistry, ChatGptAndTheCodexToolingShareTheirFolderAndHelpers) {
    const ApplicationDetectionRule& chat = Registry::rule("ChatGPT");
    const ApplicationDetectionRule& codex = Registry::rule("Codex Tooling");
    EXPECT_THAT(chat.uninstallPaths, Contains("~/.codex"));
    EXPECT_THAT(codex.uninstallPaths, Contains("~/.codex"));
    for (const std::string& name : codex.processNames) {
        EXPECT_THAT(chat.processNames, Contains(name));
    }
    EXPECT_THAT(chat.uninstallPaths, Not(Contains("~/Library/Application Support/com.openai.chat")));
}

TEST(ApplicationDetectionRegistry, LookupComparesTheWholeName) {
    EXPECT_EQ(Registry::rule("Claude").name, "Claude");
    EXPECT_EQ(Registry::rule("Claude Code").name, "Claude Code");
    EXPECT_NE(Registry::rule("Claude"), Registry::rule("Claude Code"));
}

TEST(ApplicationDetectionRegistryDeathTest, AnUnknownNameStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(static_cast<void>(Registry::rule("claude")), "no detection rule is named \"claude\"");
    EXPECT_DEATH(static_cast<void>(Registry::rule("")), "no detection rule is named \"\"");
}

} // namespace
} // namespace zentrill
