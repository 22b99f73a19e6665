#include "deletion/ApplicationUninstallPlan.h"

#include "ApplicationUninstallPlanFixture.h"
#include "DeletionCases.h"
#include "DeletionForm.h"
#include "UninstallFixture.h"
#include "catalog/ApplicationDetectionRegistry.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::ApplicationUninstallPlans;
using test::exists;
using test::newEngine;
using test::pathsOf;
using test::rule;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Part = ApplicationUninstallPlan::Part;

TEST_F(ApplicationUninstallPlans, ComeTrueForEveryToolWithTheShieldAndWithout) {
    for (const bool preserveCredentials : {true, false}) {
        for (const ApplicationDetectionRule& each : ApplicationDetectionRegistry::rules()) {
            for (const std::string& path : each.uninstallPaths) {
                const bool isData = std::ranges::find(each.installedPaths, path) == each.installedPaths.end();
                if (path.find('*') != std::string::npos) {
                    make(path.substr(0, path.rfind('/')) + "/com.claude.desktop/cache", "cached");
                } else if (isData && path.find('.', path.rfind('/') + 2) == std::string::npos) {
                    make(path + "/deep/file", "content");
                    make(path + "/auth.json", "secret");
                } else if (!exists(expanded(path))) {
                    make(path, "binary");
                }
            }
            const ApplicationUninstallPlan plan =
                this->plan(each.name.c_str(), safetyShield(preserveCredentials));
            EXPECT_FALSE(plan.items.empty()) << each.name;
            EXPECT_GT(plan.removedBytes(), 0) << each.name;
            expectForetold(plan, each.name.c_str(), preserveCredentials);
            for (const std::string& root : {home.path(), system.path()}) {
                for (const auto& entry : std::filesystem::directory_iterator(root)) {
                    std::filesystem::remove_all(entry.path());
                }
            }
        }
    }
}

TEST_F(ApplicationUninstallPlans, TouchNothingAndStartNothing) {
    const std::string bundle = make("/Applications/Claude.app/Contents/MacOS/Claude");
    const ApplicationUninstallService service(std::make_shared<SafeDeletionEngine>(newEngine()),
                                              InstallationDetector(),
                                              [](const std::vector<std::string>& /*names*/) {
                                                  ADD_FAILURE() << "asked whether the tool runs";
                                                  return true;
                                              });
    const ApplicationUninstallPlan plan = service.plan(rule("Claude"), SafetyShield::off, expander());
    EXPECT_THAT(itemPaths(plan), ElementsAre(expanded("/Applications/Claude.app")));
    EXPECT_TRUE(plan.items[0].plan.itemGoes);
    EXPECT_TRUE(exists(bundle));
}

TEST_F(ApplicationUninstallPlans, ListWhatExistsInTheOrderOfTheRemoval) {
    const std::string data = make("~/.openai/history", "12345");
    const std::string tool = make("~/.local/bin/openai", "123");
    const ApplicationUninstallPlan plan = this->plan("OpenAI CLI / Python", SafetyShield::off);
    EXPECT_THAT(itemPaths(plan), ElementsAre(expanded("~/.openai"), tool));
    EXPECT_EQ(plan.items[0].part, Part::data);
    EXPECT_EQ(plan.items[0].logicalBytes, 5);
    EXPECT_EQ(plan.items[1].part, Part::installation);
    EXPECT_EQ(plan.items[1].logicalBytes, 3);
    EXPECT_EQ(plan.removedBytes(), 8);
    EXPECT_EQ(plan.freedBytes(), plan.items[0].plan.freedBytes + plan.items[1].plan.freedBytes);
    EXPECT_GT(plan.freedBytes(), 0);
    EXPECT_FALSE(plan.staysInstalled);
    EXPECT_TRUE(this->plan("Ollama", SafetyShield::on).items.empty());
}

