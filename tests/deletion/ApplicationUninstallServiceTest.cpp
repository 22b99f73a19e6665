#include "deletion/ApplicationUninstallService.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "UninstallFixture.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::exists;
using test::newEngine;
using test::nothingRuns;
using test::rule;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

using ApplicationUninstallServiceTest = test::UninstallFixture;

TEST_F(ApplicationUninstallServiceTest, ARunningToolIsLeftAlone) {
    const std::string bundle = make("/Applications/Claude.app/Contents/MacOS/Claude");
    const std::string data = make("~/Library/Application Support/Claude/data");
    std::vector<std::string> asked;
    const ApplicationUninstallService service(std::make_shared<SafeDeletionEngine>(newEngine()),
                                              InstallationDetector(),
                                              [&asked](const std::vector<std::string>& names) {
                                                  asked = names;
                                                  return true;
                                              });
    const ApplicationUninstallResult result = service.uninstall(rule("Claude"), false, expander());
    EXPECT_THAT(asked, ElementsAre("Claude"));
    EXPECT_THAT(result.deletionReport.failures,
                ElementsAre("Claude is currently running. Quit Claude before removing it."));
    EXPECT_THAT(result.deletionReport.removed, IsEmpty());
    EXPECT_EQ(result.presence, InstallationPresence::installed);
    EXPECT_THAT(result.remainingDataPaths, IsEmpty());
    EXPECT_FALSE(result.cancelled);
    EXPECT_FALSE(result.succeeded());
    EXPECT_TRUE(exists(bundle));
    EXPECT_TRUE(exists(data));
}

TEST_F(ApplicationUninstallServiceTest, WithoutTheShieldEverythingGoesInCatalogOrder) {
    for (const ApplicationDetectionRule& each : ApplicationDetectionRegistry::rules()) {
        std::vector<std::string> expected;
        for (const std::string& path : each.uninstallPaths) {
            if (path.find('*') == std::string::npos && path != "~/.hermes") {
                expected.push_back(make(path));
            }
        }
        if (each.name == "Hermes") {
            expected.push_back(expanded("~/.hermes"));
        }
        const ApplicationUninstallResult result = quietService().uninstall(each, false, expander());
        EXPECT_EQ(result.deletionReport.removed, expected) << each.name;
        EXPECT_THAT(result.deletionReport.failures, IsEmpty()) << each.name;
        const bool dataStay = each.name == "LLM CLI";
        EXPECT_EQ(result.presence,
                  dataStay ? InstallationPresence::residualData : InstallationPresence::absent)
            << each.name;
        EXPECT_EQ(result.remainingDataPaths.empty(), !dataStay) << each.name;
        EXPECT_TRUE(result.succeeded()) << each.name;
    }
}

TEST_F(ApplicationUninstallServiceTest, AToolThatIsNotThereIsRemovedWithoutAWord) {
    const ApplicationUninstallResult result = uninstall("Ollama", true);
    EXPECT_EQ(result, ApplicationUninstallResult());
    EXPECT_TRUE(result.succeeded());
}

TEST_F(ApplicationUninstallServiceTest, APatternRemovesAllItsMatches) {
    const std::string first = make("~/Library/Caches/com.claude.one/cache");
    const std::string second = make("~/Library/Caches/two-claude/cache");
    const std::string list = make("~/Library/Preferences/com.claude.plist");
    const std::string other = make("~/Library/Caches/com.other/cache");
    const ApplicationUninstallResult result = uninstall("Claude", false);
    EXPECT_THAT(result.deletionReport.removed,
                ElementsAre(std::string(paths::parent(first)), std::string(paths::parent(second)), list));
    EXPECT_TRUE(result.succeeded());
    EXPECT_TRUE(exists(other));
}

TEST_F(ApplicationUninstallServiceTest, AMatchThatIsALinkIsRemovedAsALink) {
    const std::string target = home.makeFile("precious/file");
    const std::string link = home.makeLink("Library/Caches/claude-link", home.path("precious"));
    const std::string dangling = home.makeLink("Library/Caches/claude-nowhere", "nowhere");
    EXPECT_THAT(uninstall("Claude", false).deletionReport.removed, ElementsAre(link, dangling));
    EXPECT_TRUE(exists(target));
    EXPECT_FALSE(exists(link));
}

TEST_F(ApplicationUninstallServiceTest, APatternDoesNotReachThroughALinkedFolder) {
    const std::string elsewhere = system.makeFile("elsewhere/Caches/claude");
    const std::string link = home.makeLink("Library", system.path("elsewhere"));
    const ApplicationUninstallResult result = uninstall("Claude", false);
    EXPECT_THAT(result.deletionReport.failures, Contains("Refusing to traverse symlink ancestor: " + link));
    EXPECT_THAT(result.deletionReport.removed, IsEmpty());
    EXPECT_TRUE(exists(elsewhere));
}

