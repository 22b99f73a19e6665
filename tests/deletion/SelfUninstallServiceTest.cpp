#include "deletion/SelfUninstallService.h"

#include "DeletionCases.h"
#include "SelfUninstallFixture.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::binaryInfo;
using test::bundleIdentifier;
using test::exists;
using test::notADirectChild;
using test::xmlInfo;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using SelfUninstallServiceTest = test::SelfUninstallFixture;

TEST_F(SelfUninstallServiceTest, OwnsFivePlacesInTheHomeFolder) {
    EXPECT_THAT(SelfUninstallService().ownedDataURLs("/Users/u/"),
                ElementsAre("/Users/u/Library/Preferences/com.user.Zentrill.plist",
                            "/Users/u/Library/Caches/com.user.Zentrill",
                            "/Users/u/Library/Application Support/com.user.Zentrill",
                            "/Users/u/Library/Logs/com.user.Zentrill",
                            "/Users/u/Library/Saved Application State/com.user.Zentrill.savedState"));
    EXPECT_EQ(SelfUninstallService("x.y").ownedDataURLs("/a/../b").front(),
              "/b/Library/Preferences/x.y.plist");
}

TEST_F(SelfUninstallServiceTest, WithoutAHomeFolderItOwnsItsBundleAlone) {
    EXPECT_THAT(SelfUninstallService().ownedDataURLs(""), IsEmpty());
    const std::string bundle = makeBundle();
    const SelfUninstallResult result = service().uninstall(bundle, "");
    EXPECT_THAT(result.removedPaths, ElementsAre(bundle));
    EXPECT_TRUE(result.succeeded());
}

TEST_F(SelfUninstallServiceTest, RemovesTheDataInOrderAndThenTheBundle) {
    std::vector<std::string> expected = makeData();
    const std::string foreign = folder.makeFile("home/Library/Caches/com.user.Zentrill.other");
    expected.push_back(makeBundle());
    const SelfUninstallResult result = uninstall(expected.back());
    EXPECT_EQ(result.removedPaths, expected);
    EXPECT_THAT(result.failures, IsEmpty());
    EXPECT_THAT(result.remainingPaths, IsEmpty());
    EXPECT_TRUE(result.succeeded());
    for (const std::string& path : expected) {
        EXPECT_FALSE(exists(path)) << path;
    }
    EXPECT_TRUE(exists(foreign));
}

TEST_F(SelfUninstallServiceTest, DataThatDoNotExistAreNoError) {
    const std::string bundle = makeBundle("Applications/Zentrill.app", binaryInfo(bundleIdentifier));
    const SelfUninstallResult result = uninstall(bundle + "/");
    EXPECT_THAT(result.removedPaths, ElementsAre(bundle));
    EXPECT_TRUE(result.succeeded());
    EXPECT_FALSE(exists(bundle));
}

TEST_F(SelfUninstallServiceTest, DataThatAreALinkGoAsALink) {
    const std::string bundle = makeBundle();
    const std::string target = folder.makeFile("elsewhere/file");
    const std::string link =
        folder.makeLink("home/Library/Caches/com.user.Zentrill", folder.path("elsewhere"));
    const std::string dangling = folder.makeLink("home/Library/Logs/com.user.Zentrill", "nowhere");
    const SelfUninstallResult result = uninstall(bundle);
    EXPECT_THAT(result.removedPaths, ElementsAre(link, dangling, bundle));
    EXPECT_TRUE(result.succeeded());
    EXPECT_TRUE(exists(target));
}

TEST_F(SelfUninstallServiceTest, WithoutAListBothApplicationsFoldersAreApproved) {
    const test::TemporaryHome home;
    home.makeFile("Applications/Zentrill.app/Contents/Info.plist", xmlInfo(bundleIdentifier));
    const SelfUninstallService usual;
    EXPECT_TRUE(usual.uninstall(home.path("Applications/Zentrill.app"), home.path()).succeeded());
    EXPECT_THAT(usual.uninstall("/Applications/Zentrill no such program.app", home.path()).failures,
                ElementsAre("The app bundle no longer exists."));
    EXPECT_THAT(usual.uninstall(folder.path("Applications/Zentrill.app"), home.path()).failures,
                ElementsAre(notADirectChild));
}

TEST_F(SelfUninstallServiceTest, FoldersAreComparedInTheirStandardForm) {
    const std::string bundle = makeBundle();
    const SelfUninstallService spelled(bundleIdentifier, std::vector{folder.path("x/../Applications//./")});
    EXPECT_TRUE(spelled.uninstall(folder.path("Applications/Tools/../Zentrill.app"), folder.path("home"))
                    .succeeded());
    EXPECT_FALSE(exists(bundle));
}

TEST_F(SelfUninstallServiceTest, DataThatCannotBeRemovedKeepTheBundle) {
    const std::string bundle = makeBundle();
    const std::vector<std::string> data = makeData();
    folder.makeFile("home/Library/Caches/com.user.Zentrill/closed/file");
    openToAll();
    close(folder.path("home/Library/Caches/com.user.Zentrill/closed"));
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        const SelfUninstallResult result = uninstall(bundle);
        EXPECT_THAT(result.removedPaths, ElementsAre(data[0]));
        EXPECT_THAT(result.failures, ElementsAre(StartsWith(data[1] + ": ")));
        EXPECT_THAT(result.remainingPaths, ElementsAre(bundle, data[1], data[2], data[3], data[4]));
        EXPECT_FALSE(result.succeeded());
    }));
    EXPECT_TRUE(exists(bundle + "/Contents/MacOS/Zentrill"));
}

TEST_F(SelfUninstallServiceTest, ABundleThatCannotBeRemovedIsTheFailure) {
    const std::string bundle = makeBundle();
    const std::vector<std::string> data = makeData();
    openToAll();
    close(bundle + "/Contents");
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        const SelfUninstallResult result = uninstall(bundle);
        EXPECT_EQ(result.removedPaths, data);
        EXPECT_THAT(result.failures, ElementsAre(StartsWith(bundle + ": ")));
        EXPECT_THAT(result.remainingPaths, ElementsAre(bundle));
    }));
}

TEST_F(SelfUninstallServiceTest, WhatSurvivesWithoutAWordIsReported) {
    const std::string bundle = makeBundle();
    const std::vector<std::string> data = makeData();
    const SelfUninstallResult result = service([&](const std::string& path) {
                                           return path != bundle && path != data[3];
                                       }).uninstall(bundle, folder.path("home"));
    EXPECT_THAT(result.failures, ElementsAre("Cleanup left these paths behind: " + bundle + ", " + data[3]));
    EXPECT_THAT(result.remainingPaths, ElementsAre(bundle, data[3]));
    EXPECT_FALSE(result.succeeded());
}

} // namespace
} // namespace zentrill