TEST_F(ApplicationUninstallPlans, TellWhatIsKeptAndWhy) {
    make("/Applications/ChatGPT.app/Contents/Info.plist", "list");
    const std::string authorization = make("~/.codex/auth.json", "1");
    const std::string configuration = make("~/.codex/config.toml", "22");
    const std::string history = make("~/.codex/history.jsonl", "333");
    const std::string support = make("~/Library/Application Support/com.openai.chat/state", "4444");
    const ApplicationUninstallPlan plan = this->plan("ChatGPT", SafetyShield::on);
    const std::string supportFolder = expanded("~/Library/Application Support/com.openai.chat");
    EXPECT_THAT(itemPaths(plan),
                ElementsAre(expanded("/Applications/ChatGPT.app"), expanded("~/.codex"), supportFolder));
    const ApplicationUninstallPlan::Item& data = item(plan, expanded("~/.codex"));
    EXPECT_THAT(pathsOf(data.plan.recognizedCredentials), ElementsAre(authorization));
    EXPECT_THAT(pathsOf(data.plan.listedCredentials), ElementsAre(configuration));
    EXPECT_THAT(pathsOf(data.plan.uncertainData), ElementsAre(history));
    EXPECT_EQ(data.logicalBytes, 6);
    const ApplicationUninstallPlan::Item& untouched = item(plan, supportFolder);
    EXPECT_EQ(untouched.part, Part::remainingData);
    EXPECT_EQ(untouched.logicalBytes, 4);
    EXPECT_TRUE(untouched.plan.isEmpty());
    EXPECT_EQ(plan.removedBytes(), 4);
    expectForetold(plan, "ChatGPT", true);
    EXPECT_TRUE(exists(support));
}

TEST_F(ApplicationUninstallPlans, SizeWhatIsKeptWhole) {
    make("~/Library/Application Support/Claude/deep/file", "12345");
    const ApplicationUninstallPlan plan = this->plan("Claude", SafetyShield::on);
    ASSERT_EQ(plan.items.size(), 1U);
    EXPECT_EQ(plan.items[0].plan.listedCredentials.count, 1U);
    EXPECT_EQ(plan.items[0].logicalBytes, 5);
    EXPECT_EQ(plan.removedBytes(), 0);
    EXPECT_EQ(plan.freedBytes(), 0);
    expectForetold(plan, "Claude", true);
}

TEST_F(ApplicationUninstallPlans, SizeRemainingDataWithoutWhatGoesFromIt) {
    make("~/Library/Application Support/io.datasette.llm/logs.db", "1234");
    make("~/Library/Application Support/io.datasette.llm/other", "12");
    const ApplicationUninstallPlan plan = this->plan("LLM CLI", SafetyShield::off);
    ASSERT_EQ(plan.items.size(), 2U);
    EXPECT_EQ(plan.items[0].logicalBytes, 4);
    EXPECT_EQ(plan.items[1].part, Part::remainingData);
    EXPECT_EQ(plan.items[1].logicalBytes, 2);
    expectForetold(plan, "LLM CLI", false);
}

TEST_F(ApplicationUninstallPlans, NameTheToolsThatShareAPath) {
    make("~/.codex/history.jsonl");
    make("~/.local/bin/codex");
    const ApplicationUninstallPlan plan = this->plan("Codex Tooling", SafetyShield::off);
    EXPECT_THAT(item(plan, expanded("~/.codex")).sharedWith, ElementsAre("ChatGPT"));
    EXPECT_THAT(item(plan, expanded("~/.local/bin/codex")).sharedWith, IsEmpty());
}

TEST_F(ApplicationUninstallPlans, CountWhatTwoToolsShareOnce) {
    make("~/.codex/history.jsonl", "12345");
    make("~/.codex/auth.json");
    const std::string tool = make("~/.local/bin/codex", "12");
    for (const bool preserveCredentials : {true, false}) {
        EarlierPlans earlier;
        const PlanOptions inOrder{.earlier = &earlier};
        const ApplicationUninstallPlan first = plan("ChatGPT", safetyShield(preserveCredentials), inOrder);
        const ApplicationUninstallPlan second =
            plan("Codex Tooling", safetyShield(preserveCredentials), inOrder);
        EXPECT_THAT(itemPaths(first), ElementsAre(expanded("~/.codex")));
        EXPECT_THAT(itemPaths(second), ElementsAre(tool));
        EXPECT_EQ(second.removedBytes(), 2);
        EXPECT_FALSE(second.staysInstalled);
    }
}

