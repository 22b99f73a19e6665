#include "catalog/InstallationDetector.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "platform/Paths.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A home folder and a root of the system folders, both the test's own.
class InstallationDetectorTest : public testing::Test {
protected:
    [[nodiscard]] PathExpander expander() const {
        return [this](const std::string& path) {
            return path.starts_with('~') ? paths::expandingTilde(path, folder.path("home"))
                                         : folder.path("root") + path;
        };
    }

    [[nodiscard]] InstallationPresence presenceOf(const char* name) const {
        return InstallationDetector().presence(ApplicationDetectionRegistry::rule(name), expander());
    }

    test::TemporaryDirectory folder;
};

TEST_F(InstallationDetectorTest, AToolWithoutATraceIsAbsent) {
    for (const ApplicationDetectionRule& rule : ApplicationDetectionRegistry::rules()) {
        EXPECT_EQ(InstallationDetector().presence(rule, expander()), InstallationPresence::absent)
            << rule.name;
    }
}

TEST_F(InstallationDetectorTest, AnEmptyRuleIsAbsent) {
    EXPECT_EQ(InstallationDetector().presence({}, expander()), InstallationPresence::absent);
}

TEST_F(InstallationDetectorTest, ABundleWithoutDataIsInstalled) {
    folder.makeDirectory("root/Applications/Claude.app");
    EXPECT_EQ(presenceOf("Claude"), InstallationPresence::installed);
}

TEST_F(InstallationDetectorTest, ABundleBesideItsDataIsInstalled) {
    folder.makeDirectory("root/Applications/Claude.app");
    folder.makeDirectory("home/Library/Application Support/Claude");
    EXPECT_EQ(presenceOf("Claude"), InstallationPresence::installed);
}

TEST_F(InstallationDetectorTest, EveryInstalledPathAloneMeansInstalled) {
    for (const ApplicationDetectionRule& rule : ApplicationDetectionRegistry::rules()) {
        for (const std::string& path : rule.installedPaths) {
            const test::TemporaryDirectory own;
            own.makeFile("all/" + path);
            const PathExpander inOwn = [&own](const std::string& text) { return own.path("all/" + text); };
            EXPECT_EQ(InstallationDetector().presence(rule, inOwn), InstallationPresence::installed)
                << rule.name << ' ' << path;
        }
    }
}

TEST_F(InstallationDetectorTest, EveryScannedDataPathAloneMeansResidualData) {
    for (const ApplicationDetectionRule& rule : ApplicationDetectionRegistry::rules()) {
        for (const std::string& path : rule.scanResidualDataPaths()) {
            const test::TemporaryDirectory own;
            own.makeFile("all/" + path);
            const PathExpander inOwn = [&own](const std::string& text) { return own.path("all/" + text); };
            EXPECT_EQ(InstallationDetector().presence(rule, inOwn), InstallationPresence::residualData)
                << rule.name << ' ' << path;
        }
    }
}

TEST_F(InstallationDetectorTest, ADataFolderAloneIsResidualData) {
    folder.makeDirectory("home/.claude");
    EXPECT_EQ(presenceOf("Claude Code"), InstallationPresence::residualData);
}

TEST_F(InstallationDetectorTest, ADanglingLinkInADataPlaceIsResidualData) {
    folder.makeLink("home/.ollama", "/nowhere/at/all");
    EXPECT_EQ(presenceOf("Ollama"), InstallationPresence::residualData);
}

TEST_F(InstallationDetectorTest, ADanglingLinkInAnExecutablesPlaceIsNothing) {
    folder.makeLink("root/usr/local/bin/ollama", "/nowhere/at/all");
    EXPECT_EQ(presenceOf("Ollama"), InstallationPresence::absent);
}

TEST_F(InstallationDetectorTest, AnExecutableReachedThroughALinkIsInstalled) {
    folder.makeExecutable("cellar/ollama", "");
    folder.makeLink("root/usr/local/bin/ollama", folder.path("cellar/ollama"));
    EXPECT_EQ(presenceOf("Ollama"), InstallationPresence::installed);
}

TEST_F(InstallationDetectorTest, ALinkToItselfIsLeftoverDataButNoExecutable) {
    folder.makeLink("root/usr/local/bin/ollama", "ollama");
    EXPECT_EQ(presenceOf("Ollama"), InstallationPresence::absent);
    folder.makeLink("home/.ollama", ".ollama");
    EXPECT_EQ(presenceOf("Ollama"), InstallationPresence::residualData);
}

