#include "catalog/AppInfo.h"

#include <gtest/gtest.h>

#include <functional>
#include <unordered_set>
#include <vector>

namespace zentrill {
namespace {

AppInfo sample() {
    return {
        .name = "Tool",
        .displayName = "Tool (CLI)",
        .description = "A tool",
        .category = AppCategory::terminal,
        .iconName = "cpu",
        .installedVia = "by hand",
        .detectPaths = {"/bin/tool"},
        .uninstallPaths = {"~/.tool"},
        .credentialPaths = {"~/.tool/key"},
        .residualDataPaths = {"~/.tool/data"},
    };
}

std::size_t hashOf(const AppInfo& app) {
    return std::hash<AppInfo>()(app);
}

TEST(AppInfo, TakesItsFieldsInTheOrderOfTheirDeclaration) {
    // NOLINTNEXTLINE(modernize-use-designated-initializers): the order is what is tested
    const AppInfo app{
        "name", "display", "text", AppCategory::desktop, "icon", "via", {"d"}, {"u"}, {"c"}, {"r"},
        true,   false,     true};
    EXPECT_EQ(app.name, "name");
    EXPECT_EQ(app.displayName, "display");
    EXPECT_EQ(app.description, "text");
    EXPECT_EQ(app.category, AppCategory::desktop);
    EXPECT_EQ(app.iconName, "icon");
    EXPECT_EQ(app.installedVia, "via");
    EXPECT_EQ(app.detectPaths, std::vector<std::string>{"d"});
    EXPECT_EQ(app.uninstallPaths, std::vector<std::string>{"u"});
    EXPECT_EQ(app.credentialPaths, std::vector<std::string>{"c"});
    EXPECT_EQ(app.residualDataPaths, std::vector<std::string>{"r"});
    EXPECT_TRUE(app.isDetected);
    EXPECT_FALSE(app.hasResidualData);
    EXPECT_TRUE(app.isSelected);
}

TEST(AppInfo, SelectingACopyLeavesTheOriginalAlone) {
    const std::vector<AppInfo> list{sample()};
    AppInfo copy = list.front();
    copy.isSelected = true;
    EXPECT_FALSE(list.front().isSelected);
    EXPECT_NE(copy, list.front());
    EXPECT_EQ(copy.id(), list.front().id());
}

TEST(AppInfo, EveryFieldTakesPartInEqualityAndHash) {
    const std::vector<std::function<void(AppInfo&)>> changes{
        [](AppInfo& app) { app.name += "x"; },
        [](AppInfo& app) { app.displayName += "x"; },
        [](AppInfo& app) { app.description += "x"; },
        [](AppInfo& app) { app.category = AppCategory::desktop; },
        [](AppInfo& app) { app.iconName += "x"; },
        [](AppInfo& app) { app.installedVia.reset(); },
        [](AppInfo& app) { app.detectPaths.emplace_back("x"); },
        [](AppInfo& app) { app.uninstallPaths.emplace_back("x"); },
        [](AppInfo& app) { app.credentialPaths.emplace_back("x"); },
        [](AppInfo& app) { app.residualDataPaths.emplace_back("x"); },
        [](AppInfo& app) { app.isDetected = true; },
        [](AppInfo& app) { app.hasResidualData = true; },
        [](AppInfo& app) { app.isSelected = true; },
    };
    std::unordered_set<AppInfo> distinct{sample(), sample()};
    EXPECT_EQ(distinct.size(), 1U);
    std::unordered_set<std::size_t> hashes{hashOf(sample())};
    for (std::size_t field = 0; field < changes.size(); ++field) {
        AppInfo other = sample();
        changes[field](other);
        EXPECT_NE(other, sample()) << "field " << field;
        EXPECT_TRUE(hashes.insert(hashOf(other)).second) << "field " << field;
        distinct.insert(other);
    }
    EXPECT_EQ(distinct.size(), changes.size() + 1);
}

TEST(AppInfo, APathMovedToTheNextListChangesTheHash) {
    AppInfo moved = sample();
    moved.uninstallPaths.insert(moved.uninstallPaths.begin(), moved.detectPaths.front());
    moved.detectPaths.clear();
    EXPECT_NE(hashOf(moved), hashOf(sample()));
}

TEST(AppInfo, AnAbsentInstallationNoteIsNotAnEmptyOne) {
    AppInfo absent = sample();
    absent.installedVia.reset();
    AppInfo empty = sample();
    empty.installedVia = "";
    EXPECT_NE(absent, empty);
    EXPECT_NE(hashOf(absent), hashOf(empty));
}

} // namespace
} // namespace zentrill
