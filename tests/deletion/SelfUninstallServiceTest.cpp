#include "deletion/SelfUninstallService.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "platform/Paths.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::exists;
using test::newEngine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* identifier = "com.user.Zentrill";
constexpr const char* notADirectory = "The self-uninstall target is not an app directory.";
constexpr const char* isALink = "The self-uninstall target cannot be a symbolic link.";
constexpr const char* otherIdentifier = "The app bundle identifier does not match com.user.Zentrill.";
constexpr const char* notADirectChild =
    "Self-uninstall is limited to a direct child of an approved Applications directory.";
constexpr const char* notWritable = "The Applications directory is not writable.";

std::string xmlInfo(const std::string& bundleIdentifier) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist "
           "version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
           "<string>" +
           bundleIdentifier + "</string></dict></plist>";
}

std::string binaryInfo(const std::string& bundleIdentifier) {
    plist_t root = plist_new_dict();
    plist_dict_set_item(root, "CFBundleIdentifier", plist_new_string(bundleIdentifier.c_str()));
    char* data = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &data, &length);
    plist_free(root);
    std::string info(data, length);
    plist_to_bin_free(data);
    return info;
}

class SelfUninstallServiceTest : public testing::Test {
protected:
    SelfUninstallServiceTest() { folder.makeDirectory("Applications"); }

    std::string makeBundle(const std::string& relative = "Applications/Zentrill.app",
                           const std::string& info = xmlInfo(identifier)) const {
        folder.makeFile(relative + "/Contents/Info.plist", info);
        folder.makeFile(relative + "/Contents/MacOS/Zentrill");
        return folder.path(relative);
    }

    /// Makes all five pieces of data, files inside the folders among them.
    std::vector<std::string> makeData() const {
        std::vector<std::string> data = service().ownedDataURLs(folder.path("home"));
        for (const std::string& path : data) {
            const std::string relative = path.substr(folder.path().size() + 1);
            folder.makeFile(path.ends_with(".plist") ? relative : relative + "/file");
        }
        return data;
    }

    [[nodiscard]] SelfUninstallService service(SafeDeletionEngine::DeletionPredicate mayRemove = {}) const {
        return SelfUninstallService(identifier, std::vector{folder.path("Applications")},
                                    FileSystem::shared(),
                                    std::make_shared<SafeDeletionEngine>(newEngine(std::move(mayRemove))));
    }

    [[nodiscard]] SelfUninstallResult uninstall(const std::string& bundle) const {
        return service().uninstall(bundle, folder.path("home"));
    }

    /// Opens everything to the ordinary user; a test closes again what it wants closed.
    void openToAll() const {
        std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
            std::filesystem::permissions(entry.path(), std::filesystem::perms::all);
        }
    }

    static void close(const std::string& path) {
        std::filesystem::permissions(path, std::filesystem::perms(0555));
    }

    test::TemporaryDirectory folder;
};

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
    const std::string bundle = makeBundle("Applications/Zentrill.app", binaryInfo(identifier));
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
    home.makeFile("Applications/Zentrill.app/Contents/Info.plist", xmlInfo(identifier));
    const SelfUninstallService usual;
    EXPECT_TRUE(usual.uninstall(home.path("Applications/Zentrill.app"), home.path()).succeeded());
    EXPECT_THAT(usual.uninstall("/Applications/Zentrill no such program.app", home.path()).failures,
                ElementsAre("The app bundle no longer exists."));
    EXPECT_THAT(usual.uninstall(folder.path("Applications/Zentrill.app"), home.path()).failures,
                ElementsAre(notADirectChild));
}

TEST_F(SelfUninstallServiceTest, OnlyAnAppBundleIsRemoved) {
    for (const char* name : {"Zentrill", "Zentrill.App", "Zentrill.app.old", ".app", "Zentrill.app/.."}) {
        folder.makeFile(std::string("Applications/") + name + "/Contents/Info.plist", xmlInfo(identifier));
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

TEST_F(SelfUninstallServiceTest, FoldersAreComparedInTheirStandardForm) {
    const std::string bundle = makeBundle();
    const SelfUninstallService spelled(identifier, std::vector{folder.path("x/../Applications//./")});
    EXPECT_TRUE(spelled.uninstall(folder.path("Applications/Tools/../Zentrill.app"), folder.path("home"))
                    .succeeded());
    EXPECT_FALSE(exists(bundle));
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
    const std::string file = folder.makeFile("Applications/Zentrill.app", xmlInfo(identifier));
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
    const SelfUninstallService blind(identifier, std::vector{folder.path("Applications")}, files);
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
    const SelfUninstallService linked(identifier, std::vector{link});
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
