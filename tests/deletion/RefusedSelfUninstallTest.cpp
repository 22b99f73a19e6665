#include "DeletionCases.h"
#include "SelfUninstallFixture.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
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

using SelfUninstallServiceTest = test::SelfUninstallFixture;

constexpr const char* notADirectory = "The self-uninstall target is not an app directory.";
constexpr const char* isALink = "The self-uninstall target cannot be a symbolic link.";
constexpr const char* otherIdentifier = "The app bundle identifier does not match com.user.Zentrill.";
constexpr const char* notWritable = "The Applications directory is not writable.";

TEST_F(SelfUninstallServiceTest, OnlyAnAppBundleIsRemoved) {
    for (const char* name : {"Zentrill", "Zentrill.App", "Zentrill.app.old", ".app", "Zentrill.app/.."}) {
        folder.makeFile(std::string("Applications/") + name + "/Contents/Info.plist",
                        xmlInfo(bundleIdentifier));
        const SelfUninstallResult result = uninstall(folder.path("Applications/") + name);
        EXPECT_THAT(result.failures, ElementsAre("Self-uninstall requires an installed .app bundle."))
            << name;
        EXPECT_THAT(result.removedPaths, IsEmpty());
    }
    EXPECT_FALSE(std::filesystem::is_empty(folder.path("Applications/Zentrill")));
}

TEST_F(SelfUninstallServiceTest, ABundleInASubfolderIsRefused) {
    const std::string bundle = makeBundle("Applications/Tools/Zentrill.app");
    const std::vector<std::string> data = makeData();
    const SelfUninstallResult result = uninstall(bundle);
    EXPECT_THAT(result.failures, ElementsAre(notADirectChild));
    EXPECT_THAT(result.remainingPaths, ElementsAre(bundle, data[0], data[1], data[2], data[3], data[4]));
    EXPECT_FALSE(result.succeeded());
    EXPECT_TRUE(exists(bundle));
    EXPECT_THAT(uninstall(makeBundle("ApplicationsX/Zentrill.app")).failures, ElementsAre(notADirectChild));
}

TEST_F(SelfUninstallServiceTest, AMissingBundleIsSaidToBeGone) {
    const std::vector<std::string> data = makeData();
    const SelfUninstallResult result = uninstall(folder.path("Applications/Zentrill.app"));
    EXPECT_THAT(result.failures, ElementsAre("The app bundle no longer exists."));
    EXPECT_EQ(result.remainingPaths, data);
}

TEST_F(SelfUninstallServiceTest, ALinkToABundleIsRefused) {
    const std::string real = makeBundle("elsewhere/Zentrill.app");
    const std::string link = folder.makeLink("Applications/Zentrill.app", real);
    for (const std::string& path : {link, link + "/", link + "/."}) {
        const SelfUninstallResult result = uninstall(path);
        EXPECT_THAT(result.failures, ElementsAre(notADirectory, isALink)) << path;
        EXPECT_THAT(result.remainingPaths, ElementsAre(link));
    }
    EXPECT_TRUE(exists(real));
    const std::string dangling = folder.makeLink("Applications/Gone.app", "nowhere");
    EXPECT_THAT(uninstall(dangling).failures, ElementsAre(notADirectory, isALink, otherIdentifier));
}

TEST_F(SelfUninstallServiceTest, AFileIsNoBundle) {
    const std::string file = folder.makeFile("Applications/Zentrill.app", xmlInfo(bundleIdentifier));
    EXPECT_THAT(uninstall(file).failures, ElementsAre(notADirectory, otherIdentifier));
    EXPECT_TRUE(exists(file));
}

TEST_F(SelfUninstallServiceTest, ABundleOfAnotherIdentifierIsRefused) {
    for (const std::string& info :
         {xmlInfo("com.user.other"), binaryInfo("com.user.other"), xmlInfo("com.user.zentrill"),
          xmlInfo("com.user.Zentrill "), std::string("<plist><dict/></plist>"), std::string()}) {
        const std::string bundle = makeBundle("Applications/Zentrill.app", info);
        EXPECT_THAT(uninstall(bundle).failures, ElementsAre(otherIdentifier)) << info;
        EXPECT_TRUE(exists(bundle));
    }
    const std::string empty = folder.makeDirectory("Applications/Empty.app");
    EXPECT_THAT(uninstall(empty).failures, ElementsAre(otherIdentifier));
    const SelfUninstallService other("com.user.other", std::vector{folder.path("Applications")});
    EXPECT_THAT(other.uninstall(empty, folder.path("home")).failures,
                ElementsAre("The app bundle identifier does not match com.user.other."));
}