TEST_F(InstallationDetectorTest, APatternIsALiteralName) {
    folder.makeDirectory("home/Library/Caches/com.anthropic.claude.desktop");
    EXPECT_EQ(presenceOf("Claude"), InstallationPresence::absent);
    folder.makeDirectory("home/Library/Caches/*claude*");
    EXPECT_EQ(presenceOf("Claude"), InstallationPresence::residualData);
}

TEST_F(InstallationDetectorTest, AFolderThatMayNotBeSearchedHoldsNothing) {
    folder.makeFile("home/.claude/settings");
    folder.makeExecutable("home/.local/bin/claude", "");
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    EXPECT_EQ(presenceOf("Claude Code"), InstallationPresence::installed);
    std::filesystem::permissions(folder.path("home"), std::filesystem::perms::none);
    EXPECT_TRUE(test::passesInChild([this] {
        test::becomeOrdinaryUser();
        EXPECT_EQ(presenceOf("Claude Code"), InstallationPresence::absent);
        EXPECT_THAT(InstallationDetector().existingPaths({folder.path("home/.claude")}), IsEmpty());
    }));
}

TEST_F(InstallationDetectorTest, ExistingPathsAreSortedWithoutDuplicates) {
    const std::string b = folder.makeFile("b");
    const std::string a = folder.makeDirectory("a");
    const std::string dangling = folder.makeLink("c", "nowhere");
    const std::string upper = folder.makeFile("Z");
    const std::string odd = folder.makeFile("\xff");
    EXPECT_THAT(InstallationDetector().existingPaths({odd, b, dangling, folder.path("missing"), a, upper, b}),
                ElementsAre(upper, a, b, dangling, odd));
    EXPECT_THAT(InstallationDetector().existingPaths({}), IsEmpty());
}

TEST(InstallationDetector, StopsAtTheFirstPathThatExists) {
    std::vector<std::string> asked;
    const auto answering = [&asked](std::vector<std::string> existing) {
        return [&asked, existing = std::move(existing)](const std::string& path) {
            asked.push_back(path);
            return std::ranges::find(existing, path) != existing.end();
        };
    };
    const std::vector<std::string> installed{"/1", "/2", "/3"};
    const std::vector<std::string> residual{"/4", "/5", "/6"};

    EXPECT_EQ(InstallationDetector(answering({"/2"}), answering({"/4"})).presence(installed, residual),
              InstallationPresence::installed);
    EXPECT_THAT(std::exchange(asked, {}), ElementsAre("/1", "/2"));
    EXPECT_EQ(InstallationDetector(answering({"/4"}), answering({"/5"})).presence(installed, residual),
              InstallationPresence::residualData);
    EXPECT_THAT(std::exchange(asked, {}), ElementsAre("/1", "/2", "/3", "/4", "/5"));
    EXPECT_EQ(InstallationDetector(answering({}), answering({"/1"})).presence(installed, residual),
              InstallationPresence::absent);
}

TEST(InstallationDetector, ExpandsEveryPathOfARule) {
    std::vector<std::string> asked;
    const auto noting = [&asked](const std::string& path) {
        asked.push_back(path);
        return false;
    };
    ApplicationDetectionRule rule;
    rule.installedPaths = {"~/bin/tool", "/bin/tool"};
    rule.residualDataPaths = {"~/.tool"};
    rule.uninstallPaths = {"/bin/tool", "~/.cache"};
    EXPECT_EQ(InstallationDetector(noting, noting)
                  .presence(rule, [](const std::string& path) { return paths::expandingTilde(path, "/h"); }),
              InstallationPresence::absent);
    EXPECT_THAT(asked, ElementsAre("/h/bin/tool", "/bin/tool", "/h/.tool", "/h/.cache"));
}

TEST(InstallationDetector, ExistingPathsFollowTheResidualPredicate) {
    const InstallationDetector detector([](const std::string&) { return false; },
                                        [](const std::string& path) { return path != "/c"; });
    EXPECT_THAT(detector.existingPaths({"/b", "/a", "/c", "/b"}), ElementsAre("/a", "/b"));
}

} // namespace
} // namespace zentrill
