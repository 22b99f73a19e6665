#include "deletion/SafeDeletionEngine.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/PathAliases.h"
#include "platform/Paths.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <set>
#include <string>
#include <thread>

namespace zentrill {
namespace {

using test::exists;
using test::keepingAll;
using test::newEngine;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A system whose links are as the test says; nothing else of it is real.
class PlayedLinks final : public FileSystem {
public:
    explicit PlayedLinks(std::map<std::string, std::string> links) : links_(std::move(links)) {}

    [[nodiscard]] std::optional<std::string> symbolicLinkDestination(const std::string& path) const override {
        const auto found = links_.find(path);
        return found == links_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<std::string, std::string> links_;
};

TEST(SafeDeletionEngine, AMissingPathIsNoError) {
    const TemporaryDirectory folder;
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const DeletionReport report = newEngine().deleteItem(folder.path("missing"), options);
        EXPECT_EQ(report, DeletionReport{});
        EXPECT_TRUE(report.succeeded());
        EXPECT_FALSE(report.changedAnything());
        EXPECT_EQ(newEngine().deleteItem(folder.path("missing/below"), options), DeletionReport{});
    }
    const std::string file = folder.makeFile("file");
    EXPECT_EQ(newEngine().deleteItem(file + "/below", unshielded), DeletionReport{});
    EXPECT_EQ(newEngine().deleteItem(std::string(file) + '\0' + "x", unshielded), DeletionReport{});
    EXPECT_TRUE(exists(file));
}

TEST(SafeDeletionEngine, WithoutTheShieldATreeGoesWholeCredentialsIncluded) {
    const TemporaryDirectory folder;
    folder.makeFile("tree/.ssh/id.key", "secret");
    folder.makeFile("tree/a/b/auth.json", "secret");
    folder.makeLink("tree/a/link", "/nowhere");
    const std::string tree = folder.path("tree");
    const DeletionReport report = newEngine().deleteItem(tree, unshielded);
    EXPECT_THAT(report.removed, ElementsAre(tree));
    EXPECT_THAT(report.preserved, IsEmpty());
    EXPECT_THAT(report.failures, IsEmpty());
    EXPECT_FALSE(exists(tree));
}

TEST(SafeDeletionEngine, WithTheShieldACredentialStaysWithTheFoldersAboveIt) {
    const TemporaryDirectory folder;
    const std::string credential = folder.makeFile("tree/auth.json", "secret");
    const std::string cache = folder.makeFile("tree/cache.bin");
    const DeletionReport report = newEngine().deleteItem(folder.path("tree"), shielded);
    EXPECT_THAT(report.removed, ElementsAre(cache));
    EXPECT_THAT(report.preserved, ElementsAre(credential));
    EXPECT_THAT(report.failures, IsEmpty());
    EXPECT_TRUE(exists(credential));
    EXPECT_FALSE(exists(cache));
}

TEST(SafeDeletionEngine, WithTheShieldRemovalsAreListedContentsFirst) {
    const TemporaryDirectory folder;
    folder.makeFile("tree/a/b/file");
    const std::string tree = folder.path("tree");
    const DeletionReport report = newEngine().deleteItem(tree, shielded);
    EXPECT_THAT(report.removed, ElementsAre(tree + "/a/b/file", tree + "/a/b", tree + "/a", tree));
    EXPECT_FALSE(exists(tree));
}

TEST(SafeDeletionEngine, KeepingUncertainDataOnlyEmptyFoldersGo) {
    const TemporaryDirectory folder;
    const std::string file = folder.makeFile("tree/data/file");
    const std::string link = folder.makeLink("tree/data/link", "file");
    const std::string empty = folder.makeDirectory("tree/data/empty/emptier");
    const std::string tree = folder.path("tree");
    const DeletionReport report = newEngine().deleteItem(tree, keepingAll);
    EXPECT_THAT(report.removed, ElementsAre(empty, tree + "/data/empty"));
    EXPECT_THAT(report.preserved, UnorderedElementsAre(file, link));
    EXPECT_TRUE(exists(file));
    EXPECT_TRUE(exists(link));
}

TEST(SafeDeletionEngine, ASensitiveFolderIsKeptWhole) {
    const TemporaryDirectory folder;
    const std::string inside = folder.makeFile("tree/.ssh/deep/config");
    const std::string tree = folder.path("tree");
    const DeletionReport report = newEngine().deleteItem(tree, shielded);
    EXPECT_THAT(report.preserved, ElementsAre(tree + "/.ssh"));
    EXPECT_THAT(report.removed, IsEmpty());
    EXPECT_TRUE(exists(inside));
}

TEST(SafeDeletionEngine, AProtectedItemItselfIsKept) {
    const TemporaryDirectory folder;
    const std::string key = folder.makeFile("id.key");
    const std::string below = folder.makeFile(".ssh/known_hosts");
    EXPECT_THAT(newEngine().deleteItem(key, shielded).preserved, ElementsAre(key));
    EXPECT_THAT(newEngine().deleteItem(below, shielded).preserved, ElementsAre(below));
    EXPECT_TRUE(exists(key));
    EXPECT_TRUE(exists(below));
}

TEST(SafeDeletionEngine, ExplicitCredentialsAreKeptWithEverythingInside) {
    const TemporaryDirectory folder;
    const std::string file = folder.makeFile("tree/deep/config.toml");
    const std::string inside = folder.makeFile("tree/vault/a/b");
    folder.makeFile("tree/vault2");
    folder.makeFile("tree/deep/config.tom");
    const std::string tree = folder.path("tree");
    DeletionOptions options = shielded;
    options.explicitCredentialPaths = {tree + "/deep/../deep//config.toml", tree + "/vault/", "",
                                       "tree/deep"};
    const DeletionReport report = newEngine().deleteItem(tree, options);
    EXPECT_THAT(report.preserved, UnorderedElementsAre(file, tree + "/vault"));
    EXPECT_THAT(report.removed, UnorderedElementsAre(tree + "/vault2", tree + "/deep/config.tom"));
    EXPECT_TRUE(exists(file));
    EXPECT_TRUE(exists(inside));
}

TEST(SafeDeletionEngine, AnItemBelowAnExplicitCredentialIsKept) {
    const TemporaryDirectory folder;
    const std::string file = folder.makeFile("vault/a/b");
    DeletionOptions options = shielded;
    options.explicitCredentialPaths = {folder.path("vault")};
    EXPECT_THAT(newEngine().deleteItem(file, options).preserved, ElementsAre(file));
    EXPECT_TRUE(exists(file));
}

TEST(SafeDeletionEngine, ALinkIsRemovedAndNeverItsTarget) {
    const TemporaryDirectory folder;
    const std::string target = folder.makeFile("target/file");
    for (const char* given : {"link", "link/", "link//", "link/.", "x/../link"}) {
        for (const DeletionOptions& options : {unshielded, shielded}) {
            folder.makeLink("link", folder.path("target"));
            const std::string path = folder.path(given);
            const DeletionReport report = newEngine().deleteItem(path, options);
            EXPECT_THAT(report.removed, ElementsAre(path));
            EXPECT_FALSE(exists(folder.path("link")));
            EXPECT_TRUE(exists(target));
        }
    }
}

TEST(SafeDeletionEngine, ADanglingLinkIsRemoved) {
    const TemporaryDirectory folder;
    const std::string link = folder.makeLink("link", "nowhere");
    EXPECT_THAT(newEngine().deleteItem(link, shielded).removed, ElementsAre(link));
    EXPECT_FALSE(exists(link));
}

TEST(SafeDeletionEngine, APathThroughALinkIsRefused) {
    const TemporaryDirectory folder;
    const std::string file = folder.makeFile("elsewhere/sub/file");
    const std::string link = folder.makeLink("work", "elsewhere");
    const std::string message = "Refusing to traverse symlink ancestor: " + link;
    for (const DeletionOptions& options : {unshielded, shielded}) {
        for (const char* below : {"/sub", "/sub/file", "/missing"}) {
            const DeletionReport report = newEngine().deleteItem(link + below, options);
            EXPECT_THAT(report.failures, ElementsAre(message));
            EXPECT_THAT(report.removed, IsEmpty());
        }
    }
    EXPECT_EQ(newEngine().deletionRefusal(link + "/sub"), message);
    EXPECT_EQ(newEngine().deletionRefusal(link), std::nullopt);
    EXPECT_TRUE(exists(file));
}

TEST(SafeDeletionEngine, OnlyTheSystemsOwnAliasLinksMayLeadToAnItem) {
    const PlayedLinks links({{"/tmp", "private/tmp"}, {"/var", "/private/var"}, {"/etc", "/home/evil"}});
    const SafeDeletionEngine engine = newEngine({}, links);
    EXPECT_EQ(engine.deletionRefusal("/tmp/a/b"), std::nullopt);
    EXPECT_EQ(engine.deletionRefusal("/var/folders/x"), std::nullopt);
    EXPECT_EQ(engine.deletionRefusal("/etc/x"), "Refusing to traverse symlink ancestor: /etc");
    EXPECT_EQ(engine.deletionRefusal("/etc"), std::nullopt);
}

TEST(SafeDeletionEngine, AliasedCredentialPathsMatchInEitherForm) {
    const TemporaryDirectory folder;
    const std::string kept = folder.makeFile("tree/data");
    DeletionOptions options = shielded;
    options.explicitCredentialPaths = {aliasNormalized(kept)};
    if (options.explicitCredentialPaths.front() == kept) {
        GTEST_SKIP() << "needs its temporary folder below /tmp or /var";
    }
    const DeletionReport report = newEngine().deleteItem(folder.path("tree"), options);
    EXPECT_THAT(report.preserved, ElementsAre(kept));
    EXPECT_TRUE(exists(kept));
}

TEST(SafeDeletionEngine, ReportsUseTheCallersFormOfThePath) {
    const TemporaryDirectory folder;
    folder.makeFile("tree/sub/file");
    const std::string given = folder.path() + "//x/.././tree/";
    const DeletionReport report = newEngine().deleteItem(given, shielded);
    const std::string prefix = folder.path() + "//x/.././tree";
    EXPECT_THAT(report.removed, ElementsAre(prefix + "/sub/file", prefix + "/sub", given));
    EXPECT_FALSE(exists(folder.path("tree")));
}

TEST(SafeDeletionEngine, AnItemThatThePredicateRefusesIsLeftWithoutAWord) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const TemporaryDirectory folder;
        const std::string kept = folder.makeFile("tree/a/kept/file");
        const std::string gone = folder.makeFile("tree/a/gone/file");
        const std::string tree = folder.path("tree");
        std::set<std::string> asked;
        const SafeDeletionEngine engine = newEngine([&](const std::string& path) {
            asked.insert(path);
            return path != tree + "/a/kept";
        });
        const DeletionReport report = engine.deleteItem(tree, options);
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_THAT(report.preserved, IsEmpty());
        EXPECT_TRUE(exists(kept));
        EXPECT_FALSE(exists(gone));
        EXPECT_FALSE(asked.contains(kept));
        if (options.preserveCredentials) {
            EXPECT_THAT(report.removed, ElementsAre(gone, tree + "/a/gone"));
        } else {
            EXPECT_THAT(report.removed, IsEmpty()); // The tree as a whole is still there.
        }
    }
}

TEST(SafeDeletionEngine, ThePredicateIsAskedByTheCallersThreadAlone) {
    const TemporaryDirectory folder;
    for (int i = 0; i < 200; ++i) {
        folder.makeFile("tree/" + std::to_string(i) + "/sub/file");
    }
    std::atomic<int> askedByOthers = 0;
    const SafeDeletionEngine engine = newEngine([&, caller = std::this_thread::get_id()](const std::string&) {
        askedByOthers += std::this_thread::get_id() == caller ? 0 : 1;
        return true;
    });
    EXPECT_TRUE(engine.deleteItem(folder.path("tree"), shielded).succeeded());
    EXPECT_EQ(askedByOthers, 0);
}

TEST(SafeDeletionEngine, ThePredicateIsAskedAboutTheItemItself) {
    const TemporaryDirectory folder;
    const std::string file = folder.makeFile("file");
    const SafeDeletionEngine engine = newEngine([](const std::string&) { return false; });
    EXPECT_EQ(engine.deleteItem(file, unshielded), DeletionReport{});
    EXPECT_EQ(engine.deleteItem(file, shielded), DeletionReport{});
    EXPECT_TRUE(exists(file));
}

} // namespace
} // namespace zentrill