TEST_F(ApplicationUninstallPlans, FollowWhatTheEarlierEntriesLeave) {
    const std::string tool = make("~/.hermes/hermes-agent/venv/bin/hermes", "1234");
    const std::string kept = make("~/.hermes/log", "12");
    const ApplicationUninstallPlan plan = this->plan("Hermes", SafetyShield::on);
    EXPECT_THAT(itemPaths(plan), ElementsAre(tool, expanded("~/.hermes")));
    EXPECT_THAT(pathsOf(plan.items[1].plan.removed),
                ElementsAre(expanded("~/.hermes/hermes-agent/venv/bin"),
                            expanded("~/.hermes/hermes-agent/venv"), expanded("~/.hermes/hermes-agent")));
    EXPECT_EQ(plan.removedBytes(), 4);
    expectForetold(plan, "Hermes", true);
    EXPECT_TRUE(exists(kept));
}

TEST_F(ApplicationUninstallPlans, SayWhatIsRefusedAndThatTheToolStays) {
    system.makeFile("elsewhere/Claude.app/Contents/MacOS/Claude");
    const std::string link = system.makeLink("Applications", system.path("elsewhere"));
    const ApplicationUninstallPlan plan = this->plan("Claude", SafetyShield::on);
    ASSERT_EQ(plan.items.size(), 1U);
    EXPECT_TRUE(plan.items[0].plan.itemRefused);
    EXPECT_THAT(plan.items[0].plan.failures, ElementsAre("Refusing to traverse symlink ancestor: " + link));
    EXPECT_TRUE(plan.staysInstalled);
    expectForetold(plan, "Claude", true);
}

TEST_F(ApplicationUninstallPlans, SayThatAToolIsStillInstalledWhereItsBundleKeepsACredential) {
    const std::string key = make("/Applications/Claude.app/Contents/api_key", "12");
    make("/Applications/Claude.app/Contents/MacOS/Claude", "1234");
    const ApplicationUninstallPlan plan = this->plan("Claude", SafetyShield::on);
    EXPECT_TRUE(plan.staysInstalled);
    EXPECT_EQ(plan.removedBytes(), 4);
    EXPECT_EQ(plan.items[0].logicalBytes, 6);
    EXPECT_THAT(pathsOf(plan.items[0].plan.recognizedCredentials), ElementsAre(key));
    expectForetold(plan, "Claude", true);
}

TEST_F(ApplicationUninstallPlans, ForeseeWhatPermissionsForbid) {
    const std::string bundle = make("/Applications/VendorApp.app/Contents/Info.plist");
    make("~/Library/Caches/com.vendor.app/file");
    for (const std::string& root : {home.path(), system.path()}) {
        test::giveToOrdinaryUser(root);
    }
    std::filesystem::permissions(std::filesystem::path(bundle).parent_path(), std::filesystem::perms(0555));
    EXPECT_TRUE(test::passesAsOrdinaryUser([&] {
        const ApplicationUninstallPlan plan = this->plan("VendorApp", SafetyShield::off);
        EXPECT_THAT(pathsOf(plan.items.at(0).plan.failing), Contains(bundle));
        EXPECT_TRUE(plan.staysInstalled);
        expectForetold(plan, "VendorApp", false);
    }));
}

/// Whether a path is listed by data of an earlier entry decides what a later one may still find there; the
/// plans take an earlier entry's word for all that it covers.
TEST(ApplicationUninstallCatalog, NoExecutableLiesInDataThatGoBefore) {
    for (const ApplicationDetectionRule& rule : ApplicationDetectionRegistry::rules()) {
        const auto isInstalled = [&rule](const std::string& path) {
            return std::ranges::find(rule.installedPaths, path) != rule.installedPaths.end();
        };
        for (std::size_t i = 0; i < rule.uninstallPaths.size(); ++i) {
            for (std::size_t j = i + 1; j < rule.uninstallPaths.size(); ++j) {
                EXPECT_FALSE(!isInstalled(rule.uninstallPaths[i]) && isInstalled(rule.uninstallPaths[j]) &&
                             paths::isSameOrBelow(rule.uninstallPaths[j], rule.uninstallPaths[i]))
                    << rule.uninstallPaths[j];
            }
        }
    }
}

} // namespace
} // namespace zentrill