TEST_F(SelfUninstallServiceTest, ABundleWhoseNatureCannotBeReadIsRefused) {
    class WithoutAttributes final : public FileSystem {
    public:
        [[nodiscard]] std::optional<FileAttributes> attributes(const std::string& /*path*/) const override {
            return std::nullopt;
        }
    };

    const WithoutAttributes files;
    const std::string bundle = makeBundle("Applications/Zentrill.app", xmlInfo("com.user.other"));
    const SelfUninstallService blind(bundleIdentifier, std::vector{folder.path("Applications")}, files);
    EXPECT_THAT(blind.uninstall(bundle, folder.path("home")).failures,
                ElementsAre("The app bundle metadata could not be read.", otherIdentifier));
}

TEST_F(SelfUninstallServiceTest, ABundleOnAReadOnlyVolumeIsRefused) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    EXPECT_TRUE(test::passesInChild([this] {
        test::enterPrivateMountNamespace();
        test::mountMemoryDisk(folder.path("Applications"));
        const std::string bundle = makeBundle();
        test::remountReadOnly(folder.path("Applications"));
        EXPECT_THAT(
            uninstall(bundle).failures,
            ElementsAre("The app is on a read-only volume. Install it in Applications first.", notWritable));
        EXPECT_TRUE(exists(bundle));
    }));
}

TEST_F(SelfUninstallServiceTest, AnApplicationsFolderWithoutWritePermissionIsRefused) {
    const std::string bundle = makeBundle();
    const std::vector<std::string> data = makeData();
    openToAll();
    close(folder.path("Applications"));
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_THAT(uninstall(bundle).failures, ElementsAre(notWritable));
    }));
    EXPECT_TRUE(exists(data.front()));
}

TEST_F(SelfUninstallServiceTest, TheNearestFolderAboveTheDataMustBeWritable) {
    const std::string bundle = makeBundle();
    const std::string caches = folder.makeDirectory("home/Library/Caches");
    const std::string logs = folder.makeDirectory("home/Library/Logs/com.user.Zentrill");
    const std::string library = folder.path("home/Library");
    openToAll();
    for (const std::string& path : {library, caches, logs}) {
        close(path);
    }
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_THAT(uninstall(bundle).failures, ElementsAre("Cleanup parent is not writable: " + library,
                                                            "Cleanup parent is not writable: " + caches,
                                                            "Cleanup parent is not writable: " + library,
                                                            "Cleanup parent is not writable: " + logs,
                                                            "Cleanup parent is not writable: " + library));
    }));
    EXPECT_TRUE(exists(bundle));
}

TEST_F(SelfUninstallServiceTest, DataBehindALinkedFolderAreRefused) {
    const std::string bundle = makeBundle();
    const std::string precious = folder.makeFile("elsewhere/com.user.Zentrill/file");
    const std::string link = folder.makeLink("home/Library/Caches", folder.path("elsewhere"));
    const SelfUninstallResult result = uninstall(bundle);
    EXPECT_THAT(result.failures, ElementsAre("Refusing to traverse symlink ancestor: " + link));
    EXPECT_THAT(result.removedPaths, IsEmpty());
    EXPECT_TRUE(exists(precious));
    EXPECT_TRUE(exists(bundle));
}

TEST_F(SelfUninstallServiceTest, ABundleInALinkedApplicationsFolderIsRefusedBeforeAnythingGoes) {
    const std::string bundle = makeBundle();
    const std::vector<std::string> data = makeData();
    const std::string link = folder.makeLink("Linked", folder.path("Applications"));
    const SelfUninstallService linked(bundleIdentifier, std::vector{link});
    const SelfUninstallResult result = linked.uninstall(link + "/Zentrill.app", folder.path("home"));
    EXPECT_THAT(result.failures, ElementsAre("Refusing to traverse symlink ancestor: " + link));
    EXPECT_THAT(result.removedPaths, IsEmpty());
    EXPECT_EQ(result.remainingPaths.size(), 1 + data.size());
    EXPECT_TRUE(exists(bundle));
    for (const std::string& path : data) {
        EXPECT_TRUE(exists(path)) << path;
    }
}

TEST_F(SelfUninstallServiceTest, AllProblemsAreCollectedInOrder) {
    const std::string bundle =
        folder.makeLink("Applications/Zentrill.app", makeBundle("x/Zentrill.app", xmlInfo("com.user.other")));
    const std::string link = folder.makeLink("home/Library", folder.makeDirectory("elsewhere"));
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    for (const char* closed : {"Applications", "elsewhere"}) {
        close(folder.path(closed));
    }
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        const std::vector<std::string> failures = uninstall(bundle).failures;
        std::vector<std::string> expected{notADirectory, isALink, otherIdentifier, notWritable};
        for (int data = 0; data < 5; ++data) {
            expected.push_back("Refusing to traverse symlink ancestor: " + link);
            expected.push_back("Cleanup parent is not writable: " + link);
        }
        EXPECT_EQ(failures, expected);
    }));
}

} // namespace
} // namespace zentrill