TEST_F(ApplicationUninstallServiceTest, AHomeFolderNamedLikeAPatternLosesNothingOfItsNeighbours) {
    const std::string neighbour = home.makeFile("ab/Library/Caches/claude");
    const std::string data = home.makeFile("ab/.ollama/model");
    const std::string own = home.makeFile("[a]*/Library/Caches/claude");
    const std::string ownData = home.makeFile("[a]*/.ollama");
    const PathExpander odd = [this](const std::string& path) {
        return path.starts_with('~') ? paths::expandingTilde(path, home.path("[a]*")) : system.path() + path;
    };
    EXPECT_THAT(quietService().uninstall(rule("Claude"), false, odd).deletionReport.removed,
                ElementsAre(own));
    EXPECT_THAT(quietService().uninstall(rule("Ollama"), false, odd).deletionReport.removed,
                ElementsAre(ownData));
    EXPECT_TRUE(exists(neighbour));
    EXPECT_TRUE(exists(data));
}

TEST_F(ApplicationUninstallServiceTest, CancellingKeepsTheEntriesThatAreLeft) {
    const std::string bundle = make("/Applications/VendorApp.app");
    const std::string support = make("~/Library/Application Support/VendorApp/data");
    const std::string list = make("~/Library/Preferences/com.vendor.app.plist");
    int asked = 0;
    const ApplicationUninstallResult result =
        quietService().uninstall(rule("VendorApp"), false, expander(), [&asked] { return ++asked > 1; });
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(result.deletionReport.removed, ElementsAre(bundle));
    EXPECT_TRUE(result.cancelled);
    EXPECT_THAT(result.deletionReport.failures, ElementsAre("Operation cancelled."));
    EXPECT_EQ(result.presence, InstallationPresence::residualData);
    EXPECT_THAT(result.remainingDataPaths,
                ElementsAre(expanded("~/Library/Application Support/VendorApp"), list));
    EXPECT_TRUE(exists(support));
    EXPECT_FALSE(result.succeeded());
}

TEST_F(ApplicationUninstallServiceTest, BeingAbandonedKeepsTheEntriesThatAreLeft) {
    const std::string bundle = make("/Applications/VendorApp.app");
    const std::string support = make("~/Library/Application Support/VendorApp/data");
    int asked = 0;
    const ApplicationUninstallResult result = quietService().uninstall(
        rule("VendorApp"), false, expander(), [] { return false; }, [&asked] { return ++asked > 1; });
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(result.deletionReport.removed, ElementsAre(bundle));
    EXPECT_TRUE(result.cancelled);
    EXPECT_THAT(result.deletionReport.failures, ElementsAre("Operation cancelled."));
    EXPECT_TRUE(exists(support));
}

TEST_F(ApplicationUninstallServiceTest, CancellationIsAskedOncePerEntry) {
    int asked = 0;
    const auto result = quietService().uninstall(rule("Ollama"), false, expander(), [&asked] {
        ++asked;
        return false;
    });
    EXPECT_EQ(asked, 8);
    EXPECT_FALSE(result.cancelled);
    EXPECT_TRUE(result.succeeded());
}

TEST_F(ApplicationUninstallServiceTest, TheShieldRemovesTheBundleAndKeepsTheData) {
    make("/Applications/ChatGPT.app/Contents/Info.plist");
    const std::string authorization = make("~/.codex/auth.json");
    const std::string configuration = make("~/.codex/config.toml");
    const std::string history = make("~/.codex/history.jsonl");
    const std::string empty = home.makeDirectory(".codex/empty/deeper");
    const std::string support = make("~/Library/Application Support/com.openai.chat/state");
    const std::string cache = make("~/Library/Caches/com.openai.chat/blob");
    const ApplicationUninstallResult result = uninstall("ChatGPT", true);
    EXPECT_FALSE(exists(expanded("/Applications/ChatGPT.app")));
    for (const std::string& kept : {authorization, configuration, history, support, cache}) {
        EXPECT_TRUE(exists(kept)) << kept;
    }
    EXPECT_FALSE(exists(std::string(paths::parent(empty))));
    EXPECT_THAT(result.deletionReport.preserved,
                UnorderedElementsAre(authorization, configuration, history, cache));
    EXPECT_EQ(result.presence, InstallationPresence::residualData);
    EXPECT_THAT(result.remainingDataPaths,
                ElementsAre(expanded("~/.codex"), expanded("~/Library/Application Support/com.openai.chat"),
                            expanded("~/Library/Caches/com.openai.chat")));
    EXPECT_TRUE(result.succeeded());
}

