#include "deletion/SelfUninstallService.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;

/// What belongs to the program besides its per-user data.
class AdditionalOwnedDataTest : public testing::Test {
protected:
    AdditionalOwnedDataTest() {
        folder_.makeFile("Applications/Zentrill.app/Contents/Info.plist",
                         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                         "<key>CFBundleIdentifier</key><string>com.user.Zentrill</string></dict></plist>");
        preferences_ = folder_.makeFile("home/Library/Preferences/com.user.Zentrill.plist");
    }

    [[nodiscard]] SelfUninstallResult uninstallOwning(std::vector<std::string> more) const {
        return SelfUninstallService("com.user.Zentrill", std::vector{folder_.path("Applications")},
                                    FileSystem::shared(), nullptr, std::move(more))
            .uninstall(bundle_, folder_.path("home"));
    }

    static bool isThere(const std::string& path) {
        return std::filesystem::exists(std::filesystem::symlink_status(path));
    }

    test::TemporaryDirectory folder_;
    std::string bundle_ = folder_.path("Applications/Zentrill.app");
    std::string preferences_;
};

TEST_F(AdditionalOwnedDataTest, GoesAfterTheDataAndBeforeTheBundle) {
    const std::string entry = folder_.makeFile("home/.local/share/applications/entry");
    const std::string dangling = folder_.makeLink("home/.local/share/icon", "nowhere");
    const SelfUninstallResult result = uninstallOwning({entry, folder_.path("home/missing"), dangling});
    EXPECT_THAT(result.removedPaths, ElementsAre(preferences_, entry, dangling, bundle_));
    EXPECT_TRUE(result.succeeded());
    for (const std::string& path : result.removedPaths) {
        EXPECT_FALSE(isThere(path)) << path;
    }
    EXPECT_TRUE(isThere(folder_.path("home/.local/share/applications")));
}

TEST_F(AdditionalOwnedDataTest, IsCheckedBeforeAnythingGoes) {
    const std::string real = folder_.makeFile("elsewhere/entry");
    const std::string link = folder_.makeLink("home/linked", folder_.path("elsewhere"));
    const SelfUninstallResult result = uninstallOwning({link + "/entry"});
    EXPECT_THAT(result.failures, ElementsAre("Refusing to traverse symlink ancestor: " + link));
    EXPECT_THAT(result.removedPaths, ElementsAre());
    EXPECT_THAT(result.remainingPaths, ElementsAre(bundle_, preferences_, link + "/entry"));
    EXPECT_TRUE(isThere(real));
    EXPECT_TRUE(isThere(preferences_));
}

TEST_F(AdditionalOwnedDataTest, StandsInNobodysWayWhereThereIsNone) {
    const std::string link = folder_.makeLink("home/linked", folder_.makeDirectory("elsewhere"));
    const SelfUninstallResult result = uninstallOwning({link + "/entry"});
    EXPECT_THAT(result.removedPaths, ElementsAre(preferences_, bundle_));
    EXPECT_TRUE(result.succeeded());
}

} // namespace
} // namespace zentrill
