#include "deletion/ParentFolder.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string>

namespace zentrill {
namespace {

using test::exists;
using test::newEngine;
using test::passesInChild;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;

TEST(ParentFolder, IsOpenedWithTheItemsNameWhetherThatIsThereOrNot) {
    const TemporaryDirectory folder;
    folder.makeFile("upper/file");
    for (const char* name : {"file", "missing"}) {
        const ParentFolder parent = ParentFolder::open(folder.path("upper/" + std::string(name)));
        EXPECT_EQ(parent.error, 0);
        EXPECT_TRUE(parent.handle);
        EXPECT_EQ(parent.name, name);
        EXPECT_EQ(parent.unsafeAncestor, std::nullopt);
    }
}

TEST(ParentFolder, WhereItIsNotThereNoLinkIsToBlame) {
    const TemporaryDirectory folder;
    folder.makeFile("file");
    EXPECT_EQ(ParentFolder::open(folder.path("missing/item")).error, ENOENT);
    EXPECT_EQ(ParentFolder::open(folder.path("missing/item")).unsafeAncestor, std::nullopt);
    EXPECT_EQ(ParentFolder::open(folder.path("file/item")).error, ENOTDIR);
    EXPECT_EQ(ParentFolder::open(folder.path("file/item")).unsafeAncestor, std::nullopt);
}

TEST(ParentFolder, ALinkOnTheWayIsNamed) {
    const TemporaryDirectory folder;
    folder.makeDirectory("elsewhere/upper");
    const std::string link = folder.makeLink("link", "elsewhere");
    const ParentFolder parent = ParentFolder::open(folder.path("link/upper/item"));
    EXPECT_EQ(parent.error, ELOOP);
    EXPECT_EQ(parent.unsafeAncestor, link);
}

TEST(ParentFolder, OnlyALinkThatLeadsWhereItShouldIsAnAlias) {
    if (const auto obstacle = test::rootFolderObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const TemporaryDirectory folder;
    folder.makeLink("tmp", "private/tmp");
    folder.makeLink("var", "/evil");
    folder.makeFile("private/tmp/item");
    folder.makeDirectory("private/var");
    folder.makeFile("evil/item");
    EXPECT_TRUE(passesInChild([&] {
        test::changeRootFolder(folder.path());
        EXPECT_EQ(ParentFolder::open("/tmp/item").error, 0);
        EXPECT_EQ(ParentFolder::open("/tmp/item").unsafeAncestor, std::nullopt);
        EXPECT_EQ(ParentFolder::open("/var/item").error, ELOOP);
        EXPECT_EQ(ParentFolder::open("/var/item").unsafeAncestor, "/var");
    }));
}

/// Sees no links: what was a folder when it was looked at may be a link when it is opened.
class BlindToLinks final : public FileSystem {
public:
    [[nodiscard]] std::optional<std::string>
    symbolicLinkDestination(const std::string& /*path*/) const override {
        return std::nullopt;
    }
};

TEST(ParentFolder, ALinkThatTookAFoldersPlaceAfterTheFirstLookIsRefusedAsSuch) {
    const TemporaryDirectory folder;
    const std::string victim = folder.makeFile("elsewhere/item");
    const std::string link = folder.makeLink("link", "elsewhere");
    const BlindToLinks files;
    for (const DeletionOptions& options : {unshielded, shielded}) {
        EXPECT_THAT(newEngine({}, files).deleteItem(link + "/item", options).failures,
                    ElementsAre("Refusing to traverse symlink ancestor: " + link));
    }
    EXPECT_TRUE(exists(victim));
}

} // namespace
} // namespace zentrill
