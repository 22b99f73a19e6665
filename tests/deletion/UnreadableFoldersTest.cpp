#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <utility>

namespace zentrill {
namespace {

using test::exists;
using test::keepingAll;
using test::newEngine;
using test::shielded;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

/// A folder with fewer permissions for as long as the object lives.
class Sealed {
public:
    Sealed(std::string path, fs::perms permissions) : path_(std::move(path)) {
        fs::permissions(path_, permissions);
    }

    ~Sealed() {
        std::error_code ignored;
        fs::permissions(path_, fs::perms::owner_all, ignored);
    }

    Sealed(const Sealed&) = delete;
    Sealed& operator=(const Sealed&) = delete;
    Sealed(Sealed&&) = delete;
    Sealed& operator=(Sealed&&) = delete;

private:
    std::string path_;
};

class UnreadableFolders : public testing::Test {
protected:
    void SetUp() override { fs::permissions(folder_.path(), fs::perms::all); }

    static void asOrdinaryUser(const std::function<void()>& body) {
        EXPECT_TRUE(test::passesAsOrdinaryUser(body));
    }

    test::TemporaryDirectory folder_;
    SafeDeletionEngine engine_ = newEngine();
};

TEST_F(UnreadableFolders, WithTheShieldAnEmptyOneIsAFailureAndStays) {
    asOrdinaryUser([this] {
        const std::string sealed = folder_.makeDirectory("tree/sealed");
        const std::string failure = sealed + ": Permission denied";
        for (const fs::perms permissions :
             {fs::perms::none, fs::perms::owner_write | fs::perms::owner_exec}) {
            for (const DeletionOptions& options : {shielded, keepingAll}) {
                const std::string empty = folder_.makeDirectory("tree/empty");
                const Sealed none(sealed, permissions);
                const DeletionReport report = engine_.deleteItem(folder_.path("tree"), options);
                EXPECT_THAT(report.failures, ElementsAre(failure));
                EXPECT_THAT(report.removed, ElementsAre(empty));
                EXPECT_THAT(report.preserved, IsEmpty());
                EXPECT_THAT(engine_.deleteItem(sealed, options).failures, ElementsAre(failure));
                EXPECT_TRUE(exists(sealed));
            }
        }
    });
}

TEST_F(UnreadableFolders, WithoutTheShieldAnEmptyOneGoes) {
    asOrdinaryUser([this] {
        const std::string tree = folder_.path("tree");
        const Sealed none(folder_.makeDirectory("tree/sealed"), fs::perms::none);
        const DeletionReport report = engine_.deleteItem(tree, unshielded);
        EXPECT_THAT(report.removed, ElementsAre(tree));
        EXPECT_THAT(report.failures, IsEmpty());
        EXPECT_FALSE(exists(tree));
    });
}

TEST_F(UnreadableFolders, WhereOnlyNamesCanBeReadAllButCredentialsAreFailures) {
    asOrdinaryUser([this] {
        const std::string list = folder_.makeDirectory("tree/list");
        const std::string key = folder_.makeFile("tree/list/id.key");
        const std::string file = folder_.makeFile("tree/list/file");
        const std::string link = folder_.makeLink("tree/list/link", "file");
        const std::string inside = folder_.makeFile("tree/list/sub/file");
        const std::string kept = folder_.makeFile("tree/kept");
        for (const std::string& item : {folder_.path("tree"), list}) {
            const Sealed namesOnly(list, fs::perms::owner_read);
            const DeletionReport report = engine_.deleteItem(item, keepingAll);
            EXPECT_THAT(report.failures,
                        UnorderedElementsAre(file + ": Permission denied", link + ": Permission denied",
                                             list + "/sub: Permission denied"));
            EXPECT_THAT(report.removed, IsEmpty());
            if (item == list) {
                EXPECT_THAT(report.preserved, ElementsAre(key));
            } else {
                EXPECT_THAT(report.preserved, UnorderedElementsAre(key, kept));
            }
            EXPECT_THAT(engine_.deleteItem(list, shielded).failures, testing::SizeIs(3));
        }
        for (const std::string& path : {key, file, link, inside, kept}) {
            EXPECT_TRUE(exists(path)) << path;
        }
    });
}

TEST_F(UnreadableFolders, WhatCannotBeLookedUpCountsAsMissing) {
    asOrdinaryUser([this] {
        const std::string file = folder_.makeFile("upper/file");
        const std::string link = folder_.makeLink("upper/link", "file");
        const std::string deep = folder_.makeFile("upper/sub/file");
        for (const fs::perms permissions : {fs::perms::none, fs::perms::owner_read}) {
            const Sealed sealed(folder_.path("upper"), permissions);
            for (const DeletionOptions& options : {unshielded, shielded, keepingAll}) {
                for (const std::string& path : {file, link, deep, folder_.path("upper/sub")}) {
                    EXPECT_EQ(engine_.deleteItem(path, options), DeletionReport{}) << path;
                }
            }
        }
        EXPECT_TRUE(exists(file) && exists(link) && exists(deep));
    });
}

} // namespace
} // namespace zentrill