TEST_F(ApplicationUninstallServiceTest, TheShieldKeepsCredentialsInsideABundleAndSoTheBundle) {
    const std::string key = make("/Applications/Claude.app/Contents/api_key");
    const std::string binary = make("/Applications/Claude.app/Contents/MacOS/Claude");
    const ApplicationUninstallResult result = uninstall("Claude", true);
    EXPECT_TRUE(exists(key));
    EXPECT_FALSE(exists(binary));
    EXPECT_THAT(result.deletionReport.preserved, ElementsAre(key));
    EXPECT_THAT(result.deletionReport.failures,
                ElementsAre("Claude still has installed runtime evidence after cleanup."));
    EXPECT_EQ(result.presence, InstallationPresence::installed);
}

TEST_F(ApplicationUninstallServiceTest, TheShieldKeepsAnExplicitCredentialFolderWhole) {
    const std::string data = make("~/Library/Application Support/Claude/anything/at/all");
    const ApplicationUninstallResult result = uninstall("Claude", true);
    EXPECT_TRUE(exists(data));
    EXPECT_THAT(result.deletionReport.preserved,
                ElementsAre(expanded("~/Library/Application Support/Claude")));
}

TEST_F(ApplicationUninstallServiceTest, TheSharedCodexFolderGoesWithEitherTool) {
    for (const char* name : {"ChatGPT", "Codex Tooling"}) {
        make("~/.codex/auth.json");
        const ApplicationUninstallResult kept = uninstall(name, true);
        EXPECT_THAT(kept.remainingDataPaths, ElementsAre(expanded("~/.codex"))) << name;
        const ApplicationUninstallResult result = uninstall(name, false);
        EXPECT_THAT(result.deletionReport.removed, ElementsAre(expanded("~/.codex"))) << name;
        EXPECT_EQ(result.presence, InstallationPresence::absent) << name;
    }
}

TEST_F(ApplicationUninstallServiceTest, ASurvivingBundleIsTheLastFailure) {
    const std::string bundle = make("/Applications/VendorApp.app");
    const std::string cache = make("~/Library/Caches/com.vendor.app/file");
    const ApplicationUninstallResult result = quietService([&bundle](const std::string& path) {
                                                  return path != bundle;
                                              }).uninstall(rule("VendorApp"), false, expander());
    EXPECT_THAT(result.deletionReport.failures,
                ElementsAre("VendorApp still has installed runtime evidence after cleanup."));
    EXPECT_EQ(result.presence, InstallationPresence::installed);
    EXPECT_FALSE(result.succeeded());
    EXPECT_FALSE(exists(cache));
}

TEST_F(ApplicationUninstallServiceTest, AFailureStopsNeitherTheOtherEntriesNorTheCheck) {
    const std::string bundle = make("/Applications/VendorApp.app/Contents/Info.plist");
    const std::string cache = make("~/Library/Caches/com.vendor.app/file");
    for (const std::string& root : {home.path(), system.path()}) {
        test::giveToOrdinaryUser(root);
    }
    std::filesystem::permissions(std::filesystem::path(bundle).parent_path(), std::filesystem::perms(0555));
    EXPECT_TRUE(test::passesAsOrdinaryUser([&] {
        const ApplicationUninstallResult result = uninstall("VendorApp", false);
        EXPECT_THAT(result.deletionReport.failures,
                    ElementsAre(StartsWith(expanded("/Applications/VendorApp.app") + ": "),
                                "VendorApp still has installed runtime evidence after cleanup."));
        EXPECT_THAT(result.deletionReport.removed, ElementsAre(expanded("~/Library/Caches/com.vendor.app")));
        EXPECT_FALSE(result.succeeded());
    }));
    EXPECT_TRUE(exists(bundle));
    EXPECT_FALSE(exists(cache));
}

TEST_F(ApplicationUninstallServiceTest, TheDetectorIsAskedAfterTheRemoval) {
    const std::string bundle = make("/Applications/VendorApp.app");
    bool existedWhenAsked = true;
    const ApplicationUninstallService service(
        std::make_shared<SafeDeletionEngine>(newEngine()),
        InstallationDetector(
            [&](const std::string& path) {
                existedWhenAsked = existedWhenAsked && exists(bundle);
                return path == bundle;
            },
            [](const std::string& path) { return path.ends_with("VendorApp"); }),
        nothingRuns);
    const ApplicationUninstallResult result = service.uninstall(rule("VendorApp"), false, expander());
    EXPECT_FALSE(existedWhenAsked);
    EXPECT_EQ(result.presence, InstallationPresence::installed);
    EXPECT_THAT(result.remainingDataPaths, ElementsAre(expanded("~/Library/Application Support/VendorApp")));
}

} // namespace
} // namespace zentrill
